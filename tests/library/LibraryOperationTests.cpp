// The operations on the library: what each changes, what a lock refuses, and that each ends in one pipeline.
#include "LibraryTestSupport.h"

namespace kro::testing {
namespace {

using LibraryOperations = LibraryTest;

std::vector<std::string> hexes(const Palette& palette) {
    std::vector<std::string> result;
    for (const auto& color : palette.colors) result.push_back(color->hex);
    return result;
}

ColorRef gray(double level, const char* name = "Gray") { return Color::make(level, level, level, 1.0, name); }

TEST_F(LibraryOperations, AddingGoesToTheHeadOfTheTargetAndRunsThePipeline) {
    ASSERT_TRUE(user().addColorToTarget(gray(0.5)));
    ASSERT_TRUE(user().addColorToTarget(gray(0.25)));
    EXPECT_EQ(hexes(*user().history), (std::vector<std::string>{"3F3F3F", "7F7F7F"}));
    EXPECT_EQ(posted(), (std::vector<std::string>{"UserSaved", "UserUpdated", "test.cloud", "UserSaved", "UserUpdated",
                                                  "test.cloud"}));
    EXPECT_TRUE(user().history->updatedAt);
    EXPECT_NE(environment.files.files.at(v5Path()).find("3F3F3F"), std::string::npos);

    // The palette named by paletteUUID is the target; an unknown uuid means the history.
    auto palette = user().palettes[0];
    user().paletteUUID = palette->uuid;
    ASSERT_TRUE(user().addColorToTarget(gray(0.1)));
    EXPECT_EQ(palette->colors[0]->hex, "191919");
    user().paletteUUID = "no such palette";
    ASSERT_TRUE(user().addColorToTarget(gray(0.2)));
    EXPECT_EQ(user().history->colors[0]->hex, "333333");
}

TEST_F(LibraryOperations, ALockedTargetOrAHeldHexTakesNothingAndPostsNothing) {
    user().addColorToTarget(gray(0.5, "First"));
    environment.notifications.clearPostedNames();
    const int writes = environment.files.writeCount;
    const auto updatedAt = user().updatedAt;

    EXPECT_FALSE(user().addColorToTarget(gray(0.5, "Another name")));
    user().history->lock = true;
    EXPECT_FALSE(user().addColorToTarget(gray(0.9)));
    EXPECT_FALSE(user().cleanHistory());
    EXPECT_FALSE(user().deleteColors(user().history, user().history->colors));
    EXPECT_FALSE(user().group(user().history, user().history->colors, "g"));
    EXPECT_FALSE(user().deleteDuplicatedColors(user().history));

    EXPECT_EQ(hexes(*user().history), (std::vector<std::string>{"7F7F7F"}));
    EXPECT_TRUE(posted().empty());
    EXPECT_EQ(environment.files.writeCount, writes);
    EXPECT_EQ(user().updatedAt, updatedAt);
}

TEST_F(LibraryOperations, DeletingColoursAndPalettes) {
    auto first = user().palettes[0];
    auto second = Palette::make({gray(0.1)});
    user().addPalette(second);
    ASSERT_TRUE(user().deleteColors(first, {first->colors[1], first->colors[3]}));
    EXPECT_EQ(first->colors.size(), 3u);
    EXPECT_EQ(first->colors[1]->name, "Maya Blue");

    second->lock = true;
    EXPECT_FALSE(user().deletePalettes({second, user().history}));
    EXPECT_EQ(user().palettes.size(), 2u);
    ASSERT_TRUE(user().deletePalettes({first, second, user().history}));
    ASSERT_EQ(user().palettes.size(), 1u);
    EXPECT_EQ(user().palettes[0], second);
}

TEST_F(LibraryOperations, DuplicatingGivesNewIdentitiesAndTheNextName) {
    auto original = user().palettes[0];
    original->lock = true;
    auto copy = user().duplicatePalette(original);
    ASSERT_EQ(user().palettes.size(), 2u);
    EXPECT_EQ(user().palettes[1], copy);
    EXPECT_EQ(copy->name, "Your First Palette! (1)");
    EXPECT_NE(copy->uuid, original->uuid);
    EXPECT_FALSE(copy->lock);
    ASSERT_EQ(copy->colors.size(), original->colors.size());
    EXPECT_NE(copy->colors[0]->uuid, original->colors[0]->uuid);
    EXPECT_EQ(hexes(*copy), hexes(*original));
    EXPECT_EQ(user().duplicatePalette(original)->name, "Your First Palette! (2)");
    // A copy of the history is an ordinary palette.
    EXPECT_FALSE(user().duplicatePalette(user().history)->isHistory);
}

TEST_F(LibraryOperations, DeletingDuplicatedColoursKeepsTheFirstOfEachHex) {
    auto palette = Palette::make({gray(0.5, "a"), gray(0.1, "b"), gray(0.5, "c"), gray(0.1, "d"), gray(0.3, "e")});
    user().addPalette(palette);
    ASSERT_TRUE(user().deleteDuplicatedColors(palette));
    std::string names;
    for (const auto& color : palette->colors) names += *color->name;
    EXPECT_EQ(names, "abe");
    EXPECT_FALSE(user().deleteDuplicatedColors(palette));
}

TEST_F(LibraryOperations, MergingTakesNewHexesAndRemovesTheMergedPalettes) {
    auto target = Palette::make({gray(0.1)});
    auto a = Palette::make({gray(0.2), gray(0.1), gray(0.3)});
    auto b = Palette::make({gray(0.3), gray(0.4)});
    auto locked = Palette::make({gray(0.9)});
    locked->lock = true;
    for (const auto& palette : {target, a, b, locked}) user().palettes.push_back(palette);
    const auto first = user().palettes[0];

    ASSERT_TRUE(user().merge(target, {a, b, locked, target}));
    EXPECT_EQ(hexes(*target), (std::vector<std::string>{"191919", "333333", "4C4C4C", "666666"}));
    EXPECT_EQ(user().palettes, (std::vector<PaletteRef>{first, target, locked}));
    EXPECT_EQ(postedCount("UserUpdated"), 1u);

    target->lock = true;
    EXPECT_FALSE(user().merge(target, {first}));
}

TEST_F(LibraryOperations, GroupingAndUngrouping) {
    auto palette = user().palettes[0];
    ASSERT_TRUE(user().group(palette, {palette->colors[0], palette->colors[2]}, " warm//light "));
    EXPECT_EQ(palette->colors[0]->group, "warm / light");
    EXPECT_EQ(palette->colors[1]->group, "");
    EXPECT_TRUE(palette->colors[2]->updatedAt);
    ASSERT_TRUE(user().ungroup(palette));
    for (const auto& color : palette->colors) EXPECT_EQ(color->group, "");
}

TEST_F(LibraryOperations, CleaningTheHistory) {
    user().addColorToTarget(gray(0.5));
    ASSERT_TRUE(user().cleanHistory());
    EXPECT_TRUE(user().history->colors.empty());
}

TEST_F(LibraryOperations, RepairingIdentitiesSplitsSharedUUIDsOnce) {
    auto twin = Palette::fromJson(user().palettes[0]->toJson());  // same uuids throughout
    user().palettes.push_back(twin);
    user().history->colors.push_back(Color::fromJson(user().palettes[0]->colors[0]->toJson()));
    const auto firstUUID = user().palettes[0]->uuid;
    const auto historyColorUUID = user().history->colors[0]->uuid;

    ASSERT_TRUE(user().fixUUIDS());
    EXPECT_EQ(user().palettes[0]->uuid, firstUUID);
    EXPECT_NE(twin->uuid, firstUUID);
    // The history is walked first, so its colour keeps the uuid and the palette's copy is renewed.
    EXPECT_EQ(user().history->colors[0]->uuid, historyColorUUID);
    EXPECT_NE(user().palettes[0]->colors[0]->uuid, historyColorUUID);
    std::multiset<std::string> all;
    for (const auto& palette : user().allPalettes()) {
        all.insert(palette->uuid);
        for (const auto& color : palette->colors) all.insert(color->uuid);
    }
    EXPECT_EQ(std::set<std::string>(all.begin(), all.end()).size(), all.size());
    EXPECT_EQ(postedCount("UserSaved"), 1u);

    environment.notifications.clearPostedNames();
    EXPECT_FALSE(user().fixUUIDS());
    EXPECT_TRUE(posted().empty());
}

TEST_F(LibraryOperations, RenamesKeepTheOriginalNameAndALockRefusesThem) {
    auto palette = user().palettes[0];
    auto color = palette->colors[2];
    ASSERT_TRUE(user().renamePalette(palette, "Brand"));
    ASSERT_TRUE(user().renameColor(palette, color, "Sky"));
    EXPECT_EQ(palette->name, "Brand");
    EXPECT_EQ(palette->originalName, "Your First Palette!");
    EXPECT_EQ(color->name, "Sky");
    EXPECT_EQ(color->originalName, "Maya Blue");
    EXPECT_TRUE(color->updatedAt);
    EXPECT_NE(environment.files.files.at(v5Path()).find("\"Sky\""), std::string::npos);
    EXPECT_EQ(postedCount("UserUpdated"), 2u);

    // An empty name, a colour of another palette, the same name, a locked palette: nothing changes.
    environment.notifications.clearPostedNames();
    EXPECT_FALSE(user().renameColor(palette, color, ""));
    EXPECT_FALSE(user().renameColor(user().history, color, "Elsewhere"));
    EXPECT_FALSE(user().renamePalette(palette, "Brand"));
    palette->lock = true;
    EXPECT_FALSE(user().renamePalette(palette, "Locked"));
    EXPECT_FALSE(user().renameColor(palette, color, "Locked"));
    EXPECT_TRUE(posted().empty());
}

TEST_F(LibraryOperations, MovingColoursReordersWithinAPaletteAndCarriesThemBetweenPalettes) {
    auto first = user().palettes[0];  // Inch Worm, Eucalyptus, Maya Blue, Majorelle Blue, Pale Magenta
    auto names = [](const Palette& palette) {
        std::vector<std::string> result;
        for (const auto& color : palette.colors) result.push_back(*color->name);
        return result;
    };
    // Two colours dropped before the last: the index counts in the list as it stood.
    ASSERT_TRUE(user().moveColors(first, {first->colors[0], first->colors[2]}, first, 4));
    EXPECT_EQ(names(*first), (std::vector<std::string>{"Eucalyptus", "Majorelle Blue", "Inch Worm", "Maya Blue",
                                                        "Pale Magenta"}));
    // Dropped where they already are: no change and no save.
    const int writes = environment.files.writeCount;
    EXPECT_FALSE(user().moveColors(first, {first->colors[0]}, first, 0));
    EXPECT_EQ(environment.files.writeCount, writes);

    // To another palette, which already holds one of the hexes: that colour stays behind.
    auto second = Palette::make({Color::make(0.4, 0.22, 0.94, 1.0, "Same as Majorelle")});
    user().addPalette(second);
    ASSERT_TRUE(user().moveColors(first, {first->colors[0], first->colors[1]}, second, 1));
    EXPECT_EQ(names(*second), (std::vector<std::string>{"Same as Majorelle", "Eucalyptus"}));
    EXPECT_EQ(names(*first), (std::vector<std::string>{"Majorelle Blue", "Inch Worm", "Maya Blue", "Pale Magenta"}));

    // A copy leaves the source whole and gives the copies their own identities.
    ASSERT_TRUE(user().copyColors({first->colors[1]}, second, 0));
    EXPECT_EQ(names(*second).front(), "Inch Worm");
    EXPECT_NE(second->colors[0]->uuid, first->colors[1]->uuid);
    EXPECT_EQ(first->colors.size(), 4u);

    // A lock on either side refuses.
    second->lock = true;
    environment.notifications.clearPostedNames();
    EXPECT_FALSE(user().moveColors(first, {first->colors[2]}, second, 0));
    EXPECT_FALSE(user().moveColors(second, {second->colors[0]}, first, 0));
    EXPECT_FALSE(user().copyColors({first->colors[2]}, second, 0));
    EXPECT_TRUE(posted().empty());
}

TEST_F(LibraryOperations, PalettesMoveAndTheTargetIsChosenWithoutAnUndoStep) {
    auto a = user().palettes[0];
    auto b = Palette::make({});
    auto c = Palette::make({});
    user().addPalette(b);
    user().addPalette(c);
    ASSERT_TRUE(user().movePalette(c, 0));
    EXPECT_EQ(user().palettes, (std::vector<PaletteRef>{c, a, b}));
    ASSERT_TRUE(user().movePalette(c, 3));
    EXPECT_EQ(user().palettes, (std::vector<PaletteRef>{a, b, c}));
    EXPECT_FALSE(user().movePalette(b, 2));
    EXPECT_FALSE(user().movePalette(user().history, 0));

    environment.queue.advance(Seconds(1));
    const auto states = UserUndo::shared().engine().count();
    user().selectTarget(b);
    environment.queue.advance(Seconds(1));
    EXPECT_EQ(user().target(), b);
    EXPECT_NE(environment.files.files.at(v5Path()).find(b->uuid), std::string::npos);
    EXPECT_EQ(UserUndo::shared().engine().count(), states);
}

}  // namespace
}  // namespace kro::testing
