#include "formats/ColorFormatUndo.h"

#include "library/JsonDecode.h"
#include "library/Notifications.h"

namespace kro {

ColorFormatUndo& ColorFormatUndo::shared() {
    static ColorFormatUndo instance;
    return instance;
}

void ColorFormatUndo::save(const ColorFormats& instance, double after) {
    auto snapshot = dictionarySnapshot(instance.toJson());
    if (!snapshot) return;
    const auto digestText = compactText(*snapshot);
    engine_.save(std::move(*snapshot), digestText, after, "save(instance:after:)");
}

void ColorFormatUndo::undo() { apply(engine_.undoState(), 1, "undo()", "undo"); }

void ColorFormatUndo::redo() { apply(engine_.redoState(), -1, "redo()", "redo"); }

void ColorFormatUndo::apply(const std::optional<Json>& state, long indexMove, const char* function,
                            const char* logWord) {
    if (!state) return;
    std::shared_ptr<ColorFormats> restored;
    try {
        restored = ColorFormats::fromJson(*state);
    } catch (const JsonDecodeError& error) {
        Sherlog::print(std::string("undo state does not decode: ") + error.what(), SherlogLevel::error,
                       "Kro/ColorFormatUndo", function, __LINE__);
        return;
    }
    auto& catalogue = ColorFormats::shared();
    catalogue.copyFields(*restored);
    catalogue.stamp();
    // The restored state is itself recorded before the index moves.
    save(catalogue, 0);
    catalogue.save();
    env().notifications->post(Notifications::colorFormatUpdated);
    engine_.moveIndex(indexMove);
    Sherlog::print(std::string(logWord) + " index " + std::to_string(engine_.index()) + " of " +
                       std::to_string(engine_.count()),
                   SherlogLevel::debug, "Kro/ColorFormatUndo", function, __LINE__);
}

}  // namespace kro
