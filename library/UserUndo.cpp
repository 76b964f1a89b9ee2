#include "library/UserUndo.h"

#include "library/JsonDecode.h"
#include "library/LibraryEncoder.h"

namespace kro {

UserUndo& UserUndo::shared() {
    static UserUndo undo;
    return undo;
}

void UserUndo::save(const User& instance, double after, const char* file, const char* function, int line) {
    saveEncoded(LibraryEncoder::shared().encode(instance), after, file, function, line);
}

void UserUndo::saveEncoded(EncodedLibrary encoded, double after, const char* file, const char* function,
                           int line) {
    Sherlog::print(std::string("save from ") + file + " " + function + ":" + std::to_string(line), SherlogLevel::debug,
                   "Kro/UserUndo", "save(instance:after:file:function:line:)", __LINE__);
    // The record writes its keys in a fixed order, so its compact text is a stable text of the state: a state
    // whose text equals the last one's is not recorded again.
    engine_.saveUnlessSame(std::move(encoded), after, "save(instance:after:file:function:line:)");
}

bool UserUndo::undo() {
    const auto state = engine_.undoState();
    return state && apply(*state, +1, "undo()", "undo");
}

bool UserUndo::redo() {
    const auto state = engine_.redoState();
    return state && apply(*state, -1, "redo()", "redo");
}

bool UserUndo::apply(const EncodedLibrary& state, long indexMove, const char* function, const char* logWord) {
    std::shared_ptr<User> restored;
    try {
        restored = User::fromJson(parseJson(state.text()));
    } catch (const std::exception& error) {
        Sherlog::print(std::string("undo state does not decode: ") + error.what(), SherlogLevel::error, "Kro/UserUndo",
                       function, __LINE__);
        return false;
    }
    const auto& user = User::shared();
    user->copyFields(*restored, false);
    user->moveUpdatedAt();
    // The restored state is recorded too: the list only grows. Its insertion, on the background queue, goes in
    // at the index it finds when it runs, which must be the moved one; moving the index first makes that so
    // whichever thread runs first (a worker that won the race put it at the old index, and redo then came back
    // to the very state just undone).
    engine_.moveIndex(indexMove);
    user->trigger(true, true, true, true, "Kro/UserUndo", function, __LINE__);
    Sherlog::print(std::string(logWord) + " index " + std::to_string(engine_.index()) + " of " +
                       std::to_string(engine_.count()),
                   SherlogLevel::debug, "Kro/UserUndo", function, __LINE__);
    return true;
}

}  // namespace kro
