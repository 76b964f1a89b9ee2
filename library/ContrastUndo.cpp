#include "library/ContrastUndo.h"

#include <cstdio>

namespace kro {
namespace {

std::string describe(const ColorValue& color) {
    std::string text = color.colorSpace() ? color.colorSpace()->name() : std::string("no space");
    char buffer[32];
    for (double component : color.components()) {
        std::snprintf(buffer, sizeof buffer, " %.17g", component);
        text += buffer;
    }
    std::snprintf(buffer, sizeof buffer, " %.17g", color.alpha());
    return text + buffer;
}

}  // namespace

ContrastUndo& ContrastUndo::shared() {
    static ContrastUndo undo;
    return undo;
}

std::string ContrastUndo::description(const ContrastColors& colors) {
    return "(" + describe(colors.first) + ", " + describe(colors.second) + ")";
}

void ContrastUndo::save(const ContrastColors& colors, double after) {
    engine_.save(colors, description(colors), after, "save(colors:after:)");
}

std::optional<ContrastColors> ContrastUndo::undo() {
    auto state = engine_.undoState();
    if (!state) return std::nullopt;
    engine_.moveIndex(+1);
    Sherlog::print("undo index " + std::to_string(engine_.index()) + " of " + std::to_string(engine_.count()),
                   SherlogLevel::debug, "Kro/ContrastUndo", "undo()", __LINE__);
    return state;
}

std::optional<ContrastColors> ContrastUndo::redo() {
    auto state = engine_.redoState();
    if (!state) return std::nullopt;
    engine_.moveIndex(-1);
    Sherlog::print("redo index " + std::to_string(engine_.index()) + " of " + std::to_string(engine_.count()),
                   SherlogLevel::debug, "Kro/ContrastUndo", "redo()", __LINE__);
    return state;
}

}  // namespace kro
