#include <gtest/gtest.h>

#include <filesystem>
#include <limits>
#include <optional>
#include <random>

#include "ExchangeTestSupport.h"
#include "exchange/PaletteCoder.h"
#include "exchange/coders/JSONCoder.h"
#include "tests/support/JSONPaletteTree.h"

using namespace PAL;
using Case = CommonError::Case;

namespace {

Palette sample() {
    return Palette("Brand", {Color::rgb(1, 0, 0, 1, "Red")},
                   {Group("Print", {Color::cmyk(0, 0.5, 1, 0, 1, "Spot orange", ColorType::spot), Color::lab(50, 20, -30, 0.5)}),
                    Group("", {Color::gray(0.25)})});
}

}  // namespace

// The same form as the model's own JSON: defaults are left out and a group's name may be absent.
TEST(JSONCoderTest, WritesTheLayersJsonForm) {
    JSONCoder coder;
    coder.prettyPrint = false;
    EXPECT_EQ(coder.encode(Palette("P", {Color::rgb(1, 0, 0)}, {Group("G", {Color::gray(0.5, 0.5)})})),
              R"({"name":"P","colors":[{"colorSpace":"RGB","colorComponents":[1.0,0.0,0.0]}],)"
              R"("groups":[{"name":"G","colors":[{"colorSpace":"Gray","colorComponents":[0.5],"alpha":0.5}]}]})");
    coder.prettyPrint = true;
    EXPECT_EQ(coder.encode(Palette("Tiny")), "{\n  \"name\": \"Tiny\",\n  \"colors\": [],\n  \"groups\": []\n}\n");
}

TEST(JSONCoderTest, RoundTripKeepsSpacesGroupsTypesAndAlpha) {
    const JSONCoder coder;
    const Palette back = coder.decode(coder.encode(sample()));
    expectExactPalette(back, sample());
    EXPECT_EQ(back.format, PaletteFormat::json);
}

TEST(JSONCoderTest, ReadsWithAByteOrderMarkAndDefaults) {
    const Palette palette = JSONCoder().decode(std::string_view(
        "\xEF\xBB\xBF{\"colors\":[{\"colorSpace\":\"LAB\",\"colorComponents\":[50,-20,10],\"colorType\":\"normal\"}],"
        "\"groups\":[{\"colors\":[]}]}"));
    EXPECT_TRUE(palette.name.empty());
    EXPECT_EQ(palette.colors, (std::vector<Color>{Color::lab(50, -20, 10, 1, "", ColorType::normal)}));
    ASSERT_EQ(palette.groups.size(), 1u);
    EXPECT_TRUE(palette.groups[0].name.empty());
}

TEST(JSONCoderTest, RefusesWhatIsNotItsForm) {
    const JSONCoder coder;
    for (const char* text : {"", "{", "[]", R"({"name":"x"})", R"({"colors":[],"groups":{}})", R"({"colors":[],"groups":[{"name":"G"}]})"})
        expectCommonError(Case::invalidFormat, [&] { coder.decode(std::string_view(text)); });
    expectCommonError(Case::invalidColorComponentCountForModelType,
                      [&] { coder.decode(std::string_view(R"({"colors":[{"colorSpace":"RGB","colorComponents":[1,1]}]})")); });
    expectCommonError(Case::unknownColorMode, [&] {
        coder.decode(std::string_view(R"({"colors":[{"colorSpace":"XYZ","colorComponents":[1,1,1]}]})"));
    });
}

TEST(JSONCoderTest, TextThatIsNotUTF8IsWrittenAnyway) {
    EXPECT_NE(JSONCoder().encode(Palette("Caf\xE9")).find("Caf\xEF\xBF\xBD"), std::string::npos);
}

