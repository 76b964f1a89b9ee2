#pragma once
// The library: the history and the palettes. One shared instance, owned by the main thread.
// Every change ends in `trigger`, the change pipeline: stamp the time, record undo, save, post
// "UserUpdated", push to the cloud, in that order, each step switched by its argument.
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "library/Palette.h"
#include "library/Store.h"

namespace kro {

class User {
public:
    // The built-in library: "Color History" and "Your First Palette!".
    User();

    static const std::shared_ptr<User>& shared();
    // Replaces the shared library with the built-in one (tests; a full reset).
    static void resetShared();

    static PaletteRef makeHistory();
    static PaletteRef makeFirstPalette();

    Json toJson() const;
    // compactText(toJson()), written whole without building the tree. The pipeline writes the same bytes
    // through LibraryEncoder, which re-encodes only what changed.
    std::string jsonText() const;
    // The library's compact text appended to `out`, each palette (the history first) written by
    // `appendPalette`, which appends it to the string it is given.
    using PaletteWriter = std::function<void(const Palette& palette, std::string& out)>;
    void appendJsonText(std::string& out, const PaletteWriter& appendPalette) const;
    // Forgiving; a missing "palettes" gives "Your First Palette!". A value of a wrong type throws JsonDecodeError.
    static std::shared_ptr<User> fromJson(const Json& json);

    // "user.json" through the load list; see Store.h. The completion gets success and the last error.
    static const Store& store();
    void load(const StoreCompletion& completion = {});
    // Writes "user.json" and posts "UserSaved". False when nothing could be written.
    bool save() const;

    // The once-only import of the library of the oldest version (sealed "user.kro", else "user.json", in the
    // application folder), guarded by the default "UserDefaultsKroLoadV3". Palettes not yet in the library are
    // appended and the pipeline runs without undo. Returns how many palettes were added.
    size_t importLegacy();

    // `updatedAt` moves forward, strictly increasing at one-second resolution.
    void moveUpdatedAt();

    // The change pipeline for the library changed in place.
    void trigger(bool undo, bool save, bool notify, bool cloud, const char* file = __builtin_FILE(),
                 const char* function = __builtin_FUNCTION(), int line = __builtin_LINE());

    // The pipeline's steps after the time stamp (undo, save, notify, cloud), for records that stamped already.
    void runPipelineAfterStamp(bool undo, bool save, bool notify, bool cloud, const char* file,
                               const char* function, int line);

    // Copies `other`'s fields into this one, each only if it differs: uuid, history, paletteUUID, palettes,
    // createdAt, and updatedAt when asked (a time that is not a date is copied as absent). True when something
    // changed.
    bool copyFields(const User& other, bool includeUpdatedAt);

    // The history followed by the palettes.
    std::vector<PaletteRef> allPalettes() const;
    PaletteRef palette(const std::string& uuid) const;
    // The palette whose uuid is `paletteUUID`, else the history.
    PaletteRef target() const;
    // The naming rule: `base` (default "Palette"), then "base (1)", "base (2)"… until no palette has it.
    std::string uniquePaletteName(const std::optional<std::string>& base = std::nullopt) const;

    // Operations. Each refuses on a locked palette (changing and posting nothing) and otherwise ends in the
    // pipeline with every step on. The return says whether anything changed.

    // Puts the colour at the head of the target unless it is locked or already holds the colour's hex.
    // No pipeline: for callers that insert several colours and run it once.
    bool insertIntoTarget(const ColorRef& color);
    bool addColorToTarget(const ColorRef& color);
    bool deleteColors(const PaletteRef& palette, const std::vector<ColorRef>& colors);
    // The history and locked palettes stay.
    bool deletePalettes(const std::vector<PaletteRef>& palettes);
    // Appends a palette (its name left as given).
    void addPalette(const PaletteRef& palette);
    // A copy with a new identity and a name by the naming rule, placed after the original.
    PaletteRef duplicatePalette(const PaletteRef& palette);
    // Keeps the first colour of each hex.
    bool deleteDuplicatedColors(const PaletteRef& palette);
    // The target takes the colours of each selected palette whose hex it does not hold, in their order;
    // the merged palettes are then removed. Locked palettes and the history are left out.
    bool merge(const PaletteRef& target, const std::vector<PaletteRef>& selected);
    bool group(const PaletteRef& palette, const std::vector<ColorRef>& colors, const std::string& group);
    bool ungroup(const PaletteRef& palette);
    bool cleanHistory();
    void toggleLock(const PaletteRef& palette);
    // A new name for a palette or for one of its colours (its originalName stays). An empty name, or a
    // locked palette, refuses.
    bool renamePalette(const PaletteRef& palette, const std::string& name);
    bool renameColor(const PaletteRef& palette, const ColorRef& color, const std::string& name);
    // Moves the given colours of `from` (found by uuid, kept in their order) to position `index` of `to`,
    // an index into `to` as it stands before the move. Within one palette this reorders. Between two, a
    // colour whose hex `to` already holds stays where it is, so nothing is lost. Either palette locked refuses.
    bool moveColors(const PaletteRef& from, const std::vector<ColorRef>& colors, const PaletteRef& to, size_t index);
    // The same, leaving `from` as it is: `to` takes copies with identities of their own.
    bool copyColors(const std::vector<ColorRef>& colors, const PaletteRef& to, size_t index);
    // Puts a palette at `index` of the palette list (the history keeps its place above them).
    bool movePalette(const PaletteRef& palette, size_t index);
    // Makes `palette` the one that receives new colours. Saved and announced, but not an undo step:
    // choosing where picks go is not an edit of the library.
    void selectTarget(const PaletteRef& palette);
    // Gives a new uuid to each palette and colour whose uuid was already seen (the history's first).
    // Runs the pipeline once when something changed.
    bool fixUUIDS();

    bool operator==(const User& other) const;

private:
    struct Undecoded {};
    // Fields left empty, for decoding to fill.
    explicit User(Undecoded);

public:
    std::string uuid;
    PaletteRef history;
    std::optional<std::string> paletteUUID;
    std::vector<PaletteRef> palettes;
    std::string createdAt;
    std::optional<std::string> updatedAt;
};

}  // namespace kro
