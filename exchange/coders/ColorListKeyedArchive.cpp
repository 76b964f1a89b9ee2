// A colour list in a keyed archive: a binary property list holding the archiver's object graph. "$top"
// names two arrays, NSKeys and NSColors, whose entries pair up in order; objects refer to each other by
// their place in "$objects".
#include <cmath>
#include <memory>
#include <unordered_map>

#include "exchange/BytesReader.h"
#include "exchange/ExchangeLog.h"
#include "exchange/coders/BinaryPropertyList.h"
#include "exchange/coders/ColorList.h"
#include "exchange/coders/TextSupport.h"
#include "platform/ColorValue.h"

namespace PAL::colorlist {

namespace {

using bplist::Object;
using bplist::Value;

constexpr size_t maximumFallbackDepth = 8;

[[noreturn]] void invalid() { throw CommonError(CommonError::Case::invalidFormat); }

std::optional<uint32_t> bigEndian32(std::string_view bytes, size_t at) {
    if (at > bytes.size() || bytes.size() - at < 4) return std::nullopt;
    uint32_t value = 0;
    for (size_t i = 0; i < 4; ++i) value = (value << 8) | static_cast<uint8_t>(bytes[at + i]);
    return value;
}

// An ICC profile's description: ASCII in a version 2 profile's 'desc' tag, UTF-16 in a version 4 one's
// 'mluc' (its first record). Empty when there is none.
std::string profileDescription(std::string_view profile) {
    const auto tagCount = bigEndian32(profile, 128);
    for (size_t i = 0; tagCount && i < *tagCount && 132 + 12 * i + 12 <= profile.size(); ++i) {
        const size_t entry = 132 + 12 * i;
        if (profile.substr(entry, 4) != "desc") continue;
        const auto offset = bigEndian32(profile, entry + 4), size = bigEndian32(profile, entry + 8);
        if (!offset || !size || *offset > profile.size()) return {};
        const auto tag = profile.substr(*offset, *size);
        if (tag.substr(0, 4) == "desc") {
            const auto length = bigEndian32(tag, 8);
            if (!length || *length > tag.size() - 12) return {};
            const auto text = tag.substr(12, *length);
            return textfile::latin1ToUTF8(text.substr(0, text.find('\0')));
        }
        if (tag.substr(0, 4) == "mluc") {
            const auto length = bigEndian32(tag, 20), start = bigEndian32(tag, 24);
            if (!length || !start || *start > tag.size()) return {};
            const auto units = tag.substr(*start, *length);
            std::string text;
            BytesParser::decodeText({reinterpret_cast<const uint8_t*>(units.data()), units.size() & ~size_t{1}},
                                    BytesParser::TextEncoding::utf16BigEndian, text);
            return text;
        }
        return {};
    }
    return {};
}

// Space-separated decimals, as NSColor stores its components; Apple ends them with a NUL.
std::vector<double> decimals(const Object& stored) {
    if (stored.type != Object::Type::data && stored.type != Object::Type::string) invalid();
    std::string_view text = stored.bytes;
    while (!text.empty() && text.back() == '\0') text.remove_suffix(1);
    std::vector<double> values;
    for (const auto word : textfile::words(text)) {
        const auto value = textfile::number(word);
        if (!value) invalid();
        values.push_back(*value);
    }
    return values;
}

class Archive {
public:
    explicit Archive(std::string_view bytes) : document_(bytes) {
        const Object& top = document_.object(document_.topObject());
        const Object* archiver = plain(top, "$archiver");
        if (!archiver || archiver->type != Object::Type::string || archiver->bytes != "NSKeyedArchiver") invalid();
        objects_ = plain(top, "$objects");
        topLevel_ = plain(top, "$top");
        if (!objects_ || objects_->type != Object::Type::array || !topLevel_) invalid();
    }

    ReadList read(KeyBudget& budget) {
        const Object* list = topLevel_;
        // The list encodes itself straight into the top level; an archive rooted in one object is read too.
        if (!field(*list, "NSKeys"))
            if (const Object* root = field(*list, "root")) list = root;
        const auto keys = arrayMembers(field(*list, "NSKeys"));
        const auto colors = arrayMembers(field(*list, "NSColors"));
        if (keys.size() != colors.size()) invalid();

        ReadList read;
        for (size_t index = 0; index < colors.size(); ++index) {
            std::optional<Color> color = colorOf(colors[index], index);
            if (!color) {
                ++read.skipped;
                continue;
            }
            // A fresh colour for each entry, though entries may share one archived colour.
            read.colors.emplace_back(color->colorSpace, color->colorComponents, color->alpha, budget.take(text(keys[index])));
        }
        return read;
    }

private:
    // A dictionary's value as stored, with no reference followed.
    const Object* plain(const Object& dictionary, std::string_view key) const {
        if (dictionary.type != Object::Type::dictionary) invalid();
        const auto number = document_.value(dictionary, key);
        return number ? &document_.object(*number) : nullptr;
    }

