#include "library/Palette.h"

#include <algorithm>
#include <memory>
#include <mutex>

#include <unicode/coll.h>
#include <unicode/locid.h>

#include "library/JsonDecode.h"
#include "library/RecordText.h"
#include "library/Sherlog.h"
#include "library/User.h"
#include "platform/Environment.h"
#include "platform/CaseText.h"

namespace kro {

std::string text(PaletteColorSort sort) {
    switch (sort) {
        case PaletteColorSort::none: return "none";
        case PaletteColorSort::dateASC: return "dateASC";
        case PaletteColorSort::dateDESC: return "dateDESC";
        case PaletteColorSort::nameASC: return "nameASC";
        case PaletteColorSort::nameDESC: return "nameDESC";
    }
    return "none";
}

std::optional<PaletteColorSort> paletteColorSortFromText(const std::string& value) {
    return caseFromText<PaletteColorSort>(
        value, {PaletteColorSort::none, PaletteColorSort::dateASC, PaletteColorSort::dateDESC, PaletteColorSort::nameASC,
                PaletteColorSort::nameDESC});
}

Palette::Palette() : uuid(newUUID()), createdAt(dateText(env().clock->now())) {}

std::shared_ptr<Palette> Palette::make(std::vector<ColorRef> colors, std::optional<std::string> name) {
    auto palette = std::make_shared<Palette>();
    const auto unique = User::shared()->uniquePaletteName(name);
    palette->name = unique;
    palette->originalName = unique;
    palette->colors = std::move(colors);
    return palette;
}

Json Palette::toJson() const {
    Json json = Json::object();
    json["uuid"] = uuid;
    json["isHistory"] = isHistory;
    if (name) json["name"] = *name;
    if (originalName) json["originalName"] = *originalName;
    Json array = Json::array();
    for (const auto& color : colors) array.push_back(color->toJson());
    json["colors"] = std::move(array);
    if (notes) json["notes"] = *notes;
    json["tags"] = tags;
    json["lock"] = lock;
    json["createdAt"] = createdAt;
    if (updatedAt) json["updatedAt"] = *updatedAt;
    return json;
}

void Palette::appendJsonText(std::string& out) const {
    appendTextBeforeColors(out);
    for (size_t i = 0; i < colors.size(); ++i) {
        if (i) out += ',';
        colors[i]->appendJsonText(out);
    }
    appendTextAfterColors(out);
}

void Palette::appendTextBeforeColors(std::string& out) const {
    using namespace record_text;
    bool first = true;
    out += '{';
    appendKey(out, "uuid", first), appendString(out, uuid);
    appendKey(out, "isHistory", first), out += isHistory ? "true" : "false";
    if (name) appendKey(out, "name", first), appendString(out, *name);
    if (originalName) appendKey(out, "originalName", first), appendString(out, *originalName);
    appendKey(out, "colors", first);
    out += '[';
}

void Palette::appendTextAfterColors(std::string& out) const {
    using namespace record_text;
    bool first = false;  // "colors" came before
    out += ']';
    if (notes) appendKey(out, "notes", first), appendString(out, *notes);
    appendKey(out, "tags", first), appendStrings(out, tags);
    appendKey(out, "lock", first), out += lock ? "true" : "false";
    appendKey(out, "createdAt", first), appendString(out, createdAt);
    if (updatedAt) appendKey(out, "updatedAt", first), appendString(out, *updatedAt);
    out += '}';
}

std::shared_ptr<Palette> Palette::fromJson(const Json& json) {
    using namespace json_decode;
    const auto& o = object(json, "Palette");
    auto palette = std::make_shared<Palette>();
    if (auto v = text(o, "uuid")) palette->uuid = *v;
    if (auto v = boolean(o, "isHistory")) palette->isHistory = *v;
    if (member(o, "name")) palette->name = text(o, "name");
    if (member(o, "originalName")) palette->originalName = text(o, "originalName");
    if (const Json* colors = member(o, "colors")) {
        if (!colors->is_array()) throw JsonDecodeError("\"colors\" is not an array");
        palette->colors.reserve(colors->size());
        for (const auto& color : *colors) palette->colors.push_back(Color::fromJson(color));
    }
    palette->notes = text(o, "notes");
    if (auto v = texts(o, "tags")) palette->tags = std::move(*v);
    if (auto v = boolean(o, "lock")) palette->lock = *v;
    if (auto v = text(o, "createdAt")) palette->createdAt = *v;
    palette->updatedAt = text(o, "updatedAt");
    return palette;
}

std::shared_ptr<Palette> Palette::copy() const {
    auto palette = std::make_shared<Palette>(*this);
    palette->uuid = newUUID();
    for (auto& color : palette->colors) color = color->copy();
    return palette;
}

bool Palette::containsHex(const std::string& value) const {
    return std::any_of(colors.begin(), colors.end(), [&](const ColorRef& color) { return color->hex == value; });
}

std::string Palette::logDescription() const {
    return "Palette " + name.value_or("<null>") + " colors: " + std::to_string(colors.size()) +
           " updatedAt: " + updatedAt.value_or("<null>");
}

void Palette::trigger(bool undo, bool save, bool notify, bool cloud, const char* file, const char* function,
                      int line) {
    updatedAt = dateText(env().clock->now());
    Sherlog::print(logDescription(), SherlogLevel::debug, "Kro/Palette+Update",
                   "trigger(undo:save:notify:cloud:file:function:line:)", __LINE__);
    const auto& user = User::shared();
    user->moveUpdatedAt();
    user->runPipelineAfterStamp(undo, save, notify, cloud, file, function, line);
}

bool Palette::operator==(const Palette& other) const {
    return uuid == other.uuid && isHistory == other.isHistory && name == other.name &&
           originalName == other.originalName && notes == other.notes && tags == other.tags && lock == other.lock &&
           createdAt == other.createdAt && updatedAt == other.updatedAt && sameColors(colors, other.colors);
}

bool sameColors(const std::vector<ColorRef>& a, const std::vector<ColorRef>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const ColorRef& x, const ColorRef& y) { return x == y || *x == *y; });
}

