#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

#include "formats/color/ColorConversions.h"
#include "formats/color/ImportColor.h"
#include "formats/color/NamedColors.h"

using namespace kro;

namespace {

// Each colour found as "RRGGBB alpha", so that a failure shows what was found.
std::vector<std::string> found(std::string_view text, std::set<ImportColorPattern> patterns = allImportColorPatterns()) {
    std::vector<std::string> result;
    for (const auto& color : ImportColor::colors(text, patterns)) {
        char alpha[32];
        std::snprintf(alpha, sizeof alpha, "%g", color.alpha());
        result.push_back(hexText(color) + " " + alpha);
    }
    return result;
}

using Found = std::vector<std::string>;

}  // namespace

TEST(NamedColors, LookupReachesBothEndsOfTheSortedTable) {
    EXPECT_EQ(namedColorHex("aliceblue"), "#f0f8ff");
    EXPECT_EQ(namedColorHex("yellowgreen"), "#9acd32");
    EXPECT_EQ(namedColorHex("gray"), namedColorHex("grey"));
    EXPECT_FALSE(namedColorHex("transparent"));
    EXPECT_FALSE(namedColorHex("Red"));  // keys are lower case; the recogniser lower-cases first
}

TEST(ImportColor, NamesAreWholeWordsInAnyCaseAndOnlyWhenEnabled) {
    const std::set names{ImportColorPattern::html};
    EXPECT_EQ(found("The sky was RED, then Navy; never redder.", names), (Found{"FF0000 1", "000080 1"}));
    EXPECT_EQ(found("rebeccapurple_x rebeccaPurple", names), (Found{"663399 1"}));  // "_" is a word character
    EXPECT_EQ(found("transparent", names), Found{});
    // Words are lower-cased as Unicode does it: a Kelvin sign becomes "k".
    EXPECT_EQ(found("blac\u212A", names), (Found{"000000 1"}));
    EXPECT_EQ(found("red", {ImportColorPattern::cssHEX}), Found{});
}

TEST(ImportColor, HexRunsAreFoundInsideWordsAndBetweenSeparators) {
    const std::set hex{ImportColorPattern::cssHEX};
    EXPECT_EQ(found("#ff0000", hex), found("ff0000", hex));
    EXPECT_EQ(found("#ff0000", hex), (Found{"FF0000 1"}));
    EXPECT_EQ(found("#fff #FFFFF", hex), Found{});
    // Runs of six digits: inside words, eight digits give their first six, twelve give two colours.
    EXPECT_EQ(found("coffee123456 #ff000080 0a0b0c0d0e0f", hex),
              (Found{"FFEE12 1", "FF0000 1", "0A0B0C 1", "0D0E0F 1"}));
    EXPECT_EQ(found("a:102030.405060,708090;a0b0c0-d0e0f0_010203'040506\"070809\n0a0b0c\t0d0e0f", hex),
              (Found{"102030 1", "405060 1", "708090 1", "A0B0C0 1", "D0E0F0 1", "010203 1", "040506 1", "070809 1",
                     "0A0B0C 1", "0D0E0F 1"}));
}

TEST(ImportColor, RGBChecksRangesAndReadsTheAlphaAsTwoNumbers) {
    const std::set rgb{ImportColorPattern::cssRGB};
    EXPECT_EQ(found("rgb(255, 0, 0) RGB ( 1 ,2, 3 )", rgb), (Found{"FF0000 1", "010203 1"}));
    EXPECT_EQ(found("rgb(300, 0, 0) rgb(0, 256, 0) rgb(1, 2) rgb(1, 2, 3, 4)", rgb), Found{});
    // The bars in the expression's classes are literal characters.
    EXPECT_EQ(found("|||(1, 2, 3)", rgb), (Found{"010203 1"}));

    EXPECT_EQ(found("rgba(1, 2, 3, 0.5) rgba(1, 2, 3, 1) rgba(1, 2, 3, 0) rgba(1,2,3,1.) rgba(1, 2, 3, 1.0)", rgb),
              (Found{"010203 0.5", "010203 1", "010203 0", "010203 1", "010203 1"}));
    EXPECT_EQ(found("rgba(1, 2, 3, 2) rgba(1, 2, 3, 1.5) rgba(1, 2, 3, 10) rgba(256, 2, 3, 1)", rgb), Found{});
    // rgb() matches come before rgba() ones, whatever their order in the text.
    EXPECT_EQ(found("rgba(0, 0, 255, 0.5) rgb(255, 0, 0)", rgb), (Found{"FF0000 1", "0000FF 0.5"}));
}

