#include <gtest/gtest.h>

#include "formats/ColorFormats.h"
#include "formats/SmartFormats.h"
#include "formats/SmartProfiles.h"
#include "library/JsonDecode.h"
#include "library/Notifications.h"
#include "library/Preferences.h"
#include "platform/testing/TestEnvironment.h"

using namespace kro;

namespace {

class SmartListsTest : public ::testing::Test {
protected:
    void SetUp() override {
        SmartFormats::resetShared();
        SmartProfiles::resetShared();
        Preferences::resetSharedForTesting();
        environment.clock.set(std::chrono::system_clock::from_time_t(1767225600));
    }

    static std::shared_ptr<SmartFormatItem> formatItem(const std::string& format, bool enabled = true) {
        auto item = std::make_shared<SmartFormatItem>();
        item->name = "App";
        item->format = format;
        item->enabled = enabled;
        return item;
    }

    kro::testing::TestEnvironment environment;
};

}  // namespace

TEST_F(SmartListsTest, JsonRoundTripAndRefusals) {
    auto profile = std::make_shared<SmartProfileItem>();
    profile->name = "GIMP";
    profile->profile = ColorSpaceProfile::displayP3;
    SmartProfiles::shared().items["org.gimp.GIMP"] = profile;
    const Json json = SmartProfiles::shared().toJson();
    EXPECT_EQ(compactText(json),
              "{\"items\":{\"org.gimp.GIMP\":{\"name\":\"GIMP\",\"profile\":\"Display P3\",\"enabled\":true,"
              "\"createdAt\":\"2026-01-01T00:00:00Z\"}},\"createdAt\":\"2026-01-01T00:00:00Z\"}");
    const auto back = SmartProfiles::fromJson(json);
    EXPECT_EQ(*back->item("org.gimp.GIMP"), *profile);

    const auto defaults = SmartFormats::fromJson(Json::parse("{\"items\":{\"code\":{}}}"));
    EXPECT_EQ(defaults->item("code")->format, "CSS Hex");
    EXPECT_THROW(SmartProfiles::fromJson(Json::parse("{\"items\":{\"a\":{\"profile\":\"Rec. 2020\"}}}")), JsonDecodeError);
}

TEST_F(SmartListsTest, AnItemAppliesOnlyWhenEnabledAndSwitchedOn) {
    auto& formats = SmartFormats::shared();
    EXPECT_FALSE(smartFormatName("org.inkscape.Inkscape")) << "an empty list answers every lookup";
    formats.add("org.inkscape.Inkscape", formatItem("CSS RGB"));
    formats.add("org.gimp.GIMP", formatItem("Hex", false));

    EXPECT_FALSE(formats.item("org.inkscape.inkscape")) << "identifiers match exactly";
    EXPECT_FALSE(smartFormatName("org.inkscape.Inkscape")) << "the global switch is off";

    Preferences::shared().setSmartFormats(true);
    EXPECT_EQ(smartFormatName("org.inkscape.Inkscape"), "CSS RGB");
    EXPECT_FALSE(smartFormatName("org.gimp.GIMP"));

    // The other list answers for the same application on its own switch.
    auto profile = std::make_shared<SmartProfileItem>();
    profile->profile = ColorSpaceProfile::adobeRGB1998;
    SmartProfiles::shared().add("org.inkscape.Inkscape", profile);
    EXPECT_EQ(profileForSample("org.inkscape.Inkscape", ColorSpaceProfile::sRGB), ColorSpaceProfile::sRGB);
    Preferences::shared().setSmartProfiles(true);
    EXPECT_EQ(profileForSample("org.inkscape.Inkscape", ColorSpaceProfile::sRGB), ColorSpaceProfile::adobeRGB1998);
    EXPECT_EQ(profileForSample("firefox", ColorSpaceProfile::sRGB), ColorSpaceProfile::sRGB);
    Preferences::shared().setSmartFormats(false);
    EXPECT_FALSE(smartFormatName("org.inkscape.Inkscape"));
    EXPECT_EQ(profileForSample("org.inkscape.Inkscape", ColorSpaceProfile::sRGB), ColorSpaceProfile::adobeRGB1998);
}

TEST_F(SmartListsTest, ChangesAreSavedAndAnnounced) {
    auto& formats = SmartFormats::shared();
    const auto path = *SmartFormats::store().path("v5");
    formats.add("code", formatItem("CSS Hex"));
    EXPECT_EQ(environment.notifications.postedNames().back(), Notifications::smartFormatsUpdated);
    environment.clock.advance(std::chrono::seconds(3));
    formats.edit("code", [](SmartFormatItem& item) { item.enabled = false; });
    EXPECT_EQ(formats.item("code")->updatedAt, "2026-01-01T00:00:03Z");
    EXPECT_EQ(Json::parse(environment.files.files[path])["items"]["code"]["enabled"], false);
    formats.remove("code");
    EXPECT_EQ(Json::parse(environment.files.files[path])["items"].size(), 0u);
    EXPECT_EQ(formats.updatedAt, "2026-01-01T00:00:03Z");
}

TEST_F(SmartListsTest, ADamagedOrMissingFileGivesTheShippedListAndADamagedOneIsKept) {
    const auto path = *SmartFormats::store().path("v5");
    environment.files.files[path] = "not json";
    SmartFormats::shared().load();
    EXPECT_TRUE(SmartFormats::shared().item("org.gimp.GIMP")) << "the shipped list stands in";
    EXPECT_EQ(environment.files.files[path], "not json");
    SmartFormats::shared().remove("org.gimp.GIMP");
    EXPECT_EQ(environment.files.files[path + ".damaged-20260101T000000Z"], "not json") << "put aside at the first change";

    SmartProfiles::shared().load();
    EXPECT_TRUE(SmartProfiles::shared().item("org.kde.krita"));
    EXPECT_TRUE(environment.files.files.contains(*SmartProfiles::store().path("v5"))) << "no file: shipped and saved";
}

TEST_F(SmartListsTest, TheShippedListNamesShippedFormats) {
    ASSERT_TRUE(SmartFormats::shared().resetToShipped());
    EXPECT_GE(SmartFormats::shared().items.size(), 8u);
    const auto catalogue = ColorFormats::shipped();
    for (const auto& [application, item] : SmartFormats::shared().items) {
        EXPECT_TRUE(catalogue->format(item->format)) << application << " names " << item->format;
    }
}
