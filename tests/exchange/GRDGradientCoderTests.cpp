// Photoshop (.grd, versions 3 and 5) and Paint Shop Pro (version 3) gradients.
#include <gtest/gtest.h>

#include <bit>

#include "BinaryCoderTestSupport.h"
#include "ExchangeTestSupport.h"
#include "GradientTestSupport.h"

using namespace PAL;
using namespace gradienttest;
using binarytest::hexBytes;
using Case = CommonError::Case;

namespace {

// "Ember" in version 3, byte for byte as the format notes give it.
const std::string emberVersion3 = hexBytes(
    "3842 4752 0003 0001 0545 6d62 6572 0003"
    "0000 0000 0000 0032 0000 3333 0000 0000"
    "0000 0000 0000 0800 0000 0032 0000 ffff"
    "6666 0000 0000 0000 0000 1000 0000 0032"
    "0000 ffff eeee 8888 0000 0000 0002 0000"
    "0000 0000 0032 00ff 0000 1000 0000 0032"
    "0080 0000 0000 0000");

// Writes Photoshop's serialised descriptor: enough of it to make version 5 gradient files.
class Descriptor {
public:
    std::string bytes;

    Descriptor& u32(std::uint32_t value) { return raw(binarytest::be32(value)); }
    Descriptor& raw(std::string_view text) { return bytes += text, *this; }
    Descriptor& float64(double value) {
        const auto bits = std::bit_cast<std::uint64_t>(value);
        return u32(static_cast<std::uint32_t>(bits >> 32)).u32(static_cast<std::uint32_t>(bits));
    }
    Descriptor& id(std::string_view key) {
        return key.size() == 4 ? u32(0).raw(key) : u32(static_cast<std::uint32_t>(key.size())).raw(key);
    }
    Descriptor& unicode(std::string_view ascii) {
        u32(static_cast<std::uint32_t>(ascii.size() + 1));
        for (char c : ascii) raw(std::string{'\0', c});
        return raw(std::string(2, '\0'));
    }
    Descriptor& object(std::string_view key, std::string_view name, std::string_view classID, std::uint32_t items) {
        if (!key.empty()) id(key).raw("Objc");
        return unicode(name).id(classID).u32(items);
    }
    Descriptor& number(std::string_view key, double value) { return id(key).raw("doub").float64(value); }
    Descriptor& integer(std::string_view key, std::int32_t value) { return id(key).raw("long").u32(static_cast<std::uint32_t>(value)); }
    Descriptor& enumeration(std::string_view key, std::string_view type, std::string_view value) {
        return id(key).raw("enum").id(type).id(value);
    }
    Descriptor& percent(std::string_view key, double value) { return id(key).raw("UntF#Prc").float64(value); }
    Descriptor& list(std::string_view key, std::uint32_t count) { return id(key).raw("VlLs").u32(count); }
};

// A version 5 file's start: the header and the list of `count` gradients that follows it.
Descriptor gradientList(std::uint32_t count) {
    Descriptor d;
    d.raw("8BGR").raw(hexBytes("0005")).u32(16).object("", "", "null", 1).list("GrdL", count);
    return d;
}

struct ColorStop {
    int r, g, b, location, midpoint;
};
struct OpacityStop {
    double percent;
    int location, midpoint;
};

std::string version5(const std::vector<std::tuple<std::string, std::vector<ColorStop>, std::vector<OpacityStop>>>& list) {
    Descriptor d = gradientList(static_cast<std::uint32_t>(list.size()));
    for (const auto& [name, colors, opacities] : list) {
        d.raw("Objc").object("", "Gradient", "Grdn", 1).object("Grad", "Gradient", "Grdn", 5);
        d.id("Nm  ").raw("TEXT").unicode(name);
        d.enumeration("GrdF", "GrdF", "CstS").number("Intr", 0).list("Clrs", static_cast<std::uint32_t>(colors.size()));
        for (const auto& stop : colors) {
            d.raw("Objc")
                .object("", "", "Clrt", 4)
                .object("Clr ", "", "RGBC", 3)
                .number("Rd  ", stop.r)
                .number("Grn ", stop.g)
                .number("Bl  ", stop.b);
            d.enumeration("Type", "Clry", "UsrS").integer("Lctn", stop.location).integer("Mdpn", stop.midpoint);
        }
        d.list("Trns", static_cast<std::uint32_t>(opacities.size()));
        for (const auto& stop : opacities)
            d.raw("Objc")
                .object("", "", "TrnS", 3)
                .percent("Opct", stop.percent)
                .integer("Lctn", stop.location)
                .integer("Mdpn", stop.midpoint);
    }
    return d.bytes;
}

std::string emberVersion5() {
    return version5(
        {{"Ember", {{51, 0, 0, 0, 50}, {255, 102, 0, 2048, 50}, {255, 238, 136, 4096, 50}}, {{100, 0, 50}, {50, 4096, 50}}}});
}

}  // namespace

