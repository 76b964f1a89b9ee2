// "hotkeys.json" as any bytes: decoding either gives records or throws JsonDecodeError, never anything
// else; whatever decodes can be labelled, checked for conflicts and written back to the same records.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "library/JsonDecode.h"
#include "picker/HotKeyLabel.h"
#include "picker/HotKeys.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::vector<kro::HotKey> keys;
    try {
        keys = kro::decodeHotKeys(std::string_view(reinterpret_cast<const char*>(data), size));
    } catch (const kro::JsonDecodeError&) {
        return 0;
    }
    auto& table = kro::HotKeys::shared();
    table.hotKeys = keys;
    for (const auto& key : keys) {
        (void)kro::shortcutLabel(key.flags, key.code);
        (void)kro::readableShortcutLabel(key.flags, key.code);
        (void)table.usedHotKey(key.flags, key.code, key.id);
    }
    if (kro::decodeHotKeys(kro::encodeHotKeys(keys)) != keys) __builtin_trap();
    return 0;
}
