#pragma once
// The library's compact JSON text held as a list of immutable pieces: joined, they are byte for byte
// User::jsonText(). Pieces that did not change between two encodings are the same shared strings, so an undo
// state costs what its change changed, and two states compare without reading what they share.
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kro {

class EncodedLibrary {
public:
    using Piece = std::shared_ptr<const std::string>;

    EncodedLibrary() = default;
    explicit EncodedLibrary(std::vector<Piece> pieces);

    const std::vector<Piece>& pieces() const { return pieces_; }
    // The pieces as views, valid while this encoding lives.
    std::vector<std::string_view> views() const;
    // The whole text's length in bytes.
    size_t size() const { return size_; }
    // The whole text, assembled (when a state is applied, or a test asks).
    std::string text() const;

    // Whether the two whole texts are equal; shared pieces at the same place are not read.
    bool operator==(const EncodedLibrary& other) const;

private:
    std::vector<Piece> pieces_;
    size_t size_ = 0;
};

}  // namespace kro
