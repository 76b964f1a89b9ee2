#include "formats/color/ImportColorScan.h"

#include <re2/re2.h>

#include <cstdio>
#include <optional>

#include "formats/color/ImportColorCharacters.h"

namespace kro::ImportColor {
namespace {

// The ranges of a set, as the inside of an RE2 class.
std::string classRanges(const icu::UnicodeSet& set) {
    std::string ranges;
    char range[48];
    for (int32_t i = 0; i < set.getRangeCount(); ++i) {
        std::snprintf(range, sizeof range, "\\x{%X}-\\x{%X}", static_cast<unsigned>(set.getRangeStart(i)),
                      static_cast<unsigned>(set.getRangeEnd(i)));
        ranges += range;
    }
    return ranges;
}

bool isDigit(char32_t c) { return digitCharacters().contains(static_cast<UChar32>(c)); }

// The code point at `offset` without moving past it; nothing at the end.
std::optional<char32_t> peek(std::string_view text, size_t offset) {
    if (offset >= text.size()) return std::nullopt;
    return nextCodePoint(text, offset);
}

// Moves `offset` past up to `most` digits.
void skipDigits(std::string_view text, size_t& offset, size_t most) {
    for (size_t count = 0; count < most; ++count) {
        const auto c = peek(text, offset);
        if (!c || !isDigit(*c)) return;
        nextCodePoint(text, offset);
    }
}

// The expression in RE2's syntax: "\s", "\d", "\w" and "." become ICU's classes as explicit ranges.
std::string re2Syntax(std::string_view icuExpression) {
    static const std::string space = classRanges(spaceCharacters());
    static const std::string digit = classRanges(digitCharacters());
    static const std::string word = classRanges(wordCharacters());
    static const std::string notLineEnd = "[^" + classRanges(lineEndCharacters()) + "]";
    std::string result;
    bool inClass = false;
    // Inside a class a shorthand gives its ranges; outside it gives a class of its own.
    const auto shorthand = [&](const std::string& ranges) { result += inClass ? ranges : "[" + ranges + "]"; };
    for (size_t i = 0; i < icuExpression.size(); ++i) {
        const char c = icuExpression[i];
        if (c == '\\' && i + 1 < icuExpression.size()) {
            const char escaped = icuExpression[++i];
            if (escaped == 's') {
                shorthand(space);
            } else if (escaped == 'd') {
                shorthand(digit);
            } else if (escaped == 'w') {
                shorthand(word);
            } else {
                result += c;
                result += escaped;
            }
        } else if (c == '.' && !inClass) {
            result += notLineEnd;
        } else {
            if (c == '[') inClass = true;
            if (c == ']') inClass = false;
            result += c;
        }
    }
    return result;
}

}  // namespace

LinearExpression::LinearExpression(std::string_view icuExpression) {
    RE2::Options options;
    options.set_log_errors(false);
    expression_ = std::make_unique<re2::RE2>(re2Syntax(icuExpression), options);
}

LinearExpression::LinearExpression(LinearExpression&&) noexcept = default;
LinearExpression::~LinearExpression() = default;

bool LinearExpression::ok() const { return expression_->ok(); }

void LinearExpression::forEachMatch(std::string_view text, const Found& found) const {
    if (!ok()) return;
    size_t position = 0;
    re2::StringPiece match;
    while (position <= text.size() &&
           expression_->Match(text, position, text.size(), RE2::UNANCHORED, &match, 1)) {
        found(match);
        const auto end = static_cast<size_t>(match.data() - text.data()) + match.size();
        // An empty match would be found again at the same place: step over one character.
        if (end == position) {
            if (position == text.size()) break;
            nextCodePoint(text, position);
        } else {
            position = end;
        }
    }
}

void forEachWord(std::string_view text, const Found& found) {
    const auto& word = wordCharacters();
    size_t offset = 0;
    size_t start = 0;
    bool inWord = false;
    while (offset < text.size()) {
        const size_t here = offset;
        const bool isWord = word.contains(static_cast<UChar32>(nextCodePoint(text, offset)));
        if (isWord && !inWord) start = here;
        if (!isWord && inWord) found(text.substr(start, here - start));
        inWord = isWord;
    }
    if (inWord) found(text.substr(start));
}

Numbers numbers(std::string_view match, NumberShape shape) {
    Numbers result;
    size_t offset = 0;
    while (shape != NumberShape::none && result.size() < kNumbersRead && offset < match.size()) {
        const size_t start = offset;
        if (!isDigit(nextCodePoint(match, offset))) continue;
        // The first digit is taken; the shape says what may follow it.
        if (shape == NumberShape::upToThreeDigits) {
            skipDigits(match, offset, 2);
        } else if (shape == NumberShape::upToFiveDigits) {
            skipDigits(match, offset, 4);
        } else {
            if (peek(match, offset) == U'.') ++offset;
            skipDigits(match, offset, 5);
        }
        result.emplace_back(match.substr(start, offset - start));
    }
    return result;
}

}  // namespace kro::ImportColor
