// The linear scan finds what the backtracking matcher it replaced found, on every text that matcher read
// to the end: the project's own files (code, documentation, colour lists, sounds and profiles read as
// text), texts written to exercise the expressions' corners, and soups of their pieces.
#include <gtest/gtest.h>
#include <unicode/regex.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "formats/color/ColorConversions.h"
#include "formats/color/ImportColor.h"
#include "formats/color/ImportColorCharacters.h"
#include "formats/color/ImportColorScan.h"
#include "tests/formats/color/BacktrackingImportColor.h"

using namespace kro;
using namespace std::string_literals;

namespace {

std::vector<std::string> described(const std::vector<ColorValue>& colors) {
    std::vector<std::string> result;
    for (const auto& color : colors) result.push_back(hexText(color) + " " + std::to_string(color.alpha()));
    return result;
}

// Compares the two on `text`; returns false when the backtracking matcher gave up, so nothing was compared.
bool agree(const std::string& text, const std::string& label) {
    const auto reference = backtracking::colors(text, allImportColorPatterns());
    if (!reference.finished) return false;
    EXPECT_EQ(described(ImportColor::colors(text, allImportColorPatterns())), described(reference.colors)) << label;
    return true;
}

// Written to reach the corners: line ends of every kind, spaces beyond ASCII, digits of other scripts,
// bytes that are not UTF-8, labels spread over lines, the literal bars, numbers too long or too many.
const std::vector<std::string> kCornerTexts = {
    "UIColor(hue: 0.5,\r\n    saturation: 1,\r\n    brightness: 1,\r\n    alpha: 1)\r\nUIColor(hue: 0.1, "
    "saturation: 0.2, brightness: 0.3, alpha: 0.4)",
    "hue:\u00a00.5\u2028saturation: 1\u0085brightness:\t1 alpha: 0.25 and more: 0.5 0.75\nsaturation: 0.5",
    "let c = NSColor(red: 0.25, green: 0.5, blue: 0.75, alpha: 1.0) // blue: 0.1\n"
    "  green: 0.2\n\n   blue: 0.3 alpha: 0.4\nred: 1.000001 green: 0.5.5 blue: 01 alpha: .5",
    "ed:ed:green:blue:alpha:0.1 0.2 0.3 0.4\vred: 0.9 green: 0.9 blue: 0.9 alpha: 0.9\fhue: 1",
    "rgb(1,2,3)RGB ( 255 , 255 , 255 )rGb(\t0,\n0,\r0)|||(4, 5, 6) r|b(7, 8, 9) rgb(1234, 5, 6) rgb(12,34,56,78)",
    "rgba(1, 2, 3, 0.5) RGBA(1,2,3,.5) rgba(1, 2, 3, 1.123456) rgba(1,2,3,123.45678) rgba(1,2,3,4.5.6) rgba(1 2 3 4)",
    "hsl(360, 100%, 100%) hsla(0, 0%, 0%, 0.0001) hsl(1,2 %,3%) HsLa(10, 20%, 30%, 1) hsl(\u0663\u0666\u0660, 1%, 1%)",
    "rgb(\uff11, 2, 3) rgb(\u0661\u0662\u0663, 4, 5) hue: \u0660.5 saturation: 1 brightness: 1 alpha: 1",
    "#abcdef #ABCDEF0 abcdefabcdef #12345 #1234567 \xff\xfe#a1b2c3\xc3 caf\xc3\xa9 ff00\xe2\x80" "ff 00ff00",
    "Red, GREEN; blue: navy-rebeccapurple_x \u0130ndigo blac\u212A \uff52\uff45\uff44 red\u0301 red\u200d",
    "\xed\xa0\x80red \xf4\x90\x80\x80" "blue \xc0\xafgreen \xe0\x80\x80 \xf0\x9f\x8e\xa8tan",
    "nul\0red\0#102030\0rgb(1, 2, 3)"s,
};

// The pieces the expressions are made of, strung together at random into many short texts.
const std::vector<std::string> kPieces = {
    "hue", "ue", "ed", "red", ":", " ", "\n", "\r\n", "\u2028", "\t", "\u00a0", "saturation", "brightness", "alpha",
    "green", "blue", "0.5", "1", "0", "12", "255", "256", ".", ",", "%", "rgb", "rgba", "hsl", "hsla", "(", ")",
    "#", "abcdef", "\xff", "\u0661", "x", "navy", "|"};

std::string fileText(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

}  // namespace

TEST(ImportColorAgreement, TheProjectsOwnFiles) {
    const std::filesystem::path root = KRO_SOURCE_DIR;
    size_t compared = 0;
    size_t files = 0;
    for (const char* folder : {"formats", "library", "exchange", "documents", "cli", "docs", "resources", "tests"}) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root / folder)) {
            if (!entry.is_regular_file()) continue;
            ++files;
            compared += agree(fileText(entry.path()), entry.path().string());
        }
    }
    ASSERT_GT(files, 100u);
    EXPECT_GT(compared, files * 9 / 10);
}

TEST(ImportColorAgreement, CornerTextsAloneAndJoined) {
    std::string all;
    for (const auto& text : kCornerTexts) {
        EXPECT_TRUE(agree(text, text));
        all += text;
        EXPECT_TRUE(agree(all, "joined up to: " + text));
        EXPECT_TRUE(agree(all + "\n" + all, "joined twice"));
    }
}

TEST(ImportColorAgreement, SoupsOfTheExpressionsPieces) {
    uint32_t seed = 7;
    const auto next = [&](uint32_t bound) {
        seed = seed * 1664525u + 1013904223u;
        return (seed >> 8) % bound;
    };
    for (int i = 0; i < 2000; ++i) {
        std::string text;
        for (uint32_t j = 0, count = 1 + next(60); j < count; ++j) text += kPieces[next(kPieces.size())];
        EXPECT_TRUE(agree(text, text));
    }
}

// The scan's classes are ICU's: over every code point, "\s", "\d", "\w" and "." match exactly the
// characters the scan takes them to be.
TEST(ImportColorAgreement, CharacterClassesAreTheExpressionsOwn) {
    icu::UnicodeString everyCodePoint;
    for (UChar32 c = 0; c <= 0x10FFFF; ++c) {
        if (!U_IS_SURROGATE(c)) everyCodePoint.append(c);
    }
    icu::UnicodeSet dot(0, 0x10FFFF);
    dot.removeAll(ImportColor::lineEndCharacters()).remove(0xD800, 0xDFFF);
    const std::vector<std::pair<const char*, icu::UnicodeSet>> classes = {
        {"\\s", ImportColor::spaceCharacters()},
        {"\\d", ImportColor::digitCharacters()},
        {"\\w", ImportColor::wordCharacters()},
        {".", dot}};
    for (const auto& [expression, expected] : classes) {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::RegexPattern> pattern(
            icu::RegexPattern::compile(icu::UnicodeString::fromUTF8(expression), 0, status));
        std::unique_ptr<icu::RegexMatcher> matcher(pattern->matcher(everyCodePoint, status));
        icu::UnicodeSet matched;
        while (matcher->find(status)) matched.add(everyCodePoint.char32At(matcher->start(status)));
        ASSERT_TRUE(U_SUCCESS(status));
        EXPECT_TRUE(matched == expected) << expression;
    }
}

TEST(ImportColorAgreement, EveryStepsExpressionBuilds) {
    for (const auto& step : ImportColor::kSteps) {
        EXPECT_TRUE(ImportColor::LinearExpression(step.expression).ok()) << step.expression;
    }
}
