// Placeholders for coders that are not built yet. When a coder lands, its factory moves to the
// coder's own file and its line here goes.
#include "exchange/coders/Coders.h"

namespace PAL {


}  // namespace PAL
