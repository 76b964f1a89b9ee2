#pragma once
// Turning a key press into a stored combination: the modifiers by role (Ctrl the primary one, Alt, Super,
// Shift) and the key's place on the board, read from the X key code so that a shortcut survives a change
// of layout. Where the platform gives no X key code (the offscreen platform of the tests), the key's name
// is looked up in the fixed label table instead.
#include <QKeyEvent>
#include <optional>

namespace kro {

struct RecordedCombination {
    int flags = 0;
    int code = 0;
};

// Nothing for a press of a modifier alone, or of a key with no place in the table.
std::optional<RecordedCombination> combinationOf(const QKeyEvent& event);

}  // namespace kro
