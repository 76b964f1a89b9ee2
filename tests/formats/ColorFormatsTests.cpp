#include <gtest/gtest.h>

#include "formats/ColorFormatUndo.h"
#include "formats/ColorFormats.h"
#include "library/JsonDecode.h"
#include "library/Notifications.h"
#include "platform/testing/TestEnvironment.h"

using namespace kro;

namespace {

const ColorValue hotPink = ColorValue::rgb(1.0, 0.0, 128.0 / 255.0);

ColorFormatItemRef makeFormat(const std::string& name, const std::string& clipboard, bool custom = true) {
    auto item = std::make_shared<ColorFormatItem>();
    item->name = name;
    item->clipboardFormat = clipboard;
    item->menuFormat = "menu " + clipboard;
    item->pickerFormat = "picker " + clipboard;
    item->custom = custom;
    return item;
}

class ColorFormatsTest : public ::testing::Test {
protected:
    void SetUp() override {
        ColorFormats::resetShared();
        ColorFormatUndo::shared().reset();
        environment.clock.set(std::chrono::system_clock::from_time_t(1767225600));  // 2026-01-01
    }

    std::string storedPath(const char* version) { return *ColorFormats::store().path(version); }
    std::optional<Json> stored() {
        auto bytes = environment.files.read(storedPath("v5"));
        return bytes ? std::optional<Json>(Json::parse(*bytes)) : std::nullopt;
    }
    ColorFormats& catalogue() { return ColorFormats::shared(); }

    kro::testing::TestEnvironment environment;
};

}  // namespace

TEST_F(ColorFormatsTest, JsonRoundTripInKeyOrder) {
    auto item = makeFormat("Mine", "hex[red]");
    item->options = {{"Show Prefix #", true}, {"All Caps", false}, {"Future Option", true}};
    item->build = 7;
    item->version = "2.1";
    item->updatedAt = "2026-01-02T00:00:00Z";
    catalogue().formats = {item, makeFormat("Other", "x")};
    auto group = std::make_shared<ColorFormatGroup>();
    group->name = "Group";
    group->image = "css";
    group->group = {"Mine", "Other"};
    catalogue().groupFormats = {group};

    const Json json = catalogue().toJson();
    std::vector<std::string> keys;
    for (const auto& [key, value] : json.items()) keys.push_back(key);
    EXPECT_EQ(keys, (std::vector<std::string>{"selectedFormatName", "selectedFormatImage", "formats", "groupFormats",
                                              "createdAt"}));
    keys.clear();
    for (const auto& [key, value] : json["formats"][0].items()) keys.push_back(key);
    EXPECT_EQ(keys, (std::vector<std::string>{"uuid", "name", "notes", "image", "options", "menuFormat",
                                              "clipboardFormat", "pickerFormat", "build", "version", "custom",
                                              "selected", "createdAt", "updatedAt"}));
    EXPECT_FALSE(json["formats"][1].contains("updatedAt"));
    EXPECT_EQ(compactText(json["groupFormats"][0]),
              "{\"name\":\"Group\",\"image\":\"css\",\"group\":[\"Mine\",\"Other\"],\"createdAt\":\"2026-01-01T00:00:00Z\"}");

    const auto back = ColorFormats::fromJson(Json::parse(compactText(json)));
    EXPECT_EQ(compactText(back->toJson()), compactText(json));
}

TEST_F(ColorFormatsTest, ForgivingDecode) {
    const auto empty = ColorFormats::fromJson(Json::parse("{\"unknown\":1}"));
    EXPECT_EQ(empty->selectedFormatName, "CSS Hex");
    EXPECT_EQ(empty->createdAt, "2026-01-01T00:00:00Z");
    EXPECT_FALSE(empty->updatedAt);
    const auto bare = ColorFormats::fromJson(Json::parse("{\"formats\":[{}]}"));
    ASSERT_EQ(bare->formats.size(), 1u);
    EXPECT_EQ(bare->formats[0]->uuid.size(), 36u);

    // Wrong types fail as every record's do (tested with the library's records); the options map is this one's own.
    EXPECT_THROW(ColorFormats::fromJson(Json::parse("{\"formats\":[{\"options\":{\"All Caps\":\"yes\"}}]}")),
                 JsonDecodeError);
}

TEST_F(ColorFormatsTest, LookupReadsTheRightTemplate) {
    catalogue().formats = {makeFormat("B", "b:hex[red]"), makeFormat("CSS Hex", "#hex[green]"),
                           makeFormat("B", "second B")};
    EXPECT_EQ(catalogue().clipboardString(hotPink), "#00");
    EXPECT_EQ(catalogue().pickerString(hotPink), "picker #00");
    EXPECT_EQ(catalogue().menuString(hotPink), "menu #00");
    // The named format, and of two with one name the one stored first.
    EXPECT_EQ(catalogue().clipboardString(hotPink, "B"), "b:ff");
    EXPECT_EQ(catalogue().clipboardString(hotPink, "Nothing"), "");
    catalogue().selectedFormatName = "Gone";
    EXPECT_EQ(catalogue().clipboardString(hotPink), "");
    EXPECT_EQ(catalogue().pickerString(hotPink), "");
}

