// Any text handed in as a kro:// link: no crash, no hang; an accepted link has clean, bounded components, and
// its log form is one printable line of bounded length.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "app/URLCommand.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string url(reinterpret_cast<const char*>(data), size);
    const auto check = kro::checkURLCommand(url);
    if (check.refusal.empty() == check.components.empty()) std::abort();
    for (const auto& component : check.components) {
        if (component.size() > 4096) std::abort();
        for (unsigned char c : component) {
            if (c < 0x20 || c == 0x7F) std::abort();
        }
        kro::parseDashedRGBA(component);
    }
    const auto shown = kro::loggableURL(url);
    if (shown.size() > 200 + 2 + 3) std::abort();  // an escape may cross the 200 bytes, then "…"
    for (unsigned char c : shown) {
        if (c < 0x20 || c == 0x7F) std::abort();
    }
    return 0;
}
