// The shipped catalogue is a product feature: every template of every format is checked here.
#include <gtest/gtest.h>

#include <set>

#include "formats/ColorFormats.h"
#include "platform/testing/TestEnvironment.h"

using namespace kro;

namespace {

struct Expected {
    const char* name;
    const char* hotPink;     // #FF0080
    const char* halfSteel;   // #336699 at alpha 0.5
};

// What a person pastes: the copied text of each shipped format.
const Expected kClipboard[] = {
        {"CSS Hex", "#FF0080", "#336699"},
        {"CSS Hex with Alpha", "#FF0080FF", "#33669980"},
        {"CSS RGB", "rgb(255, 0, 128)", "rgb(51, 102, 153)"},
        {"CSS RGBA", "rgba(255, 0, 128, 1.00)", "rgba(51, 102, 153, 0.50)"},
        {"CSS HSL", "hsl(-30, 100%, 50%)", "hsl(210, 50%, 40%)"},  // the HWB hue, not wrapped to 330
        {"CSS HSLA", "hsla(-30, 100%, 50%, 1.0)", "hsla(210, 50%, 40%, 0.5)"},
        {"CSS HWB", "hwb(-30 0% 0%)", "hwb(210 20% 40%)"},
        {"CSS Display P3", "color(display-p3 1.000 0.000 0.502)", "color(display-p3 0.200 0.400 0.600)"},
        {"SCSS Variable", "$color: #ff0080;", "$color: #336699;"},
        {"Less Variable", "@color: #ff0080;", "@color: #336699;"},
        {"CSS Custom Property", "--color: #ff0080;", "--color: #336699;"},
        {"Tailwind Class", "bg-[#ff0080]", "bg-[#336699]"},
        {"Tailwind Config", "'custom': '#ff0080',", "'custom': '#336699',"},
        {"Design Token JSON", "{ \"$type\": \"color\", \"$value\": \"#ff0080\" }", "{ \"$type\": \"color\", \"$value\": \"#336699\" }"},
        {"SwiftUI", "Color(red: 1.000, green: 0.000, blue: 0.502)", "Color(red: 0.200, green: 0.400, blue: 0.600)"},
        {"SwiftUI HSB", "Color(hue: 0.916, saturation: 1.000, brightness: 1.000)", "Color(hue: 0.583, saturation: 0.667, brightness: 0.600)"},
        {"UIKit", "UIColor(red: 1.000, green: 0.000, blue: 0.502, alpha: 1.000)", "UIColor(red: 0.200, green: 0.400, blue: 0.600, alpha: 0.500)"},
        {"AppKit", "NSColor(red: 1.000, green: 0.000, blue: 0.502, alpha: 1.000)", "NSColor(red: 0.200, green: 0.400, blue: 0.600, alpha: 0.500)"},
        {"UIKit Objective-C", "[UIColor colorWithRed:1.000 green:0.000 blue:0.502 alpha:1.000]", "[UIColor colorWithRed:0.200 green:0.400 blue:0.600 alpha:0.500]"},
        {"AppKit Objective-C", "[NSColor colorWithRed:1.000 green:0.000 blue:0.502 alpha:1.000]", "[NSColor colorWithRed:0.200 green:0.400 blue:0.600 alpha:0.500]"},
        {"Android XML", "<color name=\"color\">#FFFF0080</color>", "<color name=\"color\">#80336699</color>"},
        {"Android Kotlin", "Color.parseColor(\"#FF0080\")", "Color.parseColor(\"#336699\")"},
        {"Android Java", "Color.argb(255, 255, 0, 128)", "Color.argb(128, 51, 102, 153)"},
        {"Jetpack Compose", "Color(0xFFFF0080)", "Color(0x80336699)"},
        {"Flutter", "Color(0xFFFF0080)", "Color(0x80336699)"},
        {"Flutter ARGB", "Color.fromARGB(255, 255, 0, 128)", "Color.fromARGB(128, 51, 102, 153)"},
        {"React Native", "color: '#FF0080'", "color: '#336699'"},
        {".NET Color", "Color.FromArgb(255, 255, 0, 128)", "Color.FromArgb(128, 51, 102, 153)"},
        {"WPF XAML", "<SolidColorBrush Color=\"#FFFF0080\" />", "<SolidColorBrush Color=\"#80336699\" />"},
        {"QColor", "QColor(255, 0, 128)", "QColor(51, 102, 153)"},
        {"Qt Quick", "Qt.rgba(1.000, 0.000, 0.502, 1.000)", "Qt.rgba(0.200, 0.400, 0.600, 0.500)"},
        {"GTK CSS", "@define-color accent_color #ff0080;", "@define-color accent_color #336699;"},
        {"Unity", "new Color(1.000f, 0.000f, 0.502f, 1.000f)", "new Color(0.200f, 0.400f, 0.600f, 0.500f)"},
        {"Unity Color32", "new Color32(255, 0, 128, 255)", "new Color32(51, 102, 153, 128)"},
        {"Unreal FColor", "FColor(255, 0, 128, 255)", "FColor(51, 102, 153, 128)"},
        {"Godot", "Color(1.000, 0.000, 0.502, 1.000)", "Color(0.200, 0.400, 0.600, 0.500)"},
        {"Godot HTML", "Color.html(\"#ff0080\")", "Color.html(\"#336699\")"},
        {"GLSL vec3", "vec3(1.000, 0.000, 0.502)", "vec3(0.200, 0.400, 0.600)"},
        {"GLSL vec4", "vec4(1.000, 0.000, 0.502, 1.000)", "vec4(0.200, 0.400, 0.600, 0.500)"},
        {"HLSL float3", "float3(1.000, 0.000, 0.502)", "float3(0.200, 0.400, 0.600)"},
        {"HLSL float4", "float4(1.000, 0.000, 0.502, 1.000)", "float4(0.200, 0.400, 0.600, 0.500)"},
        {"Python Tuple", "(255, 0, 128)", "(51, 102, 153)"},
        {"Python Float Tuple", "(1.000, 0.000, 0.502)", "(0.200, 0.400, 0.600)"},
        {"LaTeX HTML", "\\definecolor{mycolor}{HTML}{FF0080}", "\\definecolor{mycolor}{HTML}{336699}"},
        {"LaTeX RGB", "\\definecolor{mycolor}{RGB}{255,0,128}", "\\definecolor{mycolor}{RGB}{51,102,153}"},
        {"CMYK", "cmyk(0%, 100%, 50%, 0%)", "cmyk(67%, 33%, 0%, 40%)"},
        {"CMYK Text", "C 0 M 100 Y 50 K 0", "C 67 M 33 Y 0 K 40"},
        {"HSB", "hsb(330, 100%, 100%)", "hsb(210, 67%, 60%)"},
        {"RGB Text", "R 255 G 0 B 128", "R 51 G 102 B 153"},
        {"RGB Float", "1.000, 0.000, 0.502", "0.200, 0.400, 0.600"},
        {"Hex", "FF0080", "336699"},
        {"Hex 0x", "0xFF0080", "0x336699"},
};

class ShippedFormats : public ::testing::Test {
protected:
    kro::testing::TestEnvironment environment;
    std::shared_ptr<ColorFormats> catalogue = ColorFormats::shipped();
    const ColorValue hotPink = ColorValue::rgb(1.0, 0.0, 128.0 / 255.0);
    const ColorValue halfSteel = ColorValue::rgb(0.2, 0.4, 0.6, 0.5);
};

}  // namespace

