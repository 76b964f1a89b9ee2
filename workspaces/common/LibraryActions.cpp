#include "workspaces/common/LibraryActions.h"

#include "library/Directory.h"
#include "library/User.h"
#include "platform/Environment.h"
#include "platform/Files.h"

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
    const bool changed = operation();
    if (changed) checkSaved();
    return changed;
}

bool LibraryActions::libraryFileIsCurrent() {
    const auto& user = *User::shared();
    const auto folder = Directory::folder(Directory::currentVersion);
    if (!folder || !user.updatedAt) return false;
    const auto bytes = env().files->read(joinPath(*folder, User::store().file().fileName));
    if (!bytes) return false;
    // The library's JSON ends with its updatedAt, which is strictly increasing.
    const auto tail = "\"updatedAt\":\"" + *user.updatedAt + "\"}";
    return bytes->size() >= tail.size() && bytes->compare(bytes->size() - tail.size(), tail.size(), tail) == 0;
}

void LibraryActions::checkSaved() {
    const bool saved = libraryFileIsCurrent();
    if (saved == !failureShown_) return;
    failureShown_ = !saved;
    if (failure_) {
        failure_(saved ? std::string() : "Your library could not be saved. The last saved copy is kept; "
                                         "changes are saved again with your next edit.");
    }
}

}  // namespace kro
