#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "platform/JsonFileDefaults.h"
#include "platform/linux/PosixFiles.h"

using namespace kro;

namespace {
struct TempFolder {
    std::string path;
    TempFolder() {
        char name[] = "/tmp/kro-files-XXXXXX";
        path = mkdtemp(name);
    }
    ~TempFolder() { std::system(("rm -rf '" + path + "'").c_str()); }
};
}  // namespace

TEST(PosixFiles, AtomicWriteReplacesWholeAndLeavesNoTemporary) {
    TempFolder tmp;
    PosixFiles files;
    const auto path = tmp.path + "/a/b/store.json";
    EXPECT_FALSE(files.writeAtomically(path, "x")) << "no folder yet";
    ASSERT_TRUE(files.createDirectories(tmp.path + "/a/b"));
    ASSERT_TRUE(files.writeAtomically(path, "first"));
    ASSERT_TRUE(files.writeAtomically(path, "second"));
    EXPECT_EQ(files.read(path), "second");
    EXPECT_EQ(files.list(tmp.path + "/a/b"), std::vector<std::string>{"store.json"});
    EXPECT_FALSE(files.read(tmp.path + "/a")) << "a folder does not read as a file";
}

TEST(PosixFiles, AFileWrittenInPiecesIsThePiecesJoined) {
    TempFolder tmp;
    PosixFiles files;
    const auto path = tmp.path + "/store.json";
    // More pieces than one system call takes, empty ones among them.
    std::vector<std::string> texts;
    std::string joined;
    for (int i = 0; i < 1500; ++i) {
        texts.push_back(i % 7 == 0 ? "" : std::string(static_cast<size_t>(i % 97) * 31 + 1, static_cast<char>('a' + i % 26)));
        joined += texts.back();
    }
    const std::vector<std::string_view> pieces(texts.begin(), texts.end());
    ASSERT_TRUE(files.writePiecesAtomically(path, pieces));
    EXPECT_EQ(files.read(path), joined);

    // A write the system cuts short inside a piece (here at a file size limit) fails whole.
    struct rlimit previous {};
    getrlimit(RLIMIT_FSIZE, &previous);
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    struct rlimit limited = previous;
    limited.rlim_cur = joined.size() / 2 + 5;
    setrlimit(RLIMIT_FSIZE, &limited);
    std::string reason;
    const bool written = files.writePiecesAtomically(path, {"x", std::string_view(joined), "y"}, &reason);
    setrlimit(RLIMIT_FSIZE, &previous);
    std::signal(SIGXFSZ, oldHandler);
    EXPECT_FALSE(written);
    EXPECT_EQ(reason, "File too large");
    EXPECT_EQ(files.read(path), joined);
    EXPECT_EQ(files.list(tmp.path), std::vector<std::string>{"store.json"});
}

TEST(PosixFiles, FailedWriteLeavesThePreviousFile) {
    if (geteuid() == 0) GTEST_SKIP() << "root writes into read-only folders";
    TempFolder tmp;
    PosixFiles files;
    const auto path = tmp.path + "/store.json";
    ASSERT_TRUE(files.writeAtomically(path, "kept"));
    chmod(tmp.path.c_str(), 0500);
    EXPECT_FALSE(files.writeAtomically(path, "lost"));
    chmod(tmp.path.c_str(), 0700);
    EXPECT_EQ(files.read(path), "kept");
}

TEST(PosixFiles, FailuresSayWhyInTheSystemsWords) {
    TempFolder tmp;
    PosixFiles files;
    std::string reason;
    EXPECT_FALSE(files.read(tmp.path + "/missing", &reason));
    EXPECT_EQ(reason, "No such file or directory");
    EXPECT_FALSE(files.read(tmp.path, &reason));
    EXPECT_EQ(reason, "Is a directory");
    EXPECT_FALSE(files.writeAtomically(tmp.path + "/none/x", "x", &reason));
    EXPECT_EQ(reason, "No such file or directory");
    ASSERT_TRUE(files.writeAtomically(tmp.path + "/file", "x"));
    EXPECT_FALSE(files.createDirectories(tmp.path + "/file/sub", &reason));
    EXPECT_EQ(reason, "Not a directory");
    EXPECT_FALSE(files.move(tmp.path + "/missing", tmp.path + "/moved", &reason));
    EXPECT_EQ(reason, "No such file or directory");
    ASSERT_TRUE(files.move(tmp.path + "/file", tmp.path + "/moved"));
    EXPECT_EQ(files.list(tmp.path), std::vector<std::string>{"moved"});
}

TEST(PosixFiles, AWriteClearsWhatKilledWritersLeftButNotAWriterAtWork) {
    TempFolder tmp;
    PosixFiles files;
    const auto path = tmp.path + "/store.json";
    ASSERT_TRUE(files.writeAtomically(tmp.path + "/.store.json.dead01", "half"));
    ASSERT_TRUE(files.writeAtomically(tmp.path + "/.store.json.other", "not a temporary of ours"));
    // A writer at work holds its temporary file's lock.
    ASSERT_TRUE(files.writeAtomically(tmp.path + "/.store.json.live01", "filling"));
    const int live = ::open((tmp.path + "/.store.json.live01").c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(live, LOCK_EX), 0);
    ASSERT_TRUE(files.writeAtomically(path, "new"));
    EXPECT_EQ(files.list(tmp.path), (std::vector<std::string>{".store.json.live01", ".store.json.other", "store.json"}));
    ::close(live);
    files.removeStaleTemporaries(path);
    EXPECT_EQ(files.list(tmp.path), (std::vector<std::string>{".store.json.other", "store.json"}));
}

TEST(PosixFiles, ALockHasOneHolderUntilItsHandleGoes) {
    TempFolder tmp;
    PosixFiles files;
    const auto path = tmp.path + "/stores.lock";
    auto first = files.lock(path, std::chrono::milliseconds(0));
    ASSERT_TRUE(first);
    EXPECT_FALSE(files.lock(path, std::chrono::milliseconds(120)));
    first.reset();
    EXPECT_TRUE(files.lock(path, std::chrono::milliseconds(0)));
}

TEST(JsonFileDefaults, BytesAndBooleansPersistAndDoNotReadAsEachOther) {
    TempFolder tmp;
    PosixFiles files;
    const auto path = tmp.path + "/config/defaults.json";
    {
        JsonFileDefaults defaults(files, path);
        defaults.setData("k", std::string("\x01\x00{", 3));
        defaults.setBoolean("flag", false);
    }
    JsonFileDefaults again(files, path);
    EXPECT_EQ(again.data("k"), std::string("\x01\x00{", 3));
    EXPECT_EQ(again.boolean("flag"), false);
    EXPECT_FALSE(again.boolean("k"));
    EXPECT_FALSE(again.data("flag"));
}

TEST(JsonFileDefaults, CorruptFileReadsAsEmptyAndStaysUntilTheNextSet) {
    TempFolder tmp;
    PosixFiles files;
    const auto path = tmp.path + "/defaults.json";
    files.writeAtomically(path, "{not json");
    JsonFileDefaults defaults(files, path);
    EXPECT_FALSE(defaults.data("k"));
    EXPECT_EQ(files.read(path), "{not json");
    defaults.setBoolean("b", true);
    EXPECT_EQ(JsonFileDefaults(files, path).boolean("b"), true);
}
