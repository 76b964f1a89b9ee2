#include "exchange/gradients/GnuplotColorNames.h"

#include <algorithm>
#include <array>

namespace PAL {

namespace {

struct GnuplotColor {
    std::string_view name;
    std::string_view hex;
};

// gnuplot 5.4's predefined names ("show colornames"), sorted by name for a binary search.
constexpr std::array<GnuplotColor, 111> colors = {{
    {"antiquewhite", "#cdc0b0"},
    {"aquamarine", "#7fffd4"},
    {"beige", "#f5f5dc"},
    {"bisque", "#cdb79e"},
    {"black", "#000000"},
    {"blue", "#0000ff"},
    {"brown", "#a52a2a"},
    {"brown4", "#801414"},
    {"chartreuse", "#7cff40"},
    {"coral", "#ff7f50"},
    {"cyan", "#00ffff"},
    {"dark-blue", "#00008b"},
    {"dark-chartreuse", "#408000"},
    {"dark-cyan", "#00eeee"},
    {"dark-goldenrod", "#b8860b"},
    {"dark-gray", "#a0a0a0"},
    {"dark-green", "#006400"},
    {"dark-grey", "#a0a0a0"},
    {"dark-khaki", "#bdb76b"},
    {"dark-magenta", "#c000ff"},
    {"dark-olivegreen", "#556b2f"},
    {"dark-orange", "#c04000"},
    {"dark-pink", "#ff1493"},
    {"dark-plum", "#905040"},
    {"dark-red", "#8b0000"},
    {"dark-salmon", "#e9967a"},
    {"dark-spring-green", "#008040"},
    {"dark-turquoise", "#00ced1"},
    {"dark-violet", "#9400d3"},
    {"dark-yellow", "#c8c800"},
    {"forest-green", "#228b22"},
    {"gold", "#ffd700"},
    {"goldenrod", "#ffc020"},
    {"gray", "#bebebe"},
    {"gray0", "#000000"},
    {"gray10", "#1a1a1a"},
    {"gray100", "#ffffff"},
    {"gray20", "#333333"},
    {"gray30", "#4d4d4d"},
    {"gray40", "#666666"},
    {"gray50", "#7f7f7f"},
    {"gray60", "#999999"},
    {"gray70", "#b3b3b3"},
    {"gray80", "#cccccc"},
    {"gray90", "#e5e5e5"},
    {"green", "#00ff00"},
    {"greenyellow", "#a0ff20"},
    {"grey", "#c0c0c0"},
    {"grey0", "#000000"},
    {"grey10", "#1a1a1a"},
    {"grey100", "#ffffff"},
    {"grey20", "#333333"},
    {"grey30", "#4d4d4d"},
    {"grey40", "#666666"},
    {"grey50", "#7f7f7f"},
    {"grey60", "#999999"},
    {"grey70", "#b3b3b3"},
    {"grey80", "#cccccc"},
    {"grey90", "#e5e5e5"},
    {"honeydew", "#f0fff0"},
    {"khaki", "#f0e68c"},
    {"khaki1", "#ffff80"},
    {"lemonchiffon", "#ffffc0"},
    {"light-blue", "#add8e6"},
    {"light-coral", "#f08080"},
    {"light-cyan", "#e0ffff"},
    {"light-goldenrod", "#eedd82"},
    {"light-gray", "#d3d3d3"},
    {"light-green", "#90ee90"},
    {"light-grey", "#d3d3d3"},
    {"light-magenta", "#f055f0"},
    {"light-pink", "#ffb6c1"},
    {"light-red", "#f03232"},
    {"light-salmon", "#ffa070"},
    {"light-turquoise", "#afeeee"},
    {"magenta", "#ff00ff"},
    {"medium-blue", "#0000cd"},
    {"mediumpurple3", "#8060c0"},
    {"midnight-blue", "#191970"},
    {"navy", "#000080"},
    {"olive", "#a08020"},
    {"orange", "#ffa500"},
    {"orange-red", "#ff4500"},
    {"orangered4", "#801400"},
    {"orchid", "#ff80ff"},
    {"orchid4", "#804080"},
    {"pink", "#ffc0c0"},
    {"plum", "#dda0dd"},
    {"purple", "#c080ff"},
    {"red", "#ff0000"},
    {"royalblue", "#4169e1"},
    {"salmon", "#fa8072"},
    {"sandybrown", "#ffa060"},
    {"sea-green", "#2e8b57"},
    {"seagreen", "#c1ffc1"},
    {"sienna1", "#ff8040"},
    {"sienna4", "#804014"},
    {"skyblue", "#87ceeb"},
    {"slateblue1", "#8060ff"},
    {"slategray", "#a0b6cd"},
    {"slategrey", "#a0b6cd"},
    {"spring-green", "#00ff7f"},
    {"steelblue", "#306080"},
    {"tan1", "#ffa040"},
    {"turquoise", "#40e0d0"},
    {"violet", "#ee82ee"},
    {"web-blue", "#0080ff"},
    {"web-green", "#00c000"},
    {"white", "#ffffff"},
    {"yellow", "#ffff00"},
    {"yellow4", "#808000"},
}};

}  // namespace

std::optional<std::string_view> gnuplotColorHex(std::string_view name) {
    const auto found = std::lower_bound(colors.begin(), colors.end(), name,
                                        [](const GnuplotColor& color, std::string_view wanted) { return color.name < wanted; });
    if (found == colors.end() || found->name != name) return std::nullopt;
    return found->hex;
}

}  // namespace PAL
