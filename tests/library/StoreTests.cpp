// Loading and saving the library: the load list with its fallbacks, the migrating save, the pipeline's
// order, the once-only legacy import and sealed documents.
#include "LibraryTestSupport.h"

#include "library/DefaultsKeys.h"
#include "library/Directory.h"
#include "library/JsonDecode.h"
#include "library/SealedDocument.h"
#include "platform/Crypto.h"

namespace kro::testing {
namespace {

class LibraryStore : public LibraryTest {
protected:
    // A library with one palette named `name`, as another run of the program would have saved it.
    std::string savedLibrary(const std::string& name) {
        auto library = User::fromJson(Json::parse(R"({"palettes":[]})"));
        auto palette = std::make_shared<Palette>();
        palette->name = name;
        palette->colors.push_back(Color::make(0.5, 0.25, 1.0, 1.0, "c"));
        library->palettes.push_back(palette);
        library->updatedAt = "2025-06-01T00:00:00Z";
        return compactText(library->toJson());
    }

    struct Result {
        bool called = false;
        bool success = false;
        std::optional<std::string> error;
    };
    Result load() {
        Result result;
        user().load([&](bool success, const std::optional<std::string>& error) {
            result = {true, success, error};
        });
        return result;
    }
};

TEST_F(LibraryStore, AGoodPresentFileIsLoadedAndNotRewritten) {
    putFile(v5Path(), savedLibrary("Present"));
    putFile(v4Path(), savedLibrary("Older"));
    auto result = load();
    EXPECT_TRUE(result.called && result.success);
    ASSERT_EQ(user().palettes.size(), 1u);
    EXPECT_EQ(user().palettes[0]->name, "Present");
    EXPECT_EQ(environment.files.writeCount, 0);
    EXPECT_EQ(posted(), (std::vector<std::string>{"UserLoaded"}));
    // The library keeps the time of its last change, and loading it pushes nothing: only the comparison with
    // the account's record that follows can tell which side is newer.
    EXPECT_EQ(user().updatedAt, "2025-06-01T00:00:00Z");
    EXPECT_TRUE(cloudCalls.empty());

    // A time that is not a date is unknown, never the present time: the record's time wins over it.
    putFile(v5Path(), R"({"updatedAt":"garbage"})");
    load();
    EXPECT_FALSE(user().updatedAt);
}

TEST_F(LibraryStore, ACorruptPresentFileFallsBackToTheOlderVersionAndIsReplaced) {
    putFile(v5Path(), R"({"palettes":[{"lock":"yes"}]})");  // a value of a wrong type is as corrupt as a torn file
    const auto older = savedLibrary("Older");
    putFile(v4Path(), older);
    auto result = load();
    EXPECT_TRUE(result.success);
    ASSERT_EQ(user().palettes.size(), 1u);
    EXPECT_EQ(user().palettes[0]->name, "Older");
    EXPECT_EQ(posted(), (std::vector<std::string>{"UserLoaded", "UserSaved"}));
    auto written = User::fromJson(Json::parse(environment.files.files.at(v5Path())));
    EXPECT_EQ(*written, user());
    EXPECT_EQ(environment.files.files.at(v4Path()), older);
}

TEST_F(LibraryStore, WhenNothingDecodesTheDefaultsStandAndNothingIsWritten) {
    putFile(v5Path(), "not json");
    putFile(v4Path(), R"({"history":[]})");
    const auto before = user().toJson();
    auto result = load();
    EXPECT_TRUE(result.called);
    EXPECT_FALSE(result.success);
    ASSERT_TRUE(result.error);
    EXPECT_NE(result.error->find("Palette"), std::string::npos) << *result.error;  // the last error is kept
    EXPECT_EQ(user().toJson(), before);
    EXPECT_EQ(environment.files.writeCount, 0);
    EXPECT_EQ(environment.files.files.at(v5Path()), "not json");
    EXPECT_TRUE(posted().empty());
}

TEST_F(LibraryStore, NoFileAtAllIsNoError) {
    auto result = load();
    EXPECT_TRUE(result.called);
    EXPECT_FALSE(result.success);
    EXPECT_FALSE(result.error);
    EXPECT_EQ(user().palettes[0]->name, "Your First Palette!");
}

TEST_F(LibraryStore, ThePipelineSavesBeforeItNotifiesAndAFailedSaveStillNotifies) {
    user().trigger(false, true, true, true);
    EXPECT_EQ(posted(), (std::vector<std::string>{"UserSaved", "UserUpdated", "test.cloud"}));

    putFile(v5Path(), "previous");
    environment.files.failWrites = true;
    environment.notifications.clearPostedNames();
    user().trigger(false, true, true, true);
    EXPECT_EQ(postedCount("UserUpdated"), 1u);
    EXPECT_EQ(posted().back(), "test.cloud");
    EXPECT_EQ(environment.files.files.at(v5Path()), "previous");
    EXPECT_FALSE(user().save());

    environment.files.failWrites = false;
    environment.files.failCreateDirectories = true;
    environment.files.folders.clear();
    EXPECT_FALSE(user().save());
}

TEST_F(LibraryStore, AFullResetEmptiesBothVersionFolders) {
    putFile(v5Path(), "a");
    putFile(v4Path(), "b");
    EXPECT_TRUE(Directory::removeAll());
    EXPECT_FALSE(environment.files.exists(v5Path()));
    EXPECT_FALSE(environment.files.exists(v4Path()));
}

class LegacyImport : public LibraryTest {
protected:
    const std::string folder = "/home/test/data/kroapp.Kro";
    const std::string legacyJson = R"({
        "history": {"uuid": "H3", "name": "Color History",
                    "colors": [{"uuid": "C1", "name": "Half", "red": 0.5, "green": 0.999, "blue": 0, "alpha": 1}]},
        "palettes": [{"uuid": "P3", "colors": [{"red": 1, "green": 1, "blue": 1, "group": "x//y "}]},
                     {"uuid": "P4", "name": "Kept", "colors": "not a list"}]})";
};

