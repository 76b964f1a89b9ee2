#pragma once
// An Apple colour list (NSColorList) in its two file encodings, shared by the clr coder's readers and
// writers: keys name colours, in list order.
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/PalColor.h"
#include "exchange/PalErrors.h"

namespace PAL::colorlist {

// The colour kinds, numbered alike in both encodings.
enum Kind : int64_t { calibratedRGB = 1, deviceRGB = 2, calibratedWhite = 3, deviceWhite = 4, deviceCMYK = 5, catalog = 6 };

// The colours, each named by its key. Entries that cannot be represented here (patterns, catalogue
// colours stored without a fallback, unknown kinds) are logged and left out; `skipped` counts them.
struct ReadList {
    std::vector<Color> colors;
    size_t skipped = 0;
};

// Both throw CommonError invalidFormat for a file that is not a colour list of their encoding.
ReadList readTypedstream(std::string_view bytes);
ReadList readKeyedArchive(std::string_view bytes);
// `colors` carry distinct keys as their names.
std::string writeTypedstream(const std::vector<Color>& colors);
std::string writeKeyedArchive(const std::vector<Color>& colors);

// A colour of a component kind (RGB, white or CMYK) from its components, alpha last and optional; nothing
// when the count does not fit the kind. Throws invalidFormat for a component that is not a finite number.
std::optional<Color> componentColor(int64_t kind, const std::vector<double>& components, std::string name);

// Logs an entry that is left out, with what it was ("kind 10", "class NSFoo"); always nothing.
std::nullopt_t unsupported(const std::string& what, size_t index);

struct WrittenColor {
    Kind kind;
    std::vector<double> components;  // alpha last
};
// Device RGB, device white or device CMYK, with the numbers as they stand; Lab goes out as RGB.
WrittenColor writtenColor(const Color& color);

// A key is copied out for every entry, and an entry may refer back to a key stored once: a file that repeats
// one long key could make the palette far larger than itself. Keys past a few times the file's size are refused.
class KeyBudget {
public:
    explicit KeyBudget(size_t fileSize) : left_(4 * fileSize + 4096) {}
    std::string take(std::string_view key) {
        if (key.size() > left_) throw CommonError(CommonError::Case::invalidFormat);
        left_ -= key.size();
        return std::string(key);
    }

private:
    size_t left_;
};

}  // namespace PAL::colorlist
