#pragma once
// Palettes, formats and snapshots turned into files for sharing. Files go to the export folder
// ($XDG_CACHE_HOME/kroapp.Kro/export/palettes), and from there to the desktop ("Save to Desktop") or to the
// file manager, which opens the folder.
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "cloud/Snapshot.h"
#include "formats/ColorFormatItem.h"
#include "library/Palette.h"

namespace kro {

enum class ShareOptionPalette { kro, ase, clr, json, pdf };

// In menu order.
const std::vector<ShareOptionPalette>& allShareOptionPalettes();
// "Kro Palette", "Adobe Swatch Exchange (ASE)"…
std::string label(ShareOptionPalette option);
// "palette", "ase", "clr", "json", "pdf".
std::string fileExtension(ShareOptionPalette option);
// The option whose file extension this is (any case).
std::optional<ShareOptionPalette> shareOptionForExtension(const std::string& extension);
// Whether this build can produce the option (CLR needs the exchange layer's writer).
bool isAvailable(ShareOptionPalette option);

// The bytes of one palette in the option's form; nothing when they cannot be made (logged).
std::optional<std::string> paletteFileBytes(const Palette& palette, ShareOptionPalette option);

// Opens a folder in the user's file manager; false when it could not be started.
using FolderOpener = std::function<bool(const std::string& folder)>;
// `xdg-open FOLDER`, detached.
bool openWithXdgOpen(const std::string& folder);

class ShareOption {
public:
    explicit ShareOption(FolderOpener opener = openWithXdgOpen) : opener_(std::move(opener)) {}

    static std::string exportFolder();

    // One file a palette, named after it; the paths written, nothing when one could not be (logged).
    std::optional<std::vector<std::string>> exportPalettes(const std::vector<PaletteRef>& palettes, ShareOptionPalette option);
    // Sealed "format" documents, one a format.
    std::optional<std::vector<std::string>> exportFormats(const std::vector<ColorFormatItemRef>& formats);
    // A sealed "snapshot" document.
    std::optional<std::string> exportSnapshot(const Snapshot& snapshot);

    // Copies the files into the desktop folder. A failure logs "share fail with: " and the error; the export
    // files stay in place either way.
    bool saveToDesktop(const std::vector<std::string>& files);
    bool openExportFolder();

private:
    // Writes one file into the export folder; `taken` holds the paths this export has written.
    std::optional<std::string> write(const std::string& name, const std::string& extension, const std::string& bytes,
                                     std::set<std::string>& taken);

    FolderOpener opener_;
};

}  // namespace kro
