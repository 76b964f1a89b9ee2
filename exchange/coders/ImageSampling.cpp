// Sampling tells two kinds of colour apart. A flat colour is one exact value painted over an area, as a
// swatch, a logo's fill or a clipped highlight is; it shows as runs of equal neighbouring pixels, and it
// is kept exactly as it is. Shades are everything else (a photograph, a gradient, JPEG noise): they are
// counted in small cubes of RGBA space, small enough that everything in one cube counts as one colour,
// which keeps a photograph's hundreds of thousands of shades to a few thousand cheaply. The flat
// colours seed the palette, then the most common cubes; each rarer cube joins the nearest colour within
// the accuracy's distance or starts one of its own. Last, colours covering a tiny part of the picture
// are dropped.
#include "exchange/coders/ImageSampling.h"

#include <algorithm>
#include <array>
#include <bit>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace PAL {

namespace {

using Channels = std::array<double, 4>;  // 8-bit units

// A colour covering less than this fraction of the picture is a stray (an edge, noise, compression
// ringing). A thousandth keeps a photograph's small bright accents and every swatch of a sheet of up to
// a thousand.
constexpr std::uint64_t strayDivisor = 1000;
// Only this many of the most common cubes seed or join colours, and at most this many colours are
// formed before the rarest are cut; both bound the work of the nearest-colour search.
constexpr std::size_t cubesPerColor = 16;
constexpr std::size_t candidatesPerColor = 4;
// Beyond this the nearest-colour search grows slow, and no palette is that long.
constexpr std::size_t mostColors = 1024;

// Pixels counted under one key: an exact value, or a cube.
struct Counts {
    std::uint32_t key = 0;
    std::uint64_t count = 0;
    std::uint64_t firstPixel = 0;
    std::array<std::uint64_t, 4> sums{};

    void add(const std::uint8_t* rgba, std::uint64_t pixels, std::uint64_t index) {
        if (count == 0) firstPixel = index;
        count += pixels;
        for (std::size_t c = 0; c < 4; ++c) sums[c] += rgba[c] * pixels;
    }
};

// Counts by key in an open-addressing table: a photograph has hundreds of thousands of shades, and a
// node for each in std::unordered_map costs more than decoding the picture.
class CountTable {
public:
    Counts& operator[](std::uint32_t key) {
        if ((entries.size() + 1) * 2 > slots.size()) grow();
        std::size_t i = slotOf(key);
        while (slots[i] != empty && entries[slots[i]].key != key) i = (i + 1) & (slots.size() - 1);
        if (slots[i] == empty) {
            slots[i] = static_cast<std::uint32_t>(entries.size());
            entries.push_back({key});
        }
        return entries[slots[i]];
    }

    std::vector<Counts>& all() { return entries; }

private:
    static constexpr std::uint32_t empty = UINT32_MAX;

    std::size_t slotOf(std::uint32_t key) const {
        return static_cast<std::size_t>((key * 0x9E3779B97F4A7C15ull) >> (64 - std::countr_zero(slots.size())));
    }

    void grow() {
        slots.assign(std::max<std::size_t>(slots.size() * 2, 1024), empty);
        for (std::size_t index = 0; index < entries.size(); ++index) {
            std::size_t i = slotOf(entries[index].key);
            while (slots[i] != empty) i = (i + 1) & (slots.size() - 1);
            slots[i] = static_cast<std::uint32_t>(index);
        }
    }

