#include <gtest/gtest.h>

#include <map>
#include <sstream>

#include "cli/AccountCommands.h"
#include "cloud/CloudAccount.h"
#include "platform/testing/TestEnvironment.h"

namespace kro::cli {
namespace {

class MemorySecretStore final : public SecretStore {
public:
    explicit MemorySecretStore(std::map<std::string, std::string>& entries) : entries_(entries) {}
    std::optional<std::string> password(const std::string& server, const std::string& user) override {
        auto found = entries_.find(server + " " + user);
        if (found == entries_.end()) return std::nullopt;
        return found->second;
    }
    bool setPassword(const std::string& server, const std::string& user, const std::string& password) override {
        entries_[server + " " + user] = password;
        return true;
    }
    bool removePassword(const std::string& server, const std::string& user) override {
        entries_.erase(server + " " + user);
        return true;
    }
    std::string description() const override { return "memory"; }

private:
    std::map<std::string, std::string>& entries_;
};

class AccountCommandsTest : public ::testing::Test {
protected:
    void SetUp() override {
        registerAccountCommands(table, [this] { return std::make_unique<MemorySecretStore>(secrets); });
    }

    int run(std::vector<std::string> args, const std::string& input = "") {
        std::istringstream in(input);
        out.str("");
        err.str("");
        CommandContext context{std::move(args), in, out, err};
        return table.at("account").run(context);
    }

    testing::TestEnvironment env;
    CommandTable table;
    std::map<std::string, std::string> secrets;
    std::ostringstream out, err;
};

TEST_F(AccountCommandsTest, SetShowAndRemove) {
    EXPECT_EQ(run({}), exitDone);
    EXPECT_EQ(out.str(), "signed out\n");

    EXPECT_EQ(run({"set", "https://dav.example.com/kro/", "alice"}, "pa ss word\nnext line\n"), exitDone);
    EXPECT_EQ(secrets.at("https://dav.example.com/kro/ alice"), "pa ss word");
    EXPECT_EQ(run({}), exitDone);
    EXPECT_EQ(out.str(), "https://dav.example.com/kro/ alice\n");
    // The password is never written beside the account.
    EXPECT_EQ(env.files.read(cloudAccountPath())->find("pa ss word"), std::string::npos);

    // Another account replaces the first, whose password is forgotten.
    EXPECT_EQ(run({"set", "http://127.0.0.1:8080/", "bob"}, "other"), exitDone);
    EXPECT_EQ(secrets.size(), 1u);
    EXPECT_EQ(secrets.count("http://127.0.0.1:8080/ bob"), 1u);

    EXPECT_EQ(run({"remove"}), exitDone);
    EXPECT_TRUE(secrets.empty());
    EXPECT_FALSE(loadCloudAccount());
}

TEST_F(AccountCommandsTest, BadInputChangesNothing) {
    EXPECT_EQ(run({"set", "ftp://example.com/", "alice"}, "pw\n"), exitFailed);
    EXPECT_EQ(err.str().rfind("kro: ", 0), 0u);
    EXPECT_EQ(run({"set", "https://", "alice"}, "pw\n"), exitFailed);
    EXPECT_EQ(run({"set", "https://alice:pw@example.com/", "alice"}, "pw\n"), exitFailed);
    EXPECT_EQ(run({"set", "https://example.com/", ""}, "pw\n"), exitFailed);
    EXPECT_EQ(run({"set", "https://example.com/", "alice"}, ""), exitFailed);  // no password line at all
    EXPECT_EQ(run({"set", "https://example.com/"}), exitUsage);
    EXPECT_EQ(run({"unknown"}), exitUsage);
    EXPECT_TRUE(secrets.empty());
    EXPECT_FALSE(env.files.exists(cloudAccountPath()));

    // A damaged account file reads as signed out.
    env.files.createDirectories(parentPath(cloudAccountPath()));
    env.files.writeAtomically(cloudAccountPath(), "{\"server\":4}");
    EXPECT_EQ(run({}), exitDone);
    EXPECT_EQ(out.str(), "signed out\n");
}

}  // namespace
}  // namespace kro::cli
