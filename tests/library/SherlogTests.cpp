// The logger's prefixes and masks, and the error record and texts.
#include <gtest/gtest.h>

#include "library/KroError.h"
#include "library/Sherlog.h"

namespace kro {
namespace {

class SherlogLines : public ::testing::Test {
protected:
    SherlogLines() : muted_(Sherlog::muted()), print_(Sherlog::printOptions()), environment_(Sherlog::environment()) {}
    ~SherlogLines() override { Sherlog::configure(muted_, print_, environment_); }

private:
    SherlogLevel muted_;
    SherlogPrint print_;
    SherlogEnvironment environment_;
};

TEST_F(SherlogLines, PrefixesPartsAndMutedLevels) {
    Sherlog::configure({0}, SherlogPrint::message, {1});
    EXPECT_EQ(Sherlog::format("m", SherlogLevel::debug, "f", "fn", 3), "🟢  m");
    EXPECT_EQ(Sherlog::format("m", SherlogLevel::info, "f", "fn", 3), "🟡  m");
    EXPECT_EQ(Sherlog::format("m", SherlogLevel::error, "f", "fn", 3), "🔴  m");
    EXPECT_EQ(Sherlog::format("m", {0}, "f", "fn", 3), "❓  m");
    EXPECT_EQ(Sherlog::format("m", {3}, "f", "fn", 3), "❓  m");

    Sherlog::configure({0}, SherlogPrint::file | SherlogPrint::function | SherlogPrint::line | SherlogPrint::message, {1});
    EXPECT_EQ(Sherlog::format("hello", SherlogLevel::debug, "User.cpp", "save()", 12),
              "🟢  [file: User.cpp] [function: save()] [line: 12] hello");
    Sherlog::configure({0}, SherlogPrint::time | SherlogPrint::line, {1});
    const auto timed = Sherlog::format("hidden", SherlogLevel::debug, "f", "fn", 7);
    EXPECT_EQ(timed.find("hidden"), std::string::npos);
    EXPECT_NE(timed.find(" ▶︎ [line: 7]"), std::string::npos) << timed;

    // The starting mask mutes the middle and highest levels; a level of 0 shares no bit with it.
    Sherlog::configure({6}, SherlogPrint::message, {1});
    EXPECT_EQ(Sherlog::format("m", SherlogLevel::info, "f", "fn", 1), "");
    EXPECT_EQ(Sherlog::format("m", SherlogLevel::error, "f", "fn", 1), "");
    EXPECT_EQ(Sherlog::format("m", {0}, "f", "fn", 1), "❓  m");
}

TEST_F(SherlogLines, OnlyTheStandardOutputBitPrints) {
    Sherlog::configure({0}, SherlogPrint::message, {1});
    ::testing::internal::CaptureStdout();
    SHERLOG("quiet", SherlogLevel::debug);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");

    Sherlog::configure({0}, SherlogPrint::message | SherlogPrint::function, {1 | 2});
    ::testing::internal::CaptureStdout();
    SHERLOG("loud", SherlogLevel::debug);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "🟢  [function: TestBody] loud\n");
}

TEST(KroErrorRecord, DefaultsJsonAndSystemErrors) {
    EXPECT_EQ(compactText(KroError().toJson()),
              R"({"code":-10000,"title":"Something Went Wrong","reason":"An unexpected error occurred. Please try again later.","isServerRejection":false})");
    EXPECT_EQ(KroError::fromJson(Json::parse(R"({"code":-1009,"isServerRejection":true})")).code, -1009);
    EXPECT_ANY_THROW(KroError::fromJson(Json::parse(R"({"code":"x"})")));

    const auto fromSystem = KroError::fromSystemError({-1001, "timed out"});
    EXPECT_EQ(fromSystem.code, -1001);
    EXPECT_EQ(fromSystem.reason, "timed out");
}

TEST(KroErrorRecord, TheUsersTextForAnError) {
    EXPECT_EQ(errorText(std::nullopt), "Something went wrong.");
    EXPECT_EQ(errorText(SystemError{-1009, ""}), "You're not connected to the internet. Please check your connection.");
    EXPECT_EQ(errorText(SystemError{-1007, "x"}), "Something went wrong (code -1007). Please try again later.");
}

}  // namespace
}  // namespace kro