// The reader and the writer work without a document tree; the tree's own reading and writing
// (tests/support/JSONPaletteTree.h) is what they must match, error for error and byte for byte.
namespace {

// A palette with what the writer treats apart: defaults left out, every space and type, names that need
// escapes or are not UTF-8 at all, numbers at the edges of their text forms, empty lists.
Palette awkward() {
    const double nan = std::numeric_limits<double>::quiet_NaN(), infinity = std::numeric_limits<double>::infinity();
    std::vector<Color> colors;
    for (const char* name : {"", "Plain", "quote \" and \\ back", "tab\tnew\nline\x01\x1F end", "del \x7F", "Caf\xE9",
                             "overlong \xC0\xAF", "surrogate \xED\xA0\x80", "cut \xE2\x82", "Ünïcode ✓ 🎨"})
        colors.push_back(Color::rgb(0.1, 0.2, 0.30000000000000004, 1, name));
    colors.push_back(Color(ColorSpace::RGB, {nan, infinity, -infinity}, 0.5));
    colors.push_back(Color(ColorSpace::LAB, {-0.0, 1e-7, 1e21}, 0.999999, "", ColorType::spot));
    colors.push_back(Color(ColorSpace::CMYK, {5e-324, 1.7976931348623157e308, 123456789.125, 1e-5}, 0, "", ColorType::normal));
    colors.push_back(Color(ColorSpace::Gray, {}, 1, "no components"));
    colors.push_back(Color(ColorSpace::Gray, {0.1, 0.2, 0.3, 0.4, 0.5}, 1, "five"));
    return Palette("Name \"quoted\"", colors, {Group("", {}), Group("G\xFF", {Color::gray(0.5, 0.25)}), Group("Last", colors)});
}

// The palettes GIMP, Inkscape, Krita, LibreOffice and Scribus ship, as the frame reads them.
std::vector<Palette> realPaletteSample() {
    std::vector<Palette> palettes;
    if (realPalettes().empty()) return palettes;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(realPalettes())) {
        const auto extension = entry.path().extension().string();
        if (!entry.is_regular_file() || !(extension == ".gpl" || extension == ".soc" || extension == ".xml" || extension == ".sbz"))
            continue;
        try {
            palettes.push_back(PAL::decode(entry.path().string()));
        } catch (const CommonError&) {
        }
    }
    return palettes;
}

// What a decode gives: the palette, or the error's case and what it carries.
struct Outcome {
    std::optional<Palette> palette;
    std::string error;
};

template <typename Decode>
Outcome outcomeOf(Decode decode) {
    try {
        return {decode(), ""};
    } catch (const CommonError& error) {
        return {std::nullopt, std::string(caseName(error.errorCase())) + " " + error.text().value_or("")};
    }
}

void expectDecodedAsTheTreeDoes(std::string_view text) {
    const Outcome streamed = outcomeOf([&] { return JSONCoder().decode(text); });
    const Outcome tree = outcomeOf([&] { return jsontree::decode(text); });
    ASSERT_EQ(streamed.error, tree.error) << text;
    if (!tree.palette) return;
    expectExactPalette(*streamed.palette, *tree.palette);
    EXPECT_EQ(streamed.palette->format, tree.palette->format);
}

}  // namespace

TEST(JSONCoderTest, WritesTheTreesBytes) {
    auto palettes = realPaletteSample();
    palettes.push_back(awkward());
    palettes.push_back(sample());
    palettes.push_back(Palette());
    JSONCoder coder;
    for (const bool pretty : {true, false}) {
        coder.prettyPrint = pretty;
        for (const auto& palette : palettes) EXPECT_EQ(coder.encode(palette), jsontree::encode(palette, pretty)) << palette.name;
    }
}

