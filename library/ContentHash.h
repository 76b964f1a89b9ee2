#pragma once
// A fast 64-bit hash of a record's fields, to tell whether a record is the one a cached text was made from
// without encoding it again. Each field goes in with its length, so ("ab", "c") and ("a", "bc") differ.
// Not cryptographic: it tells apart edits, not attacks.
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kro {

class ContentHash {
public:
    void add(std::uint64_t word) { state_ = mix(state_ ^ word ^ k0, k1); }
    // Sixteen bytes a step; the length goes into the first step, so a text ending early cannot be taken for
    // the start of a longer one, nor two overlapping reads of a short text for a longer text.
    void add(std::string_view bytes) {
        const char* at = bytes.data();
        size_t left = bytes.size();
        std::uint64_t lengthWord = static_cast<std::uint64_t>(left) * k2;
        do {
            const size_t take = left < 16 ? left : 16;
            const std::uint64_t first = load(at, take < 8 ? take : 8);
            const std::uint64_t second = take > 8 ? load(at + 8, take - 8) : 0;
            state_ = mix(state_ ^ first ^ lengthWord ^ k0, second ^ k1);
            lengthWord = 0;
            at += take, left -= take;
        } while (left);
    }
    // An absent text and an empty one differ.
    void add(const std::optional<std::string>& text) {
        if (text) {
            add(std::string_view(*text));
        } else {
            add(static_cast<std::uint64_t>(k2));
        }
    }
    void add(const std::vector<std::string>& texts) {
        add(static_cast<std::uint64_t>(texts.size()));
        for (const auto& text : texts) add(std::string_view(text));
    }
    // Four stored components in two words.
    void add(float a, float b, float c, float d) {
        std::uint32_t bits[4];
        std::memcpy(&bits[0], &a, 4), std::memcpy(&bits[1], &b, 4), std::memcpy(&bits[2], &c, 4),
            std::memcpy(&bits[3], &d, 4);
        const std::uint64_t first = std::uint64_t{bits[0]} << 32 | bits[1];
        const std::uint64_t second = std::uint64_t{bits[2]} << 32 | bits[3];
        state_ = mix(state_ ^ first ^ k0, second ^ k1);
    }
    std::uint64_t value() const { return mix(state_ ^ k2, k1); }

private:
    // Up to eight bytes as a word, with fixed-size loads only (a call to copy a few bytes cost more than the
    // hashing): short texts are read as two overlapping halves, which the length told apart.
    static std::uint64_t load(const char* at, size_t count) {
        if (count == 8) return loadFixed<std::uint64_t>(at);
        if (count >= 4) {
            return loadFixed<std::uint32_t>(at) | std::uint64_t{loadFixed<std::uint32_t>(at + count - 4)} << 32;
        }
        if (count == 0) return 0;
        const auto byte = [](char c) { return std::uint64_t{static_cast<unsigned char>(c)}; };
        return byte(at[0]) | byte(at[count / 2]) << 8 | byte(at[count - 1]) << 16;
    }
    template <class Word>
    static Word loadFixed(const char* at) {
        Word word;
        std::memcpy(&word, at, sizeof word);
        return word;
    }

    // The folded 128-bit product: every input bit reaches every output bit.
    static std::uint64_t mix(std::uint64_t a, std::uint64_t b) {
        const unsigned __int128 product = static_cast<unsigned __int128>(a) * b;
        return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
    }

    static constexpr std::uint64_t k0 = 0xA0761D6478BD642Full;
    static constexpr std::uint64_t k1 = 0xE7037ED1A0B428DBull;
    static constexpr std::uint64_t k2 = 0x8EBC6AF09C88C6E3ull;
    std::uint64_t state_ = 0x1D8E4E27C47D124Full;
};

}  // namespace kro
