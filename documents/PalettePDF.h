#pragma once
// A palette as a one-page PDF on white: its name and dates, then one row a colour with its swatch, name,
// "RGBA(…)" line and CSS HSLA text, and "Made with Kro" at the foot. The page is as tall as its content.
#include <optional>
#include <string>

#include "library/Palette.h"

namespace kro {

// The PDF's bytes; nothing when cairo fails (logged "PDF export failed: " and the error).
std::optional<std::string> palettePDF(const Palette& palette);

// The texts of one row, shared by the drawing and its tests.
std::string rgbaLine(const Color& color);
std::string hslaLine(const Color& color);
// A record's date text as people read it ("21 Nov 2026, 12:29"); the text as it stands when it does not parse.
std::string readableDate(const std::optional<std::string>& date);

}  // namespace kro
