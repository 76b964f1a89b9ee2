#include "library/Color.h"

#include <algorithm>
#include <cstdio>
#include <limits>

#include "formats/color/ColorName.h"
#include "library/JsonDecode.h"
#include "library/RecordText.h"
#include "library/Sherlog.h"
#include "library/User.h"
#include "platform/Environment.h"

namespace kro {
namespace {

std::string trimmed(const std::string& text) {
    const char* space = " \t\n\r\v\f";
    const auto first = text.find_first_not_of(space);
    if (first == std::string::npos) return "";
    return text.substr(first, text.find_last_not_of(space) - first + 1);
}

}  // namespace

Color::Color() : uuid(newUUID()), createdAt(dateText(env().clock->now())) {}

std::shared_ptr<Color> Color::make(const ColorValue& value, std::optional<std::string> name) {
    // A colour keeps the numbers it was picked with: an RGB colour is not moved between RGB spaces.
    const ColorValue rgb = value.usingColorSpace(ColorSpace::genericRGB());
    return make(rgb.red(), rgb.green(), rgb.blue(), rgb.alpha(), std::move(name));
}

std::shared_ptr<Color> Color::make(double red, double green, double blue, double alpha,
                                   std::optional<std::string> name) {
    auto color = std::make_shared<Color>();
    color->red = storedFloat(red);
    color->green = storedFloat(green);
    color->blue = storedFloat(blue);
    color->alpha = storedFloat(alpha);
    color->hex = hexText(color->red, color->green, color->blue);
    if (!name) name = ColorName::name(red, green, blue);
    if (name) {
        color->name = name;
        color->originalName = name;
    }
    return color;
}

float Color::storedFloat(double value) {
    constexpr double largest = std::numeric_limits<float>::max();
    return static_cast<float>(std::clamp(value, -largest, largest));
}

std::string Color::hexText(float red, float green, float blue) {
    // Truncated, not rounded: the stored hex has always been made this way.
    auto byte = [](float component) {
        const float scaled = component * 255.0f;
        if (!(scaled > 0.0f)) return 0;
        if (scaled >= 255.0f) return 255;
        return static_cast<int>(scaled);
    };
    char buffer[8];
    std::snprintf(buffer, sizeof buffer, "%02X%02X%02X", byte(red), byte(green), byte(blue));
    return buffer;
}

std::string Color::normalizedGroup(const std::string& group) {
    std::string result;
    size_t start = 0;
    while (start <= group.size()) {
        size_t end = group.find('/', start);
        if (end == std::string::npos) end = group.size();
        const auto part = trimmed(group.substr(start, end - start));
        if (!part.empty()) result += (result.empty() ? "" : " / ") + part;
        start = end + 1;
    }
    return result;
}

Json Color::toJson() const {
    Json json = Json::object();
    json["uuid"] = uuid;
    if (name) json["name"] = *name;
    if (originalName) json["originalName"] = *originalName;
    json["red"] = floatJson(red);
    json["green"] = floatJson(green);
    json["blue"] = floatJson(blue);
    json["alpha"] = floatJson(alpha);
    json["hex"] = hex;
    if (notes) json["notes"] = *notes;
    json["tags"] = tags;
    json["group"] = normalizedGroup(group);
    json["createdAt"] = createdAt;
    if (updatedAt) json["updatedAt"] = *updatedAt;
    return json;
}

void Color::appendJsonText(std::string& out) const {
    using namespace record_text;
    bool first = true;
    out += '{';
    appendKey(out, "uuid", first), appendString(out, uuid);
    if (name) appendKey(out, "name", first), appendString(out, *name);
    if (originalName) appendKey(out, "originalName", first), appendString(out, *originalName);
    appendKey(out, "red", first), appendFloat(out, red);
    appendKey(out, "green", first), appendFloat(out, green);
    appendKey(out, "blue", first), appendFloat(out, blue);
    appendKey(out, "alpha", first), appendFloat(out, alpha);
    appendKey(out, "hex", first), appendString(out, hex);
    if (notes) appendKey(out, "notes", first), appendString(out, *notes);
    appendKey(out, "tags", first), appendStrings(out, tags);
    appendKey(out, "group", first), appendString(out, normalizedGroup(group));
    appendKey(out, "createdAt", first), appendString(out, createdAt);
    if (updatedAt) appendKey(out, "updatedAt", first), appendString(out, *updatedAt);
    out += '}';
}

std::shared_ptr<Color> Color::fromJson(const Json& json) {
    using namespace json_decode;
    const auto& o = object(json, "Color");
    auto color = std::make_shared<Color>();
    if (auto v = text(o, "uuid")) color->uuid = *v;
    if (member(o, "name")) color->name = text(o, "name");
    if (member(o, "originalName")) color->originalName = text(o, "originalName");
    if (auto v = number(o, "red")) color->red = storedFloat(*v);
    if (auto v = number(o, "green")) color->green = storedFloat(*v);
    if (auto v = number(o, "blue")) color->blue = storedFloat(*v);
    if (auto v = number(o, "alpha")) color->alpha = storedFloat(*v);
    if (auto v = text(o, "hex")) color->hex = *v;
    color->notes = text(o, "notes");
    if (auto v = texts(o, "tags")) color->tags = std::move(*v);
    if (auto v = text(o, "group")) color->group = *v;
    if (auto v = text(o, "createdAt")) color->createdAt = *v;
    color->updatedAt = text(o, "updatedAt");
    return color;
}

std::shared_ptr<Color> Color::copy() const {
    auto color = std::make_shared<Color>(*this);
    color->uuid = newUUID();
    return color;
}

ColorValue Color::colorValue() const {
    return ColorValue::withComponents(ColorSpace::genericRGB(), {red, green, blue}, alpha);
}

std::string Color::logDescription() const {
    return "Color " + name.value_or("<null>") + " updatedAt: " + updatedAt.value_or("<null>");
}

void Color::trigger(bool undo, bool save, bool notify, bool cloud, const char* file, const char* function, int line) {
    updatedAt = dateText(env().clock->now());
    Sherlog::print(logDescription(), SherlogLevel::debug, "Kro/Color+Update",
                   "trigger(undo:save:notify:cloud:file:function:line:)", __LINE__);
    const auto& user = User::shared();
    user->moveUpdatedAt();
    user->runPipelineAfterStamp(undo, save, notify, cloud, file, function, line);
}

}  // namespace kro