TEST(ImportColor, HSLChecksRangesAndBecomesHSB) {
    const std::set hsl{ImportColorPattern::cssHSL};
    EXPECT_EQ(found("hsl(120, 100%, 50%)", hsl), (Found{"00FF00 1"}));
    EXPECT_EQ(found("HSL(0, 0%, 0%) hsl(0, 0%, 100%) hsl(360, 100%, 25%)", hsl),
              (Found{"000000 1", "FFFFFF 1", "800000 1"}));
    EXPECT_EQ(found("hsl(361, 0%, 0%) hsl(0, 101%, 0%) hsl(0, 0%, 101%) hsl(0, 0, 0)", hsl), Found{});
    EXPECT_EQ(found("hsla(240, 100%, 50%, 0.5) hsla(240, 100%, 50%, 1) hsla(240, 100%, 50%, 3)", hsl),
              (Found{"0000FF 0.5", "0000FF 1"}));
}

TEST(ImportColor, AppleTextsAreReadAsHueSaturationBrightnessEvenForRGB) {
    const std::set hsb{ImportColorPattern::appleHSB};
    const std::set rgb{ImportColorPattern::appleRGB};
    EXPECT_EQ(found("UIColor(hue: 0.5, saturation: 1.0, brightness: 1.0, alpha: 0.5)", hsb), (Found{"00FFFF 0.5"}));
    EXPECT_EQ(found("NSColor(hue: 0.5,\n    saturation: 1,\n    brightness: 1,\n    alpha: 1)", hsb),
              (Found{"00FFFF 1"}));
    // Red 1 becomes hue 1, green 0 saturation 0, blue 0 brightness 0: black.
    EXPECT_EQ(found("red: 1.0 green: 0.0 blue: 0.0 alpha: 1.0", rgb), (Found{"000000 1"}));
    EXPECT_EQ(found("NSColor(red: 0.5, green: 1, blue: 1, alpha: 1)", rgb), (Found{"00FFFF 1"}));
    EXPECT_EQ(found("red: 2.0 green: 0 blue: 0 alpha: 1", rgb), Found{});
    EXPECT_EQ(found("red: 1 green: 0 blue: 0 alpha:", rgb), Found{});
    EXPECT_EQ(found("red: 1 green: 0 blue: 0 alpha: 1", hsb), Found{});
}

TEST(ImportColor, RecognisersRunInTheirOrderAndJoinTheirResults) {
    const std::string text =
        "NSColor(red: 0, green: 0, blue: 1, alpha: 1)\n"
        "UIColor(hue: 0, saturation: 1, brightness: 1, alpha: 1)\n"
        "hsla(0, 0%, 100%, 0.5) hsl(120, 100%, 50%) rgba(1, 2, 3, 0.5) rgb(4, 5, 6) #0a0b0c navy";
    EXPECT_EQ(found(text), (Found{
                               "FF0000 1", "008000 1", "0000FF 1", "000080 1",  // red, green, blue, navy
                               "0A0B0C 1",                                      // hex
                               "040506 1", "010203 0.5",                        // rgb, rgba
                               "00FF00 1", "FFFFFF 0.5",                        // hsl, hsla
                               "FF0000 1",                                      // HSB
                               "FFFFFF 1",  // the "RGB" 0, 0, 1 read as hue 0, saturation 0, brightness 1
                           }));
    EXPECT_EQ(found(text, {}), Found{});
}

TEST(ImportColor, DigitsOfOtherScriptsMatchTheExpressionsButDoNotReadAsNumbers) {
    EXPECT_EQ(found("rgb(\u0661, 2, 3)"), Found{});
}

