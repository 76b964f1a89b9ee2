// CSS gradients (.css), written only: a style sheet with one class per gradient whose background is a
// linear-gradient() from left to right, every stop with its position and an rgba() colour in the comma
// form every browser reads. The gradient's name stands in a comment above its rule.
#include <cctype>
#include <cmath>
#include <set>

#include "exchange/coders/TextSupport.h"
#include "exchange/gradients/GradientCoders.h"

namespace PAL {

namespace {

using textfile::fixedTrimmed;

// A class name from the gradient's name: ASCII letters and digits lowercased, other characters outside
// ASCII kept (CSS allows them), everything else a single hyphen; unique within the sheet.
std::string className(std::string_view name, std::set<std::string>& taken) {
    std::string base;
    for (unsigned char c : name) {
        if (std::isalnum(c) || c == '_' || c >= 0x80) base += static_cast<char>(std::tolower(c));
        else if (!base.empty() && base.back() != '-') base += '-';
    }
    while (!base.empty() && base.back() == '-') base.pop_back();
    if (base.empty() || std::isdigit(static_cast<unsigned char>(base.front())))
        base = "gradient" + (base.empty() ? "" : "-" + base);
    std::string candidate = base;
    for (int suffix = 2; !taken.insert(candidate).second; ++suffix) candidate = base + "-" + std::to_string(suffix);
    return candidate;
}

std::string comment(std::string_view text) {
    std::string out(textfile::singleLine(text));
    for (std::size_t at = out.find("*/"); at != std::string::npos; at = out.find("*/", at)) out.replace(at, 2, "* /");
    return "/* " + out + " */\n";
}

std::string rgba(const RGB& color) {
    const auto byte = [](double unit) { return std::to_string(static_cast<int>(std::round(std::clamp(unit, 0.0, 1.0) * 255))); };
    return "rgba(" + byte(color.rf) + ", " + byte(color.gf) + ", " + byte(color.bf) + ", " + fixedTrimmed(color.af, 3) + ")";
}

class CSSGradientCoder final : public GradientsCoder {
public:
    CSSGradientCoder() : GradientsCoder(GradientsFormat::css) {}

    std::string encode(const Gradients& gradients) const override {
        std::string out;
        std::set<std::string> taken;
        for (const auto& gradient : writableGradients(gradients)) {
            std::string stops;
            for (const auto& stop : spanningStops(gradient))
                stops += ", " + rgba(stop.color.rgb()) + " " + fixedTrimmed(stop.position * 100, 3) + "%";
            if (!out.empty()) out += "\n";
            if (!gradient.name.empty()) out += comment(gradient.name);
            out += "." + className(gradient.name, taken) + " {\n  background: linear-gradient(90deg" + stops + ");\n}\n";
        }
        return out;
    }
};

}  // namespace

std::unique_ptr<GradientsCoder> makeCSSGradientCoder() { return std::make_unique<CSSGradientCoder>(); }

}  // namespace PAL
