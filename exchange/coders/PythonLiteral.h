#pragma once
// The small part of Python that sK1 palettes are written in: one call per line whose arguments are
// literals (numbers, strings in either quote style with u/b prefixes and escapes, nested lists).
// sK1 runs these lines as Python; we parse them instead, so nothing in a file is ever executed.
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace PAL::python {

struct Value {
    enum class Kind { number, string, list };
    Kind kind = Kind::number;
    double number = 0;
    std::string text;  // UTF-8
    std::vector<Value> items;
};

struct Call {
    std::string name;
    std::vector<Value> arguments;
};

// `name(argument, ...)` filling the whole line (blanks around it and a '#' comment after it allowed);
// nullopt for anything else.
std::optional<Call> parseCall(std::string_view line);

// A string literal that Python 2 and 3 read back as `text`: single-quoted, with '\\' and '\'' escaped,
// line breaks turned into spaces, and every other byte outside printable ASCII written as \xNN, so the
// file is plain ASCII and a byte string's UTF-8 survives.
std::string literal(std::string_view text);

}  // namespace PAL::python
