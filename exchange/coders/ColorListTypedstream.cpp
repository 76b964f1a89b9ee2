// A colour list in the old archiver's typed stream: the list's format number, an unused object slot and
// the entry count, then for each entry its NSColor and its key (an NSString).
#include "exchange/ExchangeLog.h"
#include "exchange/coders/ColorList.h"
#include "exchange/coders/TextSupport.h"
#include "exchange/coders/Typedstream.h"

namespace PAL::colorlist {

namespace {

using typedstream::Entry;
using typedstream::Group;
using typedstream::Value;

// A catalogue colour carries a fallback colour, which could itself be a catalogue colour, or itself.
constexpr size_t maximumFallbackDepth = 8;

[[noreturn]] void invalid() { throw CommonError(CommonError::Case::invalidFormat); }

const Group& groupOf(const Entry& object, size_t index, std::string_view types) {
    if (index >= object.groups.size() || object.groups[index].types != types) invalid();
    return object.groups[index];
}

std::string_view keyOf(const typedstream::Reader& stream, const Value& key) {
    if (key.kind == Value::Kind::nil) return {};
    if (key.kind != Value::Kind::object) invalid();
    return groupOf(stream.object(key.object), 0, "+").values[0].bytes;
}

// Nothing, logged, for an entry that cannot be represented.
std::optional<Color> colorOf(const typedstream::Reader& stream, const Value& value, std::string key, size_t index,
                             size_t depth = 0) {
    if (depth > maximumFallbackDepth) invalid();
    if (value.kind != Value::Kind::object) invalid();
    const Entry& color = stream.object(value.object);
    if (color.className != "NSColor") return unsupported("class " + std::string(color.className), index);
    const int64_t kind = groupOf(color, 0, "c").values[0].integer;
    if (kind >= calibratedRGB && kind <= deviceCMYK) {
        const std::string_view types = kind <= deviceRGB ? "ffff" : kind <= deviceWhite ? "ff" : "fffff";
        std::vector<double> components;
        for (const Value& component : groupOf(color, 1, types).values) components.push_back(component.real);
        return componentColor(kind, components, std::move(key));
    }
    if (kind == catalog) {
        // The catalogue and the colour's name in it mean nothing off the platform: the fallback stands in.
        const Value& fallback = groupOf(color, 1, "@@@").values[2];
        if (fallback.kind != Value::Kind::nil) return colorOf(stream, fallback, std::move(key), index, depth + 1);
    }
    return unsupported("kind " + std::to_string(kind), index);
}

}  // namespace

ReadList readTypedstream(std::string_view bytes) {
    typedstream::Reader stream(bytes);
    const Group format = stream.readGroup();
    if (format.types != "i") invalid();
    if (format.values[0].integer != 1)
        logInfo(formatLogMessage("PAL.Coder.CLR: Untested color list version %d - attempting load...",
                                 {std::to_string(format.values[0].integer)}));
    const Group header = stream.readGroup();
    if (header.types != "@i" || header.values[1].integer < 0) invalid();

    // Each entry takes at least three bytes, so the stated count cannot outrun the file for long.
    ReadList list;
    KeyBudget budget(bytes.size());
    for (int64_t index = 0; index < header.values[1].integer; ++index) {
        const Group entry = stream.readGroup();
        if (entry.types != "@@") invalid();
        auto key = budget.take(keyOf(stream, entry.values[1]));
        if (!textfile::isValidUTF8(key)) key = textfile::latin1ToUTF8(key);
        if (auto color = colorOf(stream, entry.values[0], std::move(key), static_cast<size_t>(index)))
            list.colors.push_back(std::move(*color));
        else
            ++list.skipped;
    }
    return list;
}

std::string writeTypedstream(const std::vector<Color>& colors) {
    typedstream::Writer out;
    out.group("i");
    out.integer(1);
    out.group("@i");
    out.nil();
    out.integer(static_cast<int64_t>(colors.size()));
    for (const Color& color : colors) {
        const auto written = writtenColor(color);
        out.group("@@");
        out.beginObject({{"NSColor", 0}, {"NSObject", 0}});
        out.group("c");
        out.byte(static_cast<uint8_t>(written.kind));
        out.group(std::string(written.components.size(), 'f'));
        for (double component : written.components) out.real(static_cast<float>(component));
        out.endObject();
        out.beginObject({{"NSString", 1}, {"NSObject", 0}});
        out.group("+");
        out.unsharedString(color.name);
        out.endObject();
    }
    return out.data();
}

}  // namespace PAL::colorlist
