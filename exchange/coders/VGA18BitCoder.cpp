#include "exchange/coders/Coders.h"
#include "exchange/coders/VGACoder.h"

namespace PAL {

std::unique_ptr<PaletteCoder> makeVGA18BitCoder() { return std::make_unique<VGACoder>(PaletteFormat::vga18bit, 63); }

}  // namespace PAL
