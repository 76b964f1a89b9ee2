#pragma once
// Stored enumerations are written by their text. Reading one back is the same walk for every type:
// the case whose text is the value, or nothing for a text no case has.
#include <initializer_list>
#include <optional>
#include <string>

namespace kro {

// `text(Enum)` must be visible where this is used; `cases` is any range of the enumeration's cases.
template <class Enum, class Cases>
std::optional<Enum> caseFromText(const std::string& value, const Cases& cases) {
    for (Enum candidate : cases) {
        if (text(candidate) == value) return candidate;
    }
    return std::nullopt;
}

template <class Enum>
std::optional<Enum> caseFromText(const std::string& value, std::initializer_list<Enum> cases) {
    return caseFromText<Enum, std::initializer_list<Enum>>(value, cases);
}

}  // namespace kro
