#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "platform/SecretStore.h"

namespace kro {
namespace {

TEST(FileSecretStore, KeepsPasswordsPerAccountInAPrivateFile) {
    char pattern[] = "/tmp/kro-secrets-XXXXXX";
    const std::string folder = ::mkdtemp(pattern);
    const std::string path = folder + "/config/kroapp.Kro/secrets.json";
    auto store = makeFileSecretStore(path);

    EXPECT_FALSE(store->password("https://a/", "alice"));
    ASSERT_TRUE(store->setPassword("https://a/", "alice", "one"));
    ASSERT_TRUE(store->setPassword("https://b/", "alice", "two"));
    ASSERT_TRUE(store->setPassword("https://a/", "alice", "three"));
    EXPECT_EQ(store->password("https://a/", "alice"), "three");
    EXPECT_EQ(store->password("https://b/", "alice"), "two");
    EXPECT_FALSE(store->password("https://a/", "bob"));

    struct stat info {};
    ASSERT_EQ(::stat(path.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600u);

    // Another store on the same file sees the same passwords; removing one keeps the other.
    auto again = makeFileSecretStore(path);
    EXPECT_TRUE(again->removePassword("https://a/", "alice"));
    EXPECT_FALSE(store->password("https://a/", "alice"));
    EXPECT_EQ(store->password("https://b/", "alice"), "two");

    // A damaged file holds no password, and the next one written replaces it.
    std::ofstream(path) << "{not json";
    EXPECT_FALSE(store->password("https://b/", "alice"));
    EXPECT_TRUE(store->setPassword("https://b/", "alice", "four"));
    EXPECT_EQ(store->password("https://b/", "alice"), "four");
    std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace kro
