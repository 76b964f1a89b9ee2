#include "exchange/gradients/SwiftCodeText.h"

#include <algorithm>
#include <iterator>
#include <cctype>
#include <vector>

#include "exchange/coders/TextSupport.h"

namespace PAL::swiftcode {

namespace {

constexpr std::string_view keywords[] = {
    "Any",         "Self",     "as",       "associatedtype", "break",       "case",
    "catch",       "class",    "continue", "default",        "defer",       "deinit",
    "do",          "else",     "enum",     "extension",      "fallthrough", "false",
    "fileprivate", "for",      "func",     "guard",          "if",          "import",
    "in",          "init",     "inout",    "internal",       "is",          "let",
    "nil",         "open",     "operator", "private",        "protocol",    "public",
    "repeat",      "rethrows", "return",   "self",           "static",      "struct",
    "subscript",   "super",    "switch",   "throw",          "throws",      "true",
    "try",         "var",      "where",    "while",
};

bool isKeyword(std::string_view word) { return std::find(std::begin(keywords), std::end(keywords), word) != std::end(keywords); }

std::vector<std::string> words(std::string_view name) {
    std::vector<std::string> list(1);
    for (unsigned char c : name) {
        if (std::isalnum(c)) list.back() += static_cast<char>(c);
        else if (!list.back().empty()) list.emplace_back();
    }
    if (list.back().empty()) list.pop_back();
    return list;
}

}  // namespace

std::string identifier(std::string_view name, std::string_view suffix, std::set<std::string>& taken) {
    const auto parts = words(name);
    std::string base;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        std::string word = parts[i];
        const bool allCapitals = std::none_of(word.begin(), word.end(), [](unsigned char c) { return std::islower(c); });
        if (i == 0 && allCapitals)
            std::transform(word.begin(), word.end(), word.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        word[0] = static_cast<char>(i == 0 ? std::tolower(static_cast<unsigned char>(word[0]))
                                           : std::toupper(static_cast<unsigned char>(word[0])));
        base += word;
    }
    if (base.empty()) base = "gradient";
    if (std::isdigit(static_cast<unsigned char>(base.front()))) base.insert(0, "_");
    base += suffix;
    std::string candidate = base;
    for (int counter = 2; taken.count(candidate); ++counter) candidate = base + std::to_string(counter);
    taken.insert(candidate);
    return isKeyword(candidate) ? "`" + candidate + "`" : candidate;
}

std::string number(double value) {
    std::string text = textfile::fixedTrimmed(value, 6);
    if (text.find('.') == std::string::npos) text += ".0";
    return text;
}

std::string docComment(std::string_view name, std::string_view indent) {
    const std::string flat = textfile::singleLine(name);
    const std::string_view line = textfile::trimmed(flat);
    return line.empty() ? std::string() : std::string(indent) + "/// " + std::string(line) + "\n";
}

}  // namespace PAL::swiftcode
