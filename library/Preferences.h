#pragma once
// What the user chooses in the preferences window. Each field has its own key in the user defaults; every
// assignment stores, logs and posts at once (even when the value is the same), in the order of the setter.
#include <optional>
#include <set>
#include <string>

#include "formats/color/ColorBlindness.h"
#include "formats/color/ColorSpaceProfile.h"
#include "formats/color/ImportColorPattern.h"

namespace kro {

// `automatic` follows the system; stored as "auto".
enum class AppTheme { light, dark, automatic };
std::string text(AppTheme theme);
std::optional<AppTheme> appThemeFromText(const std::string& value);

enum class StatusItemStyle { single, extended };
std::string text(StatusItemStyle style);
std::optional<StatusItemStyle> statusItemStyleFromText(const std::string& value);

enum class SnapshotRefresh { never, minute, hour, day };
std::string text(SnapshotRefresh refresh);
std::optional<SnapshotRefresh> snapshotRefreshFromText(const std::string& value);

class Preferences {
public:
    static Preferences& shared();
    // Back to the built-in values in memory, storing and posting nothing (tests).
    static void resetSharedForTesting();

    // Reads every key; a missing or undecodable one keeps the default. The login item is read as it stands.
    void load();
    // The preferences window's "Reset": preferences, settings and dock data back to their defaults and
    // written, the login item removed, then one post of each updated notification.
    void reset();

    bool suppressSideEffects() const { return suppressSideEffects_; }
    void setSuppressSideEffects(bool value) { suppressSideEffects_ = value; }

    // Whether the agent starts at login: the autostart entry itself, not a key.
    bool startLogin() const { return startLogin_; }
    void setStartLogin(bool value);

    bool playSounds() const { return playSounds_; }
    void setPlaySounds(bool value);
    bool autoImport() const { return autoImport_; }
    void setAutoImport(bool value);
    const std::set<ImportColorPattern>& autoImportPattern() const { return autoImportPattern_; }
    void setAutoImportPattern(std::set<ImportColorPattern> value);
    // Above 0: a limit switched on; the absolute value is the limit. Nothing trims the history by it.
    int historyLimit() const { return historyLimit_; }
    void setHistoryLimit(int value);
    ColorSpaceProfile colorSpaceProfile() const { return colorSpaceProfile_; }
    void setColorSpaceProfile(ColorSpaceProfile value);
    ColorBlindness colorBlindness() const { return colorBlindness_; }
    void setColorBlindness(ColorBlindness value);
    AppTheme appTheme() const { return appTheme_; }
    void setAppTheme(AppTheme value);
    StatusItemStyle statusItemStyle() const { return statusItemStyle_; }
    void setStatusItemStyle(StatusItemStyle value);
    bool displayLastColor() const { return displayLastColor_; }
    void setDisplayLastColor(bool value);
    int pickerSize() const { return pickerSize_; }
    void setPickerSize(int value);
    int pickerZoom() const { return pickerZoom_; }
    void setPickerZoom(int value);
    bool showNameOverlay() const { return showNameOverlay_; }
    void setShowNameOverlay(bool value);
    bool showColorOverlay() const { return showColorOverlay_; }
    void setShowColorOverlay(bool value);
    bool smartFormats() const { return smartFormats_; }
    void setSmartFormats(bool value);
    bool smartProfiles() const { return smartProfiles_; }
    void setSmartProfiles(bool value);
    bool dockVisible() const { return dockVisible_; }
    void setDockVisible(bool value);
    bool dockAllSpaces() const { return dockAllSpaces_; }
    void setDockAllSpaces(bool value);
    SnapshotRefresh snapshotsRefresh() const { return snapshotsRefresh_; }
    void setSnapshotsRefresh(SnapshotRefresh value);

    // Onboarding's flag: a plain boolean in the defaults, default true.
    static bool needsOnboardingDisplay();
    static void setNeedsOnboardingDisplay(bool value);

private:
    Preferences() = default;
    void writeAll();

    bool suppressSideEffects_ = false;
    bool startLogin_ = false;
    bool playSounds_ = true;
    bool autoImport_ = false;
    std::set<ImportColorPattern> autoImportPattern_ = allImportColorPatterns();
    int historyLimit_ = -25;
    ColorSpaceProfile colorSpaceProfile_ = ColorSpaceProfile::native;
    ColorBlindness colorBlindness_ = ColorBlindness::normal;
    AppTheme appTheme_ = AppTheme::automatic;
    StatusItemStyle statusItemStyle_ = StatusItemStyle::extended;
    bool displayLastColor_ = true;
    int pickerSize_ = 180;
    int pickerZoom_ = 8;
    bool showNameOverlay_ = false;
    bool showColorOverlay_ = true;
    bool smartFormats_ = false;
    bool smartProfiles_ = false;
    bool dockVisible_ = true;
    bool dockAllSpaces_ = true;
    SnapshotRefresh snapshotsRefresh_ = SnapshotRefresh::day;
};

}  // namespace kro
