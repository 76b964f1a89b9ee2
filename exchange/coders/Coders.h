#pragma once
// One factory per coder, each defined in its coder's own file. Formats without a coder of their
// own get makeNotYetBuiltCoder's, which answers notImplemented.
#include <memory>

#include "exchange/PaletteCoder.h"

namespace PAL {

std::unique_ptr<PaletteCoder> makeACBCoder();
std::unique_ptr<PaletteCoder> makeACBLCoder();
std::unique_ptr<PaletteCoder> makeACOCoder();
std::unique_ptr<PaletteCoder> makeACTCoder();
std::unique_ptr<PaletteCoder> makeASECoder();
std::unique_ptr<PaletteCoder> makeRIFFCoder();
std::unique_ptr<PaletteCoder> makeVGA24BitCoder();
std::unique_ptr<PaletteCoder> makeVGA18BitCoder();

std::unique_ptr<PaletteCoder> makeGIMPCoder();
std::unique_ptr<PaletteCoder> makeJSONCoder();

std::unique_ptr<PaletteCoder> makeAndroidXMLCoder();
std::unique_ptr<PaletteCoder> makeBasicXMLCoder();
std::unique_ptr<PaletteCoder> makeCorelDrawCoder();
std::unique_ptr<PaletteCoder> makeScribusXMLCoder();
std::unique_ptr<PaletteCoder> makeOpenOfficeCoder();
std::unique_ptr<PaletteCoder> makeAutodeskColorBookCoder();
std::unique_ptr<PaletteCoder> makeSketchCoder();
std::unique_ptr<PaletteCoder> makeSimplePaletteCoder();

// A coder for a format whose reading and writing are not built: both answer notImplemented.
std::unique_ptr<PaletteCoder> makeNotYetBuiltCoder(PaletteFormat format);

}  // namespace PAL