    // A dictionary's value, a reference followed into "$objects" — once only, so references cannot go round in
    // a circle here. Nothing when the key is absent or the reference is the archive's nil.
    const Object* field(const Object& dictionary, std::string_view key) const {
        const Object* value = plain(dictionary, key);
        if (!value || value->type != Object::Type::uid) return value;
        const auto index = static_cast<uint64_t>(value->integer);
        if (index >= objects_->members.size()) invalid();
        if (index == 0) return nullptr;  // "$null"
        return &document_.object(objects_->members[index]);
    }

    // An archived array: its members in "NS.objects".
    std::vector<const Object*> arrayMembers(const Object* array) const {
        if (!array) invalid();
        const Object* members = plain(*array, "NS.objects");
        if (!members || members->type != Object::Type::array) invalid();
        std::vector<const Object*> resolved;
        for (uint64_t number : members->members) {
            const Object& member = document_.object(number);
            if (member.type != Object::Type::uid) invalid();
            const auto index = static_cast<uint64_t>(member.integer);
            if (index >= objects_->members.size()) invalid();
            resolved.push_back(index == 0 ? nullptr : &document_.object(objects_->members[index]));
        }
        return resolved;
    }

    // A key: a plain string, or an archived mutable string.
    std::string_view text(const Object* key) const {
        if (!key) return {};
        if (key->type == Object::Type::string) return key->bytes;
        const Object* inner = field(*key, "NS.string");
        if (!inner || inner->type != Object::Type::string) invalid();
        return inner->bytes;
    }

    // Nothing, logged, for an entry that cannot be represented. A colour that many entries share is read once.
    std::optional<Color> colorOf(const Object* color, size_t index, size_t depth = 0) {
        if (!color || depth > maximumFallbackDepth) invalid();
        if (const auto known = colors_.find(color); known != colors_.end()) return known->second;
        auto read = decodedColor(*color, index, depth);
        colors_.emplace(color, read);
        return read;
    }

    std::optional<Color> decodedColor(const Object& color, size_t index, size_t depth) {
        const Object* components = field(color, "NSComponents");
        if (components)
            if (auto profiled = profiledColor(color, decimals(*components))) return profiled;

        const Object* kindField = field(color, "NSColorSpace");
        if (!kindField || kindField->type != Object::Type::integer) invalid();
        const int64_t kind = kindField->integer;
        if (kind >= calibratedRGB && kind <= deviceCMYK) {
            const Object* stored = kind <= deviceRGB ? field(color, "NSRGB")
                                   : kind <= deviceWhite ? field(color, "NSWhite")
                                                         : field(color, "NSCYMK");
            if (!stored && kind == deviceCMYK) stored = field(color, "NSCMYK");
            if (stored) {
                auto read = componentColor(kind, decimals(*stored), {});
                if (!read) invalid();
                return read;
            }
            if (components) return unprofiledColor(decimals(*components), index);
            invalid();
        }
        if (kind == catalog)
            // The catalogue and the colour's name in it mean nothing off the platform: the fallback stands in.
            if (const Object* fallback = field(color, "NSColor")) return colorOf(fallback, index, depth + 1);
        return unsupported("kind " + std::to_string(kind), index);
    }

    // The components in the colour's own ICC profile, taken as they stand in sRGB and converted from any other
    // profile; nothing when there is no profile that loads.
    std::optional<Color> profiledColor(const Object& color, const std::vector<double>& components) {
        const Object* space = field(color, "NSCustomColorSpace");
        if (!space || space->type != Object::Type::dictionary) return std::nullopt;
        const Object* profile = field(*space, "NSICC");
        if (!profile || profile->type != Object::Type::data) return std::nullopt;

        auto [known, added] = profiles_.try_emplace(profile);
        if (added) {
            const auto description = profileDescription(profile->bytes);
            known->second.isSRGB = description.find("sRGB") != std::string::npos;
            if (!known->second.isSRGB) known->second.space = kro::ColorSpace::fromICCProfile(profile->bytes, description);
        }
        const Profile& loaded = known->second;
        if (loaded.isSRGB) return componentColor(deviceRGB, components, {});
        if (!loaded.space) return std::nullopt;
        const auto count = static_cast<size_t>(loaded.space->componentCount());
        if (components.size() != count && components.size() != count + 1) invalid();
        for (double component : components)
            if (!std::isfinite(component)) invalid();
        const double alpha = components.size() > count ? components.back() : 1.0;
        const std::vector<double> channels(components.begin(), components.begin() + static_cast<std::ptrdiff_t>(count));
        try {
            return Color::fromPlatform(kro::ColorValue::withComponents(loaded.space, channels, alpha));
        } catch (const CommonError&) {
            return std::nullopt;
        }
    }

