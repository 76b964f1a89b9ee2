// Preferences, settings and dock data: stored through on every assignment, posted in the setter's order,
// read back forgivingly.
#include "LibraryTestSupport.h"

#include "library/DefaultsKeys.h"
#include "library/LoginItem.h"

namespace kro::testing {
namespace {

using PreferenceStore = LibraryTest;

std::string stored(TestEnvironment& environment, const char* key) {
    return environment.defaults.data(key).value_or("<missing>");
}

TEST_F(PreferenceStore, SettersStoreThenPostInTheirOrderEvenForTheSameValue) {
    auto& preferences = Preferences::shared();
    preferences.setAppTheme(AppTheme::dark);
    EXPECT_EQ(stored(environment, DefaultsKeys::appTheme), "\"dark\"");
    EXPECT_EQ(posted(), (std::vector<std::string>{"AppThemeUpdated", "PreferencesUpdated"}));

    environment.notifications.clearPostedNames();
    preferences.setAppTheme(AppTheme::dark);
    preferences.setAutoImport(false);
    preferences.setStatusItemStyle(StatusItemStyle::single);
    preferences.setSmartFormats(true);
    preferences.setDockVisible(false);
    EXPECT_EQ(posted(), (std::vector<std::string>{"AppThemeUpdated", "PreferencesUpdated", "PreferencesUpdated",
                                                  "ColorBlindnessUpdated", "StatusUpdated", "PreferencesUpdated",
                                                  "PreferencesUpdated", "SmartFormatsUpdated", "PreferencesUpdated",
                                                  "DockUpdated"}));
    EXPECT_EQ(stored(environment, DefaultsKeys::autoImport), "false");
    EXPECT_EQ(stored(environment, DefaultsKeys::statusItemStyle), "\"single\"");

    preferences.setAutoImportPattern({ImportColorPattern::cssRGB, ImportColorPattern::html});
    EXPECT_EQ(stored(environment, DefaultsKeys::autoImportPattern), R"(["HTML Color Names","CSS RGB"])");
    preferences.setColorSpaceProfile(ColorSpaceProfile::displayP3);
    EXPECT_EQ(stored(environment, DefaultsKeys::colorSpaceProfile), "\"Display P3\"");
}

TEST_F(PreferenceStore, SuppressedSideEffectsKeepTheValueOnly) {
    auto& preferences = Preferences::shared();
    preferences.setSuppressSideEffects(true);
    preferences.setPickerSize(300);
    EXPECT_EQ(preferences.pickerSize(), 300);
    EXPECT_TRUE(posted().empty());
    EXPECT_FALSE(environment.defaults.data(DefaultsKeys::pickerSize));
}

TEST_F(PreferenceStore, LoadingKeepsDefaultsForMissingPlainOrUndecodableValues) {
    environment.defaults.setData(DefaultsKeys::pickerZoom, "12");
    environment.defaults.values[DefaultsKeys::pickerSize] = 400.0;  // a plain number, not JSON data
    environment.defaults.setBoolean(DefaultsKeys::playSounds, false);  // a plain boolean, not JSON data
    environment.defaults.setData(DefaultsKeys::colorBlindness, "\"Protanopia\"");
    environment.defaults.setData(DefaultsKeys::appTheme, "\"purple\"");
    environment.defaults.setData(DefaultsKeys::historyLimit, "{");
    environment.defaults.setData(DefaultsKeys::autoImportPattern, R"(["CSS Hex"])");
    auto& preferences = Preferences::shared();
    preferences.load();
    EXPECT_EQ(preferences.pickerZoom(), 12);
    EXPECT_EQ(preferences.pickerSize(), 180);
    EXPECT_TRUE(preferences.playSounds());
    EXPECT_EQ(preferences.colorBlindness(), ColorBlindness::protanopia);
    EXPECT_EQ(preferences.appTheme(), AppTheme::automatic);
    EXPECT_EQ(preferences.historyLimit(), -25);
    EXPECT_EQ(preferences.autoImportPattern(), (std::set<ImportColorPattern>{ImportColorPattern::cssHEX}));
    EXPECT_TRUE(posted().empty());
}

TEST_F(PreferenceStore, StartAtLoginIsTheAutostartEntry) {
    auto& preferences = Preferences::shared();
    const std::string entry = "/home/test/config/autostart/kroapp.Kro.desktop";
    preferences.setStartLogin(true);
    EXPECT_TRUE(preferences.startLogin());
    ASSERT_TRUE(environment.files.files.count(entry));
    const auto& text = environment.files.files.at(entry);
    EXPECT_EQ(text.rfind("[Desktop Entry]\n", 0), 0u);
    EXPECT_NE(text.find("\nExec="), std::string::npos);
    EXPECT_EQ(posted(), (std::vector<std::string>{"PreferencesUpdated"}));
    EXPECT_FALSE(environment.defaults.data("startLogin"));

    Preferences::resetSharedForTesting();
    Preferences::shared().load();
    EXPECT_TRUE(Preferences::shared().startLogin());
    Preferences::shared().setStartLogin(false);
    EXPECT_FALSE(environment.files.files.count(entry));
    EXPECT_FALSE(LoginItem::isEnabled());
}

TEST_F(PreferenceStore, AnInstalledDesktopEntryIsWhatLoginStarts) {
    const std::string installed = "[Desktop Entry]\nType=Application\nName=Kro\nExec=kro open %U\n"
                                  "Actions=pick;\n\n[Desktop Action pick]\nName=Pick Color\nExec=kro open kro://picker\n";
    const std::string autostart = "/home/test/config/autostart/kroapp.Kro.desktop";
    environment.files.files["/home/test/system/applications/kroapp.Kro.desktop"] = installed;
    ASSERT_TRUE(LoginItem::setEnabled(true));
    EXPECT_EQ(environment.files.files.at(autostart), "[Desktop Entry]\nType=Application\nName=Kro\nExec=kro open %U\n"
                                                     "Actions=pick;\nX-GNOME-Autostart-enabled=true\n");

    // The user's own installation comes before the system's.
    environment.files.files["/home/test/data/applications/kroapp.Kro.desktop"] =
        "[Desktop Entry]\nExec=/home/test/.local/bin/kro open %U\nX-GNOME-Autostart-enabled=false";
    ASSERT_TRUE(LoginItem::setEnabled(true));
    EXPECT_EQ(environment.files.files.at(autostart),
              "[Desktop Entry]\nExec=/home/test/.local/bin/kro open %U\nX-GNOME-Autostart-enabled=true\n");
}

TEST_F(PreferenceStore, TheExecLineQuotesAPathWithSpaces) {
    EXPECT_NE(LoginItem::entryText("/opt/kro/bin/kro").find("\nExec=/opt/kro/bin/kro\n"), std::string::npos);
    EXPECT_NE(LoginItem::entryText("/home/a b/kro").find("\nExec=\"/home/a b/kro\"\n"), std::string::npos);
}

TEST_F(PreferenceStore, ResetWritesEveryDefaultAndPostsOnce) {
    auto& preferences = Preferences::shared();
    preferences.setPickerZoom(20);
    preferences.setStartLogin(true);
    Settings::shared().setListView(true);
    DockData::shared().setPosition(DockWindowPosition::right);
    environment.notifications.clearPostedNames();

    preferences.reset();
    EXPECT_EQ(preferences.pickerZoom(), 8);
    EXPECT_FALSE(preferences.startLogin());
    EXPECT_EQ(stored(environment, DefaultsKeys::pickerZoom), "8");
    EXPECT_EQ(stored(environment, DefaultsKeys::historyLimit), "-25");
    EXPECT_EQ(stored(environment, DefaultsKeys::listView), "false");
    EXPECT_EQ(stored(environment, DefaultsKeys::dockPosition), "\"left\"");
    EXPECT_FALSE(Settings::shared().listView());
    EXPECT_EQ(postedCount("PreferencesUpdated"), 1u);
    EXPECT_EQ(postedCount("SettingsUpdated"), 1u);
    EXPECT_EQ(postedCount("DockUpdated"), 1u);
    EXPECT_FALSE(LoginItem::isEnabled());
}

TEST_F(PreferenceStore, SettingsAndDockDataRoundTripThroughTheDefaults) {
    auto& settings = Settings::shared();
    settings.setMainFrame(SettingsFrame{{10, 20, 800, 600}, "remembered"});
    settings.setMenuSize(SettingsSize{320, 480});
    settings.setColorSort(PaletteColorSort::nameDESC);
    EXPECT_EQ(stored(environment, DefaultsKeys::menuSize), "[320.0,480.0]");
    EXPECT_EQ(stored(environment, DefaultsKeys::colorSort), "\"nameDESC\"");
    EXPECT_EQ(posted(), std::vector<std::string>(3, "SettingsUpdated"));

    auto& dock = DockData::shared();
    environment.notifications.clearPostedNames();
    dock.setDockHiddenPalettes({"A", "B"});
    dock.setPosX(12.5);
    dock.setPosY(std::nullopt);
    EXPECT_EQ(stored(environment, DefaultsKeys::dockPosY), "null");
    EXPECT_EQ(postedCount("DockUpdated"), 3u);
    EXPECT_EQ(posted()[0], "PreferencesUpdated");
    EXPECT_EQ(posted()[1], "DockUpdated");

    Settings::resetSharedForTesting();
    DockData::resetSharedForTesting();
    Settings::shared().load();
    DockData::shared().load();
    ASSERT_TRUE(Settings::shared().mainFrame());
    EXPECT_EQ(*Settings::shared().mainFrame(), (SettingsFrame{{10, 20, 800, 600}, "remembered"}));
    EXPECT_EQ(Settings::shared().menuSize(), (SettingsSize{320, 480}));
    EXPECT_EQ(Settings::shared().colorSort(), PaletteColorSort::nameDESC);
    EXPECT_EQ(DockData::shared().dockHiddenPalettes(), (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(DockData::shared().posX(), 12.5);
    EXPECT_FALSE(DockData::shared().posY());
    EXPECT_EQ(DockData::shared().position(), DockWindowPosition::left);
}

}  // namespace
}  // namespace kro::testing
