#include <gtest/gtest.h>

#include "CommandTestSupport.h"
#include "cli/DocumentCommands.h"
#include "cloud/Snapshots.h"
#include "formats/ColorFormats.h"
#include "library/JsonDecode.h"
#include "library/SealedDocument.h"
#include "library/User.h"
#include "platform/testing/TestEnvironment.h"

namespace {

using namespace kro::cli;
using kro::Color;
using kro::Palette;
using kro::User;

class DocumentCommandsTest : public ::testing::Test, protected CommandRunner {
protected:
    DocumentCommandsTest() {
        User::resetShared();
        kro::ColorFormats::resetShared();
        kro::Snapshots::resetShared();
        registerDocumentCommands(table);
    }

    std::string put(const std::string& path, const std::string& bytes) {
        environment.files.createDirectories(kro::parentPath(path));
        environment.files.files[path] = bytes;
        return path;
    }
    // A library on disk with one palette, as the agent would have left it.
    void storeLibrary() {
        User library;
        library.palettes = {Palette::make({Color::make(1, 0, 0, 1, "Signal"), Color::make(0, 0, 1, 1, "Sea")}, "Brand")};
        put(userPath, library.jsonText());
    }
    std::shared_ptr<User> storedLibrary() {
        return User::fromJson(kro::parseJson(environment.files.read(userPath).value()));
    }

    kro::testing::TestEnvironment environment;
    FakeAgent agent;
    const std::string userPath = "/home/test/data/kroapp.Kro/v5/user.json";
};

TEST_F(DocumentCommandsTest, ImportGoesThroughTheRunningAgent) {
    agent.reply = R"({"ok":true})";
    const auto path = put("/home/test/in/a.palette", "{}");
    EXPECT_EQ(run({"import", path}), exitDone);
    EXPECT_EQ(agent.requests, std::vector<std::string>{R"({"open":["/home/test/in/a.palette"]})"});
    EXPECT_FALSE(environment.files.exists(userPath));  // the agent writes, not this command

    agent.reply = R"({"ok":false})";
    EXPECT_EQ(run({"import", path}), exitFailed);
    EXPECT_EQ(run({"import"}), exitUsage);
}

TEST_F(DocumentCommandsTest, ImportWithoutAgentWritesTheStores) {
    storeLibrary();
    auto palette = Palette::make({Color::make(0, 1, 0, 1, "Leaf")}, "Garden");
    const auto good = put("/home/test/in/garden.palette", kro::sealDocument(palette->toJson()));
    const auto bad = put("/home/test/in/broken.palette", "\x7f garbage");

    ASSERT_EQ(run({"import", good, bad}), exitDone) << err.str();
    EXPECT_EQ(out.str(), "Imported 1 palette (1 file skipped)\n");
    EXPECT_EQ(err.str().rfind("kro: skipped " + bad + ": ", 0), 0u) << err.str();
    const auto stored = storedLibrary();
    ASSERT_EQ(stored->palettes.size(), 2u);  // the stored library was loaded first, then added to
    EXPECT_EQ(stored->palettes[0]->name, "Brand");
    EXPECT_EQ(stored->palettes[1]->uuid, palette->uuid);

    const auto before = environment.files.read(userPath);
    EXPECT_EQ(run({"import", bad}), exitFailed);
    EXPECT_EQ(err.str().rfind("kro: Could not import broken.palette", 0), 0u) << err.str();
    EXPECT_EQ(environment.files.read(userPath), before);
}

TEST_F(DocumentCommandsTest, ExportWritesTheFormTheExtensionNames) {
    storeLibrary();
    EXPECT_EQ(run({"export", "Brand", "/home/test/out/brand.gpl"}), exitFailed);  // no such folder
    environment.files.createDirectories("/home/test/out");
    ASSERT_EQ(run({"export", "Brand", "/home/test/out/brand.gpl"}), exitDone) << err.str();
    const auto gimp = environment.files.read("/home/test/out/brand.gpl").value();
    EXPECT_EQ(gimp.rfind("GIMP Palette", 0), 0u);
    EXPECT_NE(gimp.find("Signal"), std::string::npos);

    ASSERT_EQ(run({"export", "Brand", "/home/test/out/brand.PALETTE"}), exitDone) << err.str();
    const auto document = Palette::fromJson(kro::readSealedDocument(environment.files.read("/home/test/out/brand.PALETTE").value()));
    EXPECT_EQ(document->colors.size(), 2u);

    EXPECT_EQ(run({"export", "Nope", "/home/test/out/x.ase"}), exitFailed);
    EXPECT_EQ(err.str(), "kro: no palette is named \"Nope\"\n");
    EXPECT_EQ(run({"export", "Brand", "/home/test/out/brand.xyz"}), exitFailed);
    EXPECT_FALSE(environment.files.exists("/home/test/out/brand.xyz"));
    EXPECT_EQ(run({"export", "Brand"}), exitUsage);
}

}  // namespace
