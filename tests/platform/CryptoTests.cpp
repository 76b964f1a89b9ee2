#include <gtest/gtest.h>

#include <vector>

#include "platform/Crypto.h"

using namespace kro;

TEST(Crypto, SealedBoxRoundTripAndTamperRefusal) {
    const std::string key(32, 'k');
    const auto sealed = sealBox("{\"a\":1}", key);
    ASSERT_EQ(sealed.size(), 12 + 7 + 16u);
    EXPECT_EQ(openSealedBox(sealed, key), "{\"a\":1}");

    auto tampered = sealed;
    tampered[14] ^= 1;
    EXPECT_FALSE(openSealedBox(tampered, key));
    EXPECT_FALSE(openSealedBox(sealed, std::string(32, 'x')));
    EXPECT_FALSE(openSealedBox(sealed.substr(0, 27), key));
    EXPECT_EQ(openSealedBox(sealBox("", key), key), "");
}

TEST(Crypto, Md5KnownDigests) {
    EXPECT_EQ(md5Hex(""), "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_EQ(md5Hex("The quick brown fox jumps over the lazy dog"), "9e107d9d372bb6826bd81d3542a419d6");
}

TEST(Crypto, Base64StrictDecoding) {
    for (const std::string& s : std::vector<std::string>{"", "a", "ab", "abc", "abcd", std::string("\0\xff\x10", 3)}) {
        EXPECT_EQ(base64Decode(base64Encode(s)), s);
    }
    EXPECT_EQ(base64Encode("ab"), "YWI=");
    EXPECT_FALSE(base64Decode("YWI"));
    EXPECT_FALSE(base64Decode("YW I="));
    EXPECT_FALSE(base64Decode("12"));
}
