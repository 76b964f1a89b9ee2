#include "workspaces/common/LibraryActions.h"


namespace kro {

std::string LibraryActions::lockedReason(const Palette& palette) {
    return "\u201C" + palette.name.value_or("Palette") + "\u201D is locked. Unlock it to change it.";
}

bool LibraryActions::edit(const Palette& palette, const std::function<bool()>& operation) {
    if (palette.lock) {
        notice(lockedReason(palette));
        return false;
    }
    return run(operation);
}

bool LibraryActions::run(const std::function<bool()>& operation) {
    // The pipeline saves within the operation, and the store posts a save that fails.
    StoreProblemWatch watch;
    const bool changed = operation();
    if (changed) showSaveResult(watch.failedSave());
    return changed;
}

void LibraryActions::showSaveResult(const std::optional<StoreProblem>& failed) {
    const bool saved = !failed;
    if (saved == !failureShown_) return;
    failureShown_ = !saved;
    if (failure_) {
        failure_(saved ? std::string()
                       : "Your library could not be saved (" + failed->message() +
                             "). The last saved copy is kept; changes are saved again with your next edit.");
    }
}

}  // namespace kro
