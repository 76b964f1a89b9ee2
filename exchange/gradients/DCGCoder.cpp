// Our own binary gradient file (docs/formats/dcg.md): a magic, a version, then every gradient with its
// name and stops, each stop a position and a colour in its own space with its name, type and alpha.
// Little-endian throughout. Nothing the model holds is lost, and every count is checked against the
// bytes that remain before anything is allocated.
#include <cmath>

#include "exchange/BytesReader.h"
#include "exchange/BytesWriter.h"
#include "exchange/PalErrors.h"
#include "exchange/gradients/GradientCoders.h"

namespace PAL {

namespace {

using BytesParser::BytesReader;
using BytesParser::BytesWriter;
using BytesParser::Endianness;
using BytesParser::TextEncoding;

constexpr std::string_view magic = "DCGR";
constexpr std::uint16_t version = 1;
constexpr auto little = Endianness::little;
// The smallest a stored gradient and a stored stop can be: what a count is checked against.
constexpr std::size_t smallestGradient = 4 + 4;
constexpr std::size_t smallestStop = 8 + 1 + 1 + 8 + 1 + 4;

CommonError invalidFormat() { return CommonError(CommonError::Case::invalidFormat); }

class Input {
public:
    explicit Input(std::string_view bytes) : reader_(bytes), size_(bytes.size()) {}

    std::size_t remaining() const { return size_ - reader_.readPosition(); }
    std::uint8_t byte() { return reader_.readByte(); }
    std::uint16_t uint16() { return reader_.readInteger<std::uint16_t>(little); }
    std::uint32_t count(std::size_t smallestItem) {
        const auto value = reader_.readInteger<std::uint32_t>(little);
        if (value > remaining() / smallestItem) throw invalidFormat();
        return value;
    }
    double number() {
        const double value = reader_.readFloat64(little);
        if (!std::isfinite(value)) throw invalidFormat();
        return value;
    }
    std::string text() { return reader_.readString(TextEncoding::utf8, count(1)); }
    std::string raw(std::size_t length) { return reader_.readString(TextEncoding::isoLatin1, static_cast<std::int64_t>(length)); }

private:
    BytesReader reader_;
    std::size_t size_;
};

Color readColor(Input& input) {
    const auto space = input.byte();
    if (space > static_cast<int>(ColorSpace::Gray)) throw invalidFormat();
    const auto colorSpace = static_cast<ColorSpace>(space);
    const auto components = input.byte();
    if (components != componentCount(colorSpace)) throw invalidFormat();
    std::vector<double> values;
    for (int i = 0; i < components; ++i) values.push_back(input.number());
    const double alpha = input.number();
    const auto type = input.byte();
    if (type > static_cast<int>(ColorType::normal)) throw invalidFormat();
    std::string name = input.text();
    return Color(colorSpace, std::move(values), alpha, std::move(name), static_cast<ColorType>(type));
}

void writeText(BytesWriter& out, std::string_view text) {
    out.writeInteger(static_cast<std::uint32_t>(text.size()), little);
    out.writeBytes(text);
}

void writeColor(BytesWriter& out, const Color& color) {
    if (static_cast<int>(color.colorComponents.size()) != componentCount(color.colorSpace))
        throw CommonError(CommonError::Case::invalidColorComponentCountForModelType);
    out.writeByte(static_cast<std::uint8_t>(color.colorSpace));
    out.writeByte(static_cast<std::uint8_t>(color.colorComponents.size()));
    for (double component : color.colorComponents) out.writeFloat64(component, little);
    out.writeFloat64(color.alpha, little);
    out.writeByte(static_cast<std::uint8_t>(color.colorType));
    writeText(out, color.name);
}

Gradients read(Input& input) {
    if (input.remaining() < magic.size() + 2 || input.raw(magic.size()) != magic) throw invalidFormat();
    if (input.uint16() != version) throw CommonError(CommonError::Case::invalidVersion);

    Gradients gradients;
    gradients.format = GradientsFormat::dcg;
    const auto gradientCount = input.count(smallestGradient);
    if (gradientCount == 0) throw invalidFormat();
    for (std::uint32_t g = 0; g < gradientCount; ++g) {
        Gradient gradient;
        gradient.name = input.text();
        const auto stopCount = input.count(smallestStop);
        if (stopCount == 0) throw invalidFormat();
        for (std::uint32_t s = 0; s < stopCount; ++s) {
            const double position = input.number();
            gradient.stops.push_back({position, readColor(input)});
        }
        gradient.normalize();
        gradients.gradients.push_back(std::move(gradient));
    }
    if (input.remaining() != 0) throw invalidFormat();
    return gradients;
}

class DCGCoder final : public GradientsCoder {
public:
    DCGCoder() : GradientsCoder(GradientsFormat::dcg) {}
    using GradientsCoder::decode;

    Gradients decode(BytesReader& reader) const override {
        const auto bytes = reader.readAll();
        Input input(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
        try {
            return read(input);
        } catch (const BytesParser::ReaderError&) {
            throw invalidFormat();  // cut short, or a name that is not UTF-8
        }
    }

    std::string encode(const Gradients& gradients) const override {
        const auto& list = writableGradients(gradients);
        BytesWriter out;
        out.writeBytes(magic);
        out.writeInteger(version, little);
        out.writeInteger(static_cast<std::uint32_t>(list.size()), little);
        for (const auto& gradient : list) {
            const auto stops = writableStops(gradient);
            writeText(out, gradient.name);
            out.writeInteger(static_cast<std::uint32_t>(stops.size()), little);
            for (const auto& stop : stops) {
                out.writeFloat64(stop.position, little);
                writeColor(out, stop.color);
            }
        }
        return out.data();
    }
};

}  // namespace

std::unique_ptr<GradientsCoder> makeDCGCoder() { return std::make_unique<DCGCoder>(); }

}  // namespace PAL
