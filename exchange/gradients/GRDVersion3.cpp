#include "exchange/gradients/GRDVersion3.h"

#include <algorithm>

#include "exchange/BytesReader.h"
#include "exchange/ExchangeLog.h"
#include "exchange/PalErrors.h"
#include "exchange/gradients/GRDTracks.h"

namespace PAL {

namespace {

using BytesParser::BytesReader;
constexpr auto big = BytesParser::Endianness::big;
constexpr double locationScale = 4096;

CommonError invalidFormat() { return CommonError(CommonError::Case::invalidFormat); }

// Photoshop's colour record, as its swatch files store it. Foreground and background stops carry
// no colour of their own: Photoshop's default black and white stand in.
RGB recordColor(BytesReader& reader) {
    const auto space = reader.readInteger<std::uint16_t>(big);
    const auto w = reader.readIntegers<std::uint16_t>(4, big);
    const auto kind = reader.readInteger<std::uint16_t>(big);
    if (kind == 1) return {0, 0, 0, 1};
    if (kind == 2) return {1, 1, 1, 1};
    if (kind != 0) throw invalidFormat();
    const auto unit = [](std::uint16_t word) { return word / 65535.0; };
    switch (space) {
    case 0: return {unit(w[0]), unit(w[1]), unit(w[2]), 1};
    case 1: return hsbToRGB({unit(w[0]), unit(w[1]), unit(w[2]), 1});
    case 2: {
        // 0 is full ink.
        const double k = unit(w[3]);
        return {unit(w[0]) * k, unit(w[1]) * k, unit(w[2]) * k, 1};
    }
    case 7:
        return Color::lab(w[0] / 100.0, static_cast<std::int16_t>(w[1]) / 100.0, static_cast<std::int16_t>(w[2]) / 100.0).rgb();
    case 8: {
        const double white = 1 - std::min(w[0] / 10000.0, 1.0);
        return {white, white, white, 1};
    }
    default: throw invalidFormat();
    }
}

double location(BytesReader& reader) { return std::clamp(reader.readInteger<std::int32_t>(big) / locationScale, 0.0, 1.0); }
double midpoint(BytesReader& reader) { return std::clamp(reader.readInteger<std::int32_t>(big) / 100.0, 0.0, 1.0); }

std::optional<Gradient> readGradient(BytesReader& reader) {
    Gradient gradient;
    const auto nameLength = reader.readByte();
    gradient.name = reader.readString(BytesParser::TextEncoding::isoLatin1, nameLength);  // 8-bit names, taken as Latin-1

    std::vector<TrackStop> colors, opacities;
    const auto colorCount = reader.readInteger<std::uint16_t>(big);
    for (int i = 0; i < colorCount; ++i) {
        const double at = location(reader), middle = midpoint(reader);
        colors.push_back({at, middle, recordColor(reader)});
    }
    const auto opacityCount = reader.readInteger<std::uint16_t>(big);
    for (int i = 0; i < opacityCount; ++i) {
        const double at = location(reader), middle = midpoint(reader);
        const double opacity = std::min(reader.readInteger<std::uint16_t>(big) / 255.0, 1.0);
        opacities.push_back({at, middle, RGB{0, 0, 0, opacity}});
    }
    reader.readBytes(6);  // always zero; their use is not known
    if (colors.empty()) {
        logInfo("Photoshop Gradients: skipped \"" + gradient.name + "\", which has no colour stop");
        return std::nullopt;
    }
    gradient.stops = flattenedTracks(std::move(colors), std::move(opacities), MidpointOwner::startingStop);
    gradient.normalize();
    return gradient;
}

}  // namespace

std::optional<int> grdVersion(std::string_view bytes) {
    if (bytes.size() < 6 || !bytes.starts_with("8BGR")) return std::nullopt;
    return static_cast<unsigned char>(bytes[4]) << 8 | static_cast<unsigned char>(bytes[5]);
}

std::vector<Gradient> grdVersion3Gradients(std::string_view bytes) {
    if (grdVersion(bytes) != 3) throw invalidFormat();
    BytesReader reader(bytes);
    std::vector<Gradient> gradients;
    try {
        reader.readBytes(6);
        const auto count = reader.readInteger<std::uint16_t>(big);
        for (int i = 0; i < count; ++i)
            if (auto gradient = readGradient(reader)) gradients.push_back(std::move(*gradient));
    } catch (const BytesParser::ReaderError&) {
        throw invalidFormat();  // cut short
    }
    if (gradients.empty()) throw invalidFormat();
    return gradients;
}

}  // namespace PAL
