// Sync against a real WebDAV server: Apache with mod_dav on loopback, two library folders as two machines.
#include <gtest/gtest.h>

#include <condition_variable>
#include <deque>
#include <filesystem>
#include <fstream>
#include <map>
#include <mutex>
#include <thread>

#include "ApacheDav.h"
#include "CloudTestSupport.h"
#include "cloud/CloudAccount.h"
#include "cloud/ConfiguredCloudSession.h"
#include "cloud/LibraryRequests.h"
#include "cloud/UserUpdate.h"
#include "cloud/WebDavDatabase.h"
#include "library/JsonDecode.h"
#include "library/Notifications.h"
#include "platform/SecretStore.h"
#include "platform/testing/ManualClock.h"
#include "platform/testing/MemoryDefaults.h"
#include "platform/testing/MemoryFiles.h"
#include "tests/support/MemorySecretStore.h"
#include "tests/support/ThreadedQueue.h"

namespace kro {
namespace {

using namespace std::chrono_literals;

// One machine: its own library folder and defaults.
struct Machine {
    testing::MemoryFiles files;
    testing::MemoryDefaults defaults;
    Paths paths;
    // The library in memory while another machine is in charge: the agent keeps running.
    std::optional<Json> library;
};

class WebDavSyncTest : public ::testing::Test {
protected:
    static constexpr const char* kUser = "alice";
    static constexpr const char* kPassword = "s3cret pass";

    void SetUp() override {
        if (!testing::ApacheDav::apacheBinary()) GTEST_SKIP() << "apache2 is not installed: no WebDAV server to sync with";
        server = std::make_unique<testing::ApacheDav>(kUser, kPassword);
        ASSERT_TRUE(server->running()) << server->startError();
        notifications.setRecording(true);
        a.paths = Paths::underRoot("/home/a");
        b.paths = Paths::underRoot("/home/b");
    }
    void TearDown() override {
        CloudSync::shared().reset();
        setCloudUpdate(nullptr);
        databases.clear();
    }

    // Puts `machine` in charge: its files, its library as it left it, its own gates.
    void become(Machine& machine) {
        if (current) current->library = User::shared()->toJson();
        Environment e{&clock, &queue, &queue, &machine.files, &machine.defaults, &notifications, machine.paths};
        installEnvironment(e);
        testing::resetLibraryAndSync();
        if (machine.library) User::shared()->copyFields(*User::fromJson(*machine.library), true);
        current = &machine;
        auto database = std::make_shared<WebDavDatabase>(WebDavAccount{server->collectionURL(), kUser, kPassword});
        databases.push_back(database);
        CloudSync::shared().setSessionProvider([database] { return CloudSession{kUser, database}; });
        clock.advance(2s);
    }

    // Waits for the completion of one sync call.
    void sync(bool fetch) {
        bool done = false;
        auto finished = [&done] { done = true; };
        if (fetch) {
            CloudSync::shared().fetchCloudKit("test", "sync", __LINE__, finished);
        } else {
            CloudSync::shared().updateCloudKit("test", "sync", __LINE__, finished);
        }
        ASSERT_TRUE(queue.runUntil([&] { return done; }));
        clock.advance(2s);
    }

    Json serverRecord() {
        std::ifstream file(server->root() + "/" + kUser + ".json");
        return parseJson(std::string(std::istreambuf_iterator<char>(file), {}));
    }
    size_t serverPaletteCount() {
        try {
            return serverRecord()["palettes"].size();
        } catch (const std::exception&) {
            return 0;
        }
    }

    // The server tags a file written within the last second weakly, and a weak tag never matches a
    // conditional write: give it a second between writes of one record.
    static void letTheServerTagSettle() { std::this_thread::sleep_for(1100ms); }

    void addPalette(const std::string& name) {
        User::shared()->addPalette(Palette::make({Color::make(0.2, 0.4, 0.6, 1)}, name));
    }
    // Machine A adds a palette to the shipped one and waits until its push has reached the server.
    void aPushesAPalette(const std::string& name) {
        become(a);
        addPalette(name);
        ASSERT_TRUE(queue.runUntil([&] { return serverPaletteCount() == 2; }));
    }

