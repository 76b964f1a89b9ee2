#include "exchange/coders/Coders.h"
#include "exchange/coders/VGACoder.h"

namespace PAL {

std::unique_ptr<PaletteCoder> makeVGA24BitCoder() { return std::make_unique<VGACoder>(PaletteFormat::vga24bit, 255); }

}  // namespace PAL
