#include <gtest/gtest.h>

#include <regex>

#include "platform/Json.h"

using namespace kro;

TEST(Json, FloatsAreWrittenInTheirShortestForm) {
    EXPECT_EQ(compactText(floatJson(0.69f)), "0.69");
    EXPECT_EQ(compactText(floatJson(1.0f)), "1.0");
    EXPECT_EQ(compactText(floatJson(0.0f)), "0.0");
    EXPECT_EQ(compactText(floatJson(1.0f / 3.0f)), "0.33333334");
    // Read back, the number narrows to the same float.
    EXPECT_EQ(static_cast<float>(Json::parse(compactText(floatJson(0.1f))).get<double>()), 0.1f);
}

TEST(Json, DateTextRoundTripAndRefusals) {
    const auto time = std::chrono::system_clock::from_time_t(1767225600);
    EXPECT_EQ(dateText(time), "2026-01-01T00:00:00Z");
    EXPECT_EQ(parseDateText("2026-01-01T00:00:00Z"), time);
    for (const char* bad : {"", "2026-01-01 00:00:00Z", "2026-01-01T00:00:00", "2026-13-01T00:00:00Z", "x026-01-01T00:00:00Z"}) {
        EXPECT_FALSE(parseDateText(bad)) << bad;
    }
}

TEST(Json, UUIDsAreUpperCaseCanonicalAndFresh) {
    const auto a = newUUID();
    EXPECT_TRUE(std::regex_match(a, std::regex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}"))) << a;
    EXPECT_NE(a, newUUID());
}
