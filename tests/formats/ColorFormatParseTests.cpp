#include <gtest/gtest.h>

#include <tuple>

#include "formats/ColorFormatParse.h"
#include "formats/FormatNumberText.h"
#include "formats/color/ColorName.h"

using namespace kro;

namespace {

const ColorValue hotPink = ColorValue::rgb(1.0, 0.0, 128.0 / 255.0);
const ColorValue halfRed = ColorValue::rgb(0.5, 0.25, 0.0, 0.5);

std::string eval(const std::string& json) { return ColorFormatParse::parse(halfRed, json); }

}  // namespace

TEST(ColorFormatParse, PlainTextTemplates) {
    EXPECT_EQ(ColorFormatParse::parse(hotPink, ""), "");
    EXPECT_EQ(ColorFormatParse::parse(hotPink, "no tokens here"), "no tokens here");
    EXPECT_EQ(ColorFormatParse::parse(hotPink, "#hex[red]hex[green]hex[blue]"), "#ff0080");
    EXPECT_EQ(ColorFormatParse::parse(hotPink, "hex[blue]-hex[blue]"), "80-80");
    EXPECT_EQ(ColorFormatParse::parse(halfRed, "hex[red] hex[alpha]"), "80 80");
    // Tokens are case-sensitive, and a longer token never leaves its tail for a shorter one.
    EXPECT_EQ(ColorFormatParse::parse(halfRed, "[RED] Hex[red]"), "[RED] Hex0.5");
    EXPECT_EQ(ColorFormatParse::parse(halfRed, "css[alpha] [alpha]"), "0.5 0.5");
    EXPECT_EQ(ColorFormatParse::parse(halfRed, "[red],[green],[blue]"), "0.5,0.25,0.0");
    EXPECT_EQ(ColorFormatParse::parse(ColorValue::rgb(252.0 / 255, 1, 0), "[red] [green]"), "0.9882353 1.0");
    EXPECT_EQ(ColorFormatParse::parse(hotPink, "[hue] [saturation] [brightness]"), "0.9163399 1.0 1.0");
    EXPECT_EQ(ColorFormatParse::parse(hotPink, "[name]"), ColorName::name(1.0, 0.0, 128.0 / 255.0).value_or(""));
}

TEST(FormatNumberText, Renderings) {
    using namespace FormatNumberText;
    using Cases = std::initializer_list<std::pair<float, const char*>>;
    // Hex: lroundf of ×255, no clamp.
    for (auto [value, text] : Cases{{0.5f, "80"}, {0.0f, "00"}, {1.0f, "ff"}, {1.2f, "132"}, {-0.1f, "ffffffffffffffe6"}})
        EXPECT_EQ(hexComponent(value), text);
    EXPECT_EQ(integer(-29.5f), "-30");
    EXPECT_EQ(integer(2.5f), "3");
    // Shortest round trip of the 32-bit float, always with a point, exponent outside 0.0001…2^24.
    for (auto [value, text] : Cases{{1.0f, "1.0"}, {0.0f, "0.0"}, {255.0f, "255.0"}, {0.1f, "0.1"}, {-1.5f, "-1.5"},
                                    {0.0001f, "0.0001"}, {0.00001f, "1e-05"}, {0.000012f, "1.2e-05"},
                                    {16777216.0f, "16777216.0"}, {16777218.0f, "1.6777218e+07"}, {1e30f, "1e+30"}})
        EXPECT_EQ(shortestFloat(value), text);
    // printf rounding of the exact binary value; five places outside 0…4.
    for (auto [value, places, text] : std::initializer_list<std::tuple<float, float, const char*>>{
             {127.5f, 0, "128"}, {126.5f, 0, "126"}, {0.125f, 2, "0.12"}, {2.0f, 4, "2.0000"}, {1.5f, 3.9f, "1.500"},
             {1.23456789f, 9, "1.23457"}, {1.23456789f, -1, "1.23457"}, {1.0f, 1e30f, "1.00000"}})
        EXPECT_EQ(rounded(value, places), text) << value << " to " << places;
    // Text as a number: the whole text, C grammar, no white space in front.
    EXPECT_EQ(numberValue("0x10"), 16.0f);
    EXPECT_EQ(numberValue("-1e3"), -1000.0f);
    EXPECT_EQ(numberValue("+.5"), 0.5f);
    EXPECT_TRUE(numberValue("inf"));
    for (const char* bad : {"", " 1", "1 ", "1,5", "1.5px", "e3", "0x"}) EXPECT_FALSE(numberValue(bad)) << bad;
}