TEST(ImportColor, TextsMadeToMisleadTheExpressionsKeepTheColourAfterThem) {
    const auto lastFound = [](const std::string& text) {
        const auto all = found(text);
        return all.empty() ? std::string() : all.back();
    };
    EXPECT_EQ(lastFound(std::string(1024 * 1024, '#') + " #102030"), "102030 1");
    std::string hsl;
    for (int i = 0; i < 1'000'000; ++i) hsl += "hsl(";
    EXPECT_EQ(lastFound(hsl + "hsl(120, 100%, 50%)"), "00FF00 1");
    EXPECT_EQ(lastFound(std::string(512 * 1024, 'x') + " red"), "FF0000 1");
    // A line of HSB labels without an alpha, which makes a backtracking matcher try every split of it,
    // between two HSB texts and before an RGB one.
    std::string labels = "hue: 0.5 saturation: 1 brightness: 1 alpha: 1\nue: ";
    for (int i = 0; i < 5000; ++i) labels += "saturation: brightness: ";
    labels += "x\nhue: 0 saturation: 1 brightness: 1 alpha: 1\nred: 0 green: 0 blue: 0.5 alpha: 1";
    EXPECT_EQ(found(labels, {ImportColorPattern::appleHSB, ImportColorPattern::appleRGB}),
              (Found{"00FFFF 1", "FF0000 1", "808080 1"}));
}

TEST(ImportColor, SeveralMegabytesOfProseGiveEveryColourInThem) {
    // Words that are neither colour names nor hold six hex digits in a row.
    const std::vector<std::string> words = {"the",   "layout", "margin", "shadow", "button", "quiet", "river",
                                            "under", "moving", "paper",  "stone",  "window", "light", "over",
                                            "with",  "Design", "TOKENS", "border", "sketch", "hover"};
    struct Written {
        std::string text;
        std::string hex;
    };
    const std::vector<Written> hsl = {{"hsl(0, 100%, 50%)", "FF0000"},
                                      {"HSL(120,100%,50%)", "00FF00"},
                                      {"hsl( 240 , 100% , 50% )", "0000FF"},
                                      {"hsl(60, 100%, 50%)", "FFFF00"}};
    // A fixed linear congruential sequence, so that the text is the same at every run.
    uint32_t seed = 12345;
    const auto next = [&](uint32_t bound) {
        seed = seed * 1664525u + 1013904223u;
        return (seed >> 8) % bound;
    };
    const auto names = namedColors();
    std::string text;
    std::array<Found, 4> expected;  // names, hex, rgb, hsl: the order the recognisers' results are joined in
    char written[64];
    while (text.size() < 4 * 1024 * 1024) {
        for (uint32_t i = 0, count = 3 + next(12); i < count; ++i) text += words[next(words.size())] + " ";
        const uint32_t r = next(256), g = next(256), b = next(256);
        switch (next(4)) {
            case 0: {
                const auto& name = names[next(names.size())];
                if (name.name == "rebeccapurple") break;  // "ebecca" would be a hex colour as well
                std::string spelt(name.name);
                if (next(2)) spelt[0] = static_cast<char>(spelt[0] - 'a' + 'A');
                text += spelt;
                expected[0].push_back(hexText(colorFromHex(name.hex)) + " 1");
                break;
            }
            case 1:
                std::snprintf(written, sizeof written, next(2) ? "#%02x%02x%02x" : "%02X%02X%02X", r, g, b);
                text += written;
                std::snprintf(written, sizeof written, "%02X%02X%02X 1", r, g, b);
                expected[1].push_back(written);
                break;
            case 2:
                std::snprintf(written, sizeof written, "rgb(%u, %u,%u)", r, g, b);
                text += written;
                std::snprintf(written, sizeof written, "%02X%02X%02X 1", r, g, b);
                expected[2].push_back(written);
                break;
            case 3: {
                const auto& colour = hsl[next(hsl.size())];
                text += colour.text;
                expected[3].push_back(colour.hex + " 1");
                break;
            }
        }
        text += next(8) ? ". " : ".\n";
    }
    Found all;
    for (const auto& kind : expected) all.insert(all.end(), kind.begin(), kind.end());
    ASSERT_GT(all.size(), 50'000u);
    // The first difference, rather than two lists of some 60,000 colours.
    const auto result = found(text);
    const auto [got, wanted] = std::mismatch(result.begin(), result.end(), all.begin(), all.end());
    EXPECT_TRUE(got == result.end() && wanted == all.end())
        << "color " << (got - result.begin()) << " of " << all.size() << ": found "
        << (got == result.end() ? "nothing" : *got) << ", written " << (wanted == all.end() ? "nothing" : *wanted);
}
