// The pipeline re-encodes only what changed and undo states share the rest; neither may change a byte of what
// is saved or a state of what undo walks. Long random runs of library operations are checked at every step
// against a fresh whole encoding of the library and against a reference undo list that keeps whole texts.
#include <random>

#include "LibraryTestSupport.h"
#include "library/EncodedLibrary.h"
#include "library/JsonDecode.h"
#include "library/LibraryEncoder.h"
#include "library/Notifications.h"

namespace kro::testing {
namespace {

using Piece = EncodedLibrary::Piece;

Piece piece(const std::string& text) { return std::make_shared<const std::string>(text); }

TEST(EncodedLibrary, EqualityIsOfTheWholeTextWhereverThePiecesAreCut) {
    const auto shared = piece("{\"b\":");
    const EncodedLibrary a({piece("{\"a\":1,"), shared, piece("2}")});
    EXPECT_EQ(a.text(), "{\"a\":1,{\"b\":2}");
    EXPECT_EQ(a, EncodedLibrary({piece("{\"a\""), piece(""), piece(":1,{\"b\":2}")}));
    EXPECT_EQ(a, EncodedLibrary({piece("{\"a\":1,"), shared, piece("2}")}));
    EXPECT_NE(a, EncodedLibrary({piece("{\"a\":1,"), shared, piece("3}")}));
    EXPECT_NE(a, EncodedLibrary({piece("{\"a\":1,{\"b\":2} ")}));
    EXPECT_NE(a, EncodedLibrary({piece("{\"a\":1,{\"c\":2}")}));
    EXPECT_EQ(EncodedLibrary(), EncodedLibrary({piece("")}));
}

// The undo list as it was when every state was the whole text: the behaviour the shared states must keep.
struct ReferenceUndo {
    std::vector<std::string> states;  // newest first
    long index = 0;
    std::optional<std::string> last;

    void record(const std::string& text) {
        if (index < 0 || index > static_cast<long>(states.size()) || last == text) return;
        last = text;
        states.insert(states.begin() + index, text);
    }
    bool canUndo() const { return index + 1 < static_cast<long>(states.size()); }
    bool canRedo() const { return index > 0 && index <= static_cast<long>(states.size()); }
};

class IncrementalEncoding : public LibraryTest {
protected:
    IncrementalEncoding() {
        // Enough colours for many chunks, in a palette of their own and in the history.
        std::vector<ColorRef> colors;
        for (int n = 0; n < 300; ++n) colors.push_back(randomColor());
        user().palettes.push_back(Palette::make(colors, "Book"));
        for (int n = 0; n < 40; ++n) user().history->colors.push_back(randomColor());
        step([&] { user().trigger(true, true, true, true); });
    }

    double unit() { return std::uniform_real_distribution<double>(0, 1)(random); }
    size_t below(size_t n) { return n ? std::uniform_int_distribution<size_t>(0, n - 1)(random) : 0; }
    ColorRef randomColor() { return Color::make(unit(), unit(), unit(), 1, "C" + std::to_string(below(1000))); }
    PaletteRef randomPalette() {
        const auto all = user().allPalettes();
        return all[below(all.size())];
    }
    std::vector<ColorRef> someColors(const PaletteRef& palette) {
        std::vector<ColorRef> chosen;
        for (const auto& color : palette->colors) {
            if (below(6) == 0) chosen.push_back(color);
        }
        return chosen;
    }

    // Runs one operation, lets the undo insertion run, and has the reference record what the pipeline would.
    template <class Operation>
    void step(Operation&& operation, bool recordsUndo = true) {
        const auto updates = postedCount(Notifications::userUpdated);
        operation();
        environment.queue.runDue();
        record(recordsUndo && postedCount(Notifications::userUpdated) > updates);
        environment.clock.advance(std::chrono::seconds(1 + static_cast<int>(below(3))));
    }
    void record(bool undoRan) {
        if (undoRan) reference.record(user().jsonText());
    }

    void undoOrRedo(bool undo) {
        auto& engine = UserUndo::shared();
        ASSERT_EQ(engine.canUndo(), reference.canUndo());
        ASSERT_EQ(engine.canRedo(), reference.canRedo());
        if (undo ? !reference.canUndo() : !reference.canRedo()) return;
        const std::string expected = reference.states[reference.index + (undo ? 1 : -1)];
        reference.index += undo ? 1 : -1;
        step([&] { ASSERT_TRUE(undo ? engine.undo() : engine.redo()); });
        // The library is the state put back, with its own time moved on.
        const auto restored = User::fromJson(parseJson(expected));
        restored->updatedAt = user().updatedAt;
        EXPECT_EQ(restored->jsonText(), user().jsonText());
    }

