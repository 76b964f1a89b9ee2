#include <gtest/gtest.h>

#include "app/URLCommand.h"

using namespace kro;
using Components = std::vector<std::string>;

TEST(URLCommand, HostThenDecodedPathComponents) {
    EXPECT_EQ(urlCommandComponents("kro://color/hex/FF0080/Hot%20Pink"), (Components{"color", "hex", "FF0080", "Hot Pink"}));
    EXPECT_EQ(urlCommandComponents("kro://picker"), (Components{"picker"}));
    EXPECT_EQ(urlCommandComponents("kro://settings/formats/"), (Components{"settings", "formats"}));
    // Empty path pieces are not components; query and fragment are not part of the path.
    EXPECT_EQ(urlCommandComponents("kro://palette//hex/A,B/_?x=1#y"), (Components{"palette", "hex", "A,B", "_"}));
    // Without an authority the path alone gives the components.
    EXPECT_EQ(urlCommandComponents("kro:color/hex/FF0000/Red"), (Components{"color", "hex", "FF0000", "Red"}));
    EXPECT_EQ(urlCommandComponents("kro://"), Components{});
}

TEST(URLCommand, MalformedURLsGiveNothing) {
    for (const char* bad : {"kro://color/hex/FF0080/Hot Pink", "kro://color/%ZZ", "no scheme", "://x", "kro://a/b%2",
                            "1kro://x", "kro://x/\xC3\xA9"}) {
        EXPECT_FALSE(urlCommandComponents(bad)) << bad;
    }
}

TEST(URLCommand, DashedRGBA) {
    auto rgba = parseDashedRGBA("255-0-127.5-0.5");
    ASSERT_TRUE(rgba);
    EXPECT_DOUBLE_EQ(rgba->red, 1.0);
    EXPECT_DOUBLE_EQ(rgba->green, 0.0);
    EXPECT_DOUBLE_EQ(rgba->blue, 0.5);
    EXPECT_DOUBLE_EQ(rgba->alpha, 0.5);
    for (const char* bad : {"255-0-0", "255-0-0-1-1", "255-x-0-1", "", "255--0-1", " 1-2-3-4", "1-2-3-4 "}) {
        EXPECT_FALSE(parseDashedRGBA(bad)) << bad;
    }
}
