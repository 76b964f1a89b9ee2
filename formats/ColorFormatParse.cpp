#include "formats/ColorFormatParse.h"

#include <array>
#include <functional>
#include <string_view>

#include "formats/FormatNumberText.h"
#include "formats/UnicodeCase.h"
#include "formats/color/ColorConversions.h"
#include "formats/color/ColorName.h"

namespace kro {

namespace {

using namespace FormatNumberText;

ColorValue genericRGB(const ColorValue& color) { return color.usingColorSpace(ColorSpace::genericRGB()); }
ColorValue genericCMYK(const ColorValue& color) { return color.usingColorSpace(ColorSpace::genericCMYK()); }

struct Token {
    std::string_view text;
    std::function<std::string(const ColorValue&)> value;
};

// The order is part of the language: "hex[red]" and "css[alpha]" must go before "[red]" and "[alpha]" could
// match inside them. "css[hue]" stands twice; the first (the HWB hue, which has no wrap-around) always
// consumes it, so an HSL template shows the HWB hue too. Templates in the wild rely on both.
const std::array<Token, 27>& tokens() {
    static const std::array<Token, 27> table = {{
        {"hex[red]", [](const ColorValue& c) { return hexComponent(narrowed(genericRGB(c).red())); }},
        {"hex[green]", [](const ColorValue& c) { return hexComponent(narrowed(genericRGB(c).green())); }},
        {"hex[blue]", [](const ColorValue& c) { return hexComponent(narrowed(genericRGB(c).blue())); }},
        {"hex[alpha]", [](const ColorValue& c) { return hexComponent(narrowed(genericRGB(c).alpha())); }},
        {"css[cyan]", [](const ColorValue& c) { return integer(narrowed(cmyk(c).cyan)); }},
        {"css[magenta]", [](const ColorValue& c) { return integer(narrowed(cmyk(c).magenta)); }},
        {"css[yellow]", [](const ColorValue& c) { return integer(narrowed(cmyk(c).yellow)); }},
        {"css[black]", [](const ColorValue& c) { return integer(narrowed(cmyk(c).black)); }},
        {"css[hue]", [](const ColorValue& c) { return integer(narrowed(hwb(c).hue)); }},
        {"css[whiteness]", [](const ColorValue& c) { return integer(narrowed(hwb(c).whiteness)); }},
        {"css[blackness]", [](const ColorValue& c) { return integer(narrowed(hwb(c).blackness)); }},
        {"css[hue]", [](const ColorValue& c) { return integer(narrowed(hsl(c).hue)); }},
        {"css[saturation]", [](const ColorValue& c) { return integer(narrowed(hsl(c).saturation)); }},
        {"css[lightness]", [](const ColorValue& c) { return integer(narrowed(hsl(c).lightness)); }},
        {"css[alpha]", [](const ColorValue& c) { return shortestFloat(narrowed(c.alpha())); }},
        {"[red]", [](const ColorValue& c) { return shortestFloat(narrowed(genericRGB(c).red())); }},
        {"[green]", [](const ColorValue& c) { return shortestFloat(narrowed(genericRGB(c).green())); }},
        {"[blue]", [](const ColorValue& c) { return shortestFloat(narrowed(genericRGB(c).blue())); }},
        {"[hue]", [](const ColorValue& c) { return shortestFloat(narrowed(genericRGB(c).hue())); }},
        {"[saturation]", [](const ColorValue& c) { return shortestFloat(narrowed(genericRGB(c).saturation())); }},
        {"[brightness]", [](const ColorValue& c) { return shortestFloat(narrowed(genericRGB(c).brightness())); }},
        {"[cyan]", [](const ColorValue& c) { return shortestFloat(narrowed(genericCMYK(c).cyan())); }},
        {"[magenta]", [](const ColorValue& c) { return shortestFloat(narrowed(genericCMYK(c).magenta())); }},
        {"[yellow]", [](const ColorValue& c) { return shortestFloat(narrowed(genericCMYK(c).yellow())); }},
        {"[black]", [](const ColorValue& c) { return shortestFloat(narrowed(genericCMYK(c).black())); }},
        {"[name]",
         [](const ColorValue& c) {
             const auto rgb = genericRGB(c);
             return ColorName::name(rgb.red(), rgb.green(), rgb.blue()).value_or("");
         }},
        {"[alpha]", [](const ColorValue& c) { return shortestFloat(narrowed(genericRGB(c).alpha())); }},
    }};
    return table;
}

void replaceAll(std::string& text, std::string_view token, const std::string& value) {
    std::string out;
    size_t from = 0;
    for (size_t at = text.find(token); at != std::string::npos; at = text.find(token, from)) {
        out.append(text, from, at - from).append(value);
        from = at + token.size();
    }
    out.append(text, from, std::string::npos);
    text = std::move(out);
}

// The JSON reader refuses documents nested deeper than this, as the platform's reader does, which keeps
// the recursive evaluation off the end of the stack. A refused document is returned as text.
constexpr int kMaximumNesting = 512;

bool nestsTooDeeply(std::string_view text) {
    int depth = 0;
    bool inString = false;
    for (size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (inString) {
            if (c == '\\') ++i;
            else if (c == '"') inString = false;
        } else if (c == '"') {
            inString = true;
        } else if (c == '{' || c == '[') {
            if (++depth > kMaximumNesting) return true;
        } else if (c == '}' || c == ']') {
            --depth;
        }
    }
    return false;
}

// An operand as the JSON reader delivers it. Booleans count as numbers; null and arrays are none of the kinds.
struct Operand {
    enum class Kind { text, number, object, other };
    Kind kind = Kind::other;
    std::string text;
    float number = 0.0f;
    const Json* object = nullptr;

