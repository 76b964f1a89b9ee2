#include <unistd.h>

#include "BridgeTestSupport.h"
#include "library/Notifications.h"

using namespace kro;
using namespace kro::testing;

using PluginRegistryTest = RegistryFixture;

TEST_F(PluginRegistryTest, ShippedEntriesEachHaveAnIconAWayInAndTheirWindowNames) {
    EXPECT_EQ(environment.notifications.postedNames(),
              (std::vector<std::string>{Notifications::pluginsLoaded, Notifications::pluginsUpdated}));
    ASSERT_EQ(plugin().plugins.size(), 5u);
    for (const auto& [bundle, item] : plugin().plugins) {
        EXPECT_EQ(item->bundle, bundle);
        EXPECT_TRUE(item->iconImage()) << bundle;
        EXPECT_FALSE(item->windowClasses.empty()) << bundle;
        for (const auto* map : {&item->getPrimaryColor, &item->getSecondaryColor, &item->setPrimaryColor, &item->setSecondaryColor}) {
            EXPECT_TRUE(functionOf(*map)) << bundle;
        }
    }
    EXPECT_EQ(functionOf(plugin().plugins.at("org.kde.krita")->setSecondaryColor), PluginItemFunction::bridge);
    EXPECT_EQ(functionOf(plugin().plugins.at("org.blender.Blender")->getPrimaryColor), PluginItemFunction::copy);
    EXPECT_EQ(functionOf(plugin().plugins.at("org.blender.Blender")->setPrimaryColor), PluginItemFunction::paste);
}

TEST_F(PluginRegistryTest, CurrentFollowsTheApplicationInFrontAsItChanges) {
    EXPECT_FALSE(plugin().current);
    applications.bringToFront(gimpWindow());  // known by WM_CLASS alone
    ASSERT_TRUE(plugin().current);
    EXPECT_EQ(plugin().current->name, "GIMP");
    EXPECT_EQ(plugin().currentRunningApplication, gimpWindow());

    applications.bringToFront(inkscapeWindow());  // known by desktop-file id
    EXPECT_EQ(plugin().current->name, "Inkscape");
    applications.bringToFront(terminalWindow());
    EXPECT_FALSE(plugin().current);
    EXPECT_EQ(plugin().currentRunningApplication, terminalWindow());

    // Kro's own windows in front leave the design application current.
    applications.bringToFront(kritaWindow());
    applications.bringToFront(RunningApplication{99, getpid(), "", "kro", "kro", "Kro"});
    EXPECT_EQ(plugin().current->name, "Krita");
    applications.bringToFront(std::nullopt);
    EXPECT_FALSE(plugin().current);
}

TEST_F(PluginRegistryTest, ANamedApplicationIsFoundByIdentifierOrNameWithItsTopmostWindow) {
    applications.windows = {gimpWindow(), terminalWindow(), RunningApplication{21, 4242, "", "gimp", "Gimp", "Layers"}};
    const auto byName = plugin().target("gimp");
    ASSERT_TRUE(byName);
    EXPECT_EQ(byName->item->bundle, "org.gimp.GIMP");
    ASSERT_TRUE(byName->application);
    EXPECT_EQ(byName->application->window, 21u);
    EXPECT_EQ(plugin().target("org.gimp.GIMP")->item, byName->item);
    EXPECT_FALSE(plugin().target("org.kde.krita")->application) << "Krita is not running";
    EXPECT_FALSE(plugin().target("Photoshop"));
    EXPECT_FALSE(plugin().target()) << "no application in front";
}

TEST_F(PluginRegistryTest, WithoutAnEntryOrAWayInThereIsNothingToReadAndSettingFails) {
    applications.bringToFront(terminalWindow());
    auto got = get(PickerPlugin::primary);
    EXPECT_TRUE(got->answered);
    EXPECT_FALSE(got->result);
    EXPECT_EQ(*set(PickerPlugin::primary, ColorValue::rgb(1, 0, 0)), false);

    LogCapture log;
    plugin().load(R"({"com.adobe.Photoshop": {"name": "Photoshop", "windowClasses": ["photoshop"],
                      "getPrimaryColor": {"function": "applescript"}, "setPrimaryColor": {}}})");
    applications.bringToFront(RunningApplication{30, 1, "", "photoshop", "Photoshop", ""});
    ASSERT_TRUE(plugin().current);
    got = get(PickerPlugin::primary);
    EXPECT_TRUE(got->answered);
    EXPECT_FALSE(got->result);
    EXPECT_EQ(*set(PickerPlugin::primary, ColorValue::rgb(1, 0, 0)), false);
    EXPECT_TRUE(bus.calls.empty() && keys.events.empty());
    EXPECT_NE(log.text().find("Photoshop has no way to read its color here"), std::string::npos);
}

TEST_F(PluginRegistryTest, EntriesThatDoNotDecodeLeaveTheRegistryEmpty) {
    LogCapture log;
    plugin().load(R"({"org.gimp.GIMP": {"name": 7}})");
    EXPECT_TRUE(plugin().plugins.empty());
    plugin().load("[1, 2");
    EXPECT_TRUE(plugin().plugins.empty());
    EXPECT_NE(log.text().find("The plugin entries do not decode"), std::string::npos);
}

TEST_F(PluginRegistryTest, CopyReadsTheColoursTheApplicationCopiesAfterTheClipboardChangesHands) {
    applications.windows = {blenderWindow()};
    applications.bringToFront(terminalWindow());
    clipboard.contents = "#010101";
    auto got = get(PickerPlugin::secondary, "Blender");
    // Blender was not in front: it is brought there first, then Ctrl+C goes down and up.
    ASSERT_EQ(applications.activated.size(), 1u);
    EXPECT_EQ(applications.activated[0].window, blenderWindow().window);
    ASSERT_EQ(keys.events.size(), 2u);
    EXPECT_EQ(keys.events[0].code, 8);
    EXPECT_TRUE(keys.events[0].down);
    EXPECT_FALSE(got->answered);
    clipboard.contents = "FF0080 over Hot Pink";
    advance(0.2);
    ASSERT_TRUE(got->answered && got->result);
    EXPECT_EQ(hexOf(got->result->colors), (std::vector<std::string>{"FF0080", "FF69B4"}));
    EXPECT_EQ(got->result->icon, plugin().plugins.at("org.blender.Blender")->icon);
}

TEST_F(PluginRegistryTest, PasteSucceedsAtOnceAndTypesCtrlVOnceTheApplicationIsInFront) {
    applications.bringToFront(blenderWindow());
    EXPECT_EQ(*set(PickerPlugin::primary, ColorValue::rgb(1, 0, 0)), true);
    EXPECT_TRUE(applications.activated.empty()) << "already in front";
    advance(0.4);
    EXPECT_TRUE(keys.events.empty());
    advance(0.2);
    ASSERT_EQ(keys.events.size(), 2u);
    EXPECT_EQ(keys.events[0].code, 9);
}
