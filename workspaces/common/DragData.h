#pragma once
// What a drag carries, and what a drop does.
//
// A colour dragged out of Kro carries its text in the selected format (text/plain, for editors and
// terminals), the standard colour type of Qt and GTK programs (application/x-color, which GIMP, Inkscape
// and Krita take), and our own type naming the palette and colours, so a drop between Kro's windows moves
// the records themselves. A palette carries our palette type and the text of its colours.
//
// A drop on a palette takes, in this order of preference: our own colours (moved; copied when the drop
// asks for a copy), files (imported like files opened with Kro), a colour of another program, or text in
// which colours are written. Anything else is refused and changes nothing.
#include <QMimeData>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "library/Palette.h"

namespace kro {

class LibraryActions;

namespace DragData {

inline constexpr const char* colorType = "application/x-kroapp.Kro.TableViewColorDragType";
inline constexpr const char* paletteType = "application/x-kroapp.Kro.TableViewPaletteDragType";
inline constexpr const char* qtColorType = "application/x-color";

// `colors` of `palette`, in the order given.
std::unique_ptr<QMimeData> colors(const Palette& palette, const std::vector<ColorRef>& colors);
std::unique_ptr<QMimeData> palette(const Palette& palette);

// The records a drag from Kro names, looked up in the library as it stands now; nothing when the drag
// is not ours or names records that are gone.
struct ColorDrag {
    PaletteRef palette;
    std::vector<ColorRef> colors;
};
std::optional<ColorDrag> colorDrag(const QMimeData& data);
PaletteRef paletteDrag(const QMimeData& data);

// Whether a drop of `data` could do anything at all.
bool accepts(const QMimeData& data);

// Drops `data` on `target` before position `index` of its colours. `copy` asks to copy our own colours
// rather than move them. Every change goes through a library operation; messages go to `actions`.
// True when the library changed.
bool drop(const QMimeData& data, const PaletteRef& target, size_t index, bool copy, LibraryActions& actions);

}  // namespace DragData
}  // namespace kro
