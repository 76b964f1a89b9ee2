#pragma once
// What the plain RGB and RGBA text coders share: a line per colour, its numbers first, separated by
// blanks (spaces or tabs in any mix, as X11's rgb.txt has them), then an optional name.
#include <string>
#include <string_view>

#include "exchange/PalPalette.h"

namespace PAL::rgbtext {

enum class Scale {
    // Written as 0...1 decimals. Read as 0...1 when any number in the file has a point or an exponent,
    // and as 0...255 otherwise: "1 0 0" is then almost black, as every reader of integer lists takes it.
    unit,
    // Written as 0...255 integers, read as 0...255 whatever their form.
    byte,
};

// `components` is 3 (RGB) or 4 (RGBA, alpha last). Blank lines and lines starting with '#', '!', ';' or
// "//" are comments. Throws CommonError invalidFormat unless every other line starts with at least
// `components` numbers and there is at least one; with 3, also when every line holds a fourth number,
// since that file is RGBA text, not RGB text with names that start with a number.
std::vector<Color> readColors(std::string_view text, int components, Scale scale);

// One line per colour of `colors`, a tab before the name when there is one.
std::string writeColors(const ColorsInOrder& colors, int components, Scale scale);

}  // namespace PAL::rgbtext
