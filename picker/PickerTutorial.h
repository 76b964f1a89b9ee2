#pragma once
// The hint shown beside the loupe: what a click does in this mode, or what just changed.
#include <functional>
#include <optional>
#include <string>

#include "picker/PickerTypes.h"
#include "platform/ScreenCapture.h"

namespace kro {

enum class PickerHint { standard, multiple, contrast, plugin, precision, size, zoom, command };

// The hint for a session of `mode`; its text also tells how many colours are held.
PickerHint hintFor(PickerMode mode);
std::string hintText(PickerHint hint, size_t count);

struct PickerTutorial {
    // A hint is due or on show.
    bool visible = false;
    // The hint on show.
    std::optional<PickerHint> hint;
    ScreenPoint center;
    // Counts the shows and dismissals, so a delayed one that was overtaken does nothing.
    int generation = 0;
};

}  // namespace kro
