// The snapshots pane: its list follows the snapshots, made here or elsewhere; a snapshot is taken, restored
// and deleted from it; its refresh menu writes the preference. Its account row signs in to a real WebDAV
// server (Apache on loopback): a server that cannot be reached and a refused password each say why and keep
// nothing; the right password keeps the account and its password, and signing out takes both away.
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <cstdlib>
#include <filesystem>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "ApacheDav.h"
#include "WorkspaceTest.h"
#include "cloud/CloudAccount.h"
#include "cloud/CloudSync.h"
#include "cloud/Snapshots.h"
#include "library/Notifications.h"
#include "tests/support/ThreadedQueue.h"
#include "workspaces/preferences/SnapshotsPane.h"

namespace kro::testing {
namespace {

using namespace std::chrono_literals;

class SnapshotsPaneTest : public WorkspaceTest {
protected:
    SnapshotsPaneTest() {
        Snapshots::resetShared();
        environment.notifications.clearPostedNames();
    }
    std::vector<std::string> posted() const { return environment.notifications.postedNames(); }
    // The rows' uuids, as listed (newest first).
    std::vector<std::string> listed(const SnapshotsPane& pane) const {
        std::vector<std::string> uuids;
        for (int row = 0; row < pane.list()->topLevelItemCount(); ++row) {
            uuids.push_back(pane.list()->topLevelItem(row)->data(0, Qt::UserRole).toString().toStdString());
        }
        return uuids;
    }
};

TEST_F(SnapshotsPaneTest, TakesRestoresAndDeletesSnapshotsAndFollowsOnesMadeElsewhere) {
    SnapshotsPane pane;
    EXPECT_EQ(pane.list()->topLevelItemCount(), 0);
    const auto button = [&pane](const char* text) {
        for (auto* found : pane.findChildren<QPushButton*>()) {
            if (found->text().startsWith(text)) return found;
        }
        return static_cast<QPushButton*>(nullptr);
    };
    EXPECT_FALSE(button("Restore")->isEnabled()) << "nothing to restore before a snapshot is chosen";

    pane.takeSnapshot();
    ASSERT_EQ(Snapshots::shared().snapshots.size(), 1u);
    EXPECT_EQ(posted().front(), Notifications::snapshotsUpdated);
    const auto first = Snapshots::shared().snapshots[0]->uuid;
    const size_t palettesThen = user().palettes.size();

    // A snapshot taken elsewhere (the timer, another window) lists first, as the newest.
    environment.clock.advance(Seconds(60));
    user().addPalette(Palette::make({Color::make(0.9, 0.1, 0.1, 1)}, "Later"));
    Snapshots::shared().add(Snapshot::make(user()));
    ASSERT_EQ(listed(pane).size(), 2u);
    EXPECT_EQ(listed(pane)[1], first);
    EXPECT_EQ(pane.list()->topLevelItem(0)->text(2).toInt(), int(palettesThen + 1));

    // The older one restored: the palette added since goes.
    pane.list()->setCurrentItem(pane.list()->topLevelItem(1));
    EXPECT_TRUE(button("Restore")->isEnabled());
    EXPECT_TRUE(button("Delete")->isEnabled());
    pane.restoreSelected();
    settle();
    EXPECT_EQ(user().palettes.size(), palettesThen);

    pane.deleteSelected();
    EXPECT_EQ(listed(pane).size(), 1u);
    EXPECT_FALSE(Snapshots::shared().snapshot(first));
}

TEST_F(SnapshotsPaneTest, RefreshMenuWritesThePreferenceAndFollowsIt) {
    SnapshotsPane pane;
    auto* refresh = pane.findChild<QComboBox*>("snapshotsRefresh");
    ASSERT_NE(refresh, nullptr);
    EXPECT_EQ(refresh->currentIndex(), int(SnapshotRefresh::day));
    emit refresh->activated(int(SnapshotRefresh::hour));
    EXPECT_EQ(Preferences::shared().snapshotsRefresh(), SnapshotRefresh::hour);
    EXPECT_EQ(posted(), std::vector<std::string>{Notifications::preferencesUpdated});
    Preferences::shared().setSnapshotsRefresh(SnapshotRefresh::never);
    EXPECT_EQ(refresh->currentIndex(), int(SnapshotRefresh::never));
}

// A loopback port nothing listens on.
int closedPort() {
    const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    ::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address);
    ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length);
    ::close(socket);
    return ntohs(address.sin_port);
}

