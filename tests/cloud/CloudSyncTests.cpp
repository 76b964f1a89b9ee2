#include <gtest/gtest.h>

#include "CloudTestSupport.h"
#include "FakeCloudDatabase.h"
#include "cloud/UserUpdate.h"
#include "library/Notifications.h"
#include "platform/testing/TestEnvironment.h"

namespace kro {
namespace {

using testing::FakeCloudDatabase;

int count(const std::vector<std::string>& names, const std::string& name) {
    return static_cast<int>(std::count(names.begin(), names.end(), name));
}

class CloudSyncTest : public ::testing::Test {
protected:
    void SetUp() override {
        testing::resetLibraryAndSync();
        signIn();
    }
    void TearDown() override {
        CloudSync::shared().reset();
        setCloudUpdate(nullptr);
    }

    void signIn() {
        CloudSync::shared().setSessionProvider([this] { return CloudSession{"alice", database}; });
    }
    void run() { env.queue.runDue(); }
    void later(double seconds = 2) { env.queue.advance(Seconds(seconds)); }
    User& user() { return *User::shared(); }

    // A record as another machine would have written it.
    Json remoteDocument(const std::string& updatedAt, const std::string& paletteName) {
        auto palette = Palette::make({Color::make(0.1, 0.2, 0.3, 1)}, paletteName);
        CloudRecord record = CloudRecord::make("alice");
        User other;
        other.palettes = {palette};
        other.paletteUUID = palette->uuid;
        other.updatedAt = updatedAt;
        record.writeFields(other);
        return record.document;
    }