    std::vector<std::uint32_t> slots;  // indices into entries
    std::vector<Counts> entries;
};

struct Candidate {
    Channels channels;
    std::uint64_t count;
    std::uint64_t firstPixel;
};

bool moreCommon(const Candidate& a, const Candidate& b) {
    return a.count != b.count ? a.count > b.count : a.firstPixel < b.firstPixel;
}

Candidate candidate(const Counts& counts) {
    Channels mean;
    for (std::size_t c = 0; c < 4; ++c) mean[c] = std::round(static_cast<double>(counts.sums[c]) / static_cast<double>(counts.count));
    return {mean, counts.count, counts.firstPixel};
}

Candidate* nearestWithin(std::vector<Candidate>& colors, const Channels& channels, double distance) {
    Candidate* nearest = nullptr;
    double nearestDistance = distance * distance;
    for (Candidate& color : colors) {
        double d = 0;
        for (std::size_t c = 0; c < 4; ++c) d += (color.channels[c] - channels[c]) * (color.channels[c] - channels[c]);
        if (d <= nearestDistance && (!nearest || d < nearestDistance)) {  // ties go to the more common
            nearest = &color;
            nearestDistance = d;
        }
    }
    return nearest;
}

// Every coloured pixel by cube (an edge of `edge` levels: any two colours in one lie at most 2 x edge
// apart), and the flat colours taken out of their cubes.
struct Tally {
    std::vector<Candidate> flatColors;
    std::vector<Candidate> cubes;
    std::uint64_t pixelCount = 0;  // pixels that carry a colour
};

Tally tally(const RasterImage& image, unsigned edge) {
    const auto cubeKey = [edge](const std::uint8_t* p) {
        return std::uint32_t(p[0] / edge) << 24 | std::uint32_t(p[1] / edge) << 16 | std::uint32_t(p[2] / edge) << 8 | p[3] / edge;
    };
    CountTable cubes, runs;
    Tally result;
    const std::uint8_t* pixels = image.rgba.data();
    const std::size_t count = image.rgba.size() / 4;
    std::uint32_t runValue = 0;
    std::uint64_t runStart = 0, runLength = 0;
    Counts* cube = nullptr;  // the run's cube: a pixel equal to its neighbour needs no lookup
    const auto endRun = [&] {
        if (runLength >= 2) runs[runValue].add(pixels + runStart * 4, runLength, runStart);
        runLength = 0;
    };
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint8_t* p = pixels + i * 4;
        if (p[3] == 0) {
            endRun();
            continue;
        }
        std::uint32_t value;
        std::memcpy(&value, p, 4);
        if (runLength == 0 || value != runValue) {
            endRun();
            runValue = value;
            runStart = i;
            cube = &cubes[cubeKey(p)];
        }
        ++runLength;
        cube->add(p, 1, i);
        ++result.pixelCount;
    }
    endRun();

    for (const Counts& run : runs.all()) {
        if (run.count * strayDivisor < result.pixelCount) continue;
        result.flatColors.push_back(candidate(run));
        std::uint8_t rgba[4];
        std::memcpy(rgba, &run.key, 4);
        Counts& home = cubes[cubeKey(rgba)];
        home.count -= run.count;
        for (std::size_t c = 0; c < 4; ++c) home.sums[c] -= run.sums[c];
    }
    for (const Counts& counts : cubes.all())
        if (counts.count > 0) result.cubes.push_back(candidate(counts));
    return result;
}

}  // namespace

std::vector<ImageCoder::Pixel> sampledColors(const RasterImage& image, double accuracy, std::size_t maximumCount) {
    maximumCount = std::min(maximumCount, mostColors);
    if (maximumCount == 0) return {};
    const double held = std::isnan(accuracy) ? 1.0 : std::clamp(accuracy, 0.0, 1.0);
    const double distance = (1 - held) * 510;  // 510: the longest distance in the RGBA cube
    const unsigned edge = std::max(1u, static_cast<unsigned>(distance / 2));

    Tally counted = tally(image, edge);
    std::vector<Candidate>& colors = counted.flatColors;
    std::vector<Candidate>& cubes = counted.cubes;
    const std::uint64_t pixelCount = counted.pixelCount;
    std::sort(colors.begin(), colors.end(), moreCommon);
    const std::size_t cubeLimit = std::min(cubes.size(), maximumCount * cubesPerColor);
    std::partial_sort(cubes.begin(), cubes.begin() + static_cast<std::ptrdiff_t>(cubeLimit), cubes.end(), moreCommon);
    cubes.resize(cubeLimit);

    for (const Candidate& cube : cubes) {
        if (Candidate* nearest = nearestWithin(colors, cube.channels, distance)) {
            nearest->count += cube.count;
            nearest->firstPixel = std::min(nearest->firstPixel, cube.firstPixel);
        } else if (colors.size() < maximumCount * candidatesPerColor) {
            colors.push_back(cube);
        }
    }

    std::erase_if(colors, [&](const Candidate& color) { return color.count * strayDivisor < pixelCount; });
    std::sort(colors.begin(), colors.end(), moreCommon);
    if (colors.size() > maximumCount) colors.resize(maximumCount);

    std::vector<ImageCoder::Pixel> sampled;
    sampled.reserve(colors.size());
    for (const Candidate& color : colors)
        sampled.push_back({color.channels[0] / 255, color.channels[1] / 255, color.channels[2] / 255, color.channels[3] / 255});
    return sampled;
}

}  // namespace PAL
