#include "picker/LoupeRenderer.h"

#include <algorithm>
#include <cmath>

namespace kro {
namespace {

constexpr int kSide = kLoupeViewSide;
constexpr int kCentre = kSide / 2;
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

    uint32_t& at(int x, int y) { return canvas.pixels[static_cast<size_t>(y) * kSide + x]; }
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

void renderLoupe(const LoupeFrame& frame, Bitmap& canvas) {
    if (canvas.width != kSide || canvas.height != kSide) {
        canvas = Bitmap{kSide, kSide, std::vector<uint32_t>(static_cast<size_t>(kSide) * kSide, 0)};
    }
    const int size = frame.size;
    const int zoom = std::max(frame.zoom, 1);
    const uint32_t label = frame.dark ? 0xFFFFFFFFu : 0xFF000000u;
    const uint32_t textBackground = frame.dark ? 0xFF1E1E1Eu : 0xFFFFFFFFu;

    // The square of the largest lens, so that a lens that shrank leaves nothing behind.
    const int left = std::max(0, (kSide - std::max(size, kLargestLens)) / 2 - 1);
    const int right = kSide - left;
    Painter painter{canvas, left, left, right, right};

    // The lens: an oval of diameter size − 4 centred on the view, filled with the capture magnified so
    // that the cell [(800 − zoom) / 2, (800 + zoom) / 2) shows the capture's centre pixel.
    const double radius = (size - 4) / 2.0;
    const double gridRadius = (size - 6) / 2.0;
    const int cellOrigin = (kSide - zoom) / 2;
    const int half = 200;  // the capture's centre pixel
    for (int y = left; y < right; ++y) {
        const double dy = y + 0.5 - kCentre;
        for (int x = left; x < right; ++x) {
            const double dx = x + 0.5 - kCentre;
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
        for (int y = kCentre - 12; y < kCentre + 12; ++y) {
            for (int x = kCentre - 12; x < kCentre + 12; ++x) {
                const double d = std::hypot(x + 0.5 - kCentre, y + 0.5 - kCentre);
                if (d <= 11 && d >= 7) painter.set(x, y, d <= 8 || d >= 10 ? label : textBackground);
            }
        }
        return;
    }
    painter.frame(cellOrigin, zoom, textBackground, 1.0);
    painter.frame(cellOrigin - 1, zoom + 2, label, 0.25);
    if (frame.precisionMode) {
        // Ticks beside the four sides of the centre cell, at growing distances.
        for (int offset : {1, 2, 3, 4}) {
            const int near = cellOrigin - 1 - 2 * offset;
            const int far = cellOrigin + zoom + 2 * offset;
            painter.mix(kCentre, near, label, 0.5);
            painter.mix(kCentre, far, label, 0.5);
            painter.mix(near, kCentre, label, 0.5);
            painter.mix(far, kCentre, label, 0.5);
        }
    }
}

}  // namespace kro