TEST_F(LegacyImport, TheSealedFileIsImportedOnce) {
    putFile(folder + "/user.kro", sealBox(legacyJson, sealedDocumentKey()));
    putFile(folder + "/user.json", R"({"palettes":[{"uuid":"PLAIN"}]})");
    EXPECT_EQ(user().importLegacy(), 3u);
    ASSERT_EQ(user().palettes.size(), 4u);
    const auto& history = *user().palettes[1];
    EXPECT_EQ(history.name, "Color History (V3)");
    EXPECT_FALSE(history.isHistory);
    EXPECT_EQ(history.colors[0]->hex, "7FFE00");
    EXPECT_EQ(history.colors[0]->name, "Half");
    EXPECT_EQ(user().palettes[2]->name, "Palette (V3)");
    EXPECT_EQ(user().palettes[2]->colors[0]->group, "x / y");
    EXPECT_EQ(user().palettes[3]->name, "Kept (V3)");
    EXPECT_EQ(environment.defaults.boolean(DefaultsKeys::loadV3), true);
    // The pipeline ran without undo.
    EXPECT_EQ(posted(), (std::vector<std::string>{"UserSaved", "UserUpdated", "test.cloud"}));
    environment.queue.runDue();
    EXPECT_EQ(UserUndo::shared().engine().count(), 0u);
}

TEST_F(LegacyImport, APlainFileServesWhenNoSealedOneOpens) {
    putFile(folder + "/user.kro", "not a sealed box");
    putFile(folder + "/user.json", legacyJson);
    EXPECT_EQ(user().importLegacy(), 3u);
}

TEST_F(LegacyImport, PalettesAlreadyInTheLibraryAreNotAddedAgain) {
    user().palettes[0]->uuid = "P3";
    putFile(folder + "/user.json", legacyJson);
    EXPECT_EQ(user().importLegacy(), 2u);
    EXPECT_EQ(user().palettes.size(), 3u);
}

TEST_F(LegacyImport, NothingIsReadOnceTheFlagIsSet) {
    environment.defaults.setBoolean(DefaultsKeys::loadV3, true);
    putFile(folder + "/user.kro", sealBox(legacyJson, sealedDocumentKey()));
    EXPECT_EQ(user().importLegacy(), 0u);
    EXPECT_EQ(user().palettes.size(), 1u);
    EXPECT_TRUE(posted().empty());
}

TEST(SealedDocument, OpensSealedOrPlainJsonAndRejectsAnythingElse) {
    const Json json = Json::parse(R"({"name":"doc","colors":[]})");
    EXPECT_EQ(readSealedDocument(sealDocument(json)), json);
    EXPECT_EQ(readSealedDocument(compactText(json)), json);
    EXPECT_THROW(readSealedDocument("\x01\x02 neither"), JsonDecodeError);
    // Sealed under another key: not opened, and not JSON either.
    EXPECT_THROW(readSealedDocument(sealBox(compactText(json), std::string(32, 'k'))), JsonDecodeError);
}

}  // namespace
}  // namespace kro::testing
