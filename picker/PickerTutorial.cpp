#include "picker/PickerTutorial.h"

namespace kro {

PickerHint hintFor(PickerMode mode) {
    switch (mode) {
        case PickerMode::standard: return PickerHint::standard;
        case PickerMode::multiple: return PickerHint::multiple;
        case PickerMode::plugin: return PickerHint::plugin;
        case PickerMode::contrast: return PickerHint::contrast;
    }
    return PickerHint::standard;
}

std::string hintText(PickerHint hint, size_t count) {
    switch (hint) {
        case PickerHint::standard: return "Click to pick · hold Ctrl for more modes";
        case PickerHint::multiple:
            return count == 0 ? "Click to add colors" : std::to_string(count) + " colors · Return to finish";
        case PickerHint::contrast:
            return count < 2 ? "Click two colors to compare" : "Return to compare · click to start over";
        case PickerHint::plugin: return "Click to send · hold Alt for the secondary color";
        case PickerHint::precision: return "Precision: the pointer moves at a tenth of its speed";
        case PickerHint::size: return "Size";
        case PickerHint::zoom: return "Zoom";
        case PickerHint::command: return "Modes";
    }
    return "";
}

}  // namespace kro