TEST_F(ShippedFormats, CatalogueShape) {
    ASSERT_TRUE(catalogue);
    EXPECT_GE(catalogue->formats.size(), 40u);
    std::set<std::string> names, uuids, grouped;
    for (const auto& item : catalogue->formats) {
        EXPECT_TRUE(names.insert(item->name).second) << "two formats named " << item->name;
        EXPECT_TRUE(uuids.insert(item->uuid).second) << item->name;
        EXPECT_FALSE(item->custom) << item->name;
    }
    for (const auto& group : catalogue->groupFormats) {
        for (const auto& name : group->group) {
            EXPECT_TRUE(names.contains(name)) << group->name << " lists " << name;
            EXPECT_TRUE(grouped.insert(name).second) << name << " is in two groups";
        }
    }
    EXPECT_EQ(grouped, names) << "every shipped format is in a group";
}

TEST_F(ShippedFormats, EveryCopiedText) {
    ASSERT_TRUE(catalogue);
    std::set<std::string> tested;
    for (const auto& expected : kClipboard) {
        ASSERT_TRUE(catalogue->format(expected.name)) << expected.name;
        EXPECT_EQ(catalogue->clipboardString(hotPink, expected.name), expected.hotPink) << expected.name;
        EXPECT_EQ(catalogue->clipboardString(halfSteel, expected.name), expected.halfSteel) << expected.name;
        tested.insert(expected.name);
    }
    for (const auto& item : catalogue->formats) EXPECT_TRUE(tested.contains(item->name)) << item->name << " is untested";
}

TEST_F(ShippedFormats, ListAndPickerTexts) {
    ASSERT_TRUE(catalogue);
    const auto css = catalogue->format("CSS RGB");
    EXPECT_EQ(css->text(hotPink, css->menuFormat), "rgb(255, 0, 128)");
    EXPECT_EQ(css->text(hotPink, css->pickerFormat), "255, 0, 128");
    const auto android = catalogue->format("Android XML");
    EXPECT_EQ(android->text(halfSteel, android->menuFormat), "#80336699");
    const auto swiftUI = catalogue->format("SwiftUI");
    EXPECT_EQ(swiftUI->text(halfSteel, swiftUI->pickerFormat), "0.200, 0.400, 0.600");
    // Every template gives a finished text for ordinary and extreme colours: no error, no token left over.
    const ColorValue colors[] = {hotPink, halfSteel, ColorValue::rgb(0, 0, 0), ColorValue::rgb(1, 1, 1),
                                 ColorValue::rgb(0.5, 0.5, 0.5, 0.0)};
    for (const auto& item : catalogue->formats) {
        for (const auto* format : {&item->menuFormat, &item->clipboardFormat, &item->pickerFormat}) {
            for (const auto& color : colors) {
                const auto text = item->text(color, *format);
                EXPECT_FALSE(text.empty()) << item->name;
                for (const char* leftover : {"[Error", "hex[", "css[", "[red]", "[alpha]", "\"function\""}) {
                    EXPECT_EQ(text.find(leftover), std::string::npos) << item->name << ": " << text;
                }
            }
        }
    }
}
