#pragma once
#include <optional>
#include <string_view>

#include "cli/Command.h"
#include "platform/ColorValue.h"

namespace kro::cli {

// `kro name COLOR...`: the nearest colour name, one line per colour.
void registerNameCommands(CommandTable& table);

// Six hex digits, with or without "#", as an sRGB colour; nothing for any other text.
std::optional<ColorValue> parseHexArgument(std::string_view text);

}  // namespace kro::cli
