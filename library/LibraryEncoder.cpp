#include "library/LibraryEncoder.h"

#include "library/ContentHash.h"

namespace kro {
namespace {

constexpr size_t longestChunk = 256;
constexpr std::uint64_t chunkEndMask = 31;  // one colour in 32 ends a chunk, on average

// A colour's text is reused while this hash is unchanged, so every field the text holds must go into it: a
// field added to Color changes its size and stops the build here until it is hashed too.
static_assert(sizeof(Color) == 328, "hash the new field of Color in colorHash, then update this size");

std::uint64_t colorHash(const Color& color) {
    ContentHash hash;
    hash.add(std::string_view(color.uuid));
    hash.add(color.name);
    hash.add(color.originalName);
    hash.add(color.red, color.green, color.blue, color.alpha);
    hash.add(std::string_view(color.hex));
    hash.add(color.notes);
    hash.add(color.tags);
    hash.add(std::string_view(color.group));
    hash.add(std::string_view(color.createdAt));
    hash.add(color.updatedAt);
    return hash.value();
}

// Colours live apart on the heap, and the hash of one is quick next to fetching it from memory: the colours a
// few places ahead are asked for while this one is hashed.
constexpr size_t prefetchDistance = 8;
void prefetch(const Color& color) {
    const auto* bytes = reinterpret_cast<const char*>(&color);
    for (size_t offset = 0; offset < sizeof(Color); offset += 64) __builtin_prefetch(bytes + offset);
}

}  // namespace

// One encoding: the pieces made so far, the small text waiting to become a piece, and the next generation.
class LibraryEncoder::Writer {
public:
    explicit Writer(Generation& last) : last_(last) {
        // The next generation holds about what the last did: made room for once, not grown chunk by chunk.
        next_.chunks.reserve(last.chunks.size());
        next_.texts.reserve(last.texts.size());
    }

    std::string& pending() { return pending_; }

    void appendPalette(const Palette& palette) {
        palette.appendTextBeforeColors(pending_);
        const auto& colors = palette.colors;
        size_t start = 0;
        hashes_.clear();
        for (size_t i = 0; i < colors.size(); ++i) {
            if (i + prefetchDistance < colors.size()) prefetch(*colors[i + prefetchDistance]);
            const auto hash = colorHash(*colors[i]);
            hashes_.push_back(hash);
            if ((hash & chunkEndMask) == 0 || hashes_.size() == longestChunk || i + 1 == colors.size()) {
                appendChunk(colors, start);
                start = i + 1;
                hashes_.clear();
            }
        }
        palette.appendTextAfterColors(pending_);
    }

    EncodedLibrary finish(Generation& next) {
        flushPending();
        next = std::move(next_);
        return EncodedLibrary(std::move(pieces_));
    }

private:
    // The chunk of `colors` from `start` whose hashes are `hashes_`. Its text starts with the comma that
    // separates it from the colour before, so a palette's first chunk is a chunk of its own kind.
    void appendChunk(const std::vector<ColorRef>& colors, size_t start) {
        ContentHash keyHash;
        keyHash.add(std::uint64_t{start == 0});
        for (const auto hash : hashes_) keyHash.add(hash);
        const auto key = keyHash.value();
        flushPending();
        if (const auto* kept = find(next_, key); kept) return pieces_.push_back(kept->text);
        if (auto* kept = find(last_, key); kept) {
            pieces_.push_back(kept->text);
            next_.chunks.emplace(key, std::move(*kept));
            return;
        }
        auto text = std::make_shared<std::string>();
        text->reserve(hashes_.size() * 256);
        for (size_t i = start; i < start + hashes_.size(); ++i) {
            if (i) *text += ',';
            colors[i]->appendJsonText(*text);
        }
        pieces_.push_back(text);
        next_.chunks.emplace(key, Chunk{hashes_, std::move(text)});
    }

    Chunk* find(Generation& generation, std::uint64_t key) {
        const auto found = generation.chunks.find(key);
        if (found == generation.chunks.end() || found->second.colorHashes != hashes_) return nullptr;
        return &found->second;
    }

    // The small text written since the last chunk becomes a piece, the last encoding's when equal.
    void flushPending() {
        if (pending_.empty()) return;
        EncodedLibrary::Piece piece;
        if (const auto found = next_.texts.find(pending_); found != next_.texts.end()) {
            piece = found->second;
        } else if (const auto kept = last_.texts.find(pending_); kept != last_.texts.end()) {
            piece = kept->second;
        } else {
            piece = std::make_shared<const std::string>(pending_);
        }
        next_.texts.emplace(*piece, piece);
        pieces_.push_back(std::move(piece));
        pending_.clear();
    }

    Generation& last_;
    Generation next_;
    std::vector<EncodedLibrary::Piece> pieces_;
    std::string pending_;
    std::vector<std::uint64_t> hashes_;
};

LibraryEncoder& LibraryEncoder::shared() {
    static LibraryEncoder encoder;
    return encoder;
}

EncodedLibrary LibraryEncoder::encode(const User& user) {
    std::lock_guard lock(mutex_);
    Writer writer(last_);
    user.appendJsonText(writer.pending(), [&writer](const Palette& palette, std::string&) {
        writer.appendPalette(palette);
    });
    return writer.finish(last_);
}

}  // namespace kro
