#include "formats/UnicodeCase.h"

#include <unicode/locid.h>
#include <unicode/unistr.h>

namespace kro {

namespace {
// The root locale: no language's special rules (no Turkish dotless i), the same result on every desktop.
std::string mapped(std::string_view text, bool upper) {
    auto unicode = icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
    if (upper) {
        unicode.toUpper(icu::Locale::getRoot());
    } else {
        unicode.toLower(icu::Locale::getRoot());
    }
    std::string out;
    unicode.toUTF8String(out);
    return out;
}
}  // namespace

std::string upperCased(std::string_view text) { return mapped(text, true); }
std::string lowerCased(std::string_view text) { return mapped(text, false); }

}  // namespace kro
