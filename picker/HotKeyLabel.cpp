#include "picker/HotKeyLabel.h"

#include <map>
#include <utility>

#include "picker/HotKey.h"

namespace kro {
namespace {

const std::map<int, std::string>& fixedLabels() {
    static const std::map<int, std::string> labels = {
        {0, "A"},   {1, "S"},   {2, "D"},   {3, "F"},   {4, "H"},   {5, "G"},    {6, "Z"},    {7, "X"},   {8, "C"},
        {9, "V"},   {10, "§"},  {11, "B"},  {12, "Q"},  {13, "W"},  {14, "E"},   {15, "R"},   {16, "Y"},  {17, "T"},
        {18, "1"},  {19, "2"},  {20, "3"},  {21, "4"},  {22, "6"},  {23, "5"},   {24, "+"},   {25, "9"},  {26, "7"},
        {27, "'"},  {28, "8"},  {29, "0"},  {30, "´"},  {31, "O"},  {32, "U"},   {33, "º"},   {34, "I"},  {35, "P"},
        {36, "↵"},  {37, "L"},  {38, "J"},  {39, "^"},  {40, "K"},  {42, "\\"},  {43, ","},   {44, "-"},  {45, "N"},
        {46, "M"},  {47, "."},  {48, "⇥"},  {49, "⎵"},  {50, "<"},  {51, "⌫"},   {53, "⎋"},   {96, "F5"}, {97, "F6"},
        {98, "F7"}, {99, "F3"}, {100, "F8"}, {101, "F9"}, {103, "F11"}, {105, "F13"}, {107, "F14"}, {109, "F10"},
        {111, "F12"}, {113, "F15"}, {118, "F4"}, {121, "F2"}, {122, "F1"}, {123, "←"}, {124, "→"}, {125, "↓"}, {126, "↑"}};
    return labels;
}

// Words for the glyph labels of keys that type no character.
const std::map<std::string, std::string>& keyWords() {
    static const std::map<std::string, std::string> words = {
        {"↵", "Return"}, {"⇥", "Tab"},  {"⎵", "Space"}, {"⌫", "Backspace"}, {"⎋", "Escape"},
        {"←", "Left"},   {"→", "Right"}, {"↓", "Down"},  {"↑", "Up"}};
    return words;
}

std::function<std::optional<std::string>(int)>& layoutLookup() {
    static std::function<std::optional<std::string>(int)> lookup;
    return lookup;
}

}  // namespace

void setKeyboardLayoutLabel(std::function<std::optional<std::string>(int code)> lookup) {
    layoutLookup() = std::move(lookup);
}

std::optional<std::string> keyLabel(int code) {
    const auto& labels = fixedLabels();
    if (const auto found = labels.find(code); found != labels.end()) return found->second;
    if (layoutLookup()) return layoutLookup()(code);
    return std::nullopt;
}

std::string shortcutLabel(int flags, int code) {
    std::string label;
    if (flags & HotKeyFlags::shift) label += "⇧";
    if (flags & HotKeyFlags::control) label += "⌃";
    if (flags & HotKeyFlags::option) label += "⌥";
    if (flags & HotKeyFlags::command) label += "⌘";
    return label + " " + keyLabel(code).value_or("");
}

std::string readableShortcutLabel(int flags, int code) {
    std::string label;
    if (flags & HotKeyFlags::command) label += "Ctrl+";
    if (flags & HotKeyFlags::control) label += "Super+";
    if (flags & HotKeyFlags::option) label += "Alt+";
    if (flags & HotKeyFlags::shift) label += "Shift+";
    auto key = keyLabel(code).value_or("?");
    if (const auto word = keyWords().find(key); word != keyWords().end()) key = word->second;
    return label + key;
}

}  // namespace kro