TEST(ColorFormatParse, NonObjectJsonIsTheSubstitutedText) {
    EXPECT_EQ(eval("[[red]]"), "[0.5]");
    EXPECT_EQ(eval("\"[red]\""), "\"0.5\"");
    EXPECT_EQ(eval("{\"function\":\"lower\",\"x\":\"#hex[red]\""), "{\"function\":\"lower\",\"x\":\"#80\"");
    // A bare hex token that is not a number spoils the JSON; one that is a number is a number operand.
    EXPECT_EQ(ColorFormatParse::parse(hotPink, "{\"function\":\"sum\",\"x\":hex[blue],\"y\":1}"), "81.0");
    EXPECT_EQ(ColorFormatParse::parse(hotPink, "{\"function\":\"sum\",\"x\":hex[red],\"y\":1}"),
              "{\"function\":\"sum\",\"x\":ff,\"y\":1}");
    EXPECT_EQ(eval("{\"function\":\"sum\",\"x\":[red],\"y\":1}"), "1.5");
    // A document nested past what the reader takes stays text, and nothing overflows.
    std::string deep;
    for (int i = 0; i < 20000; ++i) deep += "{\"function\":\"lower\",\"x\":";
    deep += "\"A\"";
    for (int i = 0; i < 20000; ++i) deep += "}";
    EXPECT_EQ(eval(deep), deep);
}

TEST(ColorFormatParse, FunctionLookupAndMissingOperands) {
    const char* unavailable = "[Error: Function unavailable]";
    for (const char* json : {"{}", "{\"x\":\"a\"}", "{\"function\":1,\"x\":\"a\",\"y\":\"b\"}",
                             "{\"function\":\"Concat\",\"x\":\"a\",\"y\":\"b\"}", "{\"function\":\"pow\",\"x\":\"1\",\"y\":\"2\"}",
                             "{\"function\":\"lower\"}", "{\"function\":\"concat\",\"x\":\"a\"}",
                             "{\"function\":\"round\",\"y\":1}", "{\"function\":\"strreplace\",\"x\":\"a\",\"y\":\"b\"}"}) {
        EXPECT_EQ(eval(json), unavailable) << json;
    }
    EXPECT_EQ(eval("{\"function\":\"concat\",\"x\":\"a\",\"y\":\"b\",\"w\":null}"), "ab");
    EXPECT_EQ(ColorFormatParse::evaluate(Json::array()), unavailable);
    // A nested call that is unavailable is text to the outer call.
    EXPECT_EQ(eval("{\"function\":\"concat\",\"x\":{},\"y\":\"!\"}"), "[Error: Function unavailable]!");
}

TEST(ColorFormatParse, ConcatAndCase) {
    EXPECT_EQ(eval("{\"function\":\"concat\",\"x\":\"a\",\"y\":{\"function\":\"concat\",\"x\":\"b\",\"y\":\"c\"}}"), "abc");
    EXPECT_EQ(eval("{\"function\":\"concat\",\"x\":{\"function\":\"upper\",\"x\":\"a\"},\"y\":{\"function\":\"lower\",\"x\":\"B\"}}"), "Ab");
    for (const char* json : {"{\"function\":\"concat\",\"x\":1,\"y\":\"a\"}", "{\"function\":\"concat\",\"x\":\"a\",\"y\":true}",
                             "{\"function\":\"concat\",\"x\":null,\"y\":\"a\"}", "{\"function\":\"concat\",\"x\":[\"a\"],\"y\":{\"function\":\"lower\",\"x\":\"A\"}}"}) {
        EXPECT_EQ(eval(json), "[Error: Concat]") << json;
    }
    EXPECT_EQ(eval("{\"function\":\"upper\",\"x\":\"straße ǆ\"}"), "STRASSE Ǆ");
    EXPECT_EQ(eval("{\"function\":\"lower\",\"x\":\"ÀÉÎ İ\"}"), "àéî i̇");
    EXPECT_EQ(eval("{\"function\":\"lower\",\"x\":{\"function\":\"upper\",\"x\":\"ß\"}}"), "ss");
    EXPECT_EQ(eval("{\"function\":\"lower\",\"x\":1}"), "[Error: Lower]");
    EXPECT_EQ(eval("{\"function\":\"upper\",\"x\":null}"), "[Error: Upper]");
}

TEST(ColorFormatParse, ArithmeticInThirtyTwoBits) {
    EXPECT_EQ(eval("{\"function\":\"mul\",\"x\":\"0.5\",\"y\":255}"), "127.5");
    EXPECT_EQ(eval("{\"function\":\"mul\",\"x\":\"1\",\"y\":\"255\"}"), "255.0");
    EXPECT_EQ(eval("{\"function\":\"sum\",\"x\":\"0.1\",\"y\":\"0.2\"}"), "0.3");
    EXPECT_EQ(eval("{\"function\":\"sum\",\"x\":true,\"y\":false}"), "1.0");
    EXPECT_EQ(eval("{\"function\":\"mul\",\"x\":\"0x10\",\"y\":\"2\"}"), "32.0");
    EXPECT_EQ(eval("{\"function\":\"div\",\"x\":\"1\",\"y\":\"0\"}"), "inf");
    EXPECT_EQ(eval("{\"function\":\"div\",\"x\":\"-1\",\"y\":\"0\"}"), "-inf");
    EXPECT_EQ(eval("{\"function\":\"div\",\"x\":\"0\",\"y\":0}"), "nan");
    EXPECT_EQ(eval("{\"function\":\"div\",\"x\":\"1\",\"y\":\"3\"}"), "0.33333334");
    EXPECT_EQ(eval("{\"function\":\"mul\",\"x\":\"[red]\",\"y\":\"255\"}"), "127.5");
    EXPECT_EQ(eval("{\"function\":\"sum\",\"x\":1e300,\"y\":\"1\"}"), "inf");
    // A text that is not wholly a number has no number value.
    EXPECT_EQ(eval("{\"function\":\"sum\",\"x\":\" 1\",\"y\":\"1\"}"), "[Error: Sum]");
    EXPECT_EQ(eval("{\"function\":\"div\",\"x\":\"1\",\"y\":null}"), "[Error: Div]");
}

