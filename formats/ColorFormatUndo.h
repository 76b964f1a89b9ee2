#pragma once
// Undo of the format catalogue: whole catalogue states. An undo or redo puts the neighbouring state back
// through the catalogue, which saves, announces and records it again: the list only grows.
#include "formats/ColorFormats.h"
#include "library/SnapshotUndo.h"

namespace kro {

class ColorFormatUndo {
public:
    static ColorFormatUndo& shared();

    // Records the catalogue's state `after` seconds from now; a state equal to the last recorded is skipped.
    void save(const ColorFormats& instance, double after);

    bool canUndo() const { return engine_.canUndo(); }
    bool canRedo() const { return engine_.canRedo(); }
    void undo();
    void redo();

    const SnapshotUndo<Json>& engine() const { return engine_; }
    SnapshotUndo<Json>& engine() { return engine_; }
    void reset() { engine_.reset(); }

private:
    ColorFormatUndo() : engine_("Kro/ColorFormatUndo") {}
    void apply(const std::optional<Json>& state, long indexMove, const char* function, const char* logWord);

    SnapshotUndo<Json> engine_;
};

}  // namespace kro
