#include "picker/HotKeys.h"

#include <memory>

#include "library/Directory.h"
#include "library/JsonDecode.h"
#include "library/Notifications.h"
#include "library/Sherlog.h"
#include "library/Store.h"
#include "picker/HotKeyLabel.h"
#include "platform/Environment.h"
#include "platform/Resources.h"

namespace kro {
namespace {

std::unique_ptr<HotKeys>& sharedInstance() {
    static std::unique_ptr<HotKeys> instance;
    return instance;
}

const Store& hotKeysStore() {
    static const Store store(StoreFile{HotKeys::fileName, Notifications::shortcutsLoaded, Notifications::shortcutsSaved});
    return store;
}

// A stored table from an older version may lack newer actions: they take their shipped record.
void addMissingActions(std::vector<HotKey>& keys) {
    for (const auto& shipped : HotKeys::shippedHotKeys()) {
        bool present = false;
        for (const auto& key : keys) present = present || key.id == shipped.id;
        if (!present) keys.push_back(shipped);
    }
}

}  // namespace

HotKeys& HotKeys::shared() {
    auto& instance = sharedInstance();
    if (!instance) instance.reset(new HotKeys());
    return *instance;
}

void HotKeys::resetSharedForTesting() {
    sharedInstance().reset(new HotKeys());
    hotKeysStore().forget();
}

void HotKeys::setHotKeyCenter(HotKeyCenter* center) {
    hotKeyCenter_ = center;
    setDelegate(delegate_);
}

void HotKeys::setDelegate(std::function<void(HotKeyIdentifier)> delegate) {
    delegate_ = std::move(delegate);
    if (!hotKeyCenter_) return;
    hotKeyCenter_->delegate = [this](int identifier) {
        if (delegate_) delegate_(hotKeyIdentifier(identifier));
    };
}

std::vector<HotKey> HotKeys::shippedHotKeys() {
    const auto bytes = resource(resourceName);
    if (!bytes) {
        SHERLOG("The shipped hot keys are missing", SherlogLevel::error);
        return {};
    }
    try {
        return decodeHotKeys(*bytes);
    } catch (const JsonDecodeError& error) {
        SHERLOG(std::string("The shipped hot keys do not decode: ") + error.what(), SherlogLevel::error);
        return {};
    }
}

void HotKeys::load() {
    const auto& store = hotKeysStore();
    store.beginLoad();
    std::optional<std::vector<HotKey>> stored;
    if (const auto path = store.path(Directory::currentVersion)) {
        std::string reason;
        if (const auto bytes = env().files->read(*path, &reason)) {
            try {
                stored = decodeHotKeys(*bytes);
                addMissingActions(*stored);
            } catch (const JsonDecodeError& error) {
                SHERLOG(std::string("hotkeys.json does not decode, the shipped shortcuts stand: ") + error.what(),
                        SherlogLevel::error);
                store.markDamaged(error.what());
            }
        } else if (env().files->exists(*path)) {
            store.markDamaged(reason);
        }
    }
    auto keys = stored ? std::move(*stored) : shippedHotKeys();
    env().notifications->post(Notifications::shortcutsLoaded);
    hotKeys = std::move(keys);
    env().notifications->post(Notifications::shortcutsUpdated);
}

bool HotKeys::save() const {
    Json array = Json::array();
    for (const auto& key : hotKeys) array.push_back(key.toJson());
    return hotKeysStore().save(array);
}

void HotKeys::registerKey(const HotKey& key) {
    const auto label = readableShortcutLabel(key.flags, key.code);
    if (!hotKeyCenter_->registerHotKey(key.flags, key.code, static_cast<int>(key.id), label)) {
        unavailable_.insert(key.id);
        SHERLOG("The shortcut " + label + " for " + text(key.id) + " cannot be had (another program holds it); skipped",
                SherlogLevel::error);
    }
}

void HotKeys::registerGlobalKeys() {
    if (!hotKeyCenter_) return;
    hotKeyCenter_->unregisterAll();
    unavailable_.clear();
    for (const auto& key : hotKeys) {
        if (key.enabled() && key.global && !key.deleted) registerKey(key);
    }
}

void HotKeys::registerPickerKeys() {
    if (!hotKeyCenter_) return;
    hotKeyCenter_->unregisterAll();
    for (const auto& key : hotKeys) {
        const bool pickerGroup = key.group == HotKeyGroupIdentifier::picker || key.group == HotKeyGroupIdentifier::zoom_size;
        if (pickerGroup && (key.enabled() || !key.visible)) registerKey(key);
    }
}

HotKey* HotKeys::editable(HotKeyIdentifier identifier) {
    for (auto& key : hotKeys) {
        if (key.id == identifier) return &key;
    }
    return nullptr;
}

void HotKeys::changed() {
    save();
    env().notifications->post(Notifications::shortcutsUpdated);
    registerGlobalKeys();
}

std::optional<HotKeyUsed> HotKeys::record(HotKeyIdentifier identifier, int flags, int code) {
    auto* key = editable(identifier);
    if (!key) return HotKeyUsed{"This action has no shortcut to change", readableShortcutLabel(flags, code)};
    if (key->readonly) return HotKeyUsed{"This shortcut is part of the picker and cannot be changed", shortcutLabel(flags, code)};
    if (auto used = usedHotKey(flags, code, identifier)) return used;
    key->flags = flags;
    key->code = code;
    key->deleted = false;
    changed();
    return std::nullopt;
}

void HotKeys::setEnabled(HotKeyIdentifier identifier, bool enabled) {
    auto* key = editable(identifier);
    if (!key || key->readonly) return;
    key->state = enabled ? HotKeyState::enabled : HotKeyState::disabled;
    changed();
}

void HotKeys::setDeleted(HotKeyIdentifier identifier, bool deleted) {
    auto* key = editable(identifier);
    if (!key || key->readonly) return;
    key->deleted = deleted;
    changed();
}

void HotKeys::resetToShipped() {
    hotKeys = shippedHotKeys();
    changed();
}

const HotKey* HotKeys::hotKey(HotKeyIdentifier identifier) const {
    for (const auto& key : hotKeys) {
        if (key.id == identifier) return &key;
    }
    return nullptr;
}

const std::vector<HotKeyUsed>& HotKeys::reservedHotKeys() {
    // Kept as written, irregular rows included: "⌘G " and "⌘Q" lack the blank after the modifiers and so
    // never match a label.
    static const std::vector<std::pair<const char*, const char*>> rows = {
        {"Close all windows in the current app", "⌥⌘ W"},
        {"Close the frontmost window", "⌘ W"},
        {"Copy the selected data to the Clipboard", "⌘ C"},
        {"Create a new document in the frontmost app", "⌘ N"},
        {"Display a dialog for choosing a document to open in the frontmost app", "⌘ U"},
        {"Display a window for specifying document parameters (Page Setup)", "⇧⌘ P"},
        {"Display a window for specifying document parameters (Page Setup)", "⌘ P"},
        {"Display an inspector window", "⌘ I"},
        {"Display an inspector window", "⌥⌘ I"},
        {"Display the Save As dialog or duplicate the current document", "⇧⌘ S"},
        {"Find the next occurrence of the selection", "⌘G "},
        {"Find the previous occurrence of the selection", "⇧⌘ G"},
        {"Find the previous occurrence of the selection", "⌘ G"},
        {"Hide the windows of all other running apps", "⌥⌘ H"},
        {"Hide the windows of the currently running app", "⌘ H"},
        {"Minimize all windows of the active app to the Dock", "⌥⌘ M"},
        {"Minimize the active window to the Dock", "⌘ M"},
        {"Move to the search field control", "⌥⌘ F"},
        {"Open a Find window or find text in a document", "⌘ F"},
        {"Place a copy of (paste) the Clipboard contents into the current document or app", "⌘ V"},
        {"Print the current document", "⌘ P"},
        {"Quit the frontmost app", "⌘Q"},
        {"Remove the selected item and place a copy on the Clipboard", "⌘ X"},
        {"Save the active document", "⌘ S"},
        {"Select all items or text in the frontmost window", "⌘ A"},
        {"Selects Don't Save in dialogs that contain a Delete or Don't Save button", "⌘ ⌫"},
        {"Selects the Desktop folder in Open and Save dialogs", "⌘ D"},
        {"Show or hide a toolbar", "⌥⌘ T"},
        {"Undo previous command (some apps allow for multiple Undos)", "⌘ Z"},
        {"Use the selection for a find", "⌘ E"},
    };
    static const std::vector<HotKeyUsed> reserved = [] {
        std::vector<HotKeyUsed> list;
        for (const auto& [reason, shortcut] : rows) list.push_back({reason, shortcut, HotKeyUsedState::system});
        return list;
    }();
    return reserved;
}

std::optional<HotKeyUsed> HotKeys::usedHotKey(int flags, int code, HotKeyIdentifier identifier) const {
    auto used = reservedHotKeys();
    for (const auto& key : hotKeys) {
        if (key.id == identifier) continue;
        used.push_back({"This shortcut combination is already used in app (" + key.name + ")",
                        shortcutLabel(key.flags, key.code), HotKeyUsedState::app});
    }
    const auto label = shortcutLabel(flags, code);
    for (const auto& row : used) {
        if (row.shortcut == label) return row;
    }
    return std::nullopt;
}

}  // namespace kro
