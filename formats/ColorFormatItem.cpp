#include "formats/ColorFormatItem.h"

#include <algorithm>

#include "formats/ColorFormatParse.h"
#include "formats/ColorFormats.h"
#include "formats/UnicodeCase.h"
#include "library/JsonDecode.h"
#include "library/Notifications.h"
#include "platform/Environment.h"

namespace kro {

const std::string ColorFormatItem::defaultTemplate =
    "{\n  \"function\" : \"lower\",\n  \"x\" : \"#hex[red]hex[green]hex[blue]\"\n}";

std::string applyOptions(std::string text, const ColorFormatOptions& options) {
    for (const auto& [key, on] : options) {
        if (key == ColorFormatOption::allCaps) {
            text = on ? upperCased(text) : lowerCased(text);
        } else if (key == ColorFormatOption::showPrefix) {
            const bool hasPrefix = !text.empty() && text.front() == '#';
            if (on && !hasPrefix) text.insert(text.begin(), '#');
            if (!on && hasPrefix) text.erase(text.begin());
        } else if (key == ColorFormatOption::removeWhiteSpaces && on) {
            // Only the blank: tabs and line breaks are layout a template may want.
            std::erase(text, ' ');
        }
    }
    return text;
}

ColorFormatItem::ColorFormatItem()
    : uuid(newUUID()),
      menuFormat(defaultTemplate),
      clipboardFormat(defaultTemplate),
      pickerFormat(defaultTemplate),
      createdAt(dateText(env().clock->now())) {}

std::string ColorFormatItem::text(const ColorValue& color, const std::string& format) const {
    return applyOptions(ColorFormatParse::parse(color, format), options);
}

void ColorFormatItem::didChange() {
    const auto now = dateText(env().clock->now());
    if (updatedAt != now) updatedAt = now;
    auto& catalogue = ColorFormats::shared();
    catalogue.stamp();
    catalogue.save();
    env().notifications->post(Notifications::colorFormatUpdated);
}

Json ColorFormatItem::toJson() const {
    Json json;
    json["uuid"] = uuid;
    json["name"] = name;
    json["notes"] = notes;
    json["image"] = image;
    Json optionsJson = Json::object();
    for (const auto& [key, on] : options) optionsJson[key] = on;
    json["options"] = std::move(optionsJson);
    json["menuFormat"] = menuFormat;
    json["clipboardFormat"] = clipboardFormat;
    json["pickerFormat"] = pickerFormat;
    json["build"] = build;
    json["version"] = version;
    json["custom"] = custom;
    json["selected"] = selected;
    json["createdAt"] = createdAt;
    if (updatedAt) json["updatedAt"] = *updatedAt;
    return json;
}

std::shared_ptr<ColorFormatItem> ColorFormatItem::fromJson(const Json& json) {
    namespace decode = json_decode;
    const auto& object = decode::object(json, "a color format");
    auto item = std::make_shared<ColorFormatItem>();
    // A format read without templates shows nothing rather than the new-format template.
    item->menuFormat.clear();
    item->clipboardFormat.clear();
    item->pickerFormat.clear();
    if (auto value = decode::text(object, "uuid")) item->uuid = *value;
    if (auto value = decode::text(object, "name")) item->name = *value;
    if (auto value = decode::text(object, "notes")) item->notes = *value;
    if (auto value = decode::text(object, "image")) item->image = *value;
    if (const Json* options = decode::member(object, "options")) {
        for (const auto& [key, value] : decode::object(*options, "format options").items()) {
            if (!value.is_boolean()) throw JsonDecodeError("format option \"" + key + "\" is not a boolean");
            item->options.emplace_back(key, value.get<bool>());
        }
    }
    if (auto value = decode::text(object, "menuFormat")) item->menuFormat = *value;
    if (auto value = decode::text(object, "clipboardFormat")) item->clipboardFormat = *value;
    if (auto value = decode::text(object, "pickerFormat")) item->pickerFormat = *value;
    if (auto value = decode::integer(object, "build")) item->build = *value;
    if (auto value = decode::text(object, "version")) item->version = *value;
    if (auto value = decode::boolean(object, "custom")) item->custom = *value;
    if (auto value = decode::boolean(object, "selected")) item->selected = *value;
    if (auto value = decode::text(object, "createdAt")) item->createdAt = *value;
    item->updatedAt = decode::text(object, "updatedAt");
    return item;
}

bool sameFormats(const std::vector<ColorFormatItemRef>& a, const std::vector<ColorFormatItemRef>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const ColorFormatItemRef& x, const ColorFormatItemRef& y) { return *x == *y; });
}

}  // namespace kro
