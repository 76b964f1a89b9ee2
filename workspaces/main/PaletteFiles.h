#pragma once
// The file kinds the library window imports and exports: our own palette document, the PDF sheet, and every
// palette format the exchange layer reads or writes.
#include <optional>
#include <string>
#include <vector>

#include "exchange/PaletteFormat.h"
#include "library/Palette.h"

namespace kro {

struct ExportChoice {
    std::string name;                     // "Adobe Swatch Exchange"
    std::vector<std::string> extensions;  // most preferred first
    // One of the two: a form of our own (document "palette" or "pdf"), or an exchange format.
    std::string ownForm;
    std::optional<PAL::PaletteFormat> format;

    // "Adobe Swatch Exchange (*.ase)", as a file dialog's filter.
    std::string filter() const;
};

// Kro Palette and PDF first, then every writable exchange format in the format table's order.
const std::vector<ExportChoice>& exportChoices();
// The choice that writes `path`: `preferred` when it takes the path's extension, else the first that does.
const ExportChoice* exportChoiceForPath(const std::string& path, const ExportChoice* preferred = nullptr);
// Writes the palette to `path` in that form, atomically: a failed write leaves any file already there whole.
// Returns why it failed, or nothing when it worked.
std::optional<std::string> exportPalette(const Palette& palette, const ExportChoice& choice, const std::string& path);

// One filter of every file the library imports, for a file dialog.
std::string importFilter();

}  // namespace kro
