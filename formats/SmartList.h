#pragma once
// A list of per-application overrides keyed by the application's identifier (its desktop-file id, such as
// "org.inkscape.Inkscape"). Smart formats and smart profiles are both this list, told apart by their item.
// Stored as the item's file; with no stored file, the shipped resource is the list.
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "library/JsonDecode.h"
#include "library/Sherlog.h"
#include "library/Store.h"
#include "platform/Resources.h"

namespace kro {

template <class Item>
class SmartList {
public:
    using ItemRef = std::shared_ptr<Item>;

    SmartList() : createdAt(dateText(env().clock->now())) {}

    static SmartList& shared() {
        auto& instance = sharedInstance();
        if (!instance) instance = std::make_unique<SmartList>();
        return *instance;
    }
    // Puts a fresh, empty list in place of the shared one (tests, full reset).
    static void resetShared() {
        sharedInstance() = std::make_unique<SmartList>();
        store().forget();
    }

    static const Store& store() {
        static const Store store(StoreFile{Item::fileName, Item::loadedNotification, Item::savedNotification});
        return store;
    }

    Json toJson() const {
        Json json;
        json["items"] = Json::object();
        for (const auto& [identifier, item] : items) json["items"][identifier] = item->toJson();
        json["createdAt"] = createdAt;
        if (updatedAt) json["updatedAt"] = *updatedAt;
        return json;
    }

    // Forgiving: absent keys take defaults; a value of a wrong type throws JsonDecodeError.
    static std::shared_ptr<SmartList> fromJson(const Json& json) {
        const auto& object = json_decode::object(json, Item::logName);
        auto list = std::make_shared<SmartList>();
        if (const Json* map = json_decode::member(object, "items")) {
            for (const auto& [identifier, item] : json_decode::object(*map, "items").items()) {
                list->items[identifier] = Item::fromJson(item);
            }
        }
        if (auto value = json_decode::text(object, "createdAt")) list->createdAt = *value;
        list->updatedAt = json_decode::text(object, "updatedAt");
        return list;
    }

    // The item of exactly this identifier, whether or not it applies.
    ItemRef item(const std::string& bundleIdentifier) const {
        const auto found = items.find(bundleIdentifier);
        return found == items.end() ? nullptr : found->second;
    }

    // The item that applies to the application: there is one, it is enabled, and the global switch is on.
    ItemRef itemInForce(const std::string& bundleIdentifier) const {
        if (!Item::switchedOn()) return nullptr;
        auto found = item(bundleIdentifier);
        return found && found->enabled ? found : nullptr;
    }

    // Adds or replaces the application's item.
    void add(const std::string& bundleIdentifier, ItemRef newItem) {
        items[bundleIdentifier] = std::move(newItem);
        changed();
    }

    void remove(const std::string& bundleIdentifier) {
        if (items.erase(bundleIdentifier) > 0) changed();
    }

    // Changes the application's item in place; nothing when there is none.
    void edit(const std::string& bundleIdentifier, const std::function<void(Item&)>& change) {
        const auto found = item(bundleIdentifier);
        if (!found) return;
        change(*found);
        const auto now = dateText(env().clock->now());
        if (found->updatedAt != now) found->updatedAt = now;
        changed();
    }

    // Launch: the first stored file of the load list that decodes, else the shipped list.
    void load(const StoreCompletion& completion = {}) {
        store().load([](const Json& json) { return fromJson(json); },
                     [this](const std::shared_ptr<SmartList>& stored, bool migrating) {
                         if (copyFields(*stored) && migrating) save();
                     },
                     [this, completion](bool success, const std::optional<std::string>& lastError) {
                         // A damaged file stays as it is until the next change puts it aside.
                         if (!success) useShipped(/*save=*/!lastError);
                         if (completion) completion(success, lastError);
                     });
    }

    bool save() const { return store().save(toJson()); }

    // Replaces the list with the shipped one, stamps, saves and announces. False, with nothing changed,
    // when the resource is missing or does not decode.
    bool resetToShipped() { return useShipped(true); }

    bool copyFields(const SmartList& other) {
        bool same = createdAt == other.createdAt && updatedAt == other.updatedAt && items.size() == other.items.size();
        for (auto a = items.cbegin(), b = other.items.cbegin(); same && a != items.cend(); ++a, ++b) {
            same = a->first == b->first && *a->second == *b->second;
        }
        if (same) return false;
        items = other.items;
        createdAt = other.createdAt;
        updatedAt = other.updatedAt;
        return true;
    }

    void stamp() {
        const auto now = dateText(env().clock->now());
        if (updatedAt == now) return;
        updatedAt = now;
        SHERLOG(std::string(Item::logName) + " updated: [" + now + "]", SherlogLevel::debug);
    }

    std::map<std::string, ItemRef> items;
    std::string createdAt;
    std::optional<std::string> updatedAt;

private:
    static std::unique_ptr<SmartList>& sharedInstance() {
        static std::unique_ptr<SmartList> instance;
        return instance;
    }

    // The shipped list in place of this one; saved and announced when `save` is set. False, with nothing
    // changed, when the resource is missing or does not decode.
    bool useShipped(bool save) {
        const auto bytes = resource(Item::resourceName);
        if (!bytes) return false;
        const Json json = Json::parse(*bytes, nullptr, false);
        if (json.is_discarded()) return false;
        std::shared_ptr<SmartList> shipped;
        try {
            shipped = fromJson(json);
        } catch (const JsonDecodeError& error) {
            SHERLOG(std::string("shipped ") + Item::logName + " do not decode: " + error.what(), SherlogLevel::error);
            return false;
        }
        copyFields(*shipped);
        if (save) changed();
        return true;
    }

    void changed() {
        stamp();
        save();
        env().notifications->post(Item::updatedNotification);
    }
};

}  // namespace kro
