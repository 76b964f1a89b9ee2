// Colour names: the walk's rules on small lists, the shipped list, and the fast search against a plain walk.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <random>
#include <strings.h>

#include "formats/color/ColorName.h"

namespace kro {
namespace {

using Names = std::vector<ColorList::Entry>;

std::optional<std::string> nameIn(const Names& names, double red, double green, double blue) {
    return ColorName::name(ColorList(names), red, green, blue);
}

// The search as the rules tell it, one entry at a time, for comparison with the real one.
std::optional<std::string> plainWalk(const Names& names, double red, double green, double blue) {
    char key[64];
    std::snprintf(key, sizeof key, "%02X%02X%02X",
                  static_cast<unsigned>(std::lroundf(static_cast<float>(red) * 255)),
                  static_cast<unsigned>(std::lroundf(static_cast<float>(green) * 255)),
                  static_cast<unsigned>(std::lroundf(static_cast<float>(blue) * 255)));
    size_t best = 0;
    std::optional<int> bestDistance;
    for (size_t i = 0; i < names.size(); ++i) {
        if (names[i].size() != 2) break;
        if (strcasecmp(names[i][0].c_str(), key) == 0) return names[i][1];
        int d = ColorName::distance(key, names[i][0]);
        if (!bestDistance || d < *bestDistance) {
            best = i;
            bestDistance = d;
        }
    }
    if (names.empty() || names[best].size() < 2) return std::nullopt;
    return names[best][1];
}

TEST(ColorNameTest, AnExactMatchWinsWhereverItStands) {
    Names names = {{"FE0000", "Almost Red"}, {"00FF00", "Green"}, {"ff0000", "Red"}, {"FF0000", "Second Red"}};
    EXPECT_EQ(nameIn(names, 1, 0, 0), "Red");  // also in another case, and the first of two
    EXPECT_EQ(nameIn(names, 0.99, 0, 0), "Almost Red");
    // Case is compared as Unicode folds it: the ligature "ﬀ" is "ff".
    EXPECT_EQ(nameIn({{"FE0000", "Near"}, {"\uFB00""0000", "Ligature"}}, 1, 0, 0), "Ligature");
}

TEST(ColorNameTest, TruncatedDistancesTieAndTheEarlierEntryKeepsTheWin) {
    // From black: 050300 is 5.83 away and 050000 is 5 away; both truncate to 5.
    EXPECT_EQ(nameIn({{"050300", "First"}, {"050000", "Second"}}, 0, 0, 0), "First");
    EXPECT_EQ(nameIn({{"060000", "Far"}, {"050300", "Near"}, {"050000", "Tied"}}, 0, 0, 0), "Near");
}

TEST(ColorNameTest, AnEntryWithoutTwoElementsEndsTheWalk) {
    Names names = {{"000010", "Far"}, {"A", "B", "C"}, {"000000", "Black"}, {"000001", "Near"}};
    EXPECT_EQ(nameIn(names, 0, 0, 0), "Far");  // not even the exact match after it is seen
    // When the very first entry ends it, that entry's second element is the answer, if it has one.
    EXPECT_EQ(nameIn({{"000000", "First", "Extra"}, {"000000", "Black"}}, 0, 0, 0), "First");
    EXPECT_EQ(nameIn({{"000000"}, {"000000", "Black"}}, 0, 0, 0), std::nullopt);
    EXPECT_EQ(nameIn({{}}, 0, 0, 0), std::nullopt);
    EXPECT_EQ(nameIn({}, 0.5, 0.5, 0.5), std::nullopt);
}

TEST(ColorNameTest, MalformedHexTextsAreReadPairByPair) {
    // "GG0000" and "0x0000" read as black, "12" as 120000: each can be the nearest, but never an exact match.
    EXPECT_EQ(nameIn({{"FFFFFF", "White"}, {"GG0000", "Odd"}}, 0.01, 0, 0), "Odd");
    EXPECT_EQ(nameIn({{"FFFFFF", "White"}, {"0x0000", "Odd"}}, 0, 0, 0), "Odd");
    EXPECT_EQ(nameIn({{"000000", "Black"}, {"12", "Short"}}, 18 / 255.0, 0, 0), "Short");
    EXPECT_EQ(ColorName::distance("000000", "FFFFFF"), 441);
    EXPECT_EQ(ColorName::distance("GG0000", "000000"), 0);
    EXPECT_EQ(ColorName::distance("12", "000000"), 18);
    EXPECT_EQ(ColorName::distance("", ""), 0);
}

TEST(ColorNameTest, KeysOutOfRangeAreReadFromTheirFirstSixCharacters) {
    // 1.2 makes the key "1320000": its pairs read 13, 20, 00.
    Names names = {{"132000", "Pairs"}, {"FF0000", "Red"}};
    EXPECT_EQ(nameIn(names, 1.2, 0, 0), "Pairs");
}

TEST(ColorNameTest, ListsReadFromJsonMustBeArraysOfTexts) {
    EXPECT_EQ(ColorList::fromJson(R"([["FF0000","Red"],["00FF00","Green","x"]])").names(),
              (Names{{"FF0000", "Red"}, {"00FF00", "Green", "x"}}));
    EXPECT_EQ(ColorList::fromJson(R"([])").names(), Names{});
    for (const char* bad : {"", "{}", R"(["FF0000"])", R"([["FF0000", 1]])", R"([["FF0000","Red"],)",
                            R"([["FF0000","Red"]] x)", R"("text")"}) {
        EXPECT_TRUE(ColorList::fromJson(bad).names().empty()) << bad;
    }
}

TEST(ColorNameTest, TheShippedListIsWalkedToTheEndAndNamesTheBasics) {
    const auto& names = ColorList::shared().names();
    ASSERT_GE(names.size(), 1500u);
    EXPECT_EQ(ColorList::shared().walkLength(), names.size());  // no entry ends the walk early
    EXPECT_EQ(ColorName::name(1, 0, 0), "Red");
    EXPECT_EQ(ColorName::name(1, 1, 1), "White");
    EXPECT_EQ(ColorName::name(0, 0, 0), "Black");
    EXPECT_EQ(ColorName::name(102 / 255.0, 51 / 255.0, 153 / 255.0), "Rebecca Purple");
}

TEST(ColorNameTest, TheFastSearchAnswersAsThePlainWalkDoes) {
    std::mt19937 random(20240611);
    std::uniform_real_distribution<double> component(0, 1);
    const auto& shipped = ColorList::shared().names();
    for (int i = 0; i < 3000; ++i) {
        double r = component(random), g = component(random), b = component(random);
        ASSERT_EQ(ColorName::name(r, g, b), plainWalk(shipped, r, g, b)) << r << " " << g << " " << b;
    }

    // Small coarse lists with duplicates, odd case, malformed texts and walk-ending entries make ties and
    // early stops common.
    std::uniform_int_distribution<int> level(0, 4), kind(0, 19);
    const char* digits[] = {"00", "40", "80", "c0", "FF"};
    for (int round = 0; round < 300; ++round) {
        Names names;
        for (int n = 0; n < 12; ++n) {
            int k = kind(random);
            std::string hex = std::string(digits[level(random)]) + digits[level(random)] + digits[level(random)];
            if (k == 0) hex = "G" + hex.substr(1);
            if (k == 1) hex = hex.substr(0, 3);
            if (k == 2) names.push_back({hex, "x", "y"});
            else names.push_back({hex, "Name " + std::to_string(n)});
        }
        for (int i = 0; i < 20; ++i) {
            double r = level(random) / 4.0, g = component(random), b = level(random) / 4.0;
            ASSERT_EQ(nameIn(names, r, g, b), plainWalk(names, r, g, b)) << round << " " << i;
        }
    }
}

}  // namespace
}  // namespace kro
