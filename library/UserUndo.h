#pragma once
// Undo of the library: whole library states. An undo or redo puts the neighbouring state back and runs the
// pipeline with undo on, so the restored state is itself recorded: the list only grows.
//
// A state is the library's compact JSON text, held as shared pieces (EncodedLibrary): what did not change
// between two states is one copy in memory, and the whole text is assembled only when a state is applied.
#include <string>

#include "library/EncodedLibrary.h"
#include "library/SnapshotUndo.h"
#include "library/User.h"

namespace kro {

class UserUndo {
public:
    static UserUndo& shared();

    // Records the library's state `after` seconds from now (the pipeline passes 0).
    void save(const User& instance, double after, const char* file = __builtin_FILE(),
              const char* function = __builtin_FUNCTION(), int line = __builtin_LINE());
    // The same with the library already encoded (the pipeline encodes once for undo and save).
    void saveEncoded(EncodedLibrary encoded, double after, const char* file, const char* function, int line);

    bool canUndo() const { return engine_.canUndo(); }
    bool canRedo() const { return engine_.canRedo(); }
    // Whether a state was recorded in this process (perhaps still on its way into the list).
    bool holdsAState() const { return engine_.recordedAny(); }
    // False when there was nothing to apply or the state did not decode.
    bool undo();
    bool redo();

    // States are kept as the library's compact JSON text: a dictionary in the smallest form, parsed back
    // only when it is applied.
    const SnapshotUndo<EncodedLibrary>& engine() const { return engine_; }
    SnapshotUndo<EncodedLibrary>& engine() { return engine_; }
    void reset() { engine_.reset(); }

private:
    UserUndo() : engine_("Kro/UserUndo") {}
    bool apply(const EncodedLibrary& state, long indexMove, const char* function, const char* logWord);

    SnapshotUndo<EncodedLibrary> engine_;
};

}  // namespace kro
