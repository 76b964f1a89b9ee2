// Speed of the XML and JSON palette coders on a large palette: 100,000 named RGB colours, the size of the
// biggest colour libraries people exchange.
#include "bench/CoderBench.h"
#include "exchange/coders/Coders.h"

namespace {

using namespace PAL;

Palette large() { return bench::samplePalette(100'000); }

CODER_BENCHMARKS(AndroidXML, makeAndroidXMLCoder, large())
CODER_BENCHMARKS(OpenOffice, makeOpenOfficeCoder, large())
CODER_BENCHMARKS(ScribusXML, makeScribusXMLCoder, large())
CODER_BENCHMARKS(Sketch, makeSketchCoder, large())

}  // namespace