    testing::TestEnvironment env;
    std::shared_ptr<FakeCloudDatabase> database = std::make_shared<FakeCloudDatabase>();
};

TEST_F(CloudSyncTest, SignedOutMakesNoRequestButCompletes) {
    CloudSync::shared().setSessionProvider([] { return std::nullopt; });
    int completions = 0;
    user().trigger(true, true, true, true);
    CloudSync::shared().fetchCloudKit("test", "test", 1, [&] { ++completions; });
    CloudSync::shared().updateCloudKit("test", "test", 1, [&] { ++completions; });
    EXPECT_EQ(completions, 0);  // handed to the main queue, not called in place
    run();
    EXPECT_EQ(completions, 2);
    EXPECT_EQ(database->fetches + database->saves, 0);
    // Signed out does not use up the gate: signing in, the next call goes on at once.
    signIn();
    CloudSync::shared().fetchCloudKit("test", "test", 1);
    EXPECT_EQ(database->fetches, 1);
}

TEST_F(CloudSyncTest, EachKindOfCallIsGatedToOnePerSecond) {
    testing::LogCapture log;
    EXPECT_TRUE(CloudSync::shared().canCallUpdateCloudKit());
    later(0.5);
    EXPECT_FALSE(CloudSync::shared().canCallUpdateCloudKit());
    EXPECT_TRUE(CloudSync::shared().canCallFetchCloudKit());  // a gate of its own
    later(0.5);
    EXPECT_TRUE(CloudSync::shared().canCallUpdateCloudKit());
    const auto lines = log.text();
    EXPECT_NE(lines.find("First CloudKit call, allowed."), std::string::npos);
    EXPECT_NE(lines.find("CloudKit call blocked, only 0.50s since last call (minimum 1.0)"), std::string::npos);
    EXPECT_NE(lines.find("CloudKit call allowed, 1.00s since last call (minimum 1.0)"), std::string::npos);

    // Two edits within a second push once.
    later();
    user().trigger(false, false, false, true);
    user().trigger(false, false, false, true);
    run();
    EXPECT_EQ(database->fetches, 1);
}

TEST_F(CloudSyncTest, UnknownRecordIsCreatedFromTheLibraryWhichStaysAsItIs) {
    user().trigger(false, true, false, false);
    const Json before = user().toJson();
    testing::LogCapture log;
    CloudSync::shared().updateCloudKit("Kro/Test", "edit()", 7);
    run();
    ASSERT_EQ(database->records.count("alice"), 1u);
    const Json& document = database->records["alice"].document;
    EXPECT_EQ(document["recordType"], "User");
    EXPECT_EQ(document["uuid"], user().uuid);
    EXPECT_FALSE(document.contains("createdAt"));
    EXPECT_FALSE(database->lastSavedEtag);  // created only if absent
    EXPECT_EQ(user().toJson(), before);
    const auto lines = log.text();
    EXPECT_NE(lines.find("Updating CloudKit record with ID: alice"), std::string::npos);
    EXPECT_NE(lines.find("CloudKit record not found, creating new record for ID: alice"), std::string::npos);
    EXPECT_NE(lines.find("CloudKit new record saved successfully."), std::string::npos);
}

TEST_F(CloudSyncTest, FoundRecordIsUpdatedOnlyWhenItsTimeDiffers) {
    Json document = remoteDocument("2025-06-01T00:00:00Z", "Remote");
    document["history"] = Json::object();
    document["note"] = "kept";
    database->records["alice"] = {document, 3};
    user().trigger(false, true, false, true);
    run();
    ASSERT_EQ(database->saves, 1);
    EXPECT_EQ(database->lastSavedEtag, "3");  // replaces exactly the version read
    const Json& saved = database->records["alice"].document;
    EXPECT_EQ(saved["updatedAt"], *user().updatedAt);
    EXPECT_FALSE(saved.contains("history"));
    EXPECT_EQ(saved["note"], "kept");
    EXPECT_FALSE(saved.contains("paletteUUID"));  // cleared: the library has none

    // Same time on both sides, whatever the contents: nothing is written.
    database->records["alice"].document["palettes"] = Json::array();
    later();
    testing::LogCapture log;
    CloudSync::shared().updateCloudKit("test", "test", 1);
    run();
    EXPECT_EQ(database->saves, 1);
    EXPECT_NE(log.text().find("CloudKit record does not need to be updated."), std::string::npos);
}

TEST_F(CloudSyncTest, ConflictingWriterIsSettledByTheComparison) {
    database->records["alice"] = {remoteDocument("2026-01-01T00:00:00Z", "First"), 1};
    // Between this machine's read and its write, another machine writes a later library.
    const Json newer = remoteDocument("2030-01-01T00:00:00Z", "Newer");
    database->beforeSave = [&] { database->records["alice"] = {newer, 2}; };
    env.notifications.clearPostedNames();
    user().trigger(false, true, true, true);
    run();
    EXPECT_EQ(database->records["alice"].document, newer);  // the other machine's write stands
    ASSERT_EQ(user().palettes.size(), 1u);
    EXPECT_EQ(user().palettes[0]->name, "Newer");
    EXPECT_EQ(count(env.notifications.postedNames(), Notifications::userCloudMerged), 1);
}

// What a command prints comes from these reports: the sync server's words, never the log's.
TEST_F(CloudSyncTest, ReportsTellWhatHappenedAndWhatFailed) {
    std::vector<std::pair<CloudReport::Kind, std::string>> reports;
    CloudSync::shared().addObserver([&](const CloudReport& report) { reports.emplace_back(report.kind, report.sentence); });
    using Kind = CloudReport::Kind;

    // No record yet: a library that was ever changed goes up as the new one.
    user().trigger(false, true, false, false);
    CloudSync::shared().fetchCloudKit("test", "test", 1);
    run();
    EXPECT_EQ(database->records.count("alice"), 1u);
    CloudSync::shared().updateCloudKit("test", "test", 1);  // within the second
    run();
    later();
    database->failure = "the sync server could not be reached (refused)";
    CloudSync::shared().fetchCloudKit("test", "test", 1);
    run();
    EXPECT_EQ(reports, (std::vector<std::pair<Kind, std::string>>{
                           {Kind::done, "The sync server holds no record for this account yet"},
                           {Kind::done, "Created the account's record on the sync server"},
                           {Kind::notSent, "The library was not sent: the sync server was asked less than a second "
                                           "ago; the next sync sends it"},
                           {Kind::failed, "the sync server could not be reached (refused)"}}));
}

// Before a command changes the library it settles with the record, leaving the push to the change itself.
TEST_F(CloudSyncTest, FetchBeforeChangeMergesANewerRecordAndPushesNothing) {
    const auto fetchBeforeChange = [this] {
        CloudSync::shared().fetchBeforeChange("test", "test", 1, nullptr);
        run();
        later();
    };
    user().trigger(false, true, false, false);
    fetchBeforeChange();  // no record: the change's push will make it
    database->records["alice"] = {remoteDocument("2020-01-01T00:00:00Z", "Older"), 1};
    fetchBeforeChange();
    EXPECT_EQ(database->saves, 0);
    EXPECT_EQ(user().palettes[0]->name, "Your First Palette!");

    database->records["alice"] = {remoteDocument("2099-01-01T00:00:00Z", "Newer"), 2};
    fetchBeforeChange();
    EXPECT_EQ(database->saves, 0);
    EXPECT_EQ(user().palettes[0]->name, "Newer");
}

class ComparisonTest : public CloudSyncTest {
protected:
    CloudRecord record(const Json& document) { return CloudRecord{"alice", document, std::nullopt}; }
    // Whether the library took the record.
    bool compare(const Json& document) {
        return update(user(), record(document), true, true, true, true, "test", "test", 1) == SettleResult::merged;
    }
};

TEST_F(ComparisonTest, EqualTimesChangeNothingAndALaterLibraryIsPushedWithTheComparisonAsCaller) {
    std::vector<std::tuple<std::string, std::string, int>> pushes;
    setCloudUpdate([&](const std::string& file, const std::string& function, int line) {
        pushes.emplace_back(file, function, line);
    });
    user().updatedAt = "2026-03-01T10:00:00Z";
    env.notifications.clearPostedNames();
    EXPECT_FALSE(compare(remoteDocument("2026-03-01T10:00:00Z", "Different")));
    EXPECT_TRUE(env.notifications.postedNames().empty());
    EXPECT_TRUE(pushes.empty());

    user().updatedAt = "2026-03-01T10:00:01Z";
    EXPECT_FALSE(compare(remoteDocument("2026-03-01T10:00:00Z", "Older")));
    ASSERT_EQ(pushes.size(), 1u);
    EXPECT_EQ(pushes[0], std::make_tuple(std::string("Kro/User+Update"),
                                         std::string("update(with:undo:save:notify:cloud:file:function:line:)"), 95));
    // A record without a time counts as earlier.
    Json undated = remoteDocument("x", "Undated");
    undated.erase("updatedAt");
    EXPECT_FALSE(compare(undated));
    EXPECT_EQ(pushes.size(), 2u);
    EXPECT_EQ(user().palettes[0]->name, "Your First Palette!");
}

TEST_F(ComparisonTest, LaterRecordIsMergedExceptTheHistory) {
    const auto history = user().history;
    history->colors.push_back(Color::make(1, 0, 0, 1));
    user().updatedAt = "2025-12-01T00:00:00Z";
    const Json document = remoteDocument("2025-12-24T08:30:00Z", "Remote");
    env.notifications.clearPostedNames();

    EXPECT_TRUE(compare(document));
    ASSERT_EQ(user().palettes.size(), 1u);
    EXPECT_EQ(user().palettes[0]->name, "Remote");
    EXPECT_EQ(user().paletteUUID, document["paletteUUID"].get<std::string>());
    EXPECT_EQ(user().history, history);
    EXPECT_EQ(user().history->colors.size(), 1u);
    // The creation time takes the record's time; the library's own time moves on from it.
    EXPECT_EQ(user().createdAt, "2025-12-24T08:30:00Z");
    EXPECT_EQ(user().updatedAt, dateText(env.clock.now()));
    const auto& names = env.notifications.postedNames();
    EXPECT_EQ(count(names, Notifications::userSaved), 1);
    EXPECT_EQ(count(names, Notifications::userUpdated), 1);
    EXPECT_EQ(count(names, Notifications::userCloudMerged), 1);
    env.queue.runDue();
    EXPECT_EQ(UserUndo::shared().engine().count(), 1u);

    // A record time that is not a date still merges, and the creation time becomes the present.
    env.clock.advance(std::chrono::hours(1));
    EXPECT_TRUE(compare(remoteDocument("later than any date", "Odd")));
    EXPECT_EQ(user().createdAt, dateText(env.clock.now()));
}

TEST_F(ComparisonTest, UndecodableRecordChangesNothing) {
    const Json before = user().toJson();
    env.notifications.clearPostedNames();
    Json document = remoteDocument("2030-01-01T00:00:00Z", "Bad");
    document["palettes"][0]["colors"] = 12;
    EXPECT_FALSE(compare(document));
    EXPECT_FALSE(compare(Json::array()));
    EXPECT_EQ(user().toJson(), before);
    EXPECT_TRUE(env.notifications.postedNames().empty());
}

}  // namespace
}  // namespace kro