TEST(JSONCoderTest, ReadsAsTheTreeDoes) {
    for (const char* text : {
             // the last of a repeated key counts, the refusal of an earlier one with it
             R"({"colors":[],"colors":[{"colorSpace":"RGB","colorComponents":[1,0,0]}]})",
             R"({"colors":[{"colorSpace":"XYZ","colorComponents":[1,1,1]}],"colors":[]})",
             R"({"colors":[{"colorSpace":"RGB","colorComponents":[1,0,0],"colorSpace":"XYZ"}]})",
             R"({"colors":[{"colorSpace":"RGB","colorComponents":[1,0],"colorComponents":[1,0,0],"alpha":"x","alpha":0.5}]})",
             R"({"colors":[],"groups":[{"colors":[]}],"groups":7})",
             // which refusal wins: colours before the palette's or group's name, a colour's fields in order
             R"({"name":5,"colors":[{"colorSpace":"XYZ","colorComponents":[1]}]})",
             R"({"colors":[],"groups":[{"name":1,"colors":[{"colorSpace":"XYZ","colorComponents":[0]}]}]})",
             R"({"colors":[{"colorComponents":[1,1],"colorSpace":"HSV","name":3}]})",
             R"({"colors":[{"colorComponents":[1,"x"],"colorSpace":"HSV"}]})",
             R"({"colors":[{"colorType":"pantone","colorComponents":[1,1],"colorSpace":"RGB"}]})",
             R"({"colors":[5,{"colorSpace":"XYZ","colorComponents":[1,1,1]}]})",
             R"({"colors":[{"colorSpace":"RGB","colorComponents":[1,0,0]},{"colorSpace":"XYZ"},{"colorSpace":"Gray"}]})",
             R"({"colors":[],"groups":[{"colors":[]},7,{"colors":[{"colorSpace":"HSV"}]}]})",
             R"({"colors":[],"groups":[{"colors":{}}]})",
             R"({"colors":[],"groups":[{"name":"No colours"}]})",
             R"({"colors":{"colorSpace":"RGB"}})",
             // values of every kind where another belongs, and nested values under keys of no meaning
             R"({"colors":[{"colorSpace":"RGB","colorComponents":[1,[2,{"a":[3]}],1]}]})",
             R"({"colors":[{"colorSpace":["RGB"],"colorComponents":[1,0,0]}]})",
             R"({"colors":[{"colorSpace":"RGB","colorComponents":[1,0,0],"alpha":null}]})",
             R"({"colors":[{"colorSpace":"RGB","colorComponents":[1,0,0],"colorType":true}]})",
             R"({"colors":[{"name":{"x":1},"colorSpace":"RGB","colorComponents":[1,0,0]}]})",
             R"({"x":[[[{"colors":[5]}]]],"colors":[{"colors":[1],"groups":{},"colorSpace":"Gray","colorComponents":[0.5]}],"y":{"groups":1}})",
             R"({"groups":[],"colors":[{"colorSpace":"CMYK","colorComponents":[0.1,0.2,0.3,0.4,0.5]}],"name":"Late"})",
             // numbers as the tree takes them: integers, -0, beyond 64 bits, clamped alpha, too large at all
             R"({"colors":[{"colorSpace":"Gray","colorComponents":[-0],"alpha":2},{"colorSpace":"Gray","colorComponents":[-0.0],"alpha":-1}]})",
             R"({"colors":[{"colorSpace":"RGB","colorComponents":[18446744073709551616,-9223372036854775809,9007199254740993]}]})",
             R"({"colors":[{"colorSpace":"RGB","colorComponents":[1e400,0,0]}]})",
             // text: escapes, a lone surrogate, a byte-order mark, what is not JSON
             R"({"name":"Caf\u00e9 \ud83c\udfa8 \"\\\/","colors":[{"name":"\u0000","colorSpace":"RGB","colorComponents":[1,0,0]}]})",
             R"({"colors":[{"name":"\ud800","colorSpace":"RGB","colorComponents":[1,0,0]}]})",
             "\xEF\xBB\xBF{\"colors\":[]}", "{\"colors\":[]} x", "[{\"colors\":[]}]", "\"colors\"", "null", "", "{\"colors\":[]",
         })
        expectDecodedAsTheTreeDoes(text);
    JSONCoder compact;
    compact.prettyPrint = false;
    for (const auto& palette : realPaletteSample()) expectDecodedAsTheTreeDoes(compact.encode(palette));
    expectDecodedAsTheTreeDoes(JSONCoder().encode(awkward()));
}

// Damaged files: bytes cut, repeated, swapped or replaced at random (a fixed seed), each read both ways.
TEST(JSONCoderTest, DamagedFilesAreReadAsTheTreeReadsThem) {
    JSONCoder compact;
    compact.prettyPrint = false;
    const std::string original = compact.encode(sample());
    std::mt19937 random(17);
    const std::string_view pieces[] = {"{", "}", "[", "]", ",", ":", "\"", "0", "-", "1e9", ".", "null", "true", "\\", "\"name\"",
                                       "\"colors\"", "\"groups\"", "\"RGB\"", "\"XYZ\"", "\"spot\"", "[1,2]", "{}"};
    for (int trial = 0; trial < 3000; ++trial) {
        std::string text = original;
        for (int edits = 1 + trial % 3; edits > 0; --edits) {
            const std::size_t at = random() % text.size();
            switch (random() % 4) {
                case 0: text.erase(at, 1 + random() % 8); break;
                case 1: text.insert(at, text.substr(random() % text.size(), 1 + random() % 24)); break;
                case 2: text.insert(at, pieces[random() % std::size(pieces)]); break;
                default: text[at] = static_cast<char>(random() % 256); break;
            }
            if (text.empty()) text = "{";
        }
        expectDecodedAsTheTreeDoes(text);
        if (HasFatalFailure()) return;
    }
}
