// The library operations the windows, the picker and the command line use. Each refuses on a locked palette
// and otherwise ends in the change pipeline with every step on.
#include <algorithm>
#include <set>

#include "library/Sherlog.h"
#include "library/User.h"
#include "platform/Environment.h"

namespace kro {
namespace {

void stamp(Palette& palette) { palette.updatedAt = dateText(env().clock->now()); }
void stamp(Color& color) { color.updatedAt = dateText(env().clock->now()); }

bool holdsUUID(const std::vector<ColorRef>& colors, const std::string& uuid) {
    return std::any_of(colors.begin(), colors.end(), [&](const ColorRef& color) { return color->uuid == uuid; });
}

}  // namespace

std::vector<PaletteRef> User::allPalettes() const {
    std::vector<PaletteRef> all;
    all.reserve(palettes.size() + 1);
    all.push_back(history);
    all.insert(all.end(), palettes.begin(), palettes.end());
    return all;
}

PaletteRef User::palette(const std::string& identifier) const {
    if (history->uuid == identifier) return history;
    for (const auto& palette : palettes) {
        if (palette->uuid == identifier) return palette;
    }
    return nullptr;
}

PaletteRef User::target() const {
    if (paletteUUID) {
        if (auto found = palette(*paletteUUID)) return found;
    }
    return history;
}

std::string User::uniquePaletteName(const std::optional<std::string>& base) const {
    const std::string stem = base.value_or("Palette");
    std::set<std::string> taken = {"Color History"};
    for (const auto& palette : palettes) {
        if (palette->name) taken.insert(*palette->name);
    }
    std::string candidate = stem;
    for (int n = 1; taken.count(candidate); ++n) candidate = stem + " (" + std::to_string(n) + ")";
    return candidate;
}

bool User::insertIntoTarget(const ColorRef& color) {
    const auto palette = target();
    if (palette->lock || palette->containsHex(color->hex)) return false;
    palette->colors.insert(palette->colors.begin(), color);
    stamp(*palette);
    return true;
}

bool User::addColorToTarget(const ColorRef& color) {
    if (!insertIntoTarget(color)) return false;
    trigger(true, true, true, true);
    return true;
}

bool User::deleteColors(const PaletteRef& palette, const std::vector<ColorRef>& colors) {
    if (palette->lock) return false;
    const auto before = palette->colors.size();
    std::erase_if(palette->colors, [&](const ColorRef& color) { return holdsUUID(colors, color->uuid); });
    if (palette->colors.size() == before) return false;
    stamp(*palette);
    trigger(true, true, true, true);
    return true;
}

bool User::deletePalettes(const std::vector<PaletteRef>& doomed) {
    std::set<std::string> uuids;
    for (const auto& palette : doomed) {
        if (!palette->isHistory && palette != history && !palette->lock) uuids.insert(palette->uuid);
    }
    const auto before = palettes.size();
    std::erase_if(palettes, [&](const PaletteRef& palette) { return uuids.count(palette->uuid) > 0; });
    if (palettes.size() == before) return false;
    trigger(true, true, true, true);
    return true;
}

void User::addPalette(const PaletteRef& palette) {
    palettes.push_back(palette);
    trigger(true, true, true, true);
}

PaletteRef User::duplicatePalette(const PaletteRef& original) {
    auto duplicate = original->copy();
    const auto name = uniquePaletteName(original->name.value_or("Palette"));
    duplicate->name = name;
    duplicate->originalName = name;
    duplicate->isHistory = false;
    duplicate->lock = false;
    duplicate->createdAt = dateText(env().clock->now());
    duplicate->updatedAt.reset();
    auto at = std::find(palettes.begin(), palettes.end(), original);
    palettes.insert(at == palettes.end() ? palettes.end() : at + 1, duplicate);
    trigger(true, true, true, true);
    return duplicate;
}

bool User::deleteDuplicatedColors(const PaletteRef& palette) {
    if (palette->lock) return false;
    std::set<std::string> seen;
    const auto before = palette->colors.size();
    std::erase_if(palette->colors, [&](const ColorRef& color) { return !seen.insert(color->hex).second; });
    if (palette->colors.size() == before) return false;
    stamp(*palette);
    trigger(true, true, true, true);
    return true;
}

bool User::merge(const PaletteRef& into, const std::vector<PaletteRef>& selected) {
    if (into->lock) return false;
    std::set<std::string> merged;
    for (const auto& source : selected) {
        if (source == into || source->uuid == into->uuid || source->lock || source->isHistory || source == history) {
            continue;
        }
        for (const auto& color : source->colors) {
            if (!into->containsHex(color->hex)) into->colors.push_back(color);
        }
        merged.insert(source->uuid);
    }
    if (merged.empty()) return false;
    std::erase_if(palettes, [&](const PaletteRef& palette) { return merged.count(palette->uuid) > 0; });
    stamp(*into);
    trigger(true, true, true, true);
    return true;
}

bool User::group(const PaletteRef& palette, const std::vector<ColorRef>& colors, const std::string& text) {
    if (palette->lock) return false;
    const auto normalized = Color::normalizedGroup(text);
    bool changed = false;
    for (const auto& color : palette->colors) {
        if (!holdsUUID(colors, color->uuid)) continue;
        color->group = normalized;
        stamp(*color);
        changed = true;
    }
    if (!changed) return false;
    stamp(*palette);
    trigger(true, true, true, true);
    return true;
}

bool User::ungroup(const PaletteRef& palette) {
    if (palette->lock) return false;
    for (const auto& color : palette->colors) {
        if (color->group.empty()) continue;
        color->group.clear();
        stamp(*color);
    }
    stamp(*palette);
    trigger(true, true, true, true);
    return true;
}

bool User::cleanHistory() {
    if (history->lock) return false;
    history->colors.clear();
    stamp(*history);
    trigger(true, true, true, true);
    return true;
}

void User::toggleLock(const PaletteRef& palette) {
    palette->lock = !palette->lock;
    stamp(*palette);
    trigger(true, true, true, true);
}

bool User::renamePalette(const PaletteRef& palette, const std::string& name) {
    if (palette->lock || name.empty() || palette->name == name) return false;
    palette->name = name;
    stamp(*palette);
    trigger(true, true, true, true);
    return true;
}

bool User::renameColor(const PaletteRef& palette, const ColorRef& color, const std::string& name) {
    if (palette->lock || name.empty() || color->name == name || !holdsUUID(palette->colors, color->uuid)) return false;
    color->name = name;
    stamp(*color);
    stamp(*palette);
    trigger(true, true, true, true);
    return true;
}

bool User::moveColors(const PaletteRef& from, const std::vector<ColorRef>& colors, const PaletteRef& to, size_t index) {
    if (from->lock || to->lock) return false;
    const bool samePalette = from == to;
    std::vector<ColorRef> moving;
    size_t removedBeforeIndex = 0;
    for (size_t at = 0; at < from->colors.size(); ++at) {
        const auto& color = from->colors[at];
        if (!holdsUUID(colors, color->uuid)) continue;
        if (!samePalette && to->containsHex(color->hex)) continue;
        moving.push_back(color);
        if (samePalette && at < index) ++removedBeforeIndex;
    }
    if (moving.empty()) return false;
    const auto before = samePalette ? from->colors : std::vector<ColorRef>{};
    std::erase_if(from->colors, [&](const ColorRef& color) { return holdsUUID(moving, color->uuid); });
    index = std::min(index - removedBeforeIndex, to->colors.size());
    to->colors.insert(to->colors.begin() + static_cast<long>(index), moving.begin(), moving.end());
    if (samePalette && sameColors(before, to->colors)) return false;
    stamp(*from);
    stamp(*to);
    trigger(true, true, true, true);
    return true;
}

bool User::copyColors(const std::vector<ColorRef>& colors, const PaletteRef& to, size_t index) {
    if (to->lock) return false;
    std::vector<ColorRef> copies;
    for (const auto& color : colors) {
        const bool held = to->containsHex(color->hex) ||
                          std::any_of(copies.begin(), copies.end(), [&](const ColorRef& c) { return c->hex == color->hex; });
        if (!held) copies.push_back(color->copy());
    }
    if (copies.empty()) return false;
    index = std::min(index, to->colors.size());
    to->colors.insert(to->colors.begin() + static_cast<long>(index), copies.begin(), copies.end());
    stamp(*to);
    trigger(true, true, true, true);
    return true;
}

bool User::movePalette(const PaletteRef& palette, size_t index) {
    const auto at = std::find(palettes.begin(), palettes.end(), palette);
    if (at == palettes.end()) return false;
    const auto from = static_cast<size_t>(at - palettes.begin());
    index = std::min(index, palettes.size());
    // An index past the palette's own place counts in the list that still holds it.
    const auto to = index > from ? index - 1 : index;
    if (to == from) return false;
    palettes.erase(at);
    palettes.insert(palettes.begin() + static_cast<long>(to), palette);
    trigger(true, true, true, true);
    return true;
}

void User::selectTarget(const PaletteRef& palette) {
    paletteUUID = palette->uuid;
    trigger(false, true, true, true);
}

bool User::fixUUIDS() {
    std::set<std::string> seen = {history->uuid};
    bool changed = false;
    auto repairColors = [&](const Palette& palette) {
        for (const auto& color : palette.colors) {
            if (seen.insert(color->uuid).second) continue;
            color->uuid = newUUID();
            seen.insert(color->uuid);
            changed = true;
            Sherlog::print("Update Color UUID: " + color->name.value_or("<null>"), SherlogLevel::debug,
                           "Kro/User", "fixUUIDS", __LINE__);
        }
    };
    repairColors(*history);
    for (const auto& palette : palettes) {
        if (!seen.insert(palette->uuid).second) {
            palette->uuid = newUUID();
            seen.insert(palette->uuid);
            changed = true;
            Sherlog::print("Update Palette UUID: " + palette->name.value_or("<null>"), SherlogLevel::debug,
                           "Kro/User", "fixUUIDS", __LINE__);
        }
        repairColors(*palette);
    }
    if (changed) trigger(true, true, true, true);
    return changed;
}

}  // namespace kro
