#include "library/Settings.h"

#include <memory>

#include "library/DefaultsKeys.h"
#include "library/DefaultsValue.h"
#include "library/Notifications.h"
#include "platform/Environment.h"
#include "platform/CaseText.h"

namespace kro {

std::string text(ColorFormatSort sort) {
    switch (sort) {
        case ColorFormatSort::dateASC: return "dateASC";
        case ColorFormatSort::dateDESC: return "dateDESC";
        case ColorFormatSort::nameASC: return "nameASC";
        case ColorFormatSort::nameDESC: return "nameDESC";
    }
    return "dateASC";
}

std::optional<ColorFormatSort> colorFormatSortFromText(const std::string& value) {
    return caseFromText<ColorFormatSort>(
        value, {ColorFormatSort::dateASC, ColorFormatSort::dateDESC, ColorFormatSort::nameASC, ColorFormatSort::nameDESC});
}

namespace {

constexpr const char* kWriter = "saveSetting(_:forKey:logName:notifications:encoder:)";
constexpr const char* kReader = "loadSetting(forKey:logName:level:decoder:assign:)";

std::optional<std::vector<double>> numbers(const Json& json, size_t count) {
    if (!json.is_array() || json.size() != count) return std::nullopt;
    std::vector<double> values;
    for (const auto& element : json) {
        if (!element.is_number()) return std::nullopt;
        values.push_back(element.get<double>());
    }
    return values;
}

// Sizes as [width, height] and rectangles as [[x, y], [width, height]], as the platform's encoder writes them.
struct SizeCodec {
    static Json encode(const SettingsSize& size) { return Json::array({size.width, size.height}); }
    static bool decode(const Json& json, SettingsSize& out) {
        auto values = numbers(json, 2);
        if (!values) return false;
        out = SettingsSize{(*values)[0], (*values)[1]};
        return true;
    }
};

struct FrameCodec {
    static Json encode(const SettingsFrame& frame) {
        Json json = Json::object();
        json["frame"] = Json::array({Json::array({frame.frame.x, frame.frame.y}),
                                     Json::array({frame.frame.width, frame.frame.height})});
        json["position"] = frame.position;
        return json;
    }
    static bool decode(const Json& json, SettingsFrame& out) {
        if (!json.is_object() || !json.contains("frame") || !json["frame"].is_array() || json["frame"].size() != 2) {
            return false;
        }
        auto origin = numbers(json["frame"][0], 2);
        auto size = numbers(json["frame"][1], 2);
        if (!origin || !size) return false;
        SettingsFrame frame{{(*origin)[0], (*origin)[1], (*size)[0], (*size)[1]}, ""};
        if (json.contains("position")) {
            if (!json["position"].is_string()) return false;
            frame.position = json["position"].get<std::string>();
        }
        out = std::move(frame);
        return true;
    }
};

using BoolCodec = DefaultsCodec<bool>;
using OptionalFrameCodec = DefaultsCodec<std::optional<SettingsFrame>>;
using OptionalSizeCodec = DefaultsCodec<std::optional<SettingsSize>>;
using OptionalTextCodec = DefaultsCodec<std::optional<std::string>>;
using ColorSortCodec = DefaultsEnumCodec<PaletteColorSort, paletteColorSortFromText>;
using FormatSortCodec = DefaultsEnumCodec<ColorFormatSort, colorFormatSortFromText>;

std::unique_ptr<Settings>& instance() {
    static std::unique_ptr<Settings> settings;
    return settings;
}

}  // namespace

template <>
struct DefaultsCodec<SettingsFrame> : FrameCodec {};
template <>
struct DefaultsCodec<SettingsSize> : SizeCodec {};

#define KRO_SETTINGS_FIELDS(visit)                                                                  \
    visit(BoolCodec, listView_, DefaultsKeys::listView, "listView");                                \
    visit(OptionalFrameCodec, mainFrame_, DefaultsKeys::mainFrame, "mainFrame");                    \
    visit(OptionalSizeCodec, menuSize_, DefaultsKeys::menuSize, "menuSize");                        \
    visit(OptionalTextCodec, colorPanelFormat_, DefaultsKeys::colorPanelFormat, "colorPanelFormat"); \
    visit(ColorSortCodec, colorSort_, DefaultsKeys::colorSort, "colorSort");                        \
    visit(FormatSortCodec, formatSort_, DefaultsKeys::formatSort, "formatSort")

Settings& Settings::shared() {
    auto& settings = instance();
    if (!settings) settings.reset(new Settings());
    return *settings;
}

void Settings::resetSharedForTesting() { instance().reset(new Settings()); }

void Settings::load() {
#define KRO_READ(Codec, field, key, logName) readDefaultsField<Codec>(field, key, logName, SherlogLevel::debug, kReader)
    KRO_SETTINGS_FIELDS(KRO_READ);
#undef KRO_READ
}

void Settings::resetToDefaults() {
    *this = Settings();
#define KRO_WRITE(Codec, field, key, logName) env().defaults->setData(key, compactText(Codec::encode(field)))
    KRO_SETTINGS_FIELDS(KRO_WRITE);
#undef KRO_WRITE
}

#define KRO_SETTER(Name, Codec, field, key, logName)                                                          \
    void Settings::Name(decltype(field) value) {                                                              \
        writeDefaultsField<Codec>(field, std::move(value), suppressSideEffects_, key, logName,                \
                                  {Notifications::settingsUpdated}, kWriter);                                 \
    }
KRO_SETTER(setListView, BoolCodec, listView_, DefaultsKeys::listView, "listView")
KRO_SETTER(setMainFrame, OptionalFrameCodec, mainFrame_, DefaultsKeys::mainFrame, "mainFrame")
KRO_SETTER(setMenuSize, OptionalSizeCodec, menuSize_, DefaultsKeys::menuSize, "menuSize")
KRO_SETTER(setColorPanelFormat, OptionalTextCodec, colorPanelFormat_, DefaultsKeys::colorPanelFormat,
           "colorPanelFormat")
KRO_SETTER(setColorSort, ColorSortCodec, colorSort_, DefaultsKeys::colorSort, "colorSort")
KRO_SETTER(setFormatSort, FormatSortCodec, formatSort_, DefaultsKeys::formatSort, "formatSort")
#undef KRO_SETTER

}  // namespace kro
