#pragma once
// Colours found in text that a design application gave back (its copied text, a bridge's reply).
#include <string>
#include <vector>

#include "platform/ColorValue.h"

namespace kro {

struct PluginRegularExpression {
    // Every match of `regex` in `text`, in order. A pattern that does not compile, or a search that runs out
    // of time, logs under "evaluate(regex:text:)" and keeps the matches found before it.
    static std::vector<std::string> evaluate(const std::string& regex, const std::string& text);
};

struct PluginParse {
    // The colours of "#?[0-9A-Fa-f]{6}" in text order, each opaque. Colour names of the colour list, as
    // whole words in any case ("Hot Pink", "hotpink"), count as their hex first.
    static std::vector<ColorValue> colors(const std::string& text);
    // The text with every colour name replaced by "#" and its six hex digits.
    static std::string replacingColorNames(const std::string& text);
};

}  // namespace kro
