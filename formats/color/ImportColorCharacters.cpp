#include "formats/color/ImportColorCharacters.h"

#include <unicode/utf8.h>

#include <cstdint>

namespace kro::ImportColor {
namespace {

// Built once and frozen, which makes a set read-only, safe to share between threads and quick to ask.
struct FrozenSet {
    icu::UnicodeSet set;
    explicit FrozenSet(const char* pattern) {
        UErrorCode status = U_ZERO_ERROR;
        set.applyPattern(icu::UnicodeString(pattern, -1, US_INV), status);
        set.freeze();
    }
};

}  // namespace

const icu::UnicodeSet& spaceCharacters() {
    static const FrozenSet characters("[\\p{White_Space}]");
    return characters.set;
}

const icu::UnicodeSet& digitCharacters() {
    static const FrozenSet characters("[\\p{Nd}]");
    return characters.set;
}

const icu::UnicodeSet& wordCharacters() {
    static const FrozenSet characters("[\\p{Alphabetic}\\p{M}\\p{Nd}\\p{Pc}\\u200c\\u200d]");
    return characters.set;
}

const icu::UnicodeSet& lineEndCharacters() {
    static const FrozenSet characters("[\\u000a-\\u000d\\u0085\\u2028\\u2029]");
    return characters.set;
}

std::string_view wellFormed(std::string_view text, std::string& storage) {
    const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
    const auto length = static_cast<int64_t>(text.size());
    int64_t offset = 0;
    bool copying = false;
    while (offset < length) {
        const int64_t start = offset;
        UChar32 c;
        // ICU's own stepping, so that an ill-formed sequence ends where ICU's conversion ends it.
        U8_NEXT(bytes, offset, length, c);
        if (c < 0 && !copying) {
            storage.assign(text.substr(0, static_cast<size_t>(start)));
            copying = true;
        }
        if (!copying) continue;
        if (c < 0) {
            storage += "\xEF\xBF\xBD";
        } else {
            storage.append(text.substr(static_cast<size_t>(start), static_cast<size_t>(offset - start)));
        }
    }
    return copying ? std::string_view(storage) : text;
}

char32_t nextCodePoint(std::string_view text, size_t& offset) {
    UChar32 c;
    U8_NEXT_UNSAFE(reinterpret_cast<const uint8_t*>(text.data()), offset, c);
    return static_cast<char32_t>(c);
}

}  // namespace kro::ImportColor