TEST_F(ColorFormatsTest, Options) {
    const ColorFormatOptions prefixOn = {{"Show Prefix #", true}}, prefixOff = {{"Show Prefix #", false}};
    EXPECT_EQ(applyOptions("#fff", prefixOn), "#fff");
    EXPECT_EQ(applyOptions("fff", prefixOn), "#fff");
    EXPECT_EQ(applyOptions("", prefixOn), "#");
    EXPECT_EQ(applyOptions("#fff", prefixOff), "fff");
    EXPECT_EQ(applyOptions("##", prefixOff), "#");
    EXPECT_EQ(applyOptions("#FFF", {{"All Caps", false}}), "#fff");
    EXPECT_EQ(applyOptions("straße", {{"All Caps", true}}), "STRASSE");
    EXPECT_EQ(applyOptions("a b\tc\n", {{"Remove white spaces", true}}), "ab\tc\n");
    EXPECT_EQ(applyOptions("a b", {{"Remove white spaces", false}, {"Unknown", true}}), "a b");
    EXPECT_EQ(applyOptions("#Ab", {}), "#Ab");
}

TEST_F(ColorFormatsTest, AddMakesACustomFormatWithAUniqueName) {
    catalogue().formats = {makeFormat("CSS Hex", "x", false)};
    std::vector<std::string> names;
    for (int i = 0; i < 3; ++i) {
        auto item = makeFormat("Custom", "kept?");
        item->notes = "my notes";
        item->options = {{"All Caps", true}};
        item->custom = false;
        const auto oldUUID = item->uuid;
        catalogue().add(item);
        EXPECT_NE(item->uuid, oldUUID);
        EXPECT_TRUE(item->custom);
        EXPECT_TRUE(item->selected);
        EXPECT_EQ(item->image, "z-custom");
        // A duplicate keeps its notes and options and loses its templates.
        EXPECT_EQ(item->notes, "my notes");
        EXPECT_EQ(item->options, (ColorFormatOptions{{"All Caps", true}}));
        EXPECT_EQ(item->clipboardFormat, ColorFormatItem::defaultTemplate);
        EXPECT_EQ(item->pickerFormat, ColorFormatItem::defaultTemplate);
        names.push_back(item->name);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"Custom", "Custom (1)", "Custom (2)"}));
    EXPECT_EQ(catalogue().clipboardString(hotPink, "Custom (1)"), "#FF0080");
    ASSERT_TRUE(stored());
    EXPECT_EQ((*stored())["formats"].size(), 4u);
    EXPECT_EQ(catalogue().updatedAt, "2026-01-01T00:00:00Z");
    EXPECT_EQ(environment.notifications.postedNames().back(), Notifications::colorFormatUpdated);
}

TEST_F(ColorFormatsTest, DeleteKeepsShippedFormatsAndFallsBackToCssHex) {
    auto shipped = makeFormat("Shipped", "s", false);
    auto mine = makeFormat("Mine", "m");
    auto other = makeFormat("Other", "o");
    catalogue().formats = {shipped, mine, other};
    auto group = std::make_shared<ColorFormatGroup>();
    group->group = {"Shipped", "Mine", "Other"};
    catalogue().groupFormats = {group};
    catalogue().select(*mine);
    EXPECT_EQ(catalogue().selectedFormatName, "Mine");
    EXPECT_EQ(catalogue().selectedFormatImage, "z-custom");

    // A copy equal in every field is not the format itself.
    catalogue().deleteFormats({shipped, std::make_shared<ColorFormatItem>(*other), mine});
    ASSERT_EQ(catalogue().formats.size(), 2u);
    EXPECT_EQ(catalogue().formats[0], shipped);
    EXPECT_EQ(catalogue().formats[1], other);
    EXPECT_EQ(group->group, (std::vector<std::string>{"Shipped", "Other"}));
    // No "CSS Hex" exists here, yet it is selected, and every text is empty.
    EXPECT_EQ(catalogue().selectedFormatName, "CSS Hex");
    EXPECT_EQ(catalogue().selectedFormatImage, "css");
    EXPECT_EQ(catalogue().clipboardString(hotPink), "");
    ASSERT_TRUE(stored());
    EXPECT_EQ((*stored())["formats"].size(), 2u);
}

