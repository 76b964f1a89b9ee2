#include <gtest/gtest.h>

#include "ExchangeTestSupport.h"
#include "exchange/coders/AndroidXMLCoder.h"

using namespace PAL;
using Case = CommonError::Case;

TEST(AndroidXMLCoderTest, WritesResourceNamesAndroidAccepts) {
    const Palette palette("Ignored", {Color::rgb255(26, 101, 151, 255, "Deep Water"), Color::rgb255(242, 220, 160, 128, "sand"),
                                      Color::rgb255(0, 0, 0), Color::rgb255(1, 2, 3, 255, "9 lives"),
                                      Color::rgb255(26, 101, 151, 255, "Deep_Water"), Color::rgb255(4, 5, 6, 255, "Ünï")},
                          {Group("Flattened", {Color::gray(1, 1, "Paper & ink")})});
    EXPECT_EQ(AndroidXMLCoder().encode(palette),
              "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
              "<resources>\n"
              "    <color name=\"Deep_Water\">#1A6597</color>\n"
              "    <color name=\"sand\">#80F2DCA0</color>\n"
              "    <color name=\"color_3\">#000000</color>\n"
              "    <color name=\"_9_lives\">#010203</color>\n"
              "    <color name=\"Deep_Water_2\">#1A6597</color>\n"
              "    <color name=\"_n_\">#040506</color>\n"
              "    <color name=\"Paper___ink\">#FFFFFF</color>\n"
              "</resources>\n");

    AndroidXMLCoder opaque;
    opaque.includeAlphaDuringExport = false;
    EXPECT_NE(opaque.encode(palette).find("<color name=\"sand\">#F2DCA0</color>"), std::string::npos);
}

TEST(AndroidXMLCoderTest, ReadsWhatItWrites) {
    const Palette palette("", {Color::rgb255(26, 101, 151, 255, "harbour_sea"), Color::rgb255(221, 228, 232, 128, "harbour_fog")},
                          {Group("g", {Color::rgb255(255, 0, 0, 0, "clear_red")})});
    const Palette back = AndroidXMLCoder().decode(AndroidXMLCoder().encode(palette));
    EXPECT_EQ(back.colors, palette.allColors());
    EXPECT_TRUE(back.groups.empty());
}

TEST(AndroidXMLCoderTest, ReadsTheFourHexFormsAndReferencesWithinTheFile) {
    const Palette palette = AndroidXMLCoder().decode(
        "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
        "<resources xmlns:tools=\"http://schemas.android.com/tools\">\n"
        "    <!-- brand -->\n"
        "    <color name=\"accent\">@color/harbour_sea</color>\n"
        "    <color name=\"harbour_sea\">#1a6597</color>\n"
        "    <string name=\"app_name\">Harbour</string>\n"
        "    <color name=\"harbour_fog\">  #80DDE4E8\n  </color>\n"
        "    <color name=\"harbour_ink\">#123</color>\n"
        "    <color name=\"scrim\">#8000</color>\n"
        "    <item name=\"long_form\" type=\"color\">#FF8800</item>\n"
        "    <item name=\"not_a_color\" type=\"dimen\">#FF8800</item>\n"
        "    <color name=\"platform\">@android:color/white</color>\n"
        "    <color name=\"loop_a\">@color/loop_b</color>\n"
        "    <color name=\"loop_b\">@color/loop_a</color>\n"
        "</resources>\n");
    // Alpha comes first in #AARRGGBB and #ARGB.
    EXPECT_EQ(palette.colors,
              (std::vector<Color>{Color::rgb255(26, 101, 151, 255, "accent"), Color::rgb255(26, 101, 151, 255, "harbour_sea"),
                                  Color::rgb255(221, 228, 232, 128, "harbour_fog"), Color::rgb255(0x11, 0x22, 0x33, 255, "harbour_ink"),
                                  Color::rgb255(0, 0, 0, 0x88, "scrim"), Color::rgb255(255, 136, 0, 255, "long_form")}));
    EXPECT_TRUE(palette.name.empty());
}

TEST(AndroidXMLCoderTest, RefusesWhatIsNotAColourResourceFile) {
    for (const char* text : {"", "#FF0000", "<resources><color name=\"a\">#FF0000</color>",  // not well-formed
                             "<selector><item android:color=\"#FF0000\"/></selector>",         // a colour state list
                             "<resources><string name=\"a\">b</string></resources>",           // no colour at all
                             "<resources><color name=\"a\">@android:color/white</color></resources>"})
        expectCommonError(Case::invalidFormat, [text] { AndroidXMLCoder().decode(text); });
    // A value that starts like a colour but is not one fails, as it fails Android's build.
    for (const char* value : {"#12345", "#1234567", "#GG0000", "#", "# FF0000"})
        expectCommonError(Case::invalidARGBHexString, [value] {
            AndroidXMLCoder().decode(std::string("<resources><color name=\"a\">") + value + "</color></resources>");
        });
}
