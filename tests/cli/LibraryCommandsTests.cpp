// The snapshot and sync commands: through a running agent when one answers, else on the stores here.
#include <gtest/gtest.h>

#include "CommandTestSupport.h"
#include "cli/LibraryCommands.h"
#include "cloud/CloudSync.h"
#include "cloud/Snapshots.h"
#include "library/JsonDecode.h"
#include "library/User.h"
#include "platform/testing/TestEnvironment.h"

namespace {

using namespace kro::cli;
using kro::Snapshots;
using kro::User;

class LibraryCommandsTest : public ::testing::Test, protected CommandRunner {
protected:
    LibraryCommandsTest() {
        User::resetShared();
        Snapshots::resetShared();
        kro::CloudSync::shared().reset();
        registerLibraryCommands(table);
    }

    // The snapshots on disk, read as a new process would.
    std::vector<std::string> storedSnapshotUUIDs() {
        std::vector<std::string> uuids;
        const auto text = environment.files.read(*Snapshots::store().path("v5"));
        if (!text) return uuids;
        const auto stored = Snapshots::fromJson(kro::parseJson(*text));
        for (const auto& snapshot : stored->snapshots) uuids.push_back(snapshot->uuid);
        return uuids;
    }

    kro::testing::TestEnvironment environment;
    FakeAgent agent;
};

TEST_F(LibraryCommandsTest, SnapshotsAreMadeListedAndRestoredWithoutAnAgent) {
    User::shared()->palettes[0]->name = "Before";
    User::shared()->save();

    ASSERT_EQ(run({"snapshot", "create"}), exitDone) << err.str();
    const auto uuids = storedSnapshotUUIDs();
    ASSERT_EQ(uuids.size(), 1u);
    EXPECT_EQ(out.str(), "Created snapshot " + uuids[0] + "\n");

    ASSERT_EQ(run({"snapshot", "list"}), exitDone);
    EXPECT_EQ(out.str().rfind(uuids[0], 0), 0u) << out.str();
    EXPECT_NE(out.str().find("1 palettes"), std::string::npos) << out.str();

    // The library changes, and the snapshot puts it back (as a change that can be undone).
    User::shared()->palettes[0]->name = "After";
    User::shared()->trigger(true, true, true, false);
    ASSERT_EQ(run({"snapshot", "restore", uuids[0]}), exitDone) << err.str();
    EXPECT_EQ(User::shared()->palettes[0]->name, "Before");
    const auto stored = User::fromJson(kro::parseJson(*environment.files.read(*User::store().path("v5"))));
    EXPECT_EQ(stored->palettes[0]->name, "Before");

    EXPECT_EQ(run({"snapshot", "restore", "no-such-uuid"}), exitFailed);
    EXPECT_EQ(err.str(), "kro: no snapshot has the identifier no-such-uuid\n");
    EXPECT_EQ(run({"snapshot", "restore"}), exitUsage);
    EXPECT_EQ(run({"snapshot", "delete", uuids[0]}), exitUsage);
}

TEST_F(LibraryCommandsTest, TheRunningAgentAnswersAndItsLinesArePrinted) {
    agent.reply = R"({"ok":true,"lines":["Merged"]})";
    ASSERT_EQ(run({"sync"}), exitDone);
    EXPECT_EQ(agent.requests, std::vector<std::string>{R"({"sync":true})"});
    EXPECT_EQ(out.str(), "Merged\n");

    // A sync that failed partway: what was done, then why it stopped.
    agent.reply = R"({"ok":false,"lines":["The library is newer"],"error":"the sync server answered HTTP 507"})";
    EXPECT_EQ(run({"sync"}), exitFailed);
    EXPECT_EQ(out.str(), "The library is newer\n");
    EXPECT_EQ(err.str(), "kro: the sync server answered HTTP 507\n");

    agent.reply = R"({"ok":false,"error":"no snapshot has the identifier x"})";
    EXPECT_EQ(run({"snapshot", "restore", "x"}), exitFailed);
    EXPECT_EQ(agent.requests.back(), R"({"snapshot":"restore","uuid":"x"})");
    EXPECT_EQ(err.str(), "kro: no snapshot has the identifier x\n");
    EXPECT_TRUE(storedSnapshotUUIDs().empty());  // the agent's word, not a local change
}

TEST_F(LibraryCommandsTest, SyncSignedOutMakesNoRequestAndSaysSo) {
    EXPECT_EQ(run({"sync"}), exitFailed);
    EXPECT_EQ(err.str(), "kro: signed out: set an account with kro account set URL USER\n");
}

}  // namespace