TEST_F(ColorFormatsTest, ChangingAFieldStampsSavesAndAnnounces) {
    auto item = makeFormat("Mine", "m");
    catalogue().formats = {item};
    environment.clock.advance(std::chrono::seconds(5));
    item->change(&ColorFormatItem::clipboardFormat, std::string("hex[red]"));
    EXPECT_EQ(item->updatedAt, "2026-01-01T00:00:05Z");
    EXPECT_EQ(catalogue().updatedAt, "2026-01-01T00:00:05Z");
    ASSERT_TRUE(stored());
    EXPECT_EQ((*stored())["formats"][0]["clipboardFormat"], "hex[red]");
    EXPECT_EQ(environment.notifications.postedNames().back(), Notifications::colorFormatUpdated);

    environment.files.files.clear();
    item->change(&ColorFormatItem::clipboardFormat, std::string("hex[red]"));
    EXPECT_FALSE(stored()) << "an unchanged value saves nothing";
}

// The fallback through the versions is the shared store's, tested with the library; here, the shipped catalogue.
TEST_F(ColorFormatsTest, LoadFallsBackToTheShippedCatalogue) {
    // Nothing stored: the shipped catalogue, saved.
    catalogue().load();
    EXPECT_GE(catalogue().formats.size(), 40u);
    EXPECT_EQ(catalogue().clipboardString(hotPink), "#FF0080");
    ASSERT_TRUE(stored());

    // Nothing decodes: the shipped catalogue in memory, and the damaged file stays for the user.
    ColorFormats::resetShared();
    environment.files.files[storedPath("v5")] = "{\"formats\":5}";
    bool succeeded = true;
    catalogue().load([&](bool success, const std::optional<std::string>& error) {
        succeeded = success;
        EXPECT_TRUE(error);
    });
    EXPECT_FALSE(succeeded);
    EXPECT_EQ(catalogue().clipboardString(hotPink), "#FF0080");
    EXPECT_EQ(environment.files.files[storedPath("v5")], "{\"formats\":5}");
    // The first change puts the damaged file aside before it writes.
    catalogue().select(*catalogue().formats[1]);
    EXPECT_EQ(environment.files.files[storedPath("v5") + ".damaged-20260101T000000Z"], "{\"formats\":5}");
    ASSERT_TRUE(stored());

    // A catalogue that reads is not written again.
    const int writes = environment.files.writeCount;
    ColorFormats::resetShared();
    catalogue().load();
    EXPECT_EQ(catalogue().selectedFormatName, catalogue().formats[1]->name);
    EXPECT_EQ(environment.files.writeCount, writes);
}

TEST_F(ColorFormatsTest, FixUUIDSRenewsTheLaterDuplicates) {
    auto first = makeFormat("A", "a"), second = makeFormat("B", "b"), third = makeFormat("C", "c");
    second->uuid = first->uuid;
    third->uuid = first->uuid;
    const auto original = first->uuid;
    catalogue().formats = {first, second, third};
    catalogue().fixUUIDS();
    EXPECT_EQ(first->uuid, original);
    EXPECT_NE(second->uuid, original);
    EXPECT_NE(third->uuid, original);
    EXPECT_NE(second->uuid, third->uuid);
    ASSERT_TRUE(stored());

    environment.files.files.clear();
    catalogue().fixUUIDS();
    EXPECT_FALSE(stored()) << "nothing to fix, nothing saved";
}

TEST_F(ColorFormatsTest, UndoPutsTheCatalogueBackAndSavesIt) {
    auto& undo = ColorFormatUndo::shared();
    catalogue().formats = {makeFormat("First", "1")};
    undo.save(catalogue(), 0);
    environment.queue.runDue();
    catalogue().add(makeFormat("Second", "2"));
    undo.save(catalogue(), 0);
    environment.queue.runDue();
    ASSERT_TRUE(undo.canUndo());

    undo.undo();
    environment.queue.runDue();
    ASSERT_EQ(catalogue().formats.size(), 1u);
    EXPECT_EQ(catalogue().formats[0]->name, "First");
    EXPECT_EQ((*stored())["formats"].size(), 1u);
    ASSERT_TRUE(undo.canRedo());
    undo.redo();
    environment.queue.runDue();
    EXPECT_EQ(catalogue().formats.size(), 2u);
}

TEST_F(ColorFormatsTest, ResetToShippedReplacesEverythingAndRecordsUndo) {
    catalogue().formats = {makeFormat("Mine", "m")};
    catalogue().selectedFormatName = "Mine";
    ASSERT_TRUE(catalogue().resetToShipped());
    environment.queue.runDue();
    EXPECT_FALSE(catalogue().format("Mine"));
    EXPECT_EQ(catalogue().selectedFormatName, "CSS Hex");
    EXPECT_EQ(ColorFormatUndo::shared().engine().count(), 1u);
    ASSERT_TRUE(stored());
    EXPECT_EQ(environment.notifications.postedNames().back(), Notifications::colorFormatUpdated);
}