    // Components in a space the archive does not describe, read by their count as sRGB, white or CMYK.
    std::optional<Color> unprofiledColor(const std::vector<double>& components, size_t index) {
        logInfo(formatLogMessage("PAL.Coder.CLR: Color at index %d has no known color space, assuming sRGB",
                                 {std::to_string(index)}));
        const int64_t kind = components.size() <= 2 ? deviceWhite : components.size() <= 4 ? deviceRGB : deviceCMYK;
        auto read = componentColor(kind, components, {});
        if (!read) invalid();
        return read;
    }

    bplist::Document document_;
    const Object* objects_ = nullptr;
    const Object* topLevel_ = nullptr;
    std::unordered_map<const Object*, std::optional<Color>> colors_;
    // sRGB is recognised by the profile's description and taken as it stands; any other profile converts.
    struct Profile {
        bool isSRGB = false;
        std::shared_ptr<const kro::ColorSpace> space;
    };
    std::unordered_map<const Object*, Profile> profiles_;
};

// Builds "$objects" in the archiver's order: an object takes its number when it is first met, its members
// follow, and its class comes after them the first time it is needed.
class Archiver {
public:
    uint64_t reserve() {
        objects.emplace_back();
        return objects.size() - 1;
    }
    uint64_t add(Value value) {
        objects.push_back(std::move(value));
        return objects.size() - 1;
    }
    uint64_t classOf(const std::vector<std::string>& chain) {
        const auto [known, added] = classes.try_emplace(chain.front(), objects.size());
        if (added) {
            std::vector<Value> names;
            for (const auto& name : chain) names.push_back(Value::string(name));
            add(Value::dictionary({{"$classname", Value::string(chain.front())}, {"$classes", Value::array(std::move(names))}}));
        }
        return known->second;
    }
    // Fills a reserved number with an archived mutable array.
    void array(uint64_t number, std::vector<Value> members) {
        const uint64_t arrayClass = classOf({"NSMutableArray", "NSArray", "NSObject"});
        objects[number] = Value::dictionary({{"NS.objects", Value::array(std::move(members))}, {"$class", Value::uid(arrayClass)}});
    }

    std::vector<Value> objects{Value::string("$null")};

private:
    std::unordered_map<std::string, uint64_t> classes;
};

// Apple's shape: the components with alpha left out when it is 1, and a NUL at the end.
Value componentData(const WrittenColor& written) {
    std::string text;
    const bool opaque = written.components.back() == 1.0;
    for (size_t i = 0; i + (opaque ? 1 : 0) < written.components.size(); ++i) {
        if (!text.empty()) text += ' ';
        text += textfile::shortest(written.components[i]);
    }
    text += '\0';
    return Value::data(std::move(text));
}

}  // namespace

ReadList readKeyedArchive(std::string_view bytes) {
    Archive archive(bytes);
    KeyBudget budget(bytes.size());
    return archive.read(budget);
}

std::string writeKeyedArchive(const std::vector<Color>& colors) {
    Archiver archiver;
    const uint64_t keys = archiver.reserve();
    std::vector<Value> keyReferences;
    for (const Color& color : colors) keyReferences.push_back(Value::uid(archiver.add(Value::string(color.name))));
    archiver.array(keys, std::move(keyReferences));

    const uint64_t list = archiver.reserve();
    std::vector<Value> colorReferences;
    for (const Color& color : colors) {
        const auto written = writtenColor(color);
        const uint64_t number = archiver.reserve();
        const uint64_t colorClass = archiver.classOf({"NSColor", "NSObject"});
        const char* key = written.kind == deviceRGB ? "NSRGB" : written.kind == deviceWhite ? "NSWhite" : "NSCYMK";
        archiver.objects[number] = Value::dictionary(
            {{"NSColorSpace", Value::integer(written.kind)}, {key, componentData(written)}, {"$class", Value::uid(colorClass)}});
        colorReferences.push_back(Value::uid(number));
    }
    archiver.array(list, std::move(colorReferences));

    return bplist::write(Value::dictionary(
        {{"$version", Value::integer(100000)},
         {"$archiver", Value::string("NSKeyedArchiver")},
         {"$top", Value::dictionary({{"NSKeys", Value::uid(keys)}, {"NSColors", Value::uid(list)}})},
         {"$objects", Value::array(std::move(archiver.objects))}}));
}

}  // namespace PAL::colorlist
