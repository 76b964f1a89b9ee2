#include "picker/LoupeRenderer.h"

#include <algorithm>
#include <cmath>

namespace kro {
namespace {

constexpr int kLargestLens = 360;

uint32_t blend(uint32_t under, uint32_t color, double alpha) {
    const auto mix = [&](int shift) {
        const double a = (under >> shift) & 0xFF;
        const double b = (color >> shift) & 0xFF;
        return static_cast<uint32_t>(std::lround(a + (b - a) * alpha)) << shift;
    };
    return 0xFF000000u | mix(16) | mix(8) | mix(0);
}

// A capture pixel laid over the lens's background; transparent parts show the background.
uint32_t over(uint32_t pixel, uint32_t background) {
    const double alpha = (pixel >> 24) / 255.0;
    if (alpha >= 1) return pixel;
    return blend(background, pixel | 0xFF000000u, alpha);
}

struct Painter {
    Bitmap& canvas;
    int clipLeft, clipTop, clipRight, clipBottom;

    uint32_t& at(int x, int y) { return canvas.pixels[static_cast<size_t>(y) * canvas.width + x]; }
    bool inside(int x, int y) const { return x >= clipLeft && x < clipRight && y >= clipTop && y < clipBottom; }
    void mix(int x, int y, uint32_t color, double alpha) {
        if (inside(x, y) && (at(x, y) >> 24)) at(x, y) = blend(at(x, y), color, alpha);
    }
    void set(int x, int y, uint32_t color) {
        if (inside(x, y)) at(x, y) = color;
    }
    // The outline of the square [left, left + side) in one-pixel lines.
    void frame(int left, int side, uint32_t color, double alpha) {
        for (int i = 0; i < side; ++i) {
            mix(left + i, left, color, alpha);
            mix(left + i, left + side - 1, color, alpha);
            if (i > 0 && i < side - 1) {
                mix(left, left + i, color, alpha);
                mix(left + side - 1, left + i, color, alpha);
            }
        }
    }
};

}  // namespace

int loupeCanvasSide(double scale) { return 2 * static_cast<int>(std::lround(kLoupeViewSide / 2 * std::max(scale, 0.25))); }

void renderLoupe(const LoupeFrame& frame, Bitmap& canvas) {
    const double scale = std::max(frame.scale, 0.25);
    const int side = loupeCanvasSide(scale);
    if (canvas.width != side || canvas.height != side) {
        canvas = Bitmap{side, side, std::vector<uint32_t>(static_cast<size_t>(side) * side, 0)};
    }
    const int centre = side / 2;
    // Lengths of the interface in device pixels; the lines themselves stay one device pixel wide.
    const auto px = [scale](double points) { return points * scale; };
    const int size = static_cast<int>(std::lround(px(frame.size)));
    const int zoom = std::max(static_cast<int>(std::lround(px(frame.zoom))), 1);
    const uint32_t label = frame.dark ? 0xFFFFFFFFu : 0xFF000000u;
    const uint32_t textBackground = frame.dark ? 0xFF1E1E1Eu : 0xFFFFFFFFu;

    // The square of the largest lens, so that a lens that shrank leaves nothing behind.
    const int left = std::max(0, centre - static_cast<int>(std::lround(px(std::max(frame.size, kLargestLens)))) / 2 - 1);
    const int right = side - left;
    Painter painter{canvas, left, left, right, right};

    // The lens: an oval a little inside the picker's size, centred on the view, filled with the capture
    // magnified so that the cell [(side − zoom) / 2, (side + zoom) / 2) shows the capture's centre pixel.
    const double radius = (size - px(4)) / 2;
    const double gridRadius = (size - px(6)) / 2;
    const int cellOrigin = (side - zoom) / 2;
    const int half = 200;  // the capture's centre pixel
    for (int y = left; y < right; ++y) {
        const double dy = y + 0.5 - centre;
        for (int x = left; x < right; ++x) {
            const double dx = x + 0.5 - centre;
            const double distance = std::sqrt(dx * dx + dy * dy);
            auto& pixel = painter.at(x, y);
            if (distance > radius) {
                pixel = 0;
                continue;
            }
            uint32_t color = textBackground;
            if (frame.image) {
                const int ix = half + static_cast<int>(std::floor(static_cast<double>(x - cellOrigin) / zoom));
                const int iy = half + static_cast<int>(std::floor(static_cast<double>(y - cellOrigin) / zoom));
                if (ix >= 0 && iy >= 0 && ix < frame.image->width && iy < frame.image->height) {
                    color = over(frame.image->pixel(ix, iy), textBackground);
                }
            }
            pixel = color;
            // The grid: a line at each cell edge, clipped a little inside the rim.
            if (distance <= gridRadius && ((x - cellOrigin) % zoom == 0 || (y - cellOrigin) % zoom == 0)) {
                pixel = blend(pixel, label, 0.05);
            }
            // The rim: a hairline where the oval ends.
            if (distance > radius - 1) pixel = blend(pixel, label, 0.08 * 0.5);
        }
    }

    if (frame.resetMode) {
        // The reset mark: a ring in the middle, saying the next click starts over.
        const int reach = static_cast<int>(std::ceil(px(12)));
        for (int y = centre - reach; y < centre + reach; ++y) {
            for (int x = centre - reach; x < centre + reach; ++x) {
                const double d = std::hypot(x + 0.5 - centre, y + 0.5 - centre);
                if (d <= px(11) && d >= px(7)) painter.set(x, y, d <= px(8) || d >= px(10) ? label : textBackground);
            }
        }
        return;
    }
    painter.frame(cellOrigin, zoom, textBackground, 1.0);
    painter.frame(cellOrigin - 1, zoom + 2, label, 0.25);
    if (frame.precisionMode) {
        // Ticks beside the four sides of the centre cell, at growing distances.
        for (int offset : {1, 2, 3, 4}) {
            const int step = static_cast<int>(std::lround(px(2 * offset)));
            const int near = cellOrigin - 1 - step;
            const int far = cellOrigin + zoom + step;
            painter.mix(centre, near, label, 0.5);
            painter.mix(centre, far, label, 0.5);
            painter.mix(near, centre, label, 0.5);
            painter.mix(far, centre, label, 0.5);
        }
    }
}

}  // namespace kro
