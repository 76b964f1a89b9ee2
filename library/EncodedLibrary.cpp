#include "library/EncodedLibrary.h"

#include <algorithm>
#include <cstring>

namespace kro {

EncodedLibrary::EncodedLibrary(std::vector<Piece> pieces) : pieces_(std::move(pieces)) {
    for (const auto& piece : pieces_) size_ += piece->size();
}

std::string EncodedLibrary::text() const {
    std::string out;
    out.reserve(size_);
    for (const auto& piece : pieces_) out += *piece;
    return out;
}

std::vector<std::string_view> EncodedLibrary::views() const {
    std::vector<std::string_view> views;
    views.reserve(pieces_.size());
    for (const auto& piece : pieces_) views.emplace_back(*piece);
    return views;
}

bool EncodedLibrary::operator==(const EncodedLibrary& other) const {
    if (size_ != other.size_) return false;
    // The same text may be cut into pieces at other places, so the walk compares bytes across piece ends and
    // skips only a piece both sides share from the same offset.
    size_t i = 0, j = 0, offsetA = 0, offsetB = 0;
    while (i < pieces_.size() && j < other.pieces_.size()) {
        const std::string& a = *pieces_[i];
        const std::string& b = *other.pieces_[j];
        if (offsetA == 0 && offsetB == 0 && pieces_[i] == other.pieces_[j]) {
            ++i, ++j;
            continue;
        }
        const size_t length = std::min(a.size() - offsetA, b.size() - offsetB);
        if (std::memcmp(a.data() + offsetA, b.data() + offsetB, length) != 0) return false;
        offsetA += length, offsetB += length;
        if (offsetA == a.size()) ++i, offsetA = 0;
        if (offsetB == b.size()) ++j, offsetB = 0;
    }
    // Equal sizes: whatever is left on either side is empty pieces.
    return true;
}

}  // namespace kro