TEST(ColorFormatParse, OperandKindAsymmetries) {
    const std::string sum12 = "{\"function\":\"sum\",\"x\":\"1\",\"y\":\"2\"}";
    // Beside a nested call a JSON number is refused by sum, mul and div, while the same number as text works.
    EXPECT_EQ(eval("{\"function\":\"mul\",\"x\":" + sum12 + ",\"y\":3}"), "[Error: Mul]");
    EXPECT_EQ(eval("{\"function\":\"mul\",\"x\":" + sum12 + ",\"y\":\"3\"}"), "9.0");
    EXPECT_EQ(eval("{\"function\":\"sum\",\"x\":1,\"y\":" + sum12 + "}"), "[Error: Sum]");
    EXPECT_EQ(eval("{\"function\":\"div\",\"x\":" + sum12 + ",\"y\":" + sum12 + "}"), "1.0");
    // Round alone takes that mix.
    EXPECT_EQ(eval("{\"function\":\"round\",\"x\":2.25,\"y\":{\"function\":\"sum\",\"x\":\"0\",\"y\":\"1\"}}"), "2.2");
    EXPECT_EQ(eval("{\"function\":\"round\",\"x\":{\"function\":\"mul\",\"x\":\"0.5\",\"y\":\"255\"},\"y\":0}"), "128");
    EXPECT_EQ(eval("{\"function\":\"round\",\"x\":{\"function\":\"mul\",\"x\":\"0.5\",\"y\":\"255\"},\"y\":1}"), "127.5");
    EXPECT_EQ(eval("{\"function\":\"round\",\"x\":\"a\",\"y\":{\"function\":\"sum\",\"x\":\"0\",\"y\":\"1\"}}"), "[Error: Round]");
    EXPECT_EQ(eval("{\"function\":\"round\",\"x\":\"1\",\"y\":\"two\"}"), "[Error: Round]");
    // A nested error does not survive arithmetic; concat keeps it and lower changes its case.
    const std::string failed = "{\"function\":\"sum\",\"x\":\"a\",\"y\":\"1\"}";
    EXPECT_EQ(eval("{\"function\":\"sum\",\"x\":" + failed + ",\"y\":\"1\"}"), "[Error: Sum]");
    EXPECT_EQ(eval("{\"function\":\"mul\",\"x\":" + failed + ",\"y\":\"1\"}"), "[Error: Mul]");
    EXPECT_EQ(eval("{\"function\":\"concat\",\"x\":" + failed + ",\"y\":\"!\"}"), "[Error: Sum]!");
    EXPECT_EQ(eval("{\"function\":\"lower\",\"x\":" + failed + "}"), "[error: sum]");
}

TEST(ColorFormatParse, StrReplace) {
    const auto lowerA = std::string("{\"function\":\"lower\",\"x\":\"A\"}");
    EXPECT_EQ(eval("{\"function\":\"strreplace\",\"x\":\"a-b-A\",\"y\":\"a\",\"z\":\"x\"}"), "x-b-A");
    EXPECT_EQ(eval("{\"function\":\"strreplace\",\"x\":\"aaa\",\"y\":\"aa\",\"z\":\"b\"}"), "ba");
    EXPECT_EQ(eval("{\"function\":\"strreplace\",\"x\":\"abc\",\"y\":\"\",\"z\":\"x\"}"), "abc");
    // Every mix of text and nested calls is evaluated in x, y, z order.
    EXPECT_EQ(eval("{\"function\":\"strreplace\",\"x\":" + lowerA + ",\"y\":" + lowerA + ",\"z\":" + lowerA + "}"), "a");
    EXPECT_EQ(eval("{\"function\":\"strreplace\",\"x\":\"[red]\",\"y\":\".\",\"z\":" + lowerA + "}"), "0a5");
    EXPECT_EQ(eval("{\"function\":\"strreplace\",\"x\":\"a\",\"y\":1,\"z\":\"b\"}"), "[Error: StrReplace]");
    // Doubling at every level would need a terabyte: the level that outgrows the limit gives its error.
    std::string doubling = "\"b\"";
    for (int i = 0; i < 40; ++i) doubling = "{\"function\":\"strreplace\",\"x\":" + doubling + ",\"y\":\"b\",\"z\":\"bb\"}";
    EXPECT_EQ(eval(doubling), "[Error: StrReplace]");
    EXPECT_EQ(eval("{\"function\":\"strreplace\",\"x\":" + lowerA + ",\"y\":\"a\",\"z\":[]}"), "[Error: StrReplace]");
}
