#include "documents/PalettePDF.h"

#include <cairo-pdf.h>
#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>

#include "formats/ColorFormats.h"
#include "formats/color/ColorConversions.h"
#include "library/Sherlog.h"
#include "platform/Json.h"

namespace kro {
namespace {

constexpr double kPageWidth = 420;
constexpr double kMargin = 28;
constexpr double kHeaderHeight = 112;
constexpr double kRowHeight = 60;
constexpr double kSwatch = 44;
constexpr double kFooterHeight = 48;

int byte(float component) {
    return static_cast<int>(std::lround(std::clamp(static_cast<double>(component), 0.0, 1.0) * 255.0));
}

cairo_status_t appendBytes(void* closure, const unsigned char* data, unsigned int length) {
    static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

void text(cairo_t* cr, double x, double y, double size, bool bold, double gray, const std::string& line) {
    cairo_select_font_face(cr, "sans-serif", CAIRO_FONT_SLANT_NORMAL, bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cr, size);
    cairo_set_source_rgb(cr, gray, gray, gray);
    cairo_move_to(cr, x, y);
    cairo_show_text(cr, line.c_str());
}

// Transparent colours show over a checkerboard, as colour pickers show them.
void swatch(cairo_t* cr, double x, double y, const Color& color) {
    constexpr double cell = kSwatch / 4;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            const double gray = (row + column) % 2 ? 0.8 : 1.0;
            cairo_set_source_rgb(cr, gray, gray, gray);
            cairo_rectangle(cr, x + column * cell, y + row * cell, cell, cell);
            cairo_fill(cr);
        }
    }
    const auto value = color.colorValue().usingColorSpace(ColorSpace::sRGB());
    cairo_set_source_rgba(cr, value.red(), value.green(), value.blue(), color.alpha);
    cairo_rectangle(cr, x, y, kSwatch, kSwatch);
    cairo_fill_preserve(cr);
    cairo_set_source_rgb(cr, 0.75, 0.75, 0.75);
    cairo_set_line_width(cr, 0.5);
    cairo_stroke(cr);
}

void draw(cairo_t* cr, const Palette& palette, double height) {
    cairo_set_source_rgb(cr, 1, 1, 1);
    cairo_paint(cr);

    text(cr, kMargin, kMargin + 18, 20, true, 0.1, palette.name.value_or("Palette"));
    text(cr, kMargin, kMargin + 44, 10, false, 0.35, "Created: " + readableDate(palette.createdAt));
    text(cr, kMargin, kMargin + 58, 10, false, 0.35, "Modified: " + readableDate(palette.updatedAt));
    text(cr, kMargin, kMargin + 72, 10, false, 0.35, "Colors: " + std::to_string(palette.colors.size()));

    double y = kHeaderHeight;
    for (const auto& color : palette.colors) {
        swatch(cr, kMargin, y, *color);
        const double x = kMargin + kSwatch + 14;
        text(cr, x, y + 11, 11, true, 0.1, color->name.value_or("") + "  #" + color->hex);
        text(cr, x, y + 26, 9.5, false, 0.3, rgbaLine(*color));
        text(cr, x, y + 40, 9.5, false, 0.3, "CSS HSLA  " + hslaLine(*color));
        y += kRowHeight;
    }
    text(cr, kMargin, height - kMargin + 4, 9, false, 0.55, "Made with Kro");
}

}  // namespace

std::string rgbaLine(const Color& color) {
    char line[64];
    std::snprintf(line, sizeof line, "RGBA(%d, %d, %d, %.2f)", byte(color.red), byte(color.green), byte(color.blue),
                  static_cast<double>(color.alpha));
    return line;
}

std::string hslaLine(const Color& color) {
    // The catalogue's own "CSS HSLA" when it is loaded, so the page reads as the copied text does.
    const auto value = color.colorValue();
    auto fromCatalogue = ColorFormats::shared().clipboardString(value, "CSS HSLA");
    if (!fromCatalogue.empty()) return fromCatalogue;
    const auto hsla = hsl(value);
    char line[64];
    std::snprintf(line, sizeof line, "hsla(%ld, %ld%%, %ld%%, %.2f)", std::lround(hsla.hue), std::lround(hsla.saturation),
                  std::lround(hsla.lightness), hsla.alpha);
    return line;
}

std::string readableDate(const std::optional<std::string>& date) {
    if (!date) return "–";
    const auto time = parseDateText(*date);
    if (!time) return *date;
    const std::time_t seconds = std::chrono::system_clock::to_time_t(*time);
    std::tm utc{};
    gmtime_r(&seconds, &utc);
    char line[64];
    std::strftime(line, sizeof line, "%d %b %Y, %H:%M UTC", &utc);
    return line;
}

std::optional<std::string> palettePDF(const Palette& palette) {
    const double height = kHeaderHeight + kRowHeight * static_cast<double>(palette.colors.size()) + kFooterHeight;
    std::string bytes;
    cairo_surface_t* surface = cairo_pdf_surface_create_for_stream(appendBytes, &bytes, kPageWidth, height);
    cairo_t* cr = cairo_create(surface);
    draw(cr, palette, height);
    cairo_destroy(cr);
    cairo_surface_finish(surface);
    const auto status = cairo_surface_status(surface);
    cairo_surface_destroy(surface);
    if (status != CAIRO_STATUS_SUCCESS) {
        SHERLOG(std::string("PDF export failed: ") + cairo_status_to_string(status), SherlogLevel::error);
        return std::nullopt;
    }
    return bytes;
}

}  // namespace kro
