// The once-only import of the library of the oldest version, which lived directly in the application folder,
// sealed as "user.kro" or plain as "user.json". Its palettes join the library with " (V3)" after their names.
#include <set>

#include "library/DefaultsKeys.h"
#include "library/SealedDocument.h"
#include "library/Sherlog.h"
#include "library/User.h"
#include "platform/Crypto.h"
#include "platform/Environment.h"

namespace kro {
namespace {

// Legacy files are read leniently: a value of an unexpected type is skipped, not fatal.
std::optional<double> legacyNumber(const Json& object, const char* key) {
    auto it = object.find(key);
    if (it == object.end() || !it->is_number()) return std::nullopt;
    return it->get<double>();
}

std::optional<std::string> legacyText(const Json& object, const char* key) {
    auto it = object.find(key);
    if (it == object.end() || !it->is_string()) return std::nullopt;
    return it->get<std::string>();
}

ColorRef legacyColor(const Json& json) {
    auto color = std::make_shared<Color>();
    color->red = Color::storedFloat(legacyNumber(json, "red").value_or(0));
    color->green = Color::storedFloat(legacyNumber(json, "green").value_or(0));
    color->blue = Color::storedFloat(legacyNumber(json, "blue").value_or(0));
    color->alpha = Color::storedFloat(legacyNumber(json, "alpha").value_or(1));
    color->hex = Color::hexText(color->red, color->green, color->blue);
    if (auto uuid = legacyText(json, "uuid")) color->uuid = *uuid;
    if (auto name = legacyText(json, "name")) {
        color->name = name;
        color->originalName = name;
    }
    if (auto notes = legacyText(json, "notes")) color->notes = notes;
    if (auto group = legacyText(json, "group")) color->group = Color::normalizedGroup(*group);
    if (auto createdAt = legacyText(json, "createdAt")) color->createdAt = *createdAt;
    return color;
}

PaletteRef legacyPalette(const Json& json) {
    auto palette = std::make_shared<Palette>();
    if (!json.is_object()) return nullptr;
    if (auto uuid = legacyText(json, "uuid")) palette->uuid = *uuid;
    const auto name = legacyText(json, "name").value_or("Palette") + " (V3)";
    palette->name = name;
    palette->originalName = name;
    if (auto createdAt = legacyText(json, "createdAt")) palette->createdAt = *createdAt;
    if (auto colors = json.find("colors"); colors != json.end() && colors->is_array()) {
        for (const auto& color : *colors) {
            if (color.is_object()) palette->colors.push_back(legacyColor(color));
        }
    }
    return palette;
}

// The legacy library's JSON: the sealed file when it opens, else the plain one.
std::optional<Json> legacyLibrary(const std::string& folder) {
    std::optional<std::string> bytes;
    if (auto sealed = env().files->read(joinPath(folder, "user.kro"))) {
        bytes = openSealedBox(*sealed, sealedDocumentKey());
        if (!bytes) {
            Sherlog::print("user.kro does not open", SherlogLevel::error, "Kro/User", "importLegacy()", __LINE__);
        }
    }
    if (!bytes) bytes = env().files->read(joinPath(folder, "user.json"));
    if (!bytes) return std::nullopt;
    Json json = Json::parse(*bytes, nullptr, false);
    if (!json.is_object()) {
        Sherlog::print("The legacy library is not a dictionary", SherlogLevel::error, "Kro/User", "importLegacy()",
                       __LINE__);
        return std::nullopt;
    }
    return json;
}

std::vector<PaletteRef> legacyPalettes() {
    auto folder = Directory::applicationFolder();
    if (!folder) return {};
    auto json = legacyLibrary(*folder);
    if (!json) return {};
    std::vector<PaletteRef> palettes;
    if (auto history = json->find("history"); history != json->end()) {
        if (auto palette = legacyPalette(*history)) palettes.push_back(palette);
    }
    if (auto list = json->find("palettes"); list != json->end() && list->is_array()) {
        for (const auto& item : *list) {
            if (auto palette = legacyPalette(item)) palettes.push_back(palette);
        }
    }
    return palettes;
}

}  // namespace

size_t User::importLegacy() {
    auto& defaults = *env().defaults;
    std::vector<PaletteRef> found;
    if (!defaults.boolean(DefaultsKeys::loadV3).value_or(false)) found = legacyPalettes();
    defaults.setBoolean(DefaultsKeys::loadV3, true);
    defaults.synchronize();

    std::set<std::string> known;
    for (const auto& palette : allPalettes()) known.insert(palette->uuid);
    size_t added = 0;
    for (const auto& palette : found) {
        if (!known.insert(palette->uuid).second) continue;
        palettes.push_back(palette);
        ++added;
    }
    if (added > 0) trigger(false, true, true, true);
    return added;
}

}  // namespace kro
