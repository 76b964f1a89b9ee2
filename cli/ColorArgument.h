#pragma once
// A colour given on the command line: six hex digits with or without "#", or any colour text that colour
// recognition finds (the first colour found), such as "rgb(255, 0, 128)" or "rebeccapurple".
#include <optional>
#include <string>
#include <string_view>

#include "platform/ColorValue.h"

namespace kro::cli {

std::optional<ColorValue> parseColorArgument(std::string_view text);

// The error every command gives for a colour it cannot read: "cannot read color '…'".
std::string cannotReadColour(std::string_view text);

}  // namespace kro::cli
