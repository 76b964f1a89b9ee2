#include <gtest/gtest.h>

#include "CloudTestSupport.h"
#include "cloud/LibraryRequests.h"
#include "cloud/Snapshots.h"
#include "library/Notifications.h"
#include "library/Preferences.h"
#include "platform/testing/TestEnvironment.h"

namespace kro {
namespace {

class SnapshotsTest : public ::testing::Test {
protected:
    void SetUp() override {
        testing::resetLibraryAndSync();
        Preferences::resetSharedForTesting();
        Snapshots::resetShared();
    }
    void TearDown() override { setCloudUpdate(nullptr); }

    // Runs the check at `time` (seconds since 1970) and says whether a snapshot was added.
    bool checkAt(long time) {
        env.clock.set(std::chrono::system_clock::from_time_t(time));
        std::optional<bool> added;
        Snapshots::shared().check([&](bool result) { added = result; });
        EXPECT_TRUE(added.has_value());
        return added.value_or(false);
    }

    testing::TestEnvironment env;
    static constexpr long kMidnight = 1767225600;  // 2026-01-01 00:00:00 UTC
};

TEST_F(SnapshotsTest, RefreshPeriodDecidesWhenOneIsDue) {
    Preferences::shared().setSnapshotsRefresh(SnapshotRefresh::never);
    for (long t = kMidnight; t < kMidnight + 600; t += 30) EXPECT_FALSE(checkAt(t));
    EXPECT_TRUE(Snapshots::shared().snapshots.empty());

    Preferences::shared().setSnapshotsRefresh(SnapshotRefresh::day);
    EXPECT_FALSE(checkAt(kMidnight - 1));
    EXPECT_TRUE(checkAt(kMidnight + 60));
    EXPECT_FALSE(checkAt(kMidnight + 61));
    EXPECT_FALSE(checkAt(kMidnight + 3600));

    Preferences::shared().setSnapshotsRefresh(SnapshotRefresh::hour);
    EXPECT_TRUE(checkAt(kMidnight + 7200 + 5));
    EXPECT_FALSE(checkAt(kMidnight + 7200 + 61));

    // Two ticks at the start of one minute and 60 seconds on both qualify, each with its own uuid.
    Preferences::shared().setSnapshotsRefresh(SnapshotRefresh::minute);
    Snapshots::shared().snapshots.clear();
    EXPECT_TRUE(checkAt(kMidnight + 600));
    EXPECT_TRUE(checkAt(kMidnight + 660));
    ASSERT_EQ(Snapshots::shared().snapshots.size(), 2u);
    EXPECT_NE(Snapshots::shared().snapshots[0]->uuid, Snapshots::shared().snapshots[1]->uuid);
}

TEST_F(SnapshotsTest, MakingOneCopiesTheLibraryAndDescribesTheHost) {
    env.files.createDirectories("/etc");
    env.files.createDirectories("/sys/class/dmi/id");
    env.files.writeAtomically("/etc/machine-info", "PRETTY_HOSTNAME=\"Studio Desk\"\nCHASSIS=laptop\n");
    auto unnamed = Palette::make({Color::make(0.5, 0.5, 0.5, 1)});
    unnamed->name.reset();
    User::shared()->palettes.push_back(unnamed);
    User::shared()->paletteUUID = unnamed->uuid;

    const auto snapshot = Snapshot::make(*User::shared());
    EXPECT_EQ(snapshot->machine, SnapshotMachine::laptop);
    EXPECT_EQ(snapshot->device, "Studio Desk");
    EXPECT_EQ(snapshot->paletteUUID, unnamed->uuid);
    ASSERT_EQ(snapshot->palettes.size(), 2u);
    EXPECT_EQ(snapshot->palettes[1]->uuid, unnamed->uuid);
    EXPECT_EQ(snapshot->palettes[1]->name, "Palette");
    EXPECT_FALSE(unnamed->name);  // the library's own palette is not renamed
    User::shared()->palettes[0]->colors.clear();
    EXPECT_EQ(snapshot->palettes[0]->colors.size(), 5u);  // a copy, not the library's records

    // The firmware's chassis type when the machine info says nothing; the third kind when nothing is known.
    env.files.remove("/etc/machine-info");
    env.files.writeAtomically("/sys/class/dmi/id/chassis_type", "35\n");
    EXPECT_EQ(Snapshot::make(*User::shared())->machine, SnapshotMachine::macMini);
    env.files.remove("/sys/class/dmi/id/chassis_type");
    EXPECT_EQ(Snapshot::make(*User::shared())->machine, SnapshotMachine::iMac);
}

TEST_F(SnapshotsTest, TheListNamesTheMachineInTheSystemsOwnWords) {
    env.files.createDirectories("/etc");
    env.files.createDirectories("/proc");
    env.files.createDirectories("/sys/class/dmi/id");
    const auto chassisOfANewSnapshot = [] { return Snapshot::make(*User::shared())->chassis.value_or(""); };
    env.files.writeAtomically("/sys/class/dmi/id/chassis_type", "13\n");  // an all-in-one
    EXPECT_EQ(chassisOfANewSnapshot(), "Desktop");
    env.files.writeAtomically("/proc/cpuinfo", "flags\t\t: fpu vme hypervisor lahf_lm\n");
    EXPECT_EQ(chassisOfANewSnapshot(), "Virtual machine");
    env.files.writeAtomically("/etc/machine-info", "CHASSIS=laptop\n");  // the person's own setting wins
    EXPECT_EQ(chassisOfANewSnapshot(), "Laptop");
    env.files.remove("/etc/machine-info");
    env.files.remove("/proc/cpuinfo");
    env.files.writeAtomically("/sys/class/dmi/id/chassis_type", "2\n");  // "unknown"
    EXPECT_EQ(chassisOfANewSnapshot(), "Computer");

    // The stored kind keeps its value; a snapshot written without the words is shown by its kind.
    env.files.writeAtomically("/proc/cpuinfo", "flags\t\t: hypervisor\n");
    auto own = Snapshot::make(*User::shared());
    ASSERT_TRUE(Snapshots::shared().add(Snapshot::fromJson(own->toJson())));
    EXPECT_EQ(own->toJson()["machine"], "iMac");
    auto older = own->toJson();
    older.erase("chassis");
    older["uuid"] = "older";
    ASSERT_TRUE(Snapshots::shared().add(Snapshot::fromJson(older)));

    std::string listed;
    handleLibraryRequest(Json{{"snapshot", "list"}}, [&](const Json& reply) {
        for (const auto& line : reply["lines"]) listed += line.get<std::string>() + "\n";
    });
    EXPECT_NE(listed.find("  Virtual machine "), std::string::npos) << listed;
    EXPECT_NE(listed.find("  Desktop "), std::string::npos) << listed;
    EXPECT_EQ(listed.find("iMac"), std::string::npos) << listed;
}

TEST_F(SnapshotsTest, ListKeepsOneOfEachUuidAndSurvivesAReload) {
    auto& list = Snapshots::shared();
    const auto snapshot = Snapshot::make(*User::shared());
    env.notifications.clearPostedNames();
    EXPECT_TRUE(list.add(snapshot));
    EXPECT_FALSE(list.add(Snapshot::fromJson(snapshot->toJson())));
    EXPECT_EQ(env.notifications.postedNames(),
              (std::vector<std::string>{Notifications::snapshotsUpdated, Notifications::snapshotsSaved}));
    EXPECT_TRUE(list.add(Snapshot::make(*User::shared())));

    Snapshots::resetShared();
    Snapshots::shared().load();
    ASSERT_EQ(Snapshots::shared().snapshots.size(), 2u);
    EXPECT_EQ(Snapshots::shared().snapshots[0]->toJson(), snapshot->toJson());

    EXPECT_TRUE(Snapshots::shared().remove(snapshot->uuid));
    EXPECT_FALSE(Snapshots::shared().remove(snapshot->uuid));
    EXPECT_EQ(Snapshots::shared().snapshots.size(), 1u);

    // A damaged list reads as empty, and the next snapshot keeps the damaged file instead of replacing it.
    const auto path = *Snapshots::store().path("v5");
    const auto damaged = env.files.files.at(path).substr(0, 40);
    env.files.files[path] = damaged;
    Snapshots::resetShared();
    Snapshots::shared().load();
    EXPECT_TRUE(Snapshots::shared().snapshots.empty());
    EXPECT_TRUE(Snapshots::shared().add(Snapshot::make(*User::shared())));
    EXPECT_EQ(env.files.files.at(path + ".damaged-" + "20260101T000000Z"), damaged);
}

TEST_F(SnapshotsTest, RestoreGoesThroughThePipelineAndCanBeUndone) {
    auto& user = *User::shared();
    user.trigger(true, true, true, false);
    env.queue.runDue();
    const auto snapshot = Snapshot::make(user);

    env.clock.advance(std::chrono::seconds(5));
    user.palettes.clear();
    user.history->colors.push_back(Color::make(0, 0, 1, 1));
    user.trigger(true, true, true, false);
    env.queue.runDue();

    env.notifications.clearPostedNames();
    snapshot->restore(user);
    env.queue.runDue();
    EXPECT_EQ(user.palettes.size(), 1u);
    EXPECT_TRUE(user.history->colors.empty());
    EXPECT_EQ(env.notifications.postedNames(),
              (std::vector<std::string>{Notifications::userSaved, Notifications::userUpdated}));

    ASSERT_TRUE(UserUndo::shared().canUndo());
    UserUndo::shared().undo();
    EXPECT_TRUE(user.palettes.empty());
    EXPECT_EQ(user.history->colors.size(), 1u);
}

}  // namespace
}  // namespace kro