    static Operand of(const Json& value) {
        Operand operand;
        if (value.is_string()) {
            operand.kind = Kind::text;
            operand.text = value.get<std::string>();
        } else if (value.is_boolean()) {
            operand.kind = Kind::number;
            operand.number = value.get<bool>() ? 1.0f : 0.0f;
        } else if (value.is_number()) {
            operand.kind = Kind::number;
            operand.number = narrowed(value.get<double>());
        } else if (value.is_object()) {
            operand.kind = Kind::object;
            operand.object = &value;
        }
        return operand;
    }

    bool isText() const { return kind == Kind::text; }
    bool isObject() const { return kind == Kind::object; }

    std::optional<float> numberValue() const {
        if (kind == Kind::number) return number;
        if (kind == Kind::text) return FormatNumberText::numberValue(text);
        return std::nullopt;
    }
    bool hasNumberValue() const { return numberValue().has_value(); }

    // A nested call, replaced by its text result.
    void evaluateObject() {
        if (!isObject()) return;
        text = ColorFormatParse::evaluate(*object);
        kind = Kind::text;
        object = nullptr;
    }
};

using Operands = std::vector<Operand>;

// The rows after the first in every function: each operand is either an object or of the kind that may wait
// beside one (text for most functions, anything with a number value for `round`), and at least one is an
// object. The objects are evaluated in x, y, z order and the function is entered again with the results.
bool evaluateNestedCalls(Operands& operands, bool (Operand::*mayWait)() const) {
    bool anyObject = false;
    for (const auto& operand : operands) {
        if (operand.isObject()) anyObject = true;
        else if (!(operand.*mayWait)()) return false;
    }
    if (!anyObject) return false;
    for (auto& operand : operands) operand.evaluateObject();
    return true;
}

std::string orError(std::string text, const char*) { return text; }
std::string orError(std::optional<std::string> text, const char* error) { return text ? std::move(*text) : error; }

template <typename Action>
std::string apply(Operands operands, bool (Operand::*mayWait)() const, bool (*fits)(const Operands&),
                  Action action, const char* error) {
    while (true) {
        if (fits(operands)) return orError(action(operands), error);
        if (!evaluateNestedCalls(operands, mayWait)) return error;
    }
}

bool allText(const Operands& operands) {
    for (const auto& operand : operands) {
        if (!operand.isText()) return false;
    }
    return true;
}

bool allNumbers(const Operands& operands) {
    for (const auto& operand : operands) {
        if (!operand.hasNumberValue()) return false;
    }
    return true;
}

template <typename Operation>
std::string arithmetic(Operands operands, Operation operation, const char* error) {
    return apply(
        std::move(operands), &Operand::isText, allNumbers,
        [&](const Operands& o) { return shortestFloat(operation(*o[0].numberValue(), *o[1].numberValue())); },
        error);
}

// Nested text functions can grow a result geometrically (each strreplace level multiplying it); past this
// size a function gives its error literal instead of exhausting memory.
constexpr size_t kMaximumText = 1 << 22;

std::optional<std::string> replacingAll(std::string text, const std::string& target, const std::string& replacement) {
    if (target.empty()) return text;
    if (replacement.size() > target.size()) {
        size_t count = 0;
        for (size_t at = text.find(target); at != std::string::npos; at = text.find(target, at + target.size())) ++count;
        if (text.size() + count * (replacement.size() - target.size()) > kMaximumText) return std::nullopt;
    }
    replaceAll(text, target, replacement);
    return text;
}

std::optional<std::string> joined(const std::string& x, const std::string& y) {
    if (x.size() + y.size() > kMaximumText) return std::nullopt;
    return x + y;
}

}  // namespace

std::string ColorFormatParse::substituteTokens(const ColorValue& color, std::string format) {
    for (const auto& token : tokens()) {
        if (format.find(token.text) != std::string::npos) replaceAll(format, token.text, token.value(color));
    }
    return format;
}

std::string ColorFormatParse::parse(const ColorValue& color, const std::string& format) {
    std::string text = substituteTokens(color, format);
    if (text.empty() || nestsTooDeeply(text)) return text;
    const Json json = Json::parse(text, nullptr, false);
    if (json.is_discarded() || !json.is_object()) return text;
    return evaluate(json);
}

std::string ColorFormatParse::evaluate(const Json& functionObject) {
    static const char* unavailable = "[Error: Function unavailable]";
    if (!functionObject.is_object()) return unavailable;
    const auto function = functionObject.find("function");
    if (function == functionObject.end() || !function->is_string()) return unavailable;
    const auto& name = function->get_ref<const std::string&>();

    // Only x, y and z are looked up; which of them a function needs decides "unavailable" before any type test.
    auto operands = [&](std::initializer_list<const char*> keys) -> std::optional<Operands> {
        Operands out;
        for (const char* key : keys) {
            const auto found = functionObject.find(key);
            if (found == functionObject.end()) return std::nullopt;
            out.push_back(Operand::of(*found));
        }
        return out;
    };

    if (name == "concat") {
        if (auto xy = operands({"x", "y"})) {
            return apply(*xy, &Operand::isText, allText, [](const Operands& o) { return joined(o[0].text, o[1].text); },
                         "[Error: Concat]");
        }
    } else if (name == "sum") {
        if (auto xy = operands({"x", "y"})) return arithmetic(*xy, std::plus<float>(), "[Error: Sum]");
    } else if (name == "mul") {
        if (auto xy = operands({"x", "y"})) return arithmetic(*xy, std::multiplies<float>(), "[Error: Mul]");
    } else if (name == "div") {
        if (auto xy = operands({"x", "y"})) return arithmetic(*xy, std::divides<float>(), "[Error: Div]");
    } else if (name == "round") {
        // Unlike the other arithmetic, round lets a JSON number wait beside a nested call.
        if (auto xy = operands({"x", "y"})) {
            return apply(*xy, &Operand::hasNumberValue, allNumbers,
                         [](const Operands& o) { return rounded(*o[0].numberValue(), *o[1].numberValue()); },
                         "[Error: Round]");
        }
    } else if (name == "lower") {
        if (auto x = operands({"x"})) {
            return apply(*x, &Operand::isText, allText, [](const Operands& o) { return lowerCased(o[0].text); },
                         "[Error: Lower]");
        }
    } else if (name == "upper") {
        if (auto x = operands({"x"})) {
            return apply(*x, &Operand::isText, allText, [](const Operands& o) { return upperCased(o[0].text); },
                         "[Error: Upper]");
        }
    } else if (name == "strreplace") {
        if (auto xyz = operands({"x", "y", "z"})) {
            return apply(*xyz, &Operand::isText, allText,
                         [](const Operands& o) { return replacingAll(o[0].text, o[1].text, o[2].text); },
                         "[Error: StrReplace]");
        }
    }
    return unavailable;
}

}  // namespace kro
