#pragma once
// The recogniser as it was before the linear scan: ICU's backtracking matcher, run over the whole text
// with a time limit that made it give up on large or misleading texts. Kept as the reference the linear
// scan must agree with on every text it read to the end. It shares the steps' table and their turning of
// numbers into colours; what it does its own way is what the linear scan replaced: finding the matches
// and taking the numbers out of them.
#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <array>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "formats/color/ImportColorSteps.h"

namespace kro::backtracking {

struct Scan {
    std::vector<ColorValue> colors;
    bool finished = true;  // false when a search ran out of time or stack and gave up
};

// The time limit the matcher had, in ICU's units of ten thousand steps, over all searches of one matcher.
constexpr int32_t kMatchTimeLimit = 200;

inline std::shared_ptr<const icu::RegexPattern> compile(const char* expression) {
    UErrorCode status = U_ZERO_ERROR;
    std::shared_ptr<const icu::RegexPattern> pattern(
        icu::RegexPattern::compile(icu::UnicodeString::fromUTF8(expression), 0, status));
    return U_SUCCESS(status) ? pattern : nullptr;
}

// Calls `found` with each match's text; false when the search gave up.
template <class Found>
bool forEachMatch(const icu::RegexPattern& pattern, const icu::UnicodeString& text, Found&& found) {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::RegexMatcher> matcher(pattern.matcher(text, status));
    matcher->setTimeLimit(kMatchTimeLimit, status);
    while (U_SUCCESS(status) && matcher->find(status) && U_SUCCESS(status)) {
        std::string match;
        matcher->group(status).toUTF8String(match);
        found(match);
    }
    return U_SUCCESS(status);
}

inline const char* numberExpression(ImportColor::NumberShape shape) {
    switch (shape) {
        case ImportColor::NumberShape::upToThreeDigits: return "\\d{1,3}";
        case ImportColor::NumberShape::upToFiveDigits: return "\\d{1,5}";
        case ImportColor::NumberShape::unitFraction: return "\\d{1}\\.{0,1}\\d{0,5}";
        case ImportColor::NumberShape::none: break;
    }
    return nullptr;
}

inline Scan colors(std::string_view text, const std::set<ImportColorPattern>& patterns) {
    static const auto compiled = [] {
        std::array<std::pair<std::shared_ptr<const icu::RegexPattern>, std::shared_ptr<const icu::RegexPattern>>,
                   ImportColor::kSteps.size()>
            steps;
        for (size_t i = 0; i < steps.size(); ++i) {
            const auto* numbers = numberExpression(ImportColor::kSteps[i].numberShape);
            steps[i] = {compile(ImportColor::kSteps[i].expression), numbers ? compile(numbers) : nullptr};
        }
        return steps;
    }();
    const auto unicodeText = icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
    Scan scan;
    for (size_t i = 0; i < ImportColor::kSteps.size(); ++i) {
        const auto& step = ImportColor::kSteps[i];
        if (!patterns.contains(step.kind)) continue;
        const auto& matches = compiled[i].first;
        const auto& numberMatches = compiled[i].second;
        scan.finished &= forEachMatch(*matches, unicodeText, [&](const std::string& match) {
            ImportColor::Numbers numbers;
            if (numberMatches) {
                scan.finished &= forEachMatch(*numberMatches, icu::UnicodeString::fromUTF8(match),
                                              [&](const std::string& number) { numbers.push_back(number); });
            }
            if (auto color = step.color(match, numbers)) scan.colors.push_back(std::move(*color));
        });
    }
    return scan;
}

}  // namespace kro::backtracking
