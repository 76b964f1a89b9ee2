#pragma once
// The per-application overrides, one record per application: a smart format names the format copied for
// that application, a smart profile the colour profile sampled under it. Both can be switched off one by one.
#include <memory>
#include <optional>
#include <string>

#include "formats/color/ColorSpaceProfile.h"
#include "platform/Json.h"

namespace kro {

struct SmartFormatItem {
    static constexpr const char* fileName = "smart-formats.json";
    static constexpr const char* resourceName = "SmartFormats.json";
    static constexpr const char* logName = "smart formats";
    static const char* const loadedNotification;
    static const char* const savedNotification;
    static const char* const updatedNotification;
    // The global switch of the preferences.
    static bool switchedOn();

    SmartFormatItem();
    Json toJson() const;
    // Forgiving; a value of a wrong type throws JsonDecodeError.
    static std::shared_ptr<SmartFormatItem> fromJson(const Json& json);
    bool operator==(const SmartFormatItem& other) const = default;

    std::string name;            // the application's display name
    std::string format = "CSS Hex";  // the name of a format of the catalogue
    bool enabled = true;
    std::string createdAt;
    std::optional<std::string> updatedAt;
};

struct SmartProfileItem {
    static constexpr const char* fileName = "smart-profiles.json";
    static constexpr const char* resourceName = "SmartProfiles.json";
    static constexpr const char* logName = "smart profiles";
    static const char* const loadedNotification;
    static const char* const savedNotification;
    static const char* const updatedNotification;
    static bool switchedOn();

    SmartProfileItem();
    Json toJson() const;
    // Forgiving; a value of a wrong type, or a profile text the program does not know, throws JsonDecodeError.
    static std::shared_ptr<SmartProfileItem> fromJson(const Json& json);
    bool operator==(const SmartProfileItem& other) const = default;

    std::string name;
    ColorSpaceProfile profile = ColorSpaceProfile::native;
    bool enabled = true;
    std::string createdAt;
    std::optional<std::string> updatedAt;
};

}  // namespace kro
