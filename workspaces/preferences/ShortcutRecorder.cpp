#include "workspaces/preferences/ShortcutRecorder.h"

#include <QKeySequence>
#include <utility>

#include "picker/HotKey.h"
#include "picker/HotKeyLabel.h"
#include "platform/KeyCodeTable.h"

namespace kro {
namespace {

// The keys whose label in the table is a symbol rather than their name.
constexpr std::pair<int, int> kNamedKeys[] = {
    {Qt::Key_Return, 36}, {Qt::Key_Enter, 36}, {Qt::Key_Space, 49},  {Qt::Key_Escape, 53}, {Qt::Key_Tab, 48},
    {Qt::Key_Backspace, 51}, {Qt::Key_Left, 123}, {Qt::Key_Right, 124}, {Qt::Key_Down, 125}, {Qt::Key_Up, 126},
};

std::optional<int> codeFromKeyName(int key) {
    for (const auto& [qtKey, code] : kNamedKeys) {
        if (qtKey == key) return code;
    }
    const QString name = QKeySequence(key).toString(QKeySequence::PortableText).toUpper();
    if (name.isEmpty()) return std::nullopt;
    for (int code = 0; code < 128; ++code) {
        const auto label = keyLabel(code);
        if (label && QString::fromStdString(*label).toUpper() == name) return code;
    }
    return std::nullopt;
}

}  // namespace

std::optional<RecordedCombination> combinationOf(const QKeyEvent& event) {
    const int key = event.key();
    if (key == Qt::Key_Control || key == Qt::Key_Shift || key == Qt::Key_Alt || key == Qt::Key_Meta ||
        key == Qt::Key_Super_L || key == Qt::Key_Super_R || key == Qt::Key_AltGr || key == 0 || key == Qt::Key_unknown) {
        return std::nullopt;
    }
    const auto modifiers = event.modifiers();
    int flags = 0;
    if (modifiers & Qt::ControlModifier) flags |= HotKeyFlags::command;
    if (modifiers & Qt::AltModifier) flags |= HotKeyFlags::option;
    if (modifiers & Qt::MetaModifier) flags |= HotKeyFlags::control;
    if (modifiers & Qt::ShiftModifier) flags |= HotKeyFlags::shift;
    std::optional<int> code;
    if (event.nativeScanCode() != 0) code = virtualKeyCode(int(event.nativeScanCode()));
    if (!code) code = codeFromKeyName(key);
    if (!code) return std::nullopt;
    return RecordedCombination{flags, *code};
}

}  // namespace kro
