// Sync from the command line, as a person meets it: the built `kro`, run with no agent by two machines (each
// its own XDG folders) that share one account on a real WebDAV server.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "ApacheDav.h"
#include "platform/Json.h"

extern char** environ;

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

struct Result {
    int status = -1;
    std::string out, err;
};

std::string readFile(const fs::path& path) {
    std::ifstream file(path);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

// One machine: a home of its own with the XDG folders under it, and no session bus, so that the password goes
// to the private file and never to the keyring of the desktop the tests run in.
class Machine {
public:
    explicit Machine(const fs::path& home) : home_(home) {
        for (const char* folder : {"data", "config", "cache", "runtime"}) fs::create_directories(home_ / folder);
        fs::permissions(home_ / "runtime", fs::perms::owner_all);
    }

    Result kro(const std::vector<std::string>& args, const std::string& input = "") const {
        std::ofstream(home_ / "in") << input;
        std::vector<std::string> environment;
        for (char** variable = environ; *variable; ++variable) {
            const std::string entry = *variable;
            if (entry.rfind("XDG_", 0) != 0 && entry.rfind("HOME=", 0) != 0 && entry.rfind("DBUS_", 0) != 0)
                environment.push_back(entry);
        }
        environment.push_back("HOME=" + home_.string());
        for (const char* folder : {"data", "config", "cache", "runtime"}) {
            std::string name = folder;
            for (auto& c : name) c = static_cast<char>(std::toupper(c));
            environment.push_back("XDG_" + name + (name == "RUNTIME" ? "_DIR=" : "_HOME=") + (home_ / folder).string());
        }
        std::vector<std::string> argv = {KRO_BINARY};
        argv.insert(argv.end(), args.begin(), args.end());
        Result result;
        result.status = spawn(argv, environment);
        result.out = readFile(home_ / "out");
        result.err = readFile(home_ / "err");
        return result;
    }

    std::string library() const { return readFile(home_ / "data/kroapp.Kro/v5/user.json"); }

private:
    static std::vector<char*> pointers(std::vector<std::string>& texts) {
        std::vector<char*> list;
        for (auto& text : texts) list.push_back(text.data());
        list.push_back(nullptr);
        return list;
    }

    int spawn(std::vector<std::string>& argv, std::vector<std::string>& environment) const {
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, 0, (home_ / "in").c_str(), O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&actions, 1, (home_ / "out").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        posix_spawn_file_actions_addopen(&actions, 2, (home_ / "err").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        auto args = pointers(argv);
        auto envp = pointers(environment);
        pid_t pid = -1;
        const int spawned = posix_spawn(&pid, args[0], &actions, nullptr, args.data(), envp.data());
        posix_spawn_file_actions_destroy(&actions);
        if (spawned != 0) return -1;
        int status = 0;
        waitpid(pid, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    fs::path home_;
};

class SyncCommandsTest : public ::testing::Test {
protected:
    static constexpr const char* kUser = "alice";
    static constexpr const char* kPassword = "s3cret pass";

    void SetUp() override {
        if (!kro::testing::ApacheDav::apacheBinary()) GTEST_SKIP() << "apache2 is not installed: no WebDAV server";
        server = std::make_unique<kro::testing::ApacheDav>(kUser, kPassword);
        ASSERT_TRUE(server->running()) << server->startError();
        char pattern[] = "/tmp/kro-sync-commands-XXXXXX";
        folder = ::mkdtemp(pattern);
        a = std::make_unique<Machine>(folder / "a");
        b = std::make_unique<Machine>(folder / "b");
    }
    void TearDown() override {
        if (!folder.empty()) fs::remove_all(folder);
    }

    // A GIMP palette file named `name` with one colour.
    std::string paletteFile(const std::string& name) {
        const auto path = folder / (name + ".gpl");
        std::ofstream(path) << "GIMP Palette\nName: " << name << "\n#\n200 30 90\tSome color\n";
        return path.string();
    }

    static void signIn(const Machine& machine, const std::string& password, const std::string& url) {
        const auto result = machine.kro({"account", "set", url, kUser}, password + "\n");
        ASSERT_EQ(result.status, 0) << result.err;
        // No secret service answers here: the person is told the password lies in a plain file.
        EXPECT_NE(result.out.find("(plain text, readable only by you)"), std::string::npos) << result.out;
    }

    // The palettes' names in the server's record, in order.
    std::vector<std::string> serverPalettes() {
        std::vector<std::string> names;
        const auto record = kro::Json::parse(readFile(server->root() + "/" + kUser + ".json"), nullptr, false);
        if (!record.is_object()) return names;
        for (const auto& palette : record.value("palettes", kro::Json::array())) names.push_back(palette.value("name", ""));
        return names;
    }

    // The server marks a file written within the last second with a weak tag, which no conditional write
    // matches; and the library's times have one-second steps.
    static void nextSecond() { std::this_thread::sleep_for(1100ms); }

    std::unique_ptr<kro::testing::ApacheDav> server;
    fs::path folder;
    std::unique_ptr<Machine> a, b;
};

const std::string kMerged = "The newer record on the sync server was merged into the library\n";
const std::string kKeptHere = "kro: not sent to the sync server (the change is kept here, and kro sync sends it): ";

TEST_F(SyncCommandsTest, HeadlessChangesReachTheOtherMachineWithoutLosingItsWork) {
    signIn(*a, kPassword, server->collectionURL());
    signIn(*b, kPassword, server->collectionURL());
    const auto expectDone = [](const Result& result, const std::string& out) {
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_EQ(result.out, out);
        EXPECT_EQ(result.err, "");
    };

    // A's import is pushed before the command ends, and B's sync pulls it.
    expectDone(a->kro({"import", paletteFile("From A")}), "Imported 1 palette\n");
    EXPECT_EQ(serverPalettes(), (std::vector<std::string>{"Your First Palette!", "From A"}));
    expectDone(b->kro({"sync"}), kMerged);
    EXPECT_NE(b->library().find("From A"), std::string::npos);

    // B moves on; A, whose library is now the older one, takes B's work instead of pushing over it.
    nextSecond();
    expectDone(b->kro({"import", paletteFile("From B")}), "Imported 1 palette\n");
    nextSecond();
    expectDone(a->kro({"sync"}), kMerged);
    EXPECT_NE(a->library().find("From B"), std::string::npos);
    EXPECT_EQ(serverPalettes(), (std::vector<std::string>{"Your First Palette!", "From A", "From B"}));

    // A imports again without a sync since B's last change: the import lands on top of B's work.
    nextSecond();
    expectDone(b->kro({"import", paletteFile("B again")}), "Imported 1 palette\n");
    nextSecond();
    expectDone(a->kro({"import", paletteFile("A again")}), "Imported 1 palette\n");
    const std::vector<std::string> all = {"Your First Palette!", "From A", "From B", "B again", "A again"};
    EXPECT_EQ(serverPalettes(), all);
}

TEST_F(SyncCommandsTest, ASyncThatCannotReachOrReadTheServerFailsWithTheReason) {
    signIn(*a, "wrong", server->collectionURL());
    auto result = a->kro({"sync"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "kro: the sync server refused the user name or password (HTTP 401)\n");

    signIn(*a, kPassword, server->collectionURL());
    const std::string created = a->kro({"snapshot", "create"}).out;  // "Created snapshot UUID"
    std::ofstream(server->root() + "/" + kUser + ".json") << "<html>maintenance</html>";
    result = a->kro({"sync"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err.rfind("kro: the sync server's record is not a library: ", 0), 0u) << result.err;
    fs::remove(server->root() + "/" + kUser + ".json");

    // With the server away, a sync fails, and an import is kept here and said not to have gone out.
    server->stop();
    result = a->kro({"sync"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err.rfind("kro: the sync server could not be reached (", 0), 0u) << result.err;
    result = a->kro({"import", paletteFile("Offline")});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "Imported 1 palette\n");
    EXPECT_EQ(result.err.rfind(kKeptHere + "the sync server could not be reached (", 0), 0u) << result.err;
    EXPECT_NE(a->library().find("Offline"), std::string::npos);

    // Back again: the next sync sends what was kept.
    ASSERT_TRUE(server->start()) << server->startError();
    result = a->kro({"sync"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "The sync server holds no record for this account yet\n"
                          "Created the account's record on the sync server\n");
    EXPECT_EQ(serverPalettes(), (std::vector<std::string>{"Your First Palette!", "Offline"}));

    // Restoring a snapshot is a change like any other: it goes out before the command ends.
    nextSecond();
    result = a->kro({"snapshot", "restore", created.substr(created.rfind(' ') + 1, 36)});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(serverPalettes(), (std::vector<std::string>{"Your First Palette!"}));
}

}  // namespace
