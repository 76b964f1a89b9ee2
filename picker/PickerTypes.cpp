#include "picker/PickerTypes.h"

namespace kro {

std::string text(PickerMode mode) {
    switch (mode) {
        case PickerMode::standard: return "standard";
        case PickerMode::multiple: return "multiple";
        case PickerMode::plugin: return "plugin";
        case PickerMode::contrast: return "contrast";
    }
    return "";
}

std::string text(PickerPlugin plugin) { return plugin == PickerPlugin::primary ? "primary" : "secondary"; }

}  // namespace kro
