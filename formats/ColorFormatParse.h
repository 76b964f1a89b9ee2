#pragma once
// The format language: turns one colour into text through a template. Two passes run one after the other:
// a plain text pass that replaces the colour tokens ("hex[red]", "css[hue]", "[alpha]", ...) and, when the
// result reads as a JSON object, an evaluation of that object as a tree of function calls ("concat", "sum",
// "mul", "div", "round", "lower", "upper", "strreplace"). Nothing fails: every failure is a text in the result.
#include <string>

#include "platform/ColorValue.h"
#include "platform/Json.h"

namespace kro {

class ColorFormatParse {
public:
    // The text of `format` for `color`.
    static std::string parse(const ColorValue& color, const std::string& format);
    // One function object, evaluated with its nested calls.
    static std::string evaluate(const Json& functionObject);
    // The token pass alone.
    static std::string substituteTokens(const ColorValue& color, std::string format);
};

}  // namespace kro
