#pragma once
// Every key of the program in the user defaults, so that one list is whole.
namespace kro::DefaultsKeys {

// Preferences
inline constexpr const char* playSounds = "UserDefaults.Kro.PlaySounds";
inline constexpr const char* autoImport = "UserDefaults.Kro.AutoImport";
inline constexpr const char* autoImportPattern = "UserDefaults.Kro.AutoImportSettings";
inline constexpr const char* historyLimit = "UserDefaults.Kro.HistoryLimit";
inline constexpr const char* colorSpaceProfile = "UserDefaults.Kro.ColorSpaceProfile";
inline constexpr const char* colorBlindness = "UserDefaults.Kro.ColorBlindness";
inline constexpr const char* appTheme = "UserDefaults.Kro.AppTheme";
inline constexpr const char* statusItemStyle = "UserDefaults.Kro.StatusItemStyle";
inline constexpr const char* displayLastColor = "UserDefaults.Kro.DisplayLastColor";
inline constexpr const char* pickerSize = "UserDefaults.Kro.PickerSize";
inline constexpr const char* pickerZoom = "UserDefaults.Kro.PickerZoom";
inline constexpr const char* showNameOverlay = "UserDefaults.Kro.ShowNameOverlay";
inline constexpr const char* showColorOverlay = "UserDefaults.Kro.ShowColorOverlay";
inline constexpr const char* smartFormats = "UserDefaults.Kro.SmartFormats";
inline constexpr const char* smartProfiles = "UserDefaults.Kro.SmartProfiles";
inline constexpr const char* dockVisible = "UserDefaults.Kro.DockVisible";
inline constexpr const char* dockAllSpaces = "UserDefaults.Kro.DockAllSpaces";
inline constexpr const char* snapshotsRefresh = "UserDefaults.Kro.SnapshotsRefresh";
// A plain boolean, not JSON data.
inline constexpr const char* onboardingNeedsDisplay = "UserDefaults.Kro.Onboarding.Needs.Display";

// Settings
inline constexpr const char* listView = "UserDefaults.Kro.ListView";
inline constexpr const char* mainFrame = "UserDefaults.Kro.MainFrame";
inline constexpr const char* menuSize = "UserDefaults.Kro.MenuSize";
inline constexpr const char* colorPanelFormat = "UserDefaults.Kro.ColorPanelFormat";
inline constexpr const char* colorSort = "UserDefaults.Kro.ColorSort";
inline constexpr const char* formatSort = "UserDefaults.Kro.FormatSort";

// Dock data
inline constexpr const char* dockHiddenPalettes = "UserDefaults.Kro.DockHiddenPalettes";
inline constexpr const char* dockPosition = "UserDefaults.Kro.DockPosition";
inline constexpr const char* dockScreenIndex = "UserDefaults.Kro.DockScreenIndex";
inline constexpr const char* dockPosX = "UserDefaults.Kro.DockPosX";
inline constexpr const char* dockPosY = "UserDefaults.Kro.DockPosY";

// The once-only import of the oldest library (a plain boolean).
inline constexpr const char* loadV3 = "UserDefaultsKroLoadV3";
// Permissions and tutorials: kept by the workspaces.
inline constexpr const char* screenRecordingPermission = "UserDefaultsKroScreenRecordingPermission";
inline constexpr const char* accessibilityPermission = "UserDefaultsKroAccessibilityPermission";
inline constexpr const char* tutorialPrecision = "UserDefaultsKroTutorialPrecision";
inline constexpr const char* tutorialSize = "UserDefaultsKroTutorialSize";
inline constexpr const char* tutorialZoom = "UserDefaultsKroTutorialZoom";
inline constexpr const char* tutorialCommand = "UserDefaultsKroTutorialCommand";
inline constexpr const char* tutorialBackground = "UserDefaultsKroTutorialBackground";
inline constexpr const char* tutorialBorder = "UserDefaultsKroTutorialBorder";
inline constexpr const char* tutorialMultiple = "UserDefaultsKroTutorialMultiple";
inline constexpr const char* tutorialContrast = "UserDefaultsKroTutorialContrast";

}  // namespace kro::DefaultsKeys
