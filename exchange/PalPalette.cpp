#include "exchange/PalPalette.h"

#include "exchange/PalErrors.h"

namespace PAL {

Group::Group(std::string name, std::vector<Color> colors)
    : id(UUID::make()), name(std::move(name)), colors(std::move(colors)) {}

Palette::Palette(std::string name, std::vector<Color> colors, std::vector<Group> groups)
    : id(UUID::make()), name(std::move(name)), colors(std::move(colors)), groups(std::move(groups)) {}

std::vector<Color> Palette::allColors() const {
    std::vector<Color> all;
    all.reserve(totalColorCount());
    all.insert(all.end(), colors.begin(), colors.end());
    for (const auto& group : groups) all.insert(all.end(), group.colors.begin(), group.colors.end());
    return all;
}

std::size_t Palette::totalColorCount() const {
    std::size_t count = colors.size();
    for (const auto& group : groups) count += group.colors.size();
    return count;
}

ColorsInOrder::Iterator::Iterator(const Palette* palette, std::size_t list, std::size_t index)
    : palette_(palette), list_(list), index_(index) {
    skipEmptyLists();
}

const Color& ColorsInOrder::Iterator::operator*() const {
    return list_ == 0 ? palette_->colors[index_] : palette_->groups[list_ - 1].colors[index_];
}

ColorsInOrder::Iterator& ColorsInOrder::Iterator::operator++() {
    ++index_;
    skipEmptyLists();
    return *this;
}

void ColorsInOrder::Iterator::skipEmptyLists() {
    const auto listSize = [&](std::size_t list) { return list == 0 ? palette_->colors.size() : palette_->groups[list - 1].colors.size(); };
    while (list_ <= palette_->groups.size() && index_ >= listSize(list_)) {
        ++list_;
        index_ = 0;
    }
}

ColorsInOrder::Iterator ColorsInOrder::begin() const { return Iterator(palette_, 0, 0); }
ColorsInOrder::Iterator ColorsInOrder::end() const { return Iterator(palette_, palette_->groups.size() + 1, 0); }
std::size_t ColorsInOrder::size() const { return palette_->totalColorCount(); }

const Color& ColorsInOrder::operator[](std::size_t index) const {
    if (index < palette_->colors.size()) return palette_->colors[index];
    index -= palette_->colors.size();
    for (const auto& group : palette_->groups) {
        if (index < group.colors.size()) return group.colors[index];
        index -= group.colors.size();
    }
    throw CommonError(CommonError::Case::indexOutOfRange);
}

Palette::ColorIndex Palette::appendColor(Color color) {
    colors.push_back(std::move(color));
    return {ColorGrouping::global(), colors.size() - 1};
}

Palette Palette::interpolated(const Color& from, const Color& to, int count, std::string name) {
    return Palette(std::move(name), PAL::interpolated(from, to, count));
}

}  // namespace PAL
