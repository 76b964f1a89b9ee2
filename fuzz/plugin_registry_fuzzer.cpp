// The registry's entries from JSON text, and the colours found in copied text: the first byte picks.
#include <cstdint>
#include <string>

#include "bridges/Plugin.h"
#include "bridges/PluginParse.h"
#include "fuzz/FuzzEnvironment.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    installFuzzEnvironment();
    const std::string text(reinterpret_cast<const char*>(data + 1), size - 1);
    if (data[0] % 2 == 0) {
        kro::PluginParse::colors(text);
        return 0;
    }
    auto& plugin = kro::Plugin::shared();
    plugin.load(text);
    plugin.applicationDidActivate(kro::RunningApplication{1, 1, text.substr(0, 16), "gimp", "Gimp", ""});
    for (const auto& [key, item] : plugin.plugins) {
        item->iconImage();
        plugin.target(key);
    }
    return 0;
}
