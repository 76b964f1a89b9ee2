#pragma once
// Full Unicode case mapping of UTF-8 text, language-neutral: "ß" upper-cases to "SS".
#include <string>
#include <string_view>

namespace kro {

std::string upperCased(std::string_view text);
std::string lowerCased(std::string_view text);

}  // namespace kro
