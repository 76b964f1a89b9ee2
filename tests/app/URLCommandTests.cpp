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

TEST(URLCommand, ALinkRunsOnlyAsAKnownCommandWithItsCountAndCleanText) {
    EXPECT_EQ(checkURLCommand("kro://color/hex/FF0080/Hot%20Pink").components,
              (Components{"color", "hex", "FF0080", "Hot Pink"}));
    EXPECT_EQ(checkURLCommand("kro://settings").refusal, "");
    EXPECT_EQ(checkURLCommand("kro://settings/dock").refusal, "");
    EXPECT_EQ(checkURLCommand("kro://color/hex/FF0080/%C3%A9t%C3%A9").refusal, "") << "UTF-8 names are fine";
    const std::string longName(5000, 'a');
    const struct {
        std::string url, refusal;
    } refused[] = {
        {"kro://color/hex/FF0080/Hot Pink", "not a well-formed link"},
        {"kro://", "no command"},
        {"kro://paint/hex/FF0080/x", "unknown command"},
        {"kro://Color/hex/FF0080/x", "unknown command"},
        {"kro://picker/now", "wrong number of components for \"picker\""},
        {"kro://settings/dock/extra", "wrong number of components for \"settings\""},
        {"kro://color/hex/FF0080/Nul%00Name", "a component holds control characters"},
        {"kro://color/hex/FF0080/Line%0ABreak", "a component holds control characters"},
        {"kro://color/hex/FF0080/%FF%FE", "a component is not UTF-8 text"},
        {"kro://color/hex/FF0080/%C3", "a component is not UTF-8 text"},
        {"kro://color/hex/FF0080/" + longName, "a component is too long"},
        {"kro://palette/hex/" + std::string(17000, 'A') + "/_", "the link is too long"},
    };
    for (const auto& [url, refusal] : refused) {
        const auto check = checkURLCommand(url);
        EXPECT_EQ(check.refusal, refusal) << url.substr(0, 60);
        EXPECT_TRUE(check.components.empty());
    }
}

TEST(URLCommand, TheLoggedLinkIsOneShortPrintableLine) {
    EXPECT_EQ(loggableURL("kro://picker"), "kro://picker");
    EXPECT_EQ(loggableURL("kro://x/a\nb\x01\xC3\xA9"), "kro://x/a%0Ab%01%C3%A9");
    EXPECT_EQ(loggableURL("kro://" + std::string(1000, 'a')), "kro://" + std::string(194, 'a') + "…");
    // Escapes count too: the line stays short whatever the link holds.
    EXPECT_EQ(loggableURL(std::string(1000, '\n')), [] {
        std::string escapes;
        for (int i = 0; i < 67; ++i) escapes += "%0A";
        return escapes + "…";
    }());
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
