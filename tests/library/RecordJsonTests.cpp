// The JSON forms of the records, the naming rule and the library's updated time.
#include "LibraryTestSupport.h"

#include <limits>

#include "library/JsonDecode.h"

namespace kro::testing {
namespace {

std::vector<std::string> keys(const Json& json) {
    std::vector<std::string> result;
    for (auto it = json.begin(); it != json.end(); ++it) result.push_back(it.key());
    return result;
}

using RecordJson = LibraryTest;

TEST_F(RecordJson, AnEmptyColourIsBlackWithFreshIdentity) {
    auto color = Color::fromJson(Json::object());
    EXPECT_EQ(color->name, "Black");
    EXPECT_EQ(color->originalName, "Black");
    EXPECT_EQ(color->alpha, 1.0f);
    EXPECT_EQ(color->hex, "000000");
    EXPECT_EQ(color->createdAt, "2026-01-01T00:00:00Z");
    EXPECT_EQ(color->uuid.size(), 36u);
    EXPECT_NE(color->uuid, Color::fromJson(Json::object())->uuid);
}

TEST_F(RecordJson, AValueOfTheWrongTypeFailsTheWholeDecoding) {
    EXPECT_THROW(Color::fromJson(Json::parse(R"({"red":"1"})")), JsonDecodeError);
    EXPECT_THROW(Color::fromJson(Json::parse(R"({"tags":["a",1]})")), JsonDecodeError);
    EXPECT_THROW(Palette::fromJson(Json::parse(R"({"colors":[{"hex":5}]})")), JsonDecodeError);
    EXPECT_THROW(User::fromJson(Json::parse(R"({"palettes":{}})")), JsonDecodeError);
    EXPECT_THROW(User::fromJson(Json::parse("[]")), JsonDecodeError);
    // Unknown keys and nulls are not errors.
    EXPECT_NO_THROW(Color::fromJson(Json::parse(R"({"extra":[1,2],"notes":null})")));
}

TEST_F(RecordJson, ALibraryWithoutPalettesGetsTheFirstPalette) {
    auto library = User::fromJson(Json::parse(R"({"uuid":"U"})"));
    EXPECT_EQ(library->uuid, "U");
    EXPECT_TRUE(library->history->isHistory);
    EXPECT_EQ(library->history->name, "Color History");
    ASSERT_EQ(library->palettes.size(), 1u);
    const auto& first = *library->palettes[0];
    EXPECT_EQ(first.name, "Your First Palette!");
    ASSERT_EQ(first.colors.size(), 5u);
    EXPECT_EQ(first.colors[0]->hex, "AFF466");  // 0.69×255 = 175.95, truncated
    // An explicit empty list stays empty.
    EXPECT_TRUE(User::fromJson(Json::parse(R"({"palettes":[]})"))->palettes.empty());
}

TEST_F(RecordJson, HexTruncatesTheStoredFloatsAndAMissingNameComesFromTheColourList) {
    EXPECT_EQ(Color::make(0.999, 0.5, 1.0, 1.0, "x")->hex, "FE7FFF");
    EXPECT_EQ(Color::hexText(0.0f, 1.0f / 255.0f, 0.2f), "000133");
    // Out-of-range components stay within two digits.
    EXPECT_EQ(Color::hexText(-0.5f, 1.5f, 0.0f), "00FF00");
    auto white = Color::make(1.0, 1.0, 1.0, 1.0);
    EXPECT_EQ(white->name, "White");
    EXPECT_EQ(white->originalName, "White");
}

TEST_F(RecordJson, KeysAreWrittenInOrderAndAbsentOnesLeftOut) {
    auto color = Color::make(0.69, 0.5, 0.25, 1.0, "Named");
    EXPECT_EQ(keys(color->toJson()), (std::vector<std::string>{"uuid", "name", "originalName", "red", "green", "blue",
                                                               "alpha", "hex", "tags", "group", "createdAt"}));
    color->notes = "n";
    color->updatedAt = "2026-01-01T00:00:00Z";
    color->name.reset();
    EXPECT_EQ(keys(color->toJson()), (std::vector<std::string>{"uuid", "originalName", "red", "green", "blue", "alpha",
                                                               "hex", "notes", "tags", "group", "createdAt", "updatedAt"}));
    EXPECT_EQ(keys(user().history->toJson()),
              (std::vector<std::string>{"uuid", "isHistory", "name", "originalName", "colors", "tags", "lock", "createdAt"}));
    user().paletteUUID = "P";
    EXPECT_EQ(keys(user().toJson()),
              (std::vector<std::string>{"uuid", "history", "paletteUUID", "palettes", "createdAt"}));
}

TEST_F(RecordJson, FloatsAreWrittenAsTheirShortTextAndGroupsNormalised) {
    auto color = Color::make(0.69, 0.1, 1.0, 0.5, "x");
    color->group = "a/ /b";
    const auto text = compactText(color->toJson());
    EXPECT_NE(text.find(R"("red":0.69,"green":0.1,"blue":1.0,"alpha":0.5)"), std::string::npos) << text;
    EXPECT_NE(text.find(R"("group":"a / b")"), std::string::npos) << text;
    // Reading keeps the text as it stands.
    EXPECT_EQ(Color::fromJson(Json::parse(R"({"group":" a//b "})"))->group, " a//b ");
    EXPECT_EQ(Color::normalizedGroup(" a / b\n/ c/"), "a / b / c");
    EXPECT_EQ(Color::normalizedGroup(" / "), "");
}

TEST_F(RecordJson, ALibraryRoundTripsThroughItsJson) {
    user().palettes[0]->colors[1]->notes = "note";
    user().palettes[0]->tags = {"t"};
    user().paletteUUID = user().palettes[0]->uuid;
    user().updatedAt = "2026-01-02T03:04:05Z";
    auto decoded = User::fromJson(Json::parse(compactText(user().toJson())));
    EXPECT_EQ(*decoded, user());
    decoded->palettes[0]->colors[1]->notes.reset();
    EXPECT_FALSE(*decoded == user());
}

TEST_F(RecordJson, TheStoredTextIsTheCompactTextOfTheJson) {
    auto odd = Color::make(1e-7, 0.333333343, 123456.0, -0.0, "naïve \"quoted\" \\ tab\t\x01 \xff end");
    odd->notes = "line\nbreak";
    odd->tags = {"", "ünïcode", "plain"};
    odd->group = " a/\n/b ";
    odd->updatedAt = "2026-01-01T00:00:00Z";
    user().history->colors.push_back(odd);
    user().history->colors.push_back(Color::make(1, 0.5, 0.25, 1, "x"));
    user().history->colors.back()->red = std::numeric_limits<float>::infinity();
    user().history->notes = "n";
    user().history->name.reset();
    user().paletteUUID = "P";
    user().updatedAt = "2026-01-01T00:00:01Z";
    user().palettes.push_back(std::make_shared<Palette>());
    user().palettes.back()->lock = true;
    EXPECT_EQ(user().jsonText(), compactText(user().toJson()));
}

TEST_F(RecordJson, TheNamingRuleCountsUpFromOne) {
    user().palettes.push_back(Palette::make({}));
    EXPECT_EQ(user().palettes.back()->name, "Palette");
    user().palettes.push_back(Palette::make({}));
    EXPECT_EQ(user().palettes.back()->name, "Palette (1)");
    user().palettes.push_back(Palette::make({}));
    EXPECT_EQ(user().palettes.back()->originalName, "Palette (2)");
    EXPECT_EQ(user().uniquePaletteName("Color History"), "Color History (1)");
    EXPECT_EQ(user().uniquePaletteName("Fresh"), "Fresh");
}

TEST_F(RecordJson, TheLibraryTimeIsStrictlyIncreasingAtOneSecondResolution) {
    // Absent: the present time counts as already taken.
    user().trigger(false, false, false, false);
    EXPECT_EQ(user().updatedAt, "2026-01-01T00:00:01Z");
    user().trigger(false, false, false, false);
    EXPECT_EQ(user().updatedAt, "2026-01-01T00:00:02Z");
    environment.clock.advance(std::chrono::milliseconds(2500));  // 00:00:02.5, within the stamped second
    user().trigger(false, false, false, false);
    EXPECT_EQ(user().updatedAt, "2026-01-01T00:00:03Z");
    environment.clock.advance(std::chrono::seconds(60));
    user().trigger(false, false, false, false);
    EXPECT_EQ(user().updatedAt, "2026-01-01T00:01:02Z");
    user().updatedAt = "garbage";
    user().trigger(false, false, false, false);
    EXPECT_EQ(user().updatedAt, "2026-01-01T00:01:03Z");
    // With every step off, nothing else happens.
    EXPECT_TRUE(posted().empty());
    EXPECT_EQ(environment.files.writeCount, 0);
    EXPECT_TRUE(cloudCalls.empty());
}

TEST_F(RecordJson, AChangedPaletteStampsItselfAndMovesTheLibrary) {
    environment.clock.advance(std::chrono::seconds(30));
    auto palette = user().palettes[0];
    palette->trigger(false, false, true, false);
    EXPECT_EQ(palette->updatedAt, "2026-01-01T00:00:30Z");
    EXPECT_EQ(user().updatedAt, "2026-01-01T00:00:31Z");
    EXPECT_EQ(posted(), (std::vector<std::string>{"UserUpdated"}));
}

TEST_F(RecordJson, SortingForDisplay) {
    auto named = [&](std::optional<std::string> name, const char* createdAt) {
        auto color = Color::make(0, 0, 0, 1, "x");
        color->name = std::move(name);
        color->createdAt = createdAt;
        return color;
    };
    std::vector<ColorRef> colors = {named("banana", "2026-01-03T00:00:00Z"), named("Apple", "2026-01-01T00:00:00Z"),
                                    named(std::nullopt, "2026-01-02T00:00:00Z"), named("apple", "2026-01-04T00:00:00Z")};
    auto order = [](const std::vector<ColorRef>& sorted) {
        std::string text;
        for (const auto& color : sorted) text += color->name.value_or("-") + ",";
        return text;
    };
    EXPECT_EQ(order(sortedColors(colors, PaletteColorSort::none)), "banana,Apple,-,apple,");
    // Case-insensitive and stable: the two apples keep their order.
    EXPECT_EQ(order(sortedColors(colors, PaletteColorSort::nameASC)), "-,Apple,apple,banana,");
    EXPECT_EQ(order(sortedColors(colors, PaletteColorSort::nameDESC)), "banana,Apple,apple,-,");
    EXPECT_EQ(order(sortedColors(colors, PaletteColorSort::dateASC)), "Apple,-,banana,apple,");
    EXPECT_EQ(order(sortedColors(colors, PaletteColorSort::dateDESC)), "apple,banana,-,Apple,");
}

}  // namespace
}  // namespace kro::testing
