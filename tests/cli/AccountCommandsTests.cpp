#include <gtest/gtest.h>

#include <map>

#include "CommandTestSupport.h"
#include "cli/AccountCommands.h"
#include "cloud/CloudAccount.h"
#include "platform/testing/TestEnvironment.h"
#include "tests/support/MemorySecretStore.h"

namespace kro::cli {
namespace {

class AccountCommandsTest : public ::testing::Test, protected CommandRunner {
protected:
    void SetUp() override {
        registerAccountCommands(table, [this] { return std::make_unique<testing::MemorySecretStore>(secrets); });
    }

    testing::TestEnvironment env;
    std::map<std::string, std::string> secrets;
};

TEST_F(AccountCommandsTest, SetShowAndRemove) {
    EXPECT_EQ(run({"account"}), exitDone);
    EXPECT_EQ(out.str(), "signed out\n");

    EXPECT_EQ(run({"account", "set", "https://dav.example.com/kro/", "alice"}, "pa ss word\nnext line\n"), exitDone);
    EXPECT_EQ(secrets.at("https://dav.example.com/kro/ alice"), "pa ss word");
    EXPECT_EQ(run({"account"}), exitDone);
    EXPECT_EQ(out.str(), "https://dav.example.com/kro/ alice\n");
    // The password is never written beside the account.
    EXPECT_EQ(env.files.read(cloudAccountPath())->find("pa ss word"), std::string::npos);

    // Another account replaces the first, whose password is forgotten.
    EXPECT_EQ(run({"account", "set", "http://127.0.0.1:8080/", "bob"}, "other"), exitDone);
    EXPECT_EQ(secrets.size(), 1u);
    EXPECT_EQ(secrets.count("http://127.0.0.1:8080/ bob"), 1u);

    EXPECT_EQ(run({"account", "remove"}), exitDone);
    EXPECT_TRUE(secrets.empty());
    EXPECT_FALSE(loadCloudAccount());
}

TEST_F(AccountCommandsTest, BadInputChangesNothing) {
    EXPECT_EQ(run({"account", "set", "ftp://example.com/", "alice"}, "pw\n"), exitFailed);
    EXPECT_EQ(err.str().rfind("kro: ", 0), 0u);
    EXPECT_EQ(run({"account", "set", "https://", "alice"}, "pw\n"), exitFailed);
    EXPECT_EQ(run({"account", "set", "https://alice:pw@example.com/", "alice"}, "pw\n"), exitFailed);
    EXPECT_EQ(run({"account", "set", "https://example.com/", ""}, "pw\n"), exitFailed);
    EXPECT_EQ(run({"account", "set", "https://example.com/", "alice"}, ""), exitFailed);  // no password line at all
    // Plain http to another machine would carry the password readable on the way.
    for (const char* url : {"http://dav.example.com/kro/", "http://127.example.com/"}) {
        EXPECT_EQ(run({"account", "set", url, "alice"}, "pw\n"), exitFailed) << url;
    }
    EXPECT_NE(err.str().find("--allow-http"), std::string::npos) << err.str();
    EXPECT_EQ(run({"account", "set", "https://example.com/"}), exitUsage);
    EXPECT_EQ(run({"account", "unknown"}), exitUsage);
    EXPECT_TRUE(secrets.empty());
    EXPECT_FALSE(env.files.exists(cloudAccountPath()));

    // A damaged account file reads as signed out.
    env.files.createDirectories(parentPath(cloudAccountPath()));
    env.files.writeAtomically(cloudAccountPath(), "{\"server\":4}");
    EXPECT_EQ(run({"account"}), exitDone);
    EXPECT_EQ(out.str(), "signed out\n");
    EXPECT_NE(err.str().find("does not hold an account"), std::string::npos) << err.str();
}

TEST_F(AccountCommandsTest, PlainHttpToAnotherMachineOnlyWhenAllowed) {
    for (const char* url : {"http://localhost/dav/", "http://127.0.0.2:8080/", "http://[::1]:8080/"}) {
        EXPECT_EQ(run({"account", "set", url, "alice"}, "pw\n"), exitDone) << url << err.str();
    }
    EXPECT_EQ(run({"account", "set", "--allow-http", "http://nas.local/dav/", "alice"}, "pw\n"), exitDone);
    EXPECT_EQ(run({"account"}), exitDone);
    EXPECT_EQ(out.str(), "http://nas.local/dav/ alice (plain http allowed)\n");
    ASSERT_TRUE(loadCloudAccount());
    EXPECT_TRUE(loadCloudAccount()->allowHttp);
}

}  // namespace
}  // namespace kro::cli
