#pragma once
// Per-application formats: the format copied when a colour goes to that application.
#include <optional>
#include <string>

#include "formats/SmartItems.h"
#include "formats/SmartList.h"

namespace kro {

using SmartFormats = SmartList<SmartFormatItem>;

// The format name to copy with for the receiving application, when a smart format applies; nothing means
// the selected format. Only the copied text changes: the picker's label and list rows keep the selection.
std::optional<std::string> smartFormatName(const std::string& bundleIdentifier);

}  // namespace kro
