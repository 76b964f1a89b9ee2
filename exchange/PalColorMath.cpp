// Conversions between the colour forms, with the layer's own constants. Two different Lab
// thresholds and two different inverse-gamma exponents are used on purpose: each path keeps the
// literals it has always had, so files convert exactly as before.
#include <algorithm>
#include <cmath>

#include "exchange/PalColor.h"
#include "exchange/PalUnit.h"

namespace PAL {

namespace {

double linearToSRGB(double c) { return c <= 0.0031308 ? 12.92 * c : 1.055 * std::pow(c, 0.4166666666666667) - 0.055; }

constexpr double whiteX = 95.047, whiteY = 100.0, whiteZ = 108.883;

double labForward(double t) { return t > 0.008856451679035631 ? std::pow(t, 0.3333333333333333) : 7.787 * t + 0.13793103448275862; }

double labBackward(double f) {
    const double cube = f * f * f;
    return cube > 0.008856 ? cube : (f - 0.13793103448275862) / 7.787;
}

}  // namespace

XYZ rgbToXYZ(const RGB& rgb) {
    const double r = srgbToLinear(rgb.rf) * 100, g = srgbToLinear(rgb.gf) * 100, b = srgbToLinear(rgb.bf) * 100;
    return {0.4124 * r + 0.3576 * g + 0.1805 * b, 0.2126 * r + 0.7152 * g + 0.0722 * b,
            0.0193 * r + 0.1192 * g + 0.9505 * b, rgb.af};
}

RGB xyzToRGB(const XYZ& xyz) {
    const double x = xyz.xf / 100, y = xyz.yf / 100, z = xyz.zf / 100;
    const double r = 3.2406 * x - 1.5372 * y - 0.4986 * z;
    const double g = -0.9689 * x + 1.8758 * y + 0.0415 * z;
    const double b = 0.0557 * x - 0.204 * y + 1.057 * z;
    return {clampUnit(linearToSRGB(r)), clampUnit(linearToSRGB(g)), clampUnit(linearToSRGB(b)), xyz.af};
}

LAB xyzToLAB(const XYZ& xyz) {
    const double fx = labForward(xyz.xf / whiteX), fy = labForward(xyz.yf / whiteY), fz = labForward(xyz.zf / whiteZ);
    return {std::clamp(116 * fy - 16, 0.0, 100.0), std::clamp(500 * (fx - fy), -128.0, 128.0),
            std::clamp(200 * (fy - fz), -128.0, 128.0), xyz.af};
}

XYZ labToXYZ(const LAB& lab) {
    const double fy = (lab.lf + 16) / 116, fx = lab.af / 500 + fy, fz = fy - lab.bf / 200;
    return {whiteX * labBackward(fx), whiteY * labBackward(fy), whiteZ * labBackward(fz), lab.alphaf};
}

HSL rgbToHSL(const RGB& rgb) {
    const double r = rgb.rf, g = rgb.gf, b = rgb.bf;
    const double max = std::max({r, g, b}), min = std::min({r, g, b});
    const double l = (max + min) / 2, d = max - min;
    if (d == 0) return {0, 0, l, rgb.af};
    const double s = l < 0.5 ? d / (max + min) : d / (2 - max - min);
    const double dr = ((max - r) / 6 + d / 2) / d, dg = ((max - g) / 6 + d / 2) / d, db = ((max - b) / 6 + d / 2) / d;
    double h = 0;
    if (r == max) h = db - dg;
    else if (g == max) h = 0.3333333333333333 + dr - db;
    else h = 0.6666666666666666 + dg - dr;
    if (h < 0) h += 1;
    if (h > 1) h -= 1;
    return {h, s, l, rgb.af};
}

namespace {

double hueToChannel(double p, double q, double t) {
    if (t < 0) t += 1;
    if (t > 1) t -= 1;
    if (6 * t < 1) return p + (q - p) * 6 * t;
    if (2 * t < 1) return q;
    if (3 * t < 2) return p + (q - p) * (0.6666666666666666 - t) * 6;
    return p;
}

}  // namespace

RGB hslToRGB(const HSL& hsl) {
    const double h = hsl.hf, s = hsl.sf, l = hsl.lf;
    if (s == 0) return {l, l, l, hsl.af};
    const double q = l < 0.5 ? l * (1 + s) : l + s - l * s;
    const double p = 2 * l - q;
    return {hueToChannel(p, q, h + 0.3333333333333333), hueToChannel(p, q, h), hueToChannel(p, q, h - 0.3333333333333333), hsl.af};
}

// Plain hexcone HSB, hue as a fraction of a turn.
HSB rgbToHSB(const RGB& rgb) {
    const double r = clampUnit(rgb.rf), g = clampUnit(rgb.gf), b = clampUnit(rgb.bf);
    const double max = std::max({r, g, b}), min = std::min({r, g, b}), d = max - min;
    double h = 0;
    if (d > 0) {
        if (max == r) h = std::fmod((g - b) / d, 6.0);
        else if (max == g) h = (b - r) / d + 2;
        else h = (r - g) / d + 4;
        h /= 6;
        if (h < 0) h += 1;
    }
    return {clampUnit(h), max == 0 ? 0 : clampUnit(d / max), max, clampUnit(rgb.af)};
}

RGB hsbToRGB(const HSB& hsb) {
    const double h = clampUnit(hsb.hf), s = clampUnit(hsb.sf), v = clampUnit(hsb.bf);
    const double sector = h * 6 >= 6 ? 0 : h * 6;
    const int i = static_cast<int>(sector);
    const double f = sector - i;
    const double p = v * (1 - s), q = v * (1 - s * f), t = v * (1 - s * (1 - f));
    double r = v, g = t, b = p;
    switch (i) {
    case 1: r = q, g = v, b = p; break;
    case 2: r = p, g = v, b = t; break;
    case 3: r = p, g = q, b = v; break;
    case 4: r = t, g = p, b = v; break;
    case 5: r = v, g = p, b = q; break;
    default: break;
    }
    return {clampUnit(r), clampUnit(g), clampUnit(b), clampUnit(hsb.af)};
}

YCbCr rgbToYCbCr(const RGB& rgb) {
    const double r = rgb.rf * 255, g = rgb.gf * 255, b = rgb.bf * 255;
    return {std::clamp(0.299 * r + 0.587 * g + 0.114 * b, 0.0, 255.0),
            std::clamp(-0.1687 * r - 0.3313 * g + 0.5 * b + 128, 0.0, 255.0),
            std::clamp(0.5 * r - 0.4187 * g - 0.0813 * b + 128, 0.0, 255.0)};
}

RGB ycbcrToRGB(const YCbCr& c) {
    return {clampUnit((c.y + 1.402 * (c.cr - 128)) / 255),
            clampUnit((c.y - 0.34414 * (c.cb - 128) - 0.71414 * (c.cr - 128)) / 255),
            clampUnit((c.y + 1.772 * (c.cb - 128)) / 255), 1.0};
}

namespace OkLab {

namespace {

// Unlike the XYZ path, a value equal to the threshold takes the power branch here.
double toLinear(double c) { return c < 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); }
double fromLinear(double c) { return c < 0.0031308 ? 12.92 * c : 1.055 * std::pow(c, 0.41666) - 0.055; }

}  // namespace

Lab fromSRGB(const RGB& rgb) {
    const double r = toLinear(rgb.rf), g = toLinear(rgb.gf), b = toLinear(rgb.bf);
    const double l = std::cbrt(0.4122214708 * r + 0.5363325363 * g + 0.0514459929 * b);
    const double m = std::cbrt(0.2119034982 * r + 0.6806995451 * g + 0.1073969566 * b);
    const double s = std::cbrt(0.0883024619 * r + 0.2817188376 * g + 0.6299787005 * b);
    return {0.2104542553 * l + 0.793617785 * m - 0.0040720468 * s,
            1.9779984951 * l - 2.428592205 * m + 0.4505937099 * s,
            0.0259040371 * l + 0.7827717662 * m - 0.808675766 * s};
}

RGB toSRGB(const Lab& lab) {
    const double l = std::pow(lab.L + 0.3963377774 * lab.a + 0.2158037573 * lab.b, 3);
    const double m = std::pow(lab.L - 0.1055613458 * lab.a - 0.0638541728 * lab.b, 3);
    const double s = std::pow(lab.L - 0.0894841775 * lab.a - 1.291485548 * lab.b, 3);
    const double r = 4.0767416621 * l - 3.3077115913 * m + 0.2309699292 * s;
    const double g = -1.2684380046 * l + 2.6097574011 * m - 0.3413193965 * s;
    const double b = -0.0041960863 * l - 0.7034186147 * m + 1.707614701 * s;
    return {clampUnit(fromLinear(r)), clampUnit(fromLinear(g)), clampUnit(fromLinear(b)), 1.0};
}

}  // namespace OkLab

}  // namespace PAL
