#include "formats/ColorFormatGroup.h"

#include <algorithm>

#include "library/JsonDecode.h"
#include "library/Sherlog.h"
#include "platform/Environment.h"

namespace kro {

ColorFormatGroup::ColorFormatGroup() : createdAt(dateText(env().clock->now())) {}

void ColorFormatGroup::stamp() {
    const auto now = dateText(env().clock->now());
    if (updatedAt == now) return;
    updatedAt = now;
    SHERLOG("color format group updated: [" + name + "] " + now, SherlogLevel::debug);
}

Json ColorFormatGroup::toJson() const {
    Json json;
    json["name"] = name;
    json["image"] = image;
    json["group"] = group;
    json["createdAt"] = createdAt;
    if (updatedAt) json["updatedAt"] = *updatedAt;
    return json;
}

std::shared_ptr<ColorFormatGroup> ColorFormatGroup::fromJson(const Json& json) {
    using namespace json_decode;
    const auto& object = json_decode::object(json, "a format group");
    auto group = std::make_shared<ColorFormatGroup>();
    if (auto value = text(object, "name")) group->name = *value;
    if (auto value = text(object, "image")) group->image = *value;
    if (auto value = texts(object, "group")) group->group = *value;
    if (auto value = text(object, "createdAt")) group->createdAt = *value;
    group->updatedAt = text(object, "updatedAt");
    return group;
}

bool sameGroups(const std::vector<ColorFormatGroupRef>& a, const std::vector<ColorFormatGroupRef>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const ColorFormatGroupRef& x, const ColorFormatGroupRef& y) { return *x == *y; });
}

}  // namespace kro