class AccountRowTest : public SnapshotsPaneTest {
protected:
    void SetUp() override {
        if (!ApacheDav::apacheBinary()) GTEST_SKIP() << "apache2 is not installed: no WebDAV server to sign in to";
        server = std::make_unique<ApacheDav>("alice", "right password");
        ASSERT_TRUE(server->running()) << server->startError();
        // Passwords go to a file of this test's own, never to the keyring of the desktop the test runs in.
        if (const char* bus = std::getenv("DBUS_SESSION_BUS_ADDRESS")) savedBus = bus;
        ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
        char pattern[] = "/tmp/kro-account-XXXXXX";
        folder = ::mkdtemp(pattern);
        saved = env();
        Environment threaded = saved;
        threaded.mainQueue = &queue;
        threaded.backgroundQueue = &queue;
        threaded.paths = Paths::underRoot(folder);
        installEnvironment(threaded);
        pane = std::make_unique<SnapshotsPane>();
    }
    void TearDown() override {
        pane.reset();
        CloudSync::shared().reset();
        queue.runUntil([] { return false; }, 200ms);
        if (server) installEnvironment(saved);
        if (!savedBus.empty()) ::setenv("DBUS_SESSION_BUS_ADDRESS", savedBus.c_str(), 1);
        if (!folder.empty()) std::filesystem::remove_all(folder);
    }

    void signIn(const std::string& url, const std::string& password) {
        pane->serverField()->setText(QString::fromStdString(url));
        pane->userField()->setText("alice");
        pane->passwordField()->setText(QString::fromStdString(password));
        pane->signIn();
        ASSERT_TRUE(queue.runUntil([this] { return !pane->signingIn(); })) << "the sign-in never finished";
    }
    std::string status() const { return pane->accountStatus().toStdString(); }
    bool accountKept() const { return environment.files.files.count(cloudAccountPath()) > 0; }
    bool passwordKept() const { return std::filesystem::exists(folder + "/config/kroapp.Kro/secrets.json"); }

    std::unique_ptr<ApacheDav> server;
    ThreadedQueue queue;
    Environment saved;
    std::string savedBus;
    std::string folder;
    std::unique_ptr<SnapshotsPane> pane;
};

TEST_F(AccountRowTest, AFailedSignInSaysWhyAndKeepsNothingAndTheRightPasswordIsKeptUntilSignOut) {
    signIn("http://127.0.0.1:" + std::to_string(closedPort()) + "/", "right password");
    EXPECT_NE(status().find("could not be reached"), std::string::npos) << status();
    EXPECT_NE(status().find("Nothing was kept"), std::string::npos) << status();
    EXPECT_FALSE(accountKept());
    EXPECT_FALSE(passwordKept());

    signIn(server->collectionURL(), "wrong password");
    EXPECT_NE(status().find("refused the user name or password"), std::string::npos) << status();
    EXPECT_FALSE(accountKept());
    EXPECT_FALSE(passwordKept());
    EXPECT_TRUE(pane->passwordField()->text().isEmpty()) << "a typed password is not left in the field";

    signIn(server->collectionURL(), "right password");
    EXPECT_NE(status().find("Signed in as alice"), std::string::npos) << status();
    EXPECT_TRUE(accountKept());
    EXPECT_TRUE(passwordKept());

    pane->signOut();
    EXPECT_FALSE(accountKept());
    EXPECT_NE(status().find("Signed out"), std::string::npos) << status();
}

}  // namespace
}  // namespace kro::testing
