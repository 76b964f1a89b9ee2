#pragma once
// Encodes the library for the change pipeline, re-encoding only what changed since the last encoding.
//
// Nothing tells the encoder what changed: palettes and colours are changed in place by many hands. So each
// colour is hashed (ContentHash, far cheaper than writing its numbers) and a palette's colours are cut into
// chunks at content-defined places: a colour whose hash ends in five zero bits ends a chunk (and no chunk
// grows past 256 colours). A chunk whose colours hash as they did last time takes last time's text; an
// inserted, removed or edited colour re-encodes only its own chunk, and the cut points around it stay
// where they were. The small texts between the chunks (the palettes' own fields, the library's) are written
// each time and shared with the last encoding when equal.
//
// The pipeline runs on the main thread; a mutex keeps the cache whole should another thread encode. The pieces
// it hands out are immutable and safe to share.
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "library/EncodedLibrary.h"
#include "library/User.h"

namespace kro {

class LibraryEncoder {
public:
    // The encoder of the shared library's pipeline.
    static LibraryEncoder& shared();

    EncodedLibrary encode(const User& user);

private:
    struct Chunk {
        std::vector<std::uint64_t> colorHashes;  // to tell a hash collision of two chunks from a match
        EncodedLibrary::Piece text;
    };
    struct Generation {
        std::unordered_map<std::uint64_t, Chunk> chunks;
        std::unordered_map<std::string_view, EncodedLibrary::Piece> texts;  // keys view their own piece
    };
    class Writer;

    std::mutex mutex_;
    // What the last encoding made; what the next one does not use is let go (undo states may still hold it).
    Generation last_;
};

}  // namespace kro
