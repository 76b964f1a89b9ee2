#include "bridges/PluginParse.h"

#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <cctype>
#include <memory>
#include <unordered_map>

#include "formats/color/ColorList.h"
#include "library/Sherlog.h"

namespace kro {
namespace {

// ICU's matching work, in units of ten thousand steps: a few megabytes of text at the simple pattern.
constexpr int32_t kMatchTimeLimit = 200;
// The longest colour names of the list have six words ("Blue With A Hint Of Purple").
constexpr size_t kMaxNameWords = 6;

bool isWordCharacter(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '\''; }

// A name as it is looked up: lower-case letters and digits only, so "Hot Pink" and "hotpink" meet.
std::string nameKey(std::string_view text) {
    std::string key;
    for (char c : text) {
        if (std::isalnum(static_cast<unsigned char>(c))) key += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return key;
}

// The list's names by key, the first entry of a key winning as it does in the list's own look-ups.
const std::unordered_map<std::string, std::string>& hexByName() {
    static const auto names = [] {
        std::unordered_map<std::string, std::string> map;
        for (const auto& entry : ColorList::shared().names()) {
            if (entry.size() != 2 || entry[0].size() != 6) continue;
            const auto key = nameKey(entry[1]);
            if (!key.empty()) map.emplace(key, entry[0]);
        }
        return map;
    }();
    return names;
}

struct Word {
    size_t begin;
    size_t end;
};

std::vector<Word> wordsOf(const std::string& text) {
    std::vector<Word> words;
    for (size_t i = 0; i < text.size();) {
        if (!isWordCharacter(text[i])) {
            ++i;
            continue;
        }
        const size_t begin = i;
        while (i < text.size() && isWordCharacter(text[i])) ++i;
        words.push_back({begin, i});
    }
    return words;
}

// Two words belong to one name when a single space or hyphen stands between them.
bool joined(const std::string& text, const Word& left, const Word& right) {
    return right.begin == left.end + 1 && (text[left.end] == ' ' || text[left.end] == '-');
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    return std::tolower(static_cast<unsigned char>(c)) - 'a' + 10;
}

}  // namespace

std::vector<std::string> PluginRegularExpression::evaluate(const std::string& regex, const std::string& text) {
    std::vector<std::string> matches;
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::RegexPattern> pattern(icu::RegexPattern::compile(icu::UnicodeString::fromUTF8(regex), 0, status));
    if (U_FAILURE(status)) {
        Sherlog::print(std::string("evaluate(regex:text:) ") + u_errorName(status), SherlogLevel::error, __FILE__,
                       "evaluate(regex:text:)", __LINE__);
        return matches;
    }
    const auto unicode = icu::UnicodeString::fromUTF8(text);
    std::unique_ptr<icu::RegexMatcher> matcher(pattern->matcher(unicode, status));
    if (U_SUCCESS(status)) matcher->setTimeLimit(kMatchTimeLimit, status);
    while (U_SUCCESS(status) && matcher->find(status) && U_SUCCESS(status)) {
        std::string match;
        matcher->group(status).toUTF8String(match);
        matches.push_back(std::move(match));
    }
    if (U_FAILURE(status)) {
        Sherlog::print(std::string("evaluate(regex:text:) ") + u_errorName(status), SherlogLevel::error, __FILE__,
                       "evaluate(regex:text:)", __LINE__);
    }
    return matches;
}

std::string PluginParse::replacingColorNames(const std::string& text) {
    const auto& names = hexByName();
    const auto words = wordsOf(text);
    std::string result;
    size_t copied = 0;
    for (size_t i = 0; i < words.size();) {
        // A word right after "#" is a hex colour's digits, never a name.
        if (words[i].begin > 0 && text[words[i].begin - 1] == '#') {
            ++i;
            continue;
        }
        size_t matchedWords = 0;
        const std::string* hex = nullptr;
        size_t last = i;
        while (last + 1 < words.size() && last + 1 - i < kMaxNameWords && joined(text, words[last], words[last + 1])) ++last;
        for (size_t end = last + 1; end > i && !hex; --end) {
            const auto found = names.find(nameKey(std::string_view(text).substr(words[i].begin, words[end - 1].end - words[i].begin)));
            if (found != names.end()) {
                hex = &found->second;
                matchedWords = end - i;
            }
        }
        if (!hex) {
            ++i;
            continue;
        }
        result.append(text, copied, words[i].begin - copied);
        result += "#" + *hex;
        copied = words[i + matchedWords - 1].end;
        i += matchedWords;
    }
    result.append(text, copied, std::string::npos);
    return result;
}

std::vector<ColorValue> PluginParse::colors(const std::string& text) {
    std::vector<ColorValue> colors;
    for (const auto& match : PluginRegularExpression::evaluate("#?[0-9A-Fa-f]{6}", replacingColorNames(text))) {
        const std::string_view digits = match[0] == '#' ? std::string_view(match).substr(1) : std::string_view(match);
        int bytes[3];
        for (int i = 0; i < 3; ++i) bytes[i] = hexDigit(digits[2 * i]) * 16 + hexDigit(digits[2 * i + 1]);
        colors.push_back(ColorValue::rgb(bytes[0] / 255.0, bytes[1] / 255.0, bytes[2] / 255.0, 1));
    }
    return colors;
}

}  // namespace kro
