#pragma once
// The table of shortcuts: loaded from "hotkeys.json" (the shipped "HotKeys.json" when there is none or it
// does not decode), saved back, swapped between the global set and the picker's set, and asked whether a
// combination is free.
#include <functional>
#include <optional>
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

    // Why the combination cannot be used for `identifier`, or nothing when it is free. The reserved desktop
    // shortcuts come first, then the other actions' combinations.
    std::optional<HotKeyUsed> usedHotKey(int flags, int code, HotKeyIdentifier identifier) const;
    static const std::vector<HotKeyUsed>& reservedHotKeys();

    const HotKey* hotKey(HotKeyIdentifier identifier) const;

    std::vector<HotKey> hotKeys;

private:
    HotKeys() = default;
    void registerKey(const HotKey& key);

    HotKeyCenter* hotKeyCenter_ = nullptr;
    std::function<void(HotKeyIdentifier)> delegate_;
};

}  // namespace kro
