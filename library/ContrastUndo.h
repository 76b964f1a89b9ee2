#pragma once
// Undo of the contrast checker's pair of colours. Undo and redo hand the neighbouring pair back to the caller.
#include <optional>
#include <string>
#include <utility>

#include "library/SnapshotUndo.h"
#include "platform/ColorValue.h"

namespace kro {

using ContrastColors = std::pair<ColorValue, ColorValue>;

class ContrastUndo {
public:
    static ContrastUndo& shared();

    void save(const ContrastColors& colors, double after);
    bool canUndo() const { return engine_.canUndo(); }
    bool canRedo() const { return engine_.canRedo(); }
    // The pair to show, when there is one to go back (or forward) to.
    std::optional<ContrastColors> undo();
    std::optional<ContrastColors> redo();

    const SnapshotUndo<ContrastColors>& engine() const { return engine_; }
    void reset() { engine_.reset(); }

    // The printed description of a pair, which the digest is made of.
    static std::string description(const ContrastColors& colors);

private:
    ContrastUndo() : engine_("Kro/ContrastUndo") {}
    SnapshotUndo<ContrastColors> engine_;
};

}  // namespace kro
