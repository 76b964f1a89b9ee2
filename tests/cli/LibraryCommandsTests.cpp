// The snapshot, sync, undo and redo commands: through a running agent when one answers, else on the stores
// here, under their lock.
#include <gtest/gtest.h>

#include "CommandTestSupport.h"
#include "cli/LibraryCommands.h"
#include "cloud/CloudSync.h"
#include "cloud/Snapshots.h"
#include "library/JsonDecode.h"
#include "library/StoreLock.h"
#include "library/User.h"
#include "library/UserUndo.h"
#include "platform/testing/TestEnvironment.h"

namespace {

using namespace kro::cli;
using kro::Snapshots;
using kro::User;
using kro::UserUndo;

class LibraryCommandsTest : public ::testing::Test, protected CommandRunner {
protected:
    LibraryCommandsTest() {
        User::resetShared();
        UserUndo::shared().reset();
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

    // The library changes, and the snapshot puts it back. Alone, a command has no undo history: the library
    // as it was is kept as a snapshot of its own.
    User::shared()->palettes[0]->name = "After";
    User::shared()->save();
    ASSERT_EQ(run({"snapshot", "restore", uuids[0]}), exitDone) << err.str();
    EXPECT_EQ(User::shared()->palettes[0]->name, "Before");
    const auto stored = User::fromJson(kro::parseJson(*environment.files.read(*User::store().path("v5"))));
    EXPECT_EQ(stored->palettes[0]->name, "Before");
    const auto kept = storedSnapshotUUIDs();
    ASSERT_EQ(kept.size(), 2u);
    EXPECT_EQ(out.str(), "Restored snapshot " + uuids[0] + "; the library as it was is kept as snapshot " + kept[1] + "\n");
    EXPECT_EQ(Snapshots::shared().snapshot(kept[1])->palettes[0]->name, "After");

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

TEST_F(LibraryCommandsTest, UndoAndRedoWalkTheHistoryOfTheProcessThatMadeTheChanges) {
    EXPECT_EQ(run({"undo"}), exitFailed);
    EXPECT_EQ(err.str(), "kro: nothing to undo: only changes made while the agent runs can be undone, and it has none\n");

    // As in the agent: the library as loaded is the first state, then a snapshot is restored over a change.
    User::shared()->palettes[0]->name = "Before";
    User::shared()->save();
    ASSERT_EQ(run({"snapshot", "create"}), exitDone);
    const auto uuid = storedSnapshotUUIDs().at(0);
    UserUndo::shared().save(*User::shared(), 0);
    User::shared()->palettes[0]->name = "After";
    User::shared()->trigger(true, true, true, false);
    environment.queue.runDue();
    ASSERT_EQ(run({"snapshot", "restore", uuid}), exitDone) << err.str();
    EXPECT_EQ(out.str(), "Restored snapshot " + uuid + " (kro undo puts the library back)\n");
    environment.queue.runDue();

    const auto storedName = [this] {
        return User::fromJson(kro::parseJson(*environment.files.read(*User::store().path("v5"))))->palettes[0]->name;
    };
    ASSERT_EQ(run({"undo"}), exitDone) << err.str();
    EXPECT_EQ(out.str(), "Undone: the library has 1 palette and 0 history colors\n");
    EXPECT_EQ(storedName(), "After");
    environment.queue.runDue();
    ASSERT_EQ(run({"redo"}), exitDone) << err.str();
    EXPECT_EQ(out.str(), "Redone: the library has 1 palette and 0 history colors\n");
    EXPECT_EQ(storedName(), "Before");
    EXPECT_EQ(run({"undo", "more"}), exitUsage);
}

TEST_F(LibraryCommandsTest, NoOneWritesBehindTheBackOfTheHolderOfTheStores) {
    // An agent that takes the request and never answers (a stopped one) still holds the stores.
    agent.silent = true;
    EXPECT_EQ(run({"snapshot", "create"}), exitFailed);
    EXPECT_EQ(err.str(), "kro: the running agent did not answer within 10 seconds (is it stopped?); nothing was changed\n");
    EXPECT_EQ(out.str(), "");

    // No agent in this session, but another process holds the lock: an agent of another session, say.
    agent.silent = false;
    environment.files.lockedElsewhere.insert(*kro::StoreLock::path());
    EXPECT_EQ(run({"snapshot", "create"}), exitFailed);
    EXPECT_EQ(err.str(), "kro: another kro is changing the library (it holds /home/test/data/kroapp.Kro/stores.lock); "
                         "try again when it is done\n");
    EXPECT_TRUE(storedSnapshotUUIDs().empty());
    EXPECT_EQ(environment.files.writeCount, 0);
}

TEST_F(LibraryCommandsTest, AStoreThatFailsIsSaidOnStandardError) {
    // Damaged: put aside, said, and the command goes on.
    const auto path = *Snapshots::store().path("v5");
    environment.files.createDirectories(kro::parentPath(path));
    environment.files.files[path] = "{\"snapshots\": 3}";
    EXPECT_EQ(run({"snapshot", "list"}), exitFailed) << "a damaged list is not an empty one";
    EXPECT_EQ(err.str(), "kro: " + path + " could not be read (\"snapshots\" is not an array); it stays as it is until "
                         "the next snapshot puts it aside\n");
    ASSERT_EQ(run({"snapshot", "create"}), exitDone) << err.str();
    EXPECT_EQ(storedSnapshotUUIDs().size(), 1u);
    EXPECT_EQ(err.str(), "kro: " + path + " could not be read (\"snapshots\" is not an array); it is kept as "
                         "snapshots.json.damaged-20260101T000000Z and a new one was written\n");
    EXPECT_EQ(environment.files.files.at(path + ".damaged-20260101T000000Z"), "{\"snapshots\": 3}");

    // Not written: a failure, and no success line.
    Snapshots::resetShared();
    environment.files.failWrites = true;
    EXPECT_EQ(run({"snapshot", "create"}), exitFailed);
    EXPECT_EQ(out.str(), "");
    EXPECT_EQ(err.str(), "kro: cannot save " + path + ": No space left on device\n");
    EXPECT_EQ(storedSnapshotUUIDs().size(), 1u);
}

TEST_F(LibraryCommandsTest, SyncSignedOutMakesNoRequestAndSaysSo) {
    EXPECT_EQ(run({"sync"}), exitFailed);
    EXPECT_EQ(err.str(), "kro: signed out: set an account with kro account set URL USER\n");
}

}  // namespace
