#pragma once
// The catalogue of colour formats: the formats, the groups they are shown in, and which one is selected.
// It answers one question for the rest of the program: given a colour, what text is shown or copied?
// Stored as "color-formats.json"; with no stored file, the shipped "ColorFormats.json" is the catalogue.
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "formats/ColorFormatGroup.h"
#include "formats/ColorFormatItem.h"
#include "library/Settings.h"
#include "library/Store.h"
#include "platform/ColorValue.h"

namespace kro {

class ColorFormats {
public:
    static constexpr const char* defaultFormatName = "CSS Hex";
    static constexpr const char* defaultFormatImage = "css";
    static constexpr const char* shippedResource = "ColorFormats.json";

    // Empty, "CSS Hex" selected, createdAt now.
    ColorFormats();

    static ColorFormats& shared();
    // Puts a fresh, empty catalogue in place of the shared one (tests, full reset).
    static void resetShared();

    Json toJson() const;
    // Forgiving: absent keys take the defaults above; a value of a wrong type throws JsonDecodeError.
    static std::shared_ptr<ColorFormats> fromJson(const Json& json);
    // The shipped catalogue, or nothing when the resource is missing or does not decode.
    static std::shared_ptr<ColorFormats> shipped();

    // Reading. The copied text, of the named format or of the selected one when no name is given (a smart
    // format passes its own name); the picker's label and a list row's text, of the selected format.
    // A name that matches no format gives the empty text: there is no fallback.
    std::string clipboardString(const ColorValue& color, const std::optional<std::string>& formatName = std::nullopt) const;
    std::string pickerString(const ColorValue& color) const;
    std::string menuString(const ColorValue& color) const;
    // The format of that exact name; of two with one name, the one stored first.
    ColorFormatItemRef format(const std::string& name) const;

    // `wanted`, or "wanted (1)", "wanted (2)"… whichever no format has yet.
    std::string uniqueName(const std::string& wanted) const;

    // Adds `item` as a new custom format: a new uuid, custom and selected, image "z-custom", the default template
    // in all three places (a duplicate keeps its notes and options only) and a unique name. Saved and announced.
    void add(const ColorFormatItemRef& item);
    // Deletes the given formats that are custom (shipped ones stay) and takes their names out of every group.
    // When the selected format goes, "CSS Hex" is selected, whether or not such a format exists.
    void deleteFormats(const std::vector<ColorFormatItemRef>& items);
    // Renames `item` to `wanted`, made unique among the other formats; the selection follows the format.
    // Groups name their formats, so a renamed format leaves its group. Saved and announced.
    void rename(const ColorFormatItemRef& item, const std::string& wanted);
    // Moves the format at `from` to stand at `to` in the list. Saved and announced; nothing when either is
    // out of range or they are the same.
    void move(size_t from, size_t to);
    // Puts the formats in the order `sort` names (creation date or name; ties keep their order). Saved and
    // announced when the order changed.
    void sortFormats(ColorFormatSort sort);
    // Makes `item` the selected format.
    void select(const ColorFormatItem& item);

    // Launch: the first stored file of the load list that decodes, else the shipped catalogue (saved, unless a
    // stored file exists that does not decode: that one is left as it is).
    void load(const StoreCompletion& completion = {});
    // Writes "color-formats.json"; false when nothing could be written (logged; the state stays).
    bool save() const;
    // Replaces the catalogue with the shipped one (no merge), records an undo state, saves and announces.
    // False, with nothing changed, when the resource cannot be read.
    bool resetToShipped();
    // Gives a new uuid to each format whose uuid an earlier format already has, and saves when one did.
    void fixUUIDS();

    // Copies each field of `other` that differs; true when one did.
    bool copyFields(const ColorFormats& other);
    // Moves updatedAt to now and logs it; nothing when it already reads now.
    void stamp();

    static const Store& store();

    std::string selectedFormatName = defaultFormatName;
    std::string selectedFormatImage = defaultFormatImage;
    std::vector<ColorFormatItemRef> formats;
    std::vector<ColorFormatGroupRef> groupFormats;
    std::string createdAt;
    std::optional<std::string> updatedAt;

private:
    std::string textOf(const ColorValue& color, const std::string& name,
                       std::string ColorFormatItem::*which) const;
    void postUpdated() const;
    void useShipped(bool storedFileIsDamaged);
};

}  // namespace kro