bool samePalettes(const std::vector<PaletteRef>& a, const std::vector<PaletteRef>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const PaletteRef& x, const PaletteRef& y) { return x == y || *x == *y; });
}

namespace {

// Locale-aware and case-insensitive: secondary strength ignores case but not accents.
int compareNames(const std::string& a, const std::string& b) {
    static std::once_flag once;
    static std::unique_ptr<icu::Collator> collator;
    std::call_once(once, [] {
        UErrorCode status = U_ZERO_ERROR;
        // Under the C locale ICU picks the POSIX collation, which is byte order; the root order is what
        // people expect there.
        icu::Locale locale = icu::Locale::getDefault();
        if (std::string(locale.getName()) == "en_US_POSIX") locale = icu::Locale::getRoot();
        collator.reset(icu::Collator::createInstance(locale, status));
        if (U_FAILURE(status)) collator.reset();
        if (collator) collator->setStrength(icu::Collator::SECONDARY);
    });
    if (!collator) return a.compare(b);
    UErrorCode status = U_ZERO_ERROR;
    const auto result = collator->compareUTF8(a, b, status);
    if (U_FAILURE(status)) return a.compare(b);
    return result == UCOL_LESS ? -1 : result == UCOL_GREATER ? 1 : 0;
}

}  // namespace

std::vector<ColorRef> sortedColors(const std::vector<ColorRef>& colors, PaletteColorSort sort) {
    std::vector<ColorRef> result = colors;
    auto name = [](const ColorRef& color) { return color->name.value_or(""); };
    switch (sort) {
        case PaletteColorSort::none: break;
        case PaletteColorSort::dateASC:
            std::stable_sort(result.begin(), result.end(), [](auto& a, auto& b) { return a->createdAt < b->createdAt; });
            break;
        case PaletteColorSort::dateDESC:
            std::stable_sort(result.begin(), result.end(), [](auto& a, auto& b) { return a->createdAt > b->createdAt; });
            break;
        case PaletteColorSort::nameASC:
            std::stable_sort(result.begin(), result.end(),
                             [&](auto& a, auto& b) { return compareNames(name(a), name(b)) < 0; });
            break;
        case PaletteColorSort::nameDESC:
            std::stable_sort(result.begin(), result.end(),
                             [&](auto& a, auto& b) { return compareNames(name(a), name(b)) > 0; });
            break;
    }
    return result;
}

}  // namespace kro