    testing::ManualClock clock;
    testing::ThreadedQueue queue;
    NotificationCenter notifications;
    std::unique_ptr<testing::ApacheDav> server;
    std::vector<std::shared_ptr<WebDavDatabase>> databases;
    Machine a, b;
    Machine* current = nullptr;
};

TEST_F(WebDavSyncTest, TwoMachinesMergeEachOthersEdits) {
    aPushesAPalette("From A");
    Json record = serverRecord();
    EXPECT_EQ(record["palettes"].size(), 2u);
    EXPECT_EQ(record["updatedAt"], *User::shared()->updatedAt);
    EXPECT_FALSE(record.contains("history"));
    const std::string aHistory = User::shared()->history->uuid;

    become(b);
    const std::string bHistory = User::shared()->history->uuid;
    notifications.clearPostedNames();
    sync(true);
    ASSERT_EQ(User::shared()->palettes.size(), 2u);
    EXPECT_EQ(User::shared()->palettes[1]->name, "From A");
    EXPECT_EQ(User::shared()->history->uuid, bHistory);  // the history is not synced
    EXPECT_EQ(User::shared()->createdAt, record["updatedAt"]);
    const auto& names = notifications.postedNames();
    EXPECT_NE(std::find(names.begin(), names.end(), Notifications::userCloudMerged), names.end());
    EXPECT_TRUE(b.files.read(*User::store().path("v5")));  // merged into B's own folder

    letTheServerTagSettle();
    User::shared()->palettes.erase(User::shared()->palettes.begin());
    User::shared()->trigger(true, true, true, false);
    sync(false);
    EXPECT_EQ(serverRecord()["palettes"].size(), 1u);

    become(a);
    sync(true);
    ASSERT_EQ(User::shared()->palettes.size(), 1u);
    EXPECT_EQ(User::shared()->palettes[0]->name, "From A");
    EXPECT_EQ(User::shared()->history->uuid, aHistory);
}

// A machine that was off for a while starts with the library it saved long ago: loading it must not make it
// look new, or its push would put the old palettes over the other machine's newer ones.
TEST_F(WebDavSyncTest, AMachineStartingWithAnOlderLibraryReceivesTheNewerRecord) {
    aPushesAPalette("From A");
    const Json pushed = serverRecord();

    become(b);
    auto old = User::fromJson(Json::parse(R"({"palettes":[]})"));
    old->palettes.push_back(Palette::make({Color::make(0.9, 0.1, 0.1, 1)}, "Saved in 2020"));
    old->updatedAt = "2020-05-01T12:00:00Z";
    const auto path = *User::store().path("v5");
    b.files.createDirectories(parentPath(path));
    b.files.writeAtomically(path, compactText(old->toJson()));
    User::shared()->load();  // as the agent starts: the sync is installed, the library loads, then it compares
    sync(true);

    EXPECT_EQ(serverRecord(), pushed);
    ASSERT_EQ(User::shared()->palettes.size(), 2u);
    EXPECT_EQ(User::shared()->palettes[1]->name, "From A");
    EXPECT_NE(b.files.read(path)->find("From A"), std::string::npos);
}

TEST_F(WebDavSyncTest, ConflictingWriteIsRefusedAndSettled) {
    become(a);
    sync(false);  // creates the record
    letTheServerTagSettle();

    // B reads the record, then A writes before B does: B's conditional write is refused with 412, and the
    // server's version, being later, is merged into B.
    become(b);
    auto bDatabase = databases.back();
    CloudFetchResult read;
    bool fetched = false;
    bDatabase->fetch(kUser, [&](CloudFetchResult result) {
        read = std::move(result);
        fetched = true;
    });
    ASSERT_TRUE(queue.runUntil([&] { return fetched; }));
    ASSERT_TRUE(read.record && read.record->etag);

    aPushesAPalette("A wins");

    become(b);
    CloudRecord stale = *read.record;
    stale.writeFields(*User::shared());
    CloudSaveResult saved;
    bool done = false;
    databases.back()->save(stale, [&](CloudSaveResult result) {
        saved = std::move(result);
        done = true;
    });
    ASSERT_TRUE(queue.runUntil([&] { return done; }));
    EXPECT_EQ(saved.status, CloudSaveResult::Status::conflict);
    ASSERT_TRUE(saved.serverRecord);
    EXPECT_EQ(serverRecord()["palettes"].size(), 2u);  // A's write stands
    EXPECT_EQ(update(*User::shared(), *saved.serverRecord, true, true, true, true, "test", "conflict", 1),
              SettleResult::merged);
    EXPECT_EQ(User::shared()->palettes.back()->name, "A wins");
}

TEST_F(WebDavSyncTest, SignedOutMakesNoRequestAndTheConfiguredAccountSyncs) {
    become(a);
    // The configured account: nothing set yet, so signed out.
    const std::string home = std::filesystem::temp_directory_path() / ("kro-account-" + std::to_string(::getpid()));
    a.paths = Paths::underRoot(home);
    Environment e{&clock, &queue, &queue, &a.files, &a.defaults, &notifications, a.paths};
    installEnvironment(e);
    CloudSync::shared().setSessionProvider(configuredCloudSession());
    const size_t before = server->requestCount();
    User::shared()->trigger(true, true, true, true);
    sync(true);
    queue.runUntil([] { return false; }, 300ms);
    EXPECT_EQ(server->requestCount(), before);

    // Signed in, with the password in the private file (no secret service in the test's environment).
    const char* bus = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    const std::string savedBus = bus ? bus : "";
    ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
    ASSERT_TRUE(saveCloudAccount({server->collectionURL(), kUser}));
    ASSERT_TRUE(makeSecretStore(a.paths)->setPassword(server->collectionURL(), kUser, kPassword));
    sync(false);
    if (!savedBus.empty()) ::setenv("DBUS_SESSION_BUS_ADDRESS", savedBus.c_str(), 1);
    EXPECT_GT(server->requestCount(), before);
    EXPECT_EQ(serverRecord()["uuid"], User::shared()->uuid);
    std::filesystem::remove_all(home);
}

TEST_F(WebDavSyncTest, ServerGoingAwayChangesNothingAndSyncResumesWhenItReturns) {
    aPushesAPalette("Before");
    letTheServerTagSettle();

    server->stop();
    addPalette("While away");  // saved locally; its push finds no server
    const std::string edited = compactText(User::shared()->toJson());
    EXPECT_TRUE(a.files.read(*User::store().path("v5"))->find("While away") != std::string::npos);
    sync(true);
    EXPECT_EQ(compactText(User::shared()->toJson()), edited);
    EXPECT_EQ(serverPaletteCount(), 2u);

    // The next tick after the server is back finds the library newer than the record and pushes it.
    ASSERT_TRUE(server->start()) << server->startError();
    sync(true);
    ASSERT_TRUE(queue.runUntil([&] { return serverPaletteCount() == 3; }));
    EXPECT_EQ(serverRecord()["updatedAt"], *User::shared()->updatedAt);
    EXPECT_EQ(compactText(User::shared()->toJson()), edited);
}

// What `kro sync` prints: the sync's own lines and what settling did, once every request has come back.
TEST_F(WebDavSyncTest, SyncRequestAnswersWithWhatHappened) {
    const auto syncRequest = [this] {
        std::optional<Json> reply;
        handleLibraryRequest(Json{{"sync", true}}, [&reply](const Json& answer) { reply = answer; });
        EXPECT_TRUE(queue.runUntil([&] { return reply.has_value(); }));
        clock.advance(2s);
        std::string lines;
        for (const auto& line : reply.value_or(Json::object()).value("lines", Json::array())) lines += line.get<std::string>() + "\n";
        return lines;
    };
    aPushesAPalette("From A");

    become(b);
    EXPECT_EQ(syncRequest(), "The newer record on the sync server was merged into the library\n");

    // A change made while the push could not go out: the sync finds the library newer and waits for its push.
    letTheServerTagSettle();
    User::shared()->palettes.pop_back();
    User::shared()->trigger(true, true, true, false);
    EXPECT_EQ(syncRequest(), "The library is newer than the record on the sync server\n"
                             "Sent the library to the sync server\n");
    EXPECT_EQ(serverPaletteCount(), 1u);
}

// The account and its password are read once for the whole request: its check, its fetch, and the push the
// fetch sets off.
TEST_F(WebDavSyncTest, SyncRequestAsksForThePasswordOnce) {
    become(a);
    sync(false);  // the record the request will find older than the library
    letTheServerTagSettle();
    User::shared()->palettes.push_back(Palette::make({Color::make(0.2, 0.4, 0.6, 1)}, "Not pushed yet"));
    User::shared()->trigger(true, true, true, false);

    int reads = 0;
    std::map<std::string, std::string> passwords{{server->collectionURL() + " " + kUser, kPassword}};
    CloudSync::shared().setSessionProvider(configuredCloudSession(
        [&] { return std::make_unique<testing::MemorySecretStore>(passwords, &reads); }));
    ASSERT_TRUE(saveCloudAccount({server->collectionURL(), kUser}));
    std::optional<Json> reply;
    handleLibraryRequest(Json{{"sync", true}}, [&reply](const Json& answer) { reply = answer; });
    ASSERT_TRUE(queue.runUntil([&] { return reply.has_value(); }));

    EXPECT_NE(reply->dump().find("Sent the library to the sync server"), std::string::npos) << reply->dump();
    EXPECT_EQ(reads, 1);
    // Once the request has answered, the next call reads the account again, so a new password takes effect.
    clock.advance(2s);
    sync(true);
    EXPECT_EQ(reads, 2);
}

TEST_F(WebDavSyncTest, BadRecordsAndBadServersLeaveTheLibraryAsItIs) {
    become(a);
    const std::string library = compactText(User::shared()->toJson());
    testing::LogCapture log;
    for (const char* body : {R"({"palettes":5,"updatedAt":"2099-01-01T00:00:00Z"})", "<html>not json</html>"}) {
        std::ofstream(server->root() + "/alice.json") << body;
        sync(true);
        EXPECT_EQ(compactText(User::shared()->toJson()), library);
    }

    // A server that never answers, a wrong password, a folder that is not there: the save has already happened,
    // and the library stays.
    testing::SilentServer silent;
    for (const auto& account : {WebDavAccount{silent.url(), kUser, kPassword},
                                WebDavAccount{server->collectionURL(), kUser, "wrong"},
                                WebDavAccount{server->collectionURL() + "missing/", kUser, kPassword}}) {
        auto database = std::make_shared<WebDavDatabase>(account, HttpTimeouts{500ms, 700ms});
        databases.push_back(database);
        CloudSync::shared().setSessionProvider([database] { return CloudSession{kUser, database}; });
        addPalette("Local");
        EXPECT_TRUE(a.files.read(*User::store().path("v5"))->find("Local") != std::string::npos);
        const std::string edited = compactText(User::shared()->toJson());
        clock.advance(2s);
        sync(true);
        EXPECT_EQ(compactText(User::shared()->toJson()), edited);
    }
    bool idle = false;
    CloudSync::shared().whenIdle([&idle] { idle = true; });
    ASSERT_TRUE(queue.runUntil([&idle] { return idle; }));
    const auto lines = log.text();
    EXPECT_NE(lines.find("CloudKit record does not decode"), std::string::npos);
    EXPECT_NE(lines.find("CloudKit fetch failed: the sync server's record is not a library"), std::string::npos);
    EXPECT_NE(lines.find("CloudKit fetch failed: the sync server did not answer in time"), std::string::npos) << lines;
    EXPECT_NE(lines.find("CloudKit fetch failed: the sync server refused the user name or password (HTTP 401)"),
              std::string::npos);
    EXPECT_NE(lines.find("CloudKit save failed: the sync server has no folder at " + server->collectionURL() +
                         "missing/ (HTTP 409)"),
              std::string::npos) << lines;
}

}  // namespace
}  // namespace kro