    void randomStep() {
        const auto palette = randomPalette();
        switch (below(20)) {
            case 0: case 1: case 2: return step([&] { user().addColorToTarget(randomColor()); });
            case 3: return step([&] { user().deleteColors(palette, someColors(palette)); });
            case 4: return step([&] {
                if (palette->colors.empty()) return;
                const auto color = palette->colors[below(palette->colors.size())];
                user().renameColor(palette, color, "Renamed " + std::to_string(below(100)));
            });
            case 5: return step([&] {
                const auto to = randomPalette();
                user().moveColors(palette, someColors(palette), to, below(to->colors.size() + 1));
            });
            case 6: return step([&] {
                const auto to = randomPalette();
                user().copyColors(someColors(palette), to, below(to->colors.size() + 1));
            });
            case 7: return step([&] {
                // Sorting, as a window does it: the list written in place, then the palette's pipeline.
                if (palette->lock) return;
                const auto order = below(2) ? PaletteColorSort::nameASC : PaletteColorSort::dateDESC;
                palette->colors = sortedColors(palette->colors, order);
                palette->trigger(true, true, true, true);
            });
            case 8: return step([&] { user().toggleLock(palette); });
            case 9: return step([&] { user().renamePalette(palette, "Named " + std::to_string(below(100))); });
            case 10: return step([&] { user().group(palette, someColors(palette), " Warm / reds/ "); });
            case 11: return step([&] { user().ungroup(palette); });
            case 12: return step([&] {
                // An import: new palettes appended, one pipeline run.
                std::vector<ColorRef> colors;
                for (size_t n = below(40); n > 0; --n) colors.push_back(randomColor());
                user().palettes.push_back(Palette::make(colors, "Imported"));
                user().trigger(true, true, true, true);
            });
            case 13: return step([&] {
                if (user().palettes.size() > 1) user().merge(user().palettes[0], {user().palettes.back()});
            });
            case 14: return step([&] { user().duplicatePalette(palette); });
            case 15: return step([&] {
                // A colour edited in place (the contrast and colour windows), then the colour's pipeline.
                if (palette->colors.empty() || palette->lock) return;
                auto& color = *palette->colors[below(palette->colors.size())];
                color.red = Color::storedFloat(unit());
                color.hex = Color::hexText(color.red, color.green, color.blue);
                color.notes = below(2) ? std::optional<std::string>("note \"quoted\"\n") : std::nullopt;
                color.trigger(true, true, true, true);
            });
            case 16: return step([&] {
                // A merge from the sync server: decoded palettes put in place of the library's, one of them
                // changed, then the pipeline without the push.
                auto remote = User::fromJson(parseJson(user().jsonText()));
                if (!remote->palettes.empty()) remote->palettes.back()->colors.push_back(randomColor());
                user().palettes = remote->palettes;
                user().moveUpdatedAt();
                user().runPipelineAfterStamp(true, true, true, false, "test", "merge", 1);
            });
            case 17: return step([&] { user().selectTarget(palette); }, false);
            case 18: return undoOrRedo(true);
            case 19: return undoOrRedo(below(2) == 0);
        }
    }

    void expectUndoListAsReference(bool everyState) {
        const auto& engine = UserUndo::shared().engine();
        ASSERT_EQ(engine.count(), reference.states.size());
        ASSERT_EQ(engine.index(), reference.index);
        for (long at = 0; at < static_cast<long>(reference.states.size()); ++at) {
            if (!everyState && at != reference.index) continue;
            ASSERT_EQ(engine.stateAt(at)->text(), reference.states[at]) << "state " << at;
        }
    }

    std::mt19937 random{20261124};
    ReferenceUndo reference;
};

TEST_F(IncrementalEncoding, SavedBytesAndUndoStatesAreThoseOfWholeEncodingThroughARandomRun) {
    for (int n = 0; n < 150; ++n) {
        randomStep();
        ASSERT_EQ(environment.files.files[v5Path()], user().jsonText()) << "after step " << n;
        expectUndoListAsReference(n % 50 == 0);
    }
    expectUndoListAsReference(true);
    // Walk back and forth through the list (which grows by each restored state).
    for (int n = 0; n < 30; ++n) undoOrRedo(true);
    for (int n = 0; n < 30; ++n) undoOrRedo(false);
    expectUndoListAsReference(true);
    EXPECT_EQ(environment.files.files[v5Path()], user().jsonText());
}

TEST_F(IncrementalEncoding, APickKeepsOnlyWhatItChangedInItsUndoState) {
    // Large enough that even the longest chunk (256 colours) is a small part of it.
    std::vector<ColorRef> colors;
    for (int n = 0; n < 3000; ++n) colors.push_back(randomColor());
    user().palettes.push_back(Palette::make(colors, "Large"));
    user().paletteUUID = user().palettes.back()->uuid;
    step([&] { user().trigger(true, true, true, true); });
    step([&] { user().addColorToTarget(Color::make(0.1, 0.2, 0.3, 1, "Pick")); });
    step([&] { user().addColorToTarget(Color::make(0.3, 0.2, 0.1, 1, "Pick")); });
    const auto& engine = UserUndo::shared().engine();
    const auto newest = *engine.stateAt(0);
    const auto before = *engine.stateAt(1);
    size_t newBytes = 0;
    for (const auto& piece : newest.pieces()) {
        const bool shared = std::any_of(before.pieces().begin(), before.pieces().end(),
                                        [&](const Piece& old) { return old == piece; });
        if (!shared) newBytes += piece->size();
    }
    // The palette's head and its first chunk (32 colours on average), the library's own fields: a few
    // kilobytes of some 800, where a whole copy would be all of them.
    EXPECT_LT(newBytes, newest.size() / 8) << newBytes << " of " << newest.size() << " bytes are new";
    expectUndoListAsReference(true);
}

TEST_F(IncrementalEncoding, AnEditNobodyAnnouncedIsSavedAtTheNextChange) {
    // A colour changed by a direct write, then an unrelated change runs the pipeline.
    user().palettes.back()->colors[250]->name = "Edited quietly";
    user().history->colors[5]->tags = {"x"};
    step([&] { user().renamePalette(user().palettes.front(), "Other"); });
    EXPECT_EQ(environment.files.files[v5Path()], user().jsonText());
    expectUndoListAsReference(true);
}

}  // namespace
}  // namespace kro::testing
