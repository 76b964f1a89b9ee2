#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

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
