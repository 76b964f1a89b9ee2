#pragma once
// A named list of colours. The history is a palette too, marked `isHistory`.
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "library/Color.h"

namespace kro {

enum class PaletteColorSort { none, dateASC, dateDESC, nameASC, nameDESC };

std::string text(PaletteColorSort sort);
std::optional<PaletteColorSort> paletteColorSortFromText(const std::string& value);

class Palette {
public:
    // A bare palette: named "Black" like a bare colour. Palettes users see are made through `make`.
    Palette();

    // A palette of `colors`, named by the naming rule from `name` (default "Palette") against the library.
    static std::shared_ptr<Palette> make(std::vector<ColorRef> colors, std::optional<std::string> name = std::nullopt);

    Json toJson() const;
    // compactText(toJson()), appended without building the tree.
    void appendJsonText(std::string& out) const;
    // The same in three parts: the text before the colours (up to the array's "["), the colours' own texts
    // separated by commas, and the text after them (from the "]"). The pipeline keeps the colours' texts.
    void appendTextBeforeColors(std::string& out) const;
    void appendTextAfterColors(std::string& out) const;
    static std::shared_ptr<Palette> fromJson(const Json& json);
    // A copy with its own identity, its colours copied with theirs.
    std::shared_ptr<Palette> copy() const;

    bool containsHex(const std::string& hex) const;
    // The palette's log line: name, colour count, updatedAt.
    std::string logDescription() const;

    // The change pipeline for a palette changed in place: stamps updatedAt, logs, then runs the library's.
    void trigger(bool undo, bool save, bool notify, bool cloud, const char* file = __builtin_FILE(),
                 const char* function = __builtin_FUNCTION(), int line = __builtin_LINE());

    // Field-wise, colours element by element.
    bool operator==(const Palette& other) const;

    std::string uuid;
    bool isHistory = false;
    std::optional<std::string> name = "Black";
    std::optional<std::string> originalName = "Black";
    std::vector<ColorRef> colors;
    std::optional<std::string> notes;
    std::vector<std::string> tags;
    bool lock = false;
    std::string createdAt;
    std::optional<std::string> updatedAt;
};

using PaletteRef = std::shared_ptr<Palette>;

// Colours in display order. `none` keeps the user's order; dates compare as text; names compare
// locale-aware and case-insensitive, an absent name as empty. Stable.
std::vector<ColorRef> sortedColors(const std::vector<ColorRef>& colors, PaletteColorSort sort);

// Field-wise equality of two lists of shared records.
bool sameColors(const std::vector<ColorRef>& a, const std::vector<ColorRef>& b);
bool samePalettes(const std::vector<PaletteRef>& a, const std::vector<PaletteRef>& b);

}  // namespace kro
