#include "formats/ColorFormats.h"

#include <algorithm>
#include <set>

#include "formats/ColorFormatUndo.h"
#include "library/JsonDecode.h"
#include "library/Notifications.h"
#include "library/Sherlog.h"
#include "platform/Resources.h"

namespace kro {

namespace {
std::unique_ptr<ColorFormats>& sharedInstance() {
    static std::unique_ptr<ColorFormats> instance;
    return instance;
}
}  // namespace

ColorFormats::ColorFormats() : createdAt(dateText(env().clock->now())) {}

ColorFormats& ColorFormats::shared() {
    auto& instance = sharedInstance();
    if (!instance) instance = std::make_unique<ColorFormats>();
    return *instance;
}

void ColorFormats::resetShared() {
    sharedInstance() = std::make_unique<ColorFormats>();
    store().forget();
}

const Store& ColorFormats::store() {
    static const Store store(StoreFile{"color-formats.json", Notifications::colorFormatLoaded,
                                       Notifications::colorFormatSaved});
    return store;
}

Json ColorFormats::toJson() const {
    Json json;
    json["selectedFormatName"] = selectedFormatName;
    json["selectedFormatImage"] = selectedFormatImage;
    json["formats"] = Json::array();
    for (const auto& item : formats) json["formats"].push_back(item->toJson());
    json["groupFormats"] = Json::array();
    for (const auto& group : groupFormats) json["groupFormats"].push_back(group->toJson());
    json["createdAt"] = createdAt;
    if (updatedAt) json["updatedAt"] = *updatedAt;
    return json;
}

std::shared_ptr<ColorFormats> ColorFormats::fromJson(const Json& json) {
    using namespace json_decode;
    const auto& object = json_decode::object(json, "a format catalogue");
    auto catalogue = std::make_shared<ColorFormats>();
    if (auto value = text(object, "selectedFormatName")) catalogue->selectedFormatName = *value;
    if (auto value = text(object, "selectedFormatImage")) catalogue->selectedFormatImage = *value;
    if (const Json* list = member(object, "formats")) {
        if (!list->is_array()) throw JsonDecodeError("\"formats\" is not an array");
        for (const auto& item : *list) catalogue->formats.push_back(ColorFormatItem::fromJson(item));
    }
    if (const Json* list = member(object, "groupFormats")) {
        if (!list->is_array()) throw JsonDecodeError("\"groupFormats\" is not an array");
        for (const auto& group : *list) catalogue->groupFormats.push_back(ColorFormatGroup::fromJson(group));
    }
    if (auto value = text(object, "createdAt")) catalogue->createdAt = *value;
    catalogue->updatedAt = text(object, "updatedAt");
    return catalogue;
}

std::shared_ptr<ColorFormats> ColorFormats::shipped() {
    const auto bytes = resource(shippedResource);
    if (!bytes) {
        SHERLOG("The shipped format catalogue is missing", SherlogLevel::error);
        return nullptr;
    }
    const Json json = Json::parse(*bytes, nullptr, false);
    if (json.is_discarded()) {
        SHERLOG("The shipped format catalogue is not JSON", SherlogLevel::error);
        return nullptr;
    }
    try {
        return fromJson(json);
    } catch (const JsonDecodeError& error) {
        SHERLOG(std::string("The shipped format catalogue does not decode: ") + error.what(), SherlogLevel::error);
        return nullptr;
    }
}

ColorFormatItemRef ColorFormats::format(const std::string& name) const {
    // A stable sort by name followed by the first exact match picks, of equal names, the one stored first:
    // the same format a plain walk of the stored order finds.
    for (const auto& item : formats) {
        if (item->name == name) return item;
    }
    return nullptr;
}

std::string ColorFormats::textOf(const ColorValue& color, const std::string& name,
                                 std::string ColorFormatItem::*which) const {
    const auto item = format(name);
    return item ? item->text(color, (*item).*which) : std::string();
}

std::string ColorFormats::clipboardString(const ColorValue& color, const std::optional<std::string>& formatName) const {
    return textOf(color, formatName.value_or(selectedFormatName), &ColorFormatItem::clipboardFormat);
}

std::string ColorFormats::pickerString(const ColorValue& color) const {
    return textOf(color, selectedFormatName, &ColorFormatItem::pickerFormat);
}

std::string ColorFormats::menuString(const ColorValue& color) const {
    return textOf(color, selectedFormatName, &ColorFormatItem::menuFormat);
}

std::string ColorFormats::uniqueName(const std::string& wanted) const {
    std::set<std::string> names;
    for (const auto& item : formats) names.insert(item->name);
    if (!names.contains(wanted)) return wanted;
    for (unsigned long n = 1;; ++n) {
        auto candidate = wanted + " (" + std::to_string(n) + ")";
        if (!names.contains(candidate)) return candidate;
    }
}

void ColorFormats::add(const ColorFormatItemRef& item) {
    item->name = uniqueName(item->name);
    item->uuid = newUUID();
    item->custom = true;
    item->selected = true;
    item->image = "z-custom";
    item->menuFormat = ColorFormatItem::defaultTemplate;
    item->clipboardFormat = ColorFormatItem::defaultTemplate;
    item->pickerFormat = ColorFormatItem::defaultTemplate;
    formats.push_back(item);
    stamp();
    save();
    postUpdated();
}

void ColorFormats::deleteFormats(const std::vector<ColorFormatItemRef>& items) {
    bool changed = false;
    for (const auto& item : items) {
        const auto found = std::find(formats.begin(), formats.end(), item);
        if (found == formats.end() || !(*found)->custom) continue;
        formats.erase(found);
        changed = true;
        for (const auto& group : groupFormats) {
            if (std::erase(group->group, item->name) > 0) group->stamp();
        }
        if (item->name == selectedFormatName) {
            if (selectedFormatName != defaultFormatName) selectedFormatName = defaultFormatName;
            if (selectedFormatImage != defaultFormatImage) selectedFormatImage = defaultFormatImage;
        }
    }
    if (changed) {
        stamp();
        save();
    }
    postUpdated();
}

void ColorFormats::rename(const ColorFormatItemRef& item, const std::string& wanted) {
    if (!item || wanted.empty() || item->name == wanted) return;
    const std::string old = item->name;
    // The format's own name does not count against the new one.
    item->name.clear();
    const std::string name = uniqueName(wanted);
    item->name = old;
    if (selectedFormatName == old) selectedFormatName = name;
    item->change(&ColorFormatItem::name, name);
}

void ColorFormats::move(size_t from, size_t to) {
    if (from >= formats.size() || to >= formats.size() || from == to) return;
    auto item = formats[from];
    formats.erase(formats.begin() + long(from));
    formats.insert(formats.begin() + long(to), std::move(item));
    stamp();
    save();
    postUpdated();
}

void ColorFormats::sortFormats(ColorFormatSort sort) {
    auto sorted = formats;
    std::stable_sort(sorted.begin(), sorted.end(), [sort](const ColorFormatItemRef& a, const ColorFormatItemRef& b) {
        switch (sort) {
            case ColorFormatSort::dateASC: return a->createdAt < b->createdAt;
            case ColorFormatSort::dateDESC: return a->createdAt > b->createdAt;
            case ColorFormatSort::nameASC: return a->name < b->name;
            case ColorFormatSort::nameDESC: return a->name > b->name;
        }
        return false;
    });
    if (sorted == formats) return;
    formats = std::move(sorted);
    stamp();
    save();
    postUpdated();
}

void ColorFormats::select(const ColorFormatItem& item) {
    selectedFormatName = item.name;
    selectedFormatImage = item.image;
    stamp();
    save();
    postUpdated();
}

void ColorFormats::load(const StoreCompletion& completion) {
    store().load([](const Json& json) { return fromJson(json); },
                 [this](const std::shared_ptr<ColorFormats>& stored, bool migrating) {
                     // The file already holds what was read: only a catalogue from an older version is written.
                     if (copyFields(*stored) && migrating) {
                         stamp();
                         save();
                     }
                 },
                 [this, completion](bool success, const std::optional<std::string>& lastError) {
                     if (!success) useShipped(lastError.has_value());
                     if (completion) completion(success, lastError);
                 });
}

void ColorFormats::useShipped(bool storedFileIsDamaged) {
    if (!storedFileIsDamaged) {
        resetToShipped();
        return;
    }
    // A damaged catalogue stays on disk, untouched, until the user's next change puts it aside.
    if (const auto catalogue = shipped()) copyFields(*catalogue);
}

bool ColorFormats::save() const { return store().save(toJson()); }

bool ColorFormats::resetToShipped() {
    const auto catalogue = shipped();
    if (!catalogue) return false;
    copyFields(*catalogue);
    stamp();
    ColorFormatUndo::shared().save(*this, 0);
    save();
    postUpdated();
    return true;
}

void ColorFormats::fixUUIDS() {
    std::set<std::string> seen;
    bool changed = false;
    for (const auto& item : formats) {
        if (!seen.insert(item->uuid).second) {
            item->uuid = newUUID();
            seen.insert(item->uuid);
            changed = true;
            SHERLOG("Update Format UUID: " + item->uuid, SherlogLevel::info);
        }
    }
    if (changed) {
        stamp();
        save();
    }
}

bool ColorFormats::copyFields(const ColorFormats& other) {
    bool changed = false;
    auto copy = [&changed](auto& field, const auto& value, auto same) {
        if (same(field, value)) return;
        field = value;
        changed = true;
    };
    auto equal = [](const auto& a, const auto& b) { return a == b; };
    copy(selectedFormatName, other.selectedFormatName, equal);
    copy(selectedFormatImage, other.selectedFormatImage, equal);
    copy(formats, other.formats, sameFormats);
    copy(groupFormats, other.groupFormats, sameGroups);
    copy(createdAt, other.createdAt, equal);
    copy(updatedAt, other.updatedAt, equal);
    return changed;
}

void ColorFormats::stamp() {
    const auto now = dateText(env().clock->now());
    if (updatedAt == now) return;
    updatedAt = now;
    SHERLOG("color formats updated: [" + now + "]", SherlogLevel::debug);
}

void ColorFormats::postUpdated() const { env().notifications->post(Notifications::colorFormatUpdated); }

}  // namespace kro
