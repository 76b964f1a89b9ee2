#include <gtest/gtest.h>

#include "CommandTestSupport.h"
#include "cli/DocumentCommands.h"
#include "cloud/Snapshots.h"
#include "documents/ChangeRequests.h"
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

TEST_F(DocumentCommandsTest, ImportSaysTheSameThroughTheAgentAsAlone) {
    storeLibrary();
    const auto good = put("/home/test/in/garden.palette", kro::sealDocument(Palette::make({}, "Garden")->toJson()));
    const auto bad = put("/home/test/in/broken.palette", "\x7f garbage");
    const auto missing = std::string("/home/test/in/missing.gpl");
    const auto stored = environment.files.files;

    // Each case from the same stores: once with no agent, once handed to an agent that has them loaded.
    const auto importBothWays = [&](const std::vector<std::string>& args) {
        std::vector<CommandResult> results;
        for (const bool throughAgent : {false, true}) {
            environment.files.files = stored;
            User::resetShared();
            agent.answer = nullptr;
            if (throughAgent) {
                User::shared()->load();
                agent.answer = [](const std::string& request) {
                    std::string line;
                    kro::handleChangeRequest(kro::parseJson(request), [&line](const kro::Json& reply) { line = kro::compactText(reply); });
                    return line;
                };
            }
            std::vector<std::string> command{"import"};
            command.insert(command.end(), args.begin(), args.end());
            const int status = run(command);
            results.push_back({status, out.str(), err.str()});
        }
        EXPECT_EQ(results[0].status, results[1].status);
        EXPECT_EQ(results[0].out, results[1].out);
        EXPECT_EQ(results[0].err, results[1].err);
        return results[1];
    };

    auto result = importBothWays({missing});
    EXPECT_EQ(result.status, exitFailed);
    EXPECT_EQ(result.err, "kro: Could not import missing.gpl: cannot read the file (No such file or directory)\n");
    EXPECT_EQ(agent.requests.back(), R"({"import":["/home/test/in/missing.gpl"]})");

    result = importBothWays({good, bad});
    EXPECT_EQ(result.status, exitDone);
    EXPECT_EQ(result.out, "Imported 1 palette (1 file skipped)\n");
    EXPECT_EQ(result.err.rfind("kro: skipped " + bad + ": ", 0), 0u) << result.err;

    // A full disk: a failure naming the file and the reason, and no word of success.
    environment.files.failWrites = true;
    result = importBothWays({good});
    EXPECT_EQ(result.status, exitFailed);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "kro: cannot save " + userPath + ": No space left on device\n");
    EXPECT_EQ(environment.files.files.at(userPath), stored.at(userPath));
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