TEST(AdobeGRDCoderTest, ReadsBothVersionsOfTheExample) {
    const Gradients old = decode(GradientsFormat::adobeGRD, emberVersion3);
    EXPECT_EQ(old.format, GradientsFormat::adobeGRD);
    ASSERT_EQ(old.gradients.size(), 1u);
    EXPECT_EQ(old.gradients[0].name, "Ember");
    // Version 3 stores opacity in bytes: 128/255 at the end.
    expectStops(old.gradients[0], {{0, "330000"}, {0.5, "ff6600", (1 + 128 / 255.0) / 2}, {1, "ffee88", 128 / 255.0}});

    const std::string file = emberVersion5();
    const Gradients current = decode(GradientsFormat::adobeGRD, file);
    ASSERT_EQ(current.gradients.size(), 1u);
    EXPECT_EQ(current.gradients[0].name, "Ember");
    expectStops(current.gradients[0], {{0, "330000"}, {0.5, "ff6600", 0.75}, {1, "ffee88", 0.5}});
}

TEST(AdobeGRDCoderTest, ReadsSeveralGradientsTracksThatStopShortAndMidpoints) {
    const auto list =
        decode(GradientsFormat::adobeGRD,
               version5({{"$$$/DefaultGradient/BlackWhite=Black, White", {{0, 0, 0, 0, 50}, {255, 255, 255, 4096, 25}}, {}},
                         {"Inner", {{255, 0, 0, 1024, 50}, {0, 0, 255, 3072, 50}}, {{100, 0, 50}, {0, 2048, 50}}}}))
            .gradients;
    ASSERT_EQ(list.size(), 2u);
    // The midpoint stored with the last stop governs the interval before it; the localisable key shows its text.
    EXPECT_EQ(list[0].name, "Black, White");
    expectStops(list[0], {{0, "000000"}, {0.25, "808080"}, {1, "ffffff"}}, 0.003);
    // Colour held before its first stop at 0.25; opacity falling to 0 at 0.5 and held after.
    expectStops(list[1], {{0, "ff0000", 1}, {0.25, "ff0000", 0.5}, {0.5, "800080", 0}, {0.75, "0000ff", 0}}, 0.003);
}

TEST(AdobeGRDCoderTest, RefusesOtherFilesAndDamagedOnes) {
    for (const std::string& bytes : {std::string(), std::string("8BGR"), hexBytes("3842475200040001"),
                                     hexBytes("4142434400030001")})
        EXPECT_TRUE(binarytest::commonError([&] { decode(GradientsFormat::adobeGRD, bytes); })) << binarytest::hexOf(bytes);
    const std::string file = emberVersion5();
    for (std::size_t length = 6; length < file.size(); length += 7)
        EXPECT_TRUE(binarytest::commonError([&] { decode(GradientsFormat::adobeGRD, file.substr(0, length)); })) << length;
    for (std::size_t length = 6; length < emberVersion3.size(); ++length)
        EXPECT_TRUE(binarytest::commonError([&] { decode(GradientsFormat::adobeGRD, emberVersion3.substr(0, length)); }))
            << length;
    // An unknown value type cannot be read past; nesting is bounded (this depth would exhaust the stack).
    std::string unknownType = file;
    unknownType.replace(unknownType.find("doub"), 4, "what");
    expectCommonError(Case::invalidFormat, [&] { decode(GradientsFormat::adobeGRD, unknownType); });
    Descriptor deep = gradientList(1);
    for (int i = 0; i < 100000; ++i) deep.raw("VlLs").u32(1);
    deep.raw("long").u32(0);
    expectCommonError(Case::invalidFormat, [&] { decode(GradientsFormat::adobeGRD, deep.bytes); });
    // A gradient file of noise gradients only has nothing to give.
    Descriptor noise = gradientList(1);
    noise.raw("Objc").object("", "Gradient", "Grdn", 1).object("Grad", "Gradient", "Grdn", 2).id("Nm  ").raw("TEXT").unicode("Noise");
    noise.enumeration("GrdF", "GrdF", "ClNs");
    binarytest::LogCapture log;
    expectCommonError(Case::invalidFormat, [&] { decode(GradientsFormat::adobeGRD, noise.bytes); });
    EXPECT_TRUE(log.contains("Photoshop Gradients: skipped the noise gradient \"Noise\", which has no stops"));
}

TEST(PaintShopProGradientCoderTest, ReadsTheVersion3LayoutOnly) {
    const Gradients list = decode(GradientsFormat::paintShopPro, emberVersion3);
    EXPECT_EQ(list.format, GradientsFormat::paintShopPro);
    ASSERT_EQ(list.gradients.size(), 1u);
    expectSameStops(list.gradients[0], decode(GradientsFormat::adobeGRD, emberVersion3).gradients[0]);
    expectCommonError(Case::invalidFormat, [] { decode(GradientsFormat::paintShopPro, emberVersion5()); });
    // An 8-bit name is Latin-1; a midpoint on the first stop governs the interval after it.
    std::string accented = emberVersion3;
    accented[9] = '\xE9';
    accented[0x17] = 25;
    const Gradient g = decode(GradientsFormat::paintShopPro, accented).gradients.at(0);
    EXPECT_EQ(g.name, "émber");
    EXPECT_NEAR(g.stops.at(1).position, 0.125, 1e-9);
}
