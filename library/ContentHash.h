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
    void add(std::uint64_t word) { state_ = mix(state_ ^ word, 0x9E3779B97F4A7C15ull); }
    void add(std::string_view bytes) {
        add(static_cast<std::uint64_t>(bytes.size() ^ 0xA0761D6478BD642Full));
        const char* at = bytes.data();
        size_t left = bytes.size();
        for (; left >= 8; at += 8, left -= 8) {
            std::uint64_t word;
            std::memcpy(&word, at, 8);
            add(word);
        }
        if (left) {
            std::uint64_t word = 0;
            std::memcpy(&word, at, left);
            add(word);
        }
    }
    // An absent text and an empty one differ.
    void add(const std::optional<std::string>& text) {
        if (text) {
            add(std::string_view(*text));
        } else {
            add(static_cast<std::uint64_t>(0xE7037ED1A0B428DBull));
        }
    }
    void add(const std::vector<std::string>& texts) {
        add(static_cast<std::uint64_t>(texts.size()));
        for (const auto& text : texts) add(std::string_view(text));
    }
    void add(float value) {
        std::uint32_t bits;
        std::memcpy(&bits, &value, sizeof bits);
        add(static_cast<std::uint64_t>(bits));
    }
    std::uint64_t value() const { return mix(state_, 0x8EBC6AF09C88C6E3ull); }

private:
    // The folded 128-bit product: every input bit reaches every output bit.
    static std::uint64_t mix(std::uint64_t a, std::uint64_t b) {
        const unsigned __int128 product = static_cast<unsigned __int128>(a) * b;
        return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
    }

    std::uint64_t state_ = 0x1D8E4E27C47D124Full;
};

}  // namespace kro
