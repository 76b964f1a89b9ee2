#pragma once
// Every notification name of the program. Views share no state: they listen to these.
namespace kro::Notifications {

inline constexpr const char* activationLoaded = "ActivationLoaded";
inline constexpr const char* activationSaved = "ActivationSaved";
inline constexpr const char* activationUpdated = "ActivationUpdated";
inline constexpr const char* appThemeUpdated = "AppThemeUpdated";
inline constexpr const char* appleSignInUpdated = "AppleSignInUpdated";
// The colour-blindness setting and the automatic-import settings post the same text on purpose:
// each change reaches the listeners of both (the status button redraw and the import timer restart).
inline constexpr const char* colorBlindnessUpdated = "ColorBlindnessUpdated";
inline constexpr const char* autoImportUpdated = "ColorBlindnessUpdated";
inline constexpr const char* colorFormatLoaded = "ColorFormatLoaded";
inline constexpr const char* colorFormatSaved = "ColorFormatSaved";
inline constexpr const char* colorFormatUpdated = "ColorFormatUpdated";
inline constexpr const char* colorUpdated = "ColorUpdated";
inline constexpr const char* dockUpdated = "DockUpdated";
inline constexpr const char* pluginsLoaded = "PluginsLoaded";
inline constexpr const char* pluginsUpdated = "PluginsUpdated";
inline constexpr const char* preferencesUpdated = "PreferencesUpdated";
inline constexpr const char* settingsUpdated = "SettingsUpdated";
inline constexpr const char* shortcutsLoaded = "ShortcutsLoaded";
inline constexpr const char* shortcutsRecorded = "ShortcutsRecorded";
inline constexpr const char* shortcutsSaved = "ShortcutsSaved";
inline constexpr const char* shortcutsUpdated = "ShortcutsUpdated";
inline constexpr const char* smartFormatsLoaded = "SmartFormatsLoaded";
inline constexpr const char* smartFormatsSaved = "SmartFormatsSaved";
inline constexpr const char* smartFormatsUpdated = "SmartFormatsUpdated";
inline constexpr const char* smartProfilesLoaded = "SmartProfilesLoaded";
inline constexpr const char* smartProfilesSaved = "SmartProfilesSaved";
inline constexpr const char* smartProfilesUpdated = "SmartProfilesUpdated";
inline constexpr const char* snapshotsLoaded = "SnapshotsLoaded";
inline constexpr const char* snapshotsSaved = "SnapshotsSaved";
inline constexpr const char* snapshotsUpdated = "SnapshotsUpdated";
inline constexpr const char* statusUpdated = "StatusUpdated";
// A store's failed save, or its damaged file put aside; the object is a StoreProblem.
inline constexpr const char* storeProblem = "StoreProblem";
inline constexpr const char* userCloudMerged = "UserCloudMerged";
inline constexpr const char* userLoaded = "UserLoaded";
inline constexpr const char* userSaved = "UserSaved";
inline constexpr const char* userUpdated = "UserUpdated";
inline constexpr const char* windowBecomeKey = "WindowBecomeKey";
inline constexpr const char* windowBecomeMain = "WindowBecomeMain";
inline constexpr const char* windowResignKey = "WindowResignKey";
inline constexpr const char* windowResignMain = "WindowResignMain";

}  // namespace kro::Notifications
