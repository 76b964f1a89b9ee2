#include "workspaces/main/PaletteFiles.h"

#include <algorithm>
#include <set>

#include "documents/PaletteMapping.h"
#include "documents/ShareOption.h"
#include "exchange/PaletteCoder.h"
#include "platform/Environment.h"
#include "platform/Files.h"

namespace kro {
namespace {

std::string lowercased(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c); });
    return text;
}

}  // namespace

std::string ExportChoice::filter() const {
    std::string patterns;
    for (const auto& extension : extensions) patterns += (patterns.empty() ? "*." : " *.") + extension;
    return name + " (" + patterns + ")";
}

const std::vector<ExportChoice>& exportChoices() {
    static const auto choices = [] {
        std::vector<ExportChoice> all = {{"Kro Palette", {"palette"}, "palette", std::nullopt},
                                         {"PDF", {"pdf"}, "pdf", std::nullopt}};
        for (const auto& info : PAL::paletteFormats()) {
            if (!info.writes || !PAL::coder(info.format)->writes()) continue;
            ExportChoice choice{std::string(info.displayName), {}, "", info.format};
            for (auto extension : info.extensions) choice.extensions.emplace_back(extension);
            all.push_back(std::move(choice));
        }
        return all;
    }();
    return choices;
}

const ExportChoice* exportChoiceForPath(const std::string& path, const ExportChoice* preferred) {
    const auto extension = lowercased(fileExtension(path));
    auto takes = [&](const ExportChoice& choice) {
        return std::find(choice.extensions.begin(), choice.extensions.end(), extension) != choice.extensions.end();
    };
    if (preferred && takes(*preferred)) return preferred;
    for (const auto& choice : exportChoices()) {
        if (takes(choice)) return &choice;
    }
    return nullptr;
}

std::optional<std::string> exportPalette(const Palette& palette, const ExportChoice& choice, const std::string& path) {
    std::optional<std::string> bytes;
    if (choice.ownForm == "palette") {
        bytes = paletteFileBytes(palette, ShareOptionPalette::kro);
    } else if (choice.ownForm == "pdf") {
        bytes = paletteFileBytes(palette, ShareOptionPalette::pdf);
    } else {
        try {
            bytes = PAL::coder(*choice.format)->encode(exchangePalette(palette));
        } catch (const std::exception& error) {
            return choice.name + " could not hold this palette: " + error.what();
        }
    }
    if (!bytes) return choice.name + " could not be written";
    if (!env().files->writeAtomically(path, *bytes)) return "Could not write " + fileName(path);
    return std::nullopt;
}

std::string importFilter() {
    std::set<std::string> extensions = {"palette", "color", "format", "snapshot"};
    for (const auto& info : PAL::paletteFormats()) {
        if (!info.reads) continue;
        for (auto extension : info.extensions) extensions.emplace(extension);
    }
    std::string patterns;
    for (const auto& extension : extensions) patterns += (patterns.empty() ? "*." : " *.") + extension;
    return "Palettes and colors (" + patterns + ")";
}

}  // namespace kro
