#include "library/SnapshotUndo.h"

namespace kro {

std::optional<Json> dictionarySnapshot(const Json& encoded) {
    if (!encoded.is_object()) {
        Sherlog::print("Encodable.components: Top-level object is not a dictionary.", SherlogLevel::error,
                       "Kro/SnapshotUndo", "dictionarySnapshot", __LINE__);
        return std::nullopt;
    }
    return encoded;
}

}  // namespace kro
