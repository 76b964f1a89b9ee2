// What design applications send back: GIMP's answer files, Inkscape's clipboard document, the Krita
// plug-in's reply lines. The first byte picks the reader; a colour read must be a colour in range.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "bridges/GimpBridge.h"
#include "bridges/InkscapeBridge.h"
#include "bridges/KritaBridge.h"

namespace {

void checkInRange(const std::optional<kro::ColorValue>& color) {
    if (!color) return;
    for (double component : {color->red(), color->green(), color->blue(), color->alpha()}) {
        if (!(component >= 0 && component <= 1)) std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const std::string text(reinterpret_cast<const char*>(data + 1), size - 1);
    switch (data[0] % 3) {
        case 0: checkInRange(kro::GimpScript::readAnswer(text)); break;
        case 1:
            checkInRange(kro::InkscapeActions::readClipboardStyle(text, kro::PickerPlugin::primary));
            checkInRange(kro::InkscapeActions::readClipboardStyle(text, kro::PickerPlugin::secondary));
            break;
        default: {
            const auto reply = kro::KritaProtocol::readReply(text);
            if (reply.color && !reply.ok) std::abort();
            checkInRange(reply.color);
        }
    }
    return 0;
}
