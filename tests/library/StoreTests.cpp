// Loading and saving the library: the load list with its fallbacks, the migrating save, damaged files put
// aside, failed saves reported, the stores' lock, the pipeline's order, the once-only legacy import and sealed
// documents.
#include "LibraryTestSupport.h"

#include "library/DefaultsKeys.h"
#include "library/Directory.h"
#include "library/JsonDecode.h"
#include "library/SealedDocument.h"
#include "library/StoreLock.h"
#include "library/StoreProblem.h"
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

TEST_F(LibraryStore, ACorruptPresentFileFallsBackToTheOlderVersionAndIsKeptAside) {
    const std::string corrupt = R"({"palettes":[{"lock":"yes"}]})";  // a wrong type is as corrupt as a torn file
    putFile(v5Path(), corrupt);
    const auto older = savedLibrary("Older");
    putFile(v4Path(), older);
    auto result = load();
    EXPECT_TRUE(result.success);
    ASSERT_EQ(user().palettes.size(), 1u);
    EXPECT_EQ(user().palettes[0]->name, "Older");
    EXPECT_EQ(posted(), (std::vector<std::string>{"UserLoaded", "StoreProblem", "UserSaved"}));
    auto written = User::fromJson(Json::parse(environment.files.files.at(v5Path())));
    EXPECT_EQ(*written, user());
    EXPECT_EQ(environment.files.files.at(v5Path() + ".damaged-20260101T000000Z"), corrupt);
    EXPECT_EQ(environment.files.files.at(v4Path()), older);
}

TEST_F(LibraryStore, ADamagedFileStaysUntilTheFirstSaveWhichPutsItAsideOnceAndSaysSo) {
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

    StoreProblemWatch watch;
    environment.clock.advance(std::chrono::seconds(61));
    user().trigger(false, true, false, false);
    user().trigger(false, true, false, false);
    const auto kept = v5Path() + ".damaged-20260101T000101Z";
    EXPECT_EQ(environment.files.files.at(kept), "not json");
    ASSERT_EQ(watch.problems().size(), 1u) << "told once, at the first save";
    const auto& problem = watch.problems()[0];
    EXPECT_EQ(problem.kind, StoreProblem::Kind::damagedKept);
    EXPECT_EQ(problem.keptAs, kept);
    EXPECT_EQ(problem.message().rfind(v5Path() + " could not be read (", 0), 0u) << problem.message();
    EXPECT_NE(problem.message().find("kept as user.json.damaged-20260101T000101Z"), std::string::npos);
    EXPECT_FALSE(watch.failedSave());

    // Damaged again within the same second: a second name, the first copy untouched.
    putFile(v5Path(), "torn");
    load();
    user().trigger(false, true, false, false);
    EXPECT_EQ(environment.files.files.at(kept), "not json");
    EXPECT_EQ(environment.files.files.at(kept + "-2"), "torn");
}

TEST_F(LibraryStore, ADamagedFileThatCannotBePutAsideIsNotWrittenOver) {
    putFile(v5Path(), "not json");
    load();
    environment.files.failMoves = true;
    StoreProblemWatch watch;
    EXPECT_FALSE(user().save());
    EXPECT_EQ(environment.files.files.at(v5Path()), "not json");
    ASSERT_TRUE(watch.failedSave());
    EXPECT_NE(watch.failedSave()->message().find("could not be put aside (No space left on device)"), std::string::npos);

    environment.files.failMoves = false;
    EXPECT_TRUE(user().save());
    EXPECT_EQ(environment.files.files.at(v5Path() + ".damaged-20260101T000000Z"), "not json");
}

TEST_F(LibraryStore, LoadingClearsWhatKilledWritesLeftBehind) {
    putFile(v5Path(), savedLibrary("Present"));
    const auto folder = parentPath(v5Path());
    putFile(folder + "/.user.json.a1B2c3", "half");
    putFile(folder + "/.user.json.keep", "not ours");
    putFile(folder + "/.snapshots.json.a1B2c3", "another store's");
    load();
    EXPECT_EQ(environment.files.list(folder),
              (std::vector<std::string>{".snapshots.json.a1B2c3", ".user.json.keep", "user.json"}));
}

TEST_F(LibraryStore, NoFileAtAllIsNoError) {
    auto result = load();
    EXPECT_TRUE(result.called);
    EXPECT_FALSE(result.success);
    EXPECT_FALSE(result.error);
    EXPECT_EQ(user().palettes[0]->name, "Your First Palette!");
}

TEST_F(LibraryStore, AFailedSaveIsReportedWithItsReasonOnceUntilASaveSucceeds) {
    user().trigger(false, true, true, true);
    EXPECT_EQ(posted(), (std::vector<std::string>{"UserSaved", "UserUpdated", "test.cloud"}));

    putFile(v5Path(), "previous");
    environment.files.failWrites = true;
    environment.notifications.clearPostedNames();
    StoreProblemWatch watch;
    user().trigger(false, true, true, true);
    // The pipeline goes on: the change is announced and pushed all the same.
    EXPECT_EQ(posted(), (std::vector<std::string>{"StoreProblem", "UserSaved", "UserUpdated", "test.cloud"}));
    EXPECT_EQ(environment.files.files.at(v5Path()), "previous");
    EXPECT_FALSE(user().save());
    ASSERT_EQ(watch.problems().size(), 2u);
    EXPECT_EQ(watch.problems()[0].message(), "cannot save " + v5Path() + ": No space left on device");
    EXPECT_FALSE(watch.problems()[0].repeated);
    EXPECT_TRUE(watch.problems()[1].repeated);

    environment.files.failWrites = false;
    EXPECT_TRUE(user().save());
    environment.files.failCreateDirectories = true;
    environment.files.folders.clear();
    EXPECT_FALSE(user().save());
    EXPECT_FALSE(watch.problems().back().repeated) << "a save succeeded in between";
    EXPECT_NE(watch.problems().back().reason.find("cannot be made (Permission denied)"), std::string::npos);
}

TEST_F(LibraryStore, BoundToTheLockAProcessWritesOnlyWhileItHoldsIt) {
    StoreLock::requireForWriting(true);
    StoreProblemWatch watch;
    EXPECT_FALSE(user().save());
    EXPECT_EQ(environment.files.writeCount, 0);
    EXPECT_TRUE(watch.problems().empty()) << "a process that only reads is not failing";
    {
        const auto lock = StoreLock::take(std::chrono::milliseconds(0));
        ASSERT_TRUE(lock);
        EXPECT_FALSE(StoreLock::take(std::chrono::milliseconds(0))) << "one holder at a time";
        EXPECT_TRUE(user().save());
    }
    EXPECT_FALSE(user().save());
    environment.files.lockedElsewhere.insert(*StoreLock::path());
    EXPECT_FALSE(StoreLock::take(std::chrono::milliseconds(0)));
    StoreLock::requireForWriting(false);
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
