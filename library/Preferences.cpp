#include "library/Preferences.h"

#include "library/DefaultsKeys.h"
#include "library/DefaultsValue.h"
#include "library/DockData.h"
#include "library/LoginItem.h"
#include "library/Notifications.h"
#include "library/Settings.h"
#include "platform/Environment.h"
#include "platform/CaseText.h"

namespace kro {

std::string text(AppTheme theme) {
    switch (theme) {
        case AppTheme::light: return "light";
        case AppTheme::dark: return "dark";
        case AppTheme::automatic: return "auto";
    }
    return "auto";
}

std::optional<AppTheme> appThemeFromText(const std::string& value) {
    return caseFromText<AppTheme>(value, {AppTheme::light, AppTheme::dark, AppTheme::automatic});
}

std::string text(StatusItemStyle style) { return style == StatusItemStyle::single ? "single" : "extended"; }

std::optional<StatusItemStyle> statusItemStyleFromText(const std::string& value) {
    if (value == "single") return StatusItemStyle::single;
    if (value == "extended") return StatusItemStyle::extended;
    return std::nullopt;
}

std::string text(SnapshotRefresh refresh) {
    switch (refresh) {
        case SnapshotRefresh::never: return "never";
        case SnapshotRefresh::minute: return "minute";
        case SnapshotRefresh::hour: return "hour";
        case SnapshotRefresh::day: return "day";
    }
    return "day";
}

std::optional<SnapshotRefresh> snapshotRefreshFromText(const std::string& value) {
    return caseFromText<SnapshotRefresh>(
        value, {SnapshotRefresh::never, SnapshotRefresh::minute, SnapshotRefresh::hour, SnapshotRefresh::day});
}

namespace {

constexpr const char* kWriter = "savePref(_:forKey:logName:notifications:encoder:)";
constexpr const char* kReader = "loadPref(forKey:logName:level:decoder:assign:)";

using BoolCodec = DefaultsCodec<bool>;
using IntCodec = DefaultsCodec<int>;
using ProfileCodec = DefaultsEnumCodec<ColorSpaceProfile, colorSpaceProfileFromText>;
using BlindnessCodec = DefaultsEnumCodec<ColorBlindness, colorBlindnessFromText>;
using ThemeCodec = DefaultsEnumCodec<AppTheme, appThemeFromText>;
using StyleCodec = DefaultsEnumCodec<StatusItemStyle, statusItemStyleFromText>;
using RefreshCodec = DefaultsEnumCodec<SnapshotRefresh, snapshotRefreshFromText>;

// The set of patterns as an array of their texts, in the order of the cases. An unknown text fails it.
struct PatternsCodec {
    static Json encode(const std::set<ImportColorPattern>& patterns) {
        Json json = Json::array();
        for (auto pattern : patterns) json.push_back(text(pattern));
        return json;
    }
    static bool decode(const Json& json, std::set<ImportColorPattern>& out) {
        if (!json.is_array()) return false;
        std::set<ImportColorPattern> patterns;
        for (const auto& element : json) {
            if (!element.is_string()) return false;
            auto pattern = importColorPatternFromText(element.get<std::string>());
            if (!pattern) return false;
            patterns.insert(*pattern);
        }
        out = std::move(patterns);
        return true;
    }
};

}  // namespace

// Every stored field with its codec, key and log name, in the order of declaration.
#define KRO_PREFERENCE_FIELDS(visit)                                                              \
    visit(BoolCodec, playSounds_, DefaultsKeys::playSounds, "playSounds");                        \
    visit(BoolCodec, autoImport_, DefaultsKeys::autoImport, "autoImport");                        \
    visit(PatternsCodec, autoImportPattern_, DefaultsKeys::autoImportPattern, "autoImportPattern"); \
    visit(IntCodec, historyLimit_, DefaultsKeys::historyLimit, "historyLimit");                   \
    visit(ProfileCodec, colorSpaceProfile_, DefaultsKeys::colorSpaceProfile, "colorSpaceProfile"); \
    visit(BlindnessCodec, colorBlindness_, DefaultsKeys::colorBlindness, "colorBlindness");       \
    visit(ThemeCodec, appTheme_, DefaultsKeys::appTheme, "appTheme");                             \
    visit(StyleCodec, statusItemStyle_, DefaultsKeys::statusItemStyle, "statusItemStyle");        \
    visit(BoolCodec, displayLastColor_, DefaultsKeys::displayLastColor, "displayLastColor");      \
    visit(IntCodec, pickerSize_, DefaultsKeys::pickerSize, "pickerSize");                         \
    visit(IntCodec, pickerZoom_, DefaultsKeys::pickerZoom, "pickerZoom");                         \
    visit(BoolCodec, showNameOverlay_, DefaultsKeys::showNameOverlay, "showNameOverlay");         \
    visit(BoolCodec, showColorOverlay_, DefaultsKeys::showColorOverlay, "showColorOverlay");      \
    visit(BoolCodec, smartFormats_, DefaultsKeys::smartFormats, "smartFormats");                  \
    visit(BoolCodec, smartProfiles_, DefaultsKeys::smartProfiles, "smartProfiles");               \
    visit(BoolCodec, dockVisible_, DefaultsKeys::dockVisible, "dockVisible");                     \
    visit(BoolCodec, dockAllSpaces_, DefaultsKeys::dockAllSpaces, "dockAllSpaces");               \
    visit(RefreshCodec, snapshotsRefresh_, DefaultsKeys::snapshotsRefresh, "snapshotsRefresh")

namespace {
std::unique_ptr<Preferences>& instance() {
    static std::unique_ptr<Preferences> preferences;
    return preferences;
}
}  // namespace

Preferences& Preferences::shared() {
    auto& preferences = instance();
    if (!preferences) preferences.reset(new Preferences());
    return *preferences;
}

void Preferences::resetSharedForTesting() { instance().reset(new Preferences()); }

void Preferences::load() {
    startLogin_ = LoginItem::isEnabled();
#define KRO_READ(Codec, field, key, logName) readDefaultsField<Codec>(field, key, logName, SherlogLevel::debug, kReader)
    KRO_PREFERENCE_FIELDS(KRO_READ);
#undef KRO_READ
}

void Preferences::writeAll() {
#define KRO_WRITE(Codec, field, key, logName) env().defaults->setData(key, compactText(Codec::encode(field)))
    KRO_PREFERENCE_FIELDS(KRO_WRITE);
#undef KRO_WRITE
}

void Preferences::reset() {
    auto& settings = Settings::shared();
    auto& dock = DockData::shared();
    suppressSideEffects_ = true;
    *this = Preferences();
    suppressSideEffects_ = true;
    writeAll();
    settings.resetToDefaults();
    dock.resetToDefaults();
    LoginItem::setEnabled(false);
    startLogin_ = LoginItem::isEnabled();
    suppressSideEffects_ = false;
    Sherlog::print("reset preferences, settings and dock data", SherlogLevel::debug, "Kro/Preferences", "reset()",
                   __LINE__);
    for (const char* name : {Notifications::preferencesUpdated, Notifications::appThemeUpdated,
                             Notifications::statusUpdated, Notifications::colorBlindnessUpdated,
                             Notifications::dockUpdated, Notifications::settingsUpdated}) {
        env().notifications->post(name);
    }
}

void Preferences::setStartLogin(bool value) {
    startLogin_ = value;
    if (suppressSideEffects_) return;
    if (!LoginItem::setEnabled(value)) {
        Sherlog::print("the login item could not be changed", SherlogLevel::error, "Kro/Preferences", "startLogin",
                       __LINE__);
    }
    startLogin_ = LoginItem::isEnabled();
    Sherlog::print(std::string("set startLogin: ") + (startLogin_ ? "true" : "false"), SherlogLevel::debug,
                   "Kro/Preferences+Helper", kWriter, __LINE__);
    env().notifications->post(Notifications::preferencesUpdated);
}

#define KRO_SETTER(Name, Codec, field, key, logName, ...)                                                      \
    void Preferences::Name(decltype(field) value) {                                                            \
        writeDefaultsField<Codec>(field, std::move(value), suppressSideEffects_, key, logName, {__VA_ARGS__}, \
                                  kWriter);                                                                    \
    }

using namespace Notifications;
KRO_SETTER(setPlaySounds, BoolCodec, playSounds_, DefaultsKeys::playSounds, "playSounds", preferencesUpdated)
KRO_SETTER(setAutoImport, BoolCodec, autoImport_, DefaultsKeys::autoImport, "autoImport", preferencesUpdated,
           autoImportUpdated)
KRO_SETTER(setAutoImportPattern, PatternsCodec, autoImportPattern_, DefaultsKeys::autoImportPattern,
           "autoImportPattern", preferencesUpdated, autoImportUpdated)
KRO_SETTER(setHistoryLimit, IntCodec, historyLimit_, DefaultsKeys::historyLimit, "historyLimit", preferencesUpdated)
KRO_SETTER(setColorSpaceProfile, ProfileCodec, colorSpaceProfile_, DefaultsKeys::colorSpaceProfile,
           "colorSpaceProfile", preferencesUpdated)
KRO_SETTER(setColorBlindness, BlindnessCodec, colorBlindness_, DefaultsKeys::colorBlindness, "colorBlindness",
           preferencesUpdated, colorBlindnessUpdated)
KRO_SETTER(setAppTheme, ThemeCodec, appTheme_, DefaultsKeys::appTheme, "appTheme", appThemeUpdated,
           preferencesUpdated)
KRO_SETTER(setStatusItemStyle, StyleCodec, statusItemStyle_, DefaultsKeys::statusItemStyle, "statusItemStyle",
           statusUpdated, preferencesUpdated)
KRO_SETTER(setDisplayLastColor, BoolCodec, displayLastColor_, DefaultsKeys::displayLastColor, "displayLastColor",
           preferencesUpdated)
KRO_SETTER(setPickerSize, IntCodec, pickerSize_, DefaultsKeys::pickerSize, "pickerSize", preferencesUpdated)
KRO_SETTER(setPickerZoom, IntCodec, pickerZoom_, DefaultsKeys::pickerZoom, "pickerZoom", preferencesUpdated)
KRO_SETTER(setShowNameOverlay, BoolCodec, showNameOverlay_, DefaultsKeys::showNameOverlay, "showNameOverlay",
           preferencesUpdated)
KRO_SETTER(setShowColorOverlay, BoolCodec, showColorOverlay_, DefaultsKeys::showColorOverlay, "showColorOverlay",
           preferencesUpdated)
KRO_SETTER(setSmartFormats, BoolCodec, smartFormats_, DefaultsKeys::smartFormats, "smartFormats", preferencesUpdated,
           smartFormatsUpdated)
KRO_SETTER(setSmartProfiles, BoolCodec, smartProfiles_, DefaultsKeys::smartProfiles, "smartProfiles",
           preferencesUpdated, smartProfilesUpdated)
KRO_SETTER(setDockVisible, BoolCodec, dockVisible_, DefaultsKeys::dockVisible, "dockVisible", preferencesUpdated,
           dockUpdated)
KRO_SETTER(setDockAllSpaces, BoolCodec, dockAllSpaces_, DefaultsKeys::dockAllSpaces, "dockAllSpaces",
           preferencesUpdated, dockUpdated)
KRO_SETTER(setSnapshotsRefresh, RefreshCodec, snapshotsRefresh_, DefaultsKeys::snapshotsRefresh, "snapshotsRefresh",
           preferencesUpdated)
#undef KRO_SETTER

bool Preferences::needsOnboardingDisplay() {
    return env().defaults->boolean(DefaultsKeys::onboardingNeedsDisplay).value_or(true);
}

void Preferences::setNeedsOnboardingDisplay(bool value) {
    env().defaults->setBoolean(DefaultsKeys::onboardingNeedsDisplay, value);
}

}  // namespace kro
