#pragma once
// What the two Swift code generators share: identifiers made from gradient names, and numbers that
// Swift reads as floating point.
#include <set>
#include <string>
#include <string_view>

namespace PAL::swiftcode {

// lowerCamelCase from the name's ASCII letters and digits ("Ember glow" gives "emberGlow"), "gradient"
// when nothing is left, '_' before a leading digit, `suffix` appended, back-quoted when it is a Swift
// keyword, and "2", "3"... added while it is in `taken` (to which it is then added).
std::string identifier(std::string_view name, std::string_view suffix, std::set<std::string>& taken);
// At most six decimals, trailing zeros dropped but at least one kept: "0.0", "0.5", "0.933333".
std::string number(double value);
// "/// name" on one line, or nothing for an empty name.
std::string docComment(std::string_view name, std::string_view indent);

}  // namespace PAL::swiftcode
