// The password store as the program makes it, on the private session bus of run-with-secret-service: the
// NoSecretService tests run before GNOME Keyring starts on it, the SecretService tests after.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "platform/SecretStore.h"

namespace kro {
namespace {

class OnPrivateBus : public ::testing::Test {
protected:
    void SetUp() override {
        // Run by hand, these tests would write into the user's own keyring.
        if (!std::getenv("KRO_PRIVATE_SECRET_SERVICE_BUS")) GTEST_SKIP() << "run through CTest (run-with-secret-service)";
    }

    const Paths paths = Paths::fromEnvironment();
    const std::string secretsFile = paths.configHome + "/" + kBundleIdentifier + "/secrets.json";
};

using NoSecretService = OnPrivateBus;
using SecretService = OnPrivateBus;

TEST_F(NoSecretService, PasswordsGoToThePrivateFile) {
    auto store = makeSecretStore(paths);
    EXPECT_EQ(store->description(), secretsFile + " (plain text, readable only by you)");
    ASSERT_TRUE(store->setPassword("https://dav.example/kro/", "alice", "s3cret"));
    EXPECT_TRUE(std::filesystem::exists(secretsFile));
    EXPECT_EQ(makeSecretStore(paths)->password("https://dav.example/kro/", "alice"), "s3cret");
    std::filesystem::remove(secretsFile);
}

TEST_F(SecretService, PasswordsLiveInTheServiceAndNowhereElse) {
    const std::string server = "https://dav.example/kro/";
    auto store = makeSecretStore(paths);
    EXPECT_EQ(store->description(), "the desktop's secret service");

    EXPECT_FALSE(store->password(server, "alice"));
    ASSERT_TRUE(store->setPassword(server, "alice", "first"));
    ASSERT_TRUE(store->setPassword(server, "alice", "pässwörd 2"));
    ASSERT_TRUE(store->setPassword(server, "bob", "bob's"));
    ASSERT_TRUE(store->setPassword("https://other.example/", "alice", "elsewhere"));
    EXPECT_EQ(store->password(server, "alice"), "pässwörd 2");

    // A second store, as the next command would make, reads the same entries; a removal through it is seen
    // by the first and touches only that account.
    auto again = makeSecretStore(paths);
    EXPECT_EQ(again->password(server, "alice"), "pässwörd 2");
    EXPECT_EQ(again->password(server, "bob"), "bob's");
    EXPECT_TRUE(again->removePassword(server, "alice"));
    EXPECT_FALSE(store->password(server, "alice"));
    EXPECT_EQ(store->password(server, "bob"), "bob's");
    EXPECT_EQ(store->password("https://other.example/", "alice"), "elsewhere");
    EXPECT_TRUE(again->removePassword(server, "alice"));  // nothing left to remove is not a failure

    EXPECT_FALSE(std::filesystem::exists(secretsFile));
}

}  // namespace
}  // namespace kro
