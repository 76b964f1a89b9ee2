#pragma once
// The table of shortcuts: loaded from "hotkeys.json" (the shipped "HotKeys.json" when there is none or it
// does not decode), saved back, swapped between the global set and the picker's set, and asked whether a
// combination is free.
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "picker/HotKey.h"
#include "platform/HotKeyCenter.h"

namespace kro {

class HotKeys {
public:
    static constexpr const char* fileName = "hotkeys.json";
    static constexpr const char* resourceName = "HotKeys.json";

    static HotKeys& shared();
    static void resetSharedForTesting();

    // The centre that grabs the keys; none in a headless run (registering then does nothing).
    void setHotKeyCenter(HotKeyCenter* center);
    HotKeyCenter* hotKeyCenter() const { return hotKeyCenter_; }
    // Receives every press, through the centre.
    void setDelegate(std::function<void(HotKeyIdentifier)> delegate);

    void load();
    // False when the file could not be written (logged; the table stays in memory).
    bool save() const;
    // The shipped table, or an empty one when the resource does not decode (logged).
    static std::vector<HotKey> shippedHotKeys();

    // Active while the picker is closed: enabled, global, not deleted.
    void registerGlobalKeys();
    // Active while the picker is open: the picker and zoom-and-size groups, enabled or not visible.
    void registerPickerKeys();

    // The shortcuts pane's edits. Each saves, posts "ShortcutsUpdated" and registers the global set again.
    // Records a combination for the action: refused, with the reason, when it is reserved or another action
    // has it; a read-only action refuses every combination.
    std::optional<HotKeyUsed> record(HotKeyIdentifier identifier, int flags, int code);
    // Switches the action's shortcut on or off, or takes its combination away (`deleted`).
    void setEnabled(HotKeyIdentifier identifier, bool enabled);
    void setDeleted(HotKeyIdentifier identifier, bool deleted);
    // The shipped table in place of the user's.
    void resetToShipped();

    // Why the combination cannot be used for `identifier`, or nothing when it is free. The reserved desktop
    // shortcuts come first, then the other actions' combinations.
    std::optional<HotKeyUsed> usedHotKey(int flags, int code, HotKeyIdentifier identifier) const;
    static const std::vector<HotKeyUsed>& reservedHotKeys();

    const HotKey* hotKey(HotKeyIdentifier identifier) const;
    // Whether the desktop refused the action's combination at the last registration (another program holds it).
    bool isUnavailable(HotKeyIdentifier identifier) const { return unavailable_.count(identifier) > 0; }

    std::vector<HotKey> hotKeys;

private:
    HotKeys() = default;
    void registerKey(const HotKey& key);
    HotKey* editable(HotKeyIdentifier identifier);
    void changed();

    HotKeyCenter* hotKeyCenter_ = nullptr;
    std::set<HotKeyIdentifier> unavailable_;
    std::function<void(HotKeyIdentifier)> delegate_;
};

}  // namespace kro
