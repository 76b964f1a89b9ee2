#include "exchange/coders/SwatchLayout.h"

#include <algorithm>

namespace PAL {

SwatchLayout swatchLayout(const Palette& palette, std::size_t maximumColumns) {
    const std::size_t wrap = std::max<std::size_t>(maximumColumns, 1);
    SwatchLayout layout;
    const auto addList = [&](const Group* group, std::span<const Color> colors) {
        for (std::size_t start = 0; start < colors.size(); start += wrap) {
            const auto row = colors.subspan(start, std::min(wrap, colors.size() - start));
            layout.rows.push_back({group, start == 0, row});
            layout.columns = std::max(layout.columns, row.size());
        }
    };
    addList(nullptr, palette.colors);
    for (const auto& group : palette.groups) addList(&group, group.colors);
    return layout;
}

}  // namespace PAL
