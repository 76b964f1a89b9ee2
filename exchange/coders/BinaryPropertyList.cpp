#include "exchange/coders/BinaryPropertyList.h"

#include <algorithm>
#include <bit>
#include <map>

#include "exchange/BytesReader.h"
#include "exchange/BytesWriter.h"
#include "exchange/PalErrors.h"
#include "exchange/coders/TextSupport.h"

namespace PAL::bplist {

namespace {

constexpr std::string_view header = "bplist00";
constexpr size_t trailerSize = 32;

[[noreturn]] void invalid() { throw CommonError(CommonError::Case::invalidFormat); }

// The fewest of 1, 2, 4 or 8 bytes that hold `value`.
size_t widthFor(uint64_t value) {
    if (value <= 0xFF) return 1;
    if (value <= 0xFFFF) return 2;
    if (value <= 0xFFFFFFFF) return 4;
    return 8;
}

}  // namespace

Document::Document(std::string_view bytes) : bytes_(bytes), readBudget_(8 * bytes.size() + 4096) {
    if (bytes.size() < header.size() + trailerSize || bytes.substr(0, header.size()) != header) invalid();
    const size_t trailer = bytes.size() - trailerSize;
    offsetSize_ = static_cast<uint8_t>(bytes[trailer + 6]);
    referenceSize_ = static_cast<uint8_t>(bytes[trailer + 7]);
    if (offsetSize_ < 1 || offsetSize_ > 8 || referenceSize_ < 1 || referenceSize_ > 8) invalid();
    objectCount_ = bigEndian(trailer + 8, 8);
    topObject_ = bigEndian(trailer + 16, 8);
    offsetTable_ = bigEndian(trailer + 24, 8);
    if (objectCount_ == 0 || topObject_ >= objectCount_) invalid();
    if (offsetTable_ < header.size() || offsetTable_ > trailer) invalid();
    if (objectCount_ > (trailer - offsetTable_) / offsetSize_) invalid();
}

uint64_t Document::bigEndian(uint64_t offset, size_t byteCount) const {
    uint64_t value = 0;
    for (size_t i = 0; i < byteCount; ++i) value = (value << 8) | static_cast<uint8_t>(bytes_[offset + i]);
    return value;
}

// Kept by offset: numbers that share one offset share one object, so a file cannot make one large object be
// read again and again.
const Object& Document::object(uint64_t number) const {
    if (number >= objectCount_) invalid();
    const uint64_t offset = bigEndian(offsetTable_ + number * offsetSize_, offsetSize_);
    if (const auto known = objects_.find(offset); known != objects_.end()) return known->second;
    // Objects lie between the header and the offset table.
    if (offset < header.size() || offset >= offsetTable_) invalid();
    return objects_.emplace(offset, parse(offset)).first->second;
}

Object Document::parse(uint64_t offset) const {
    uint64_t position = offset;
    const auto need = [&](uint64_t count, uint64_t unit = 1) {
        if (count > (offsetTable_ - position) / unit) invalid();
        if (count * unit > readBudget_) invalid();
        readBudget_ -= count * unit;
    };
    const auto take = [&](uint64_t count) {
        need(count);
        const auto taken = bytes_.substr(position, count);
        position += count;
        return taken;
    };
    const auto number = [&](size_t byteCount) {
        need(byteCount);
        const uint64_t value = bigEndian(position, byteCount);
        position += byteCount;
        return value;
    };

    const auto marker = static_cast<uint8_t>(take(1)[0]);
    const unsigned kind = marker >> 4, low = marker & 0x0F;
    // A count of 15 or more is stored as an integer object right after the marker.
    const auto count = [&]() -> uint64_t {
        if (low != 0x0F) return low;
        const auto countMarker = static_cast<uint8_t>(take(1)[0]);
        if ((countMarker >> 4) != 1 || (countMarker & 0x0F) > 3) invalid();
        return number(size_t{1} << (countMarker & 0x0F));
    };
    const auto references = [&](Object& object, uint64_t referenceCount) {
        need(referenceCount, referenceSize_);
        object.members.reserve(referenceCount);
        for (uint64_t i = 0; i < referenceCount; ++i) object.members.push_back(number(referenceSize_));
    };

    Object object;
    switch (kind) {
        case 0x0:
            if (marker == 0x08 || marker == 0x09) {
                object.type = Object::Type::boolean;
                object.integer = marker == 0x09;
            } else if (marker != 0x00 && marker != 0x0F) {
                invalid();
            }
            break;
        case 0x1: {
            if (low > 3) invalid();
            const size_t width = size_t{1} << low;
            object.type = Object::Type::integer;
            object.integer = static_cast<int64_t>(number(width));  // only the 8-byte form is signed
            break;
        }
        case 0x2:
            object.type = Object::Type::real;
            if (low == 2)
                object.real = std::bit_cast<float>(static_cast<uint32_t>(number(4)));
            else if (low == 3)
                object.real = std::bit_cast<double>(number(8));
            else
                invalid();
            break;
        case 0x3:
            if (marker != 0x33) invalid();
            object.type = Object::Type::date;
            object.real = std::bit_cast<double>(number(8));
            break;
        case 0x4:
            object.type = Object::Type::data;
            object.bytes = take(count());
            break;
        case 0x5:  // ASCII; a stray high byte is taken as Latin-1 rather than lost
            object.type = Object::Type::string;
            object.bytes = textfile::latin1ToUTF8(take(count()));
            break;
        case 0x6: {
            const uint64_t units = count();
            need(units, 2);
            const auto raw = take(units * 2);
            object.type = Object::Type::string;
            if (!BytesParser::decodeText({reinterpret_cast<const uint8_t*>(raw.data()), raw.size()},
                                         BytesParser::TextEncoding::utf16BigEndian, object.bytes))
                invalid();
            break;
        }
        case 0x7:
            object.type = Object::Type::string;
            object.bytes = take(count());
            if (!textfile::isValidUTF8(object.bytes)) invalid();
            break;
        case 0x8:
            if (low > 7) invalid();
            object.type = Object::Type::uid;
            object.integer = static_cast<int64_t>(number(low + 1));
            break;
        case 0xA:
        case 0xC:
            object.type = kind == 0xA ? Object::Type::array : Object::Type::set;
            references(object, count());
            break;
        case 0xD: {
            const uint64_t pairs = count();
            need(pairs, 2);
            object.type = Object::Type::dictionary;
            references(object, pairs * 2);
            break;
        }
        default: invalid();
    }
    return object;
}

std::optional<uint64_t> Document::value(const Object& dictionary, std::string_view key) const {
    if (dictionary.type != Object::Type::dictionary) invalid();
    const size_t pairs = dictionary.members.size() / 2;
    for (size_t i = 0; i < pairs; ++i) {
        const Object& candidate = object(dictionary.members[i]);
        if (candidate.type == Object::Type::string && candidate.bytes == key) return dictionary.members[pairs + i];
    }
    return std::nullopt;
}

Value Value::integer(int64_t value) {
    Value made;
    made.number = value;
    return made;
}

Value Value::string(std::string text) {
    Value made;
    made.type = Type::string;
    made.bytes = std::move(text);
    return made;
}

Value Value::data(std::string bytes) {
    Value made;
    made.type = Type::data;
    made.bytes = std::move(bytes);
    return made;
}

Value Value::uid(uint64_t value) {
    Value made;
    made.type = Type::uid;
    made.number = static_cast<int64_t>(value);
    return made;
}

Value Value::array(std::vector<Value> members) {
    Value made;
    made.type = Type::array;
    made.members = std::move(members);
    return made;
}

Value Value::dictionary(std::vector<std::pair<std::string, Value>> entries) {
    Value made;
    made.type = Type::dictionary;
    for (auto& [key, value] : entries) {
        made.keys.push_back(std::move(key));
        made.members.push_back(std::move(value));
    }
    return made;
}

namespace {

// The tree numbered in the order it is written: each value before its members, a dictionary's keys
// before its values, equal strings once.
class Flattener {
public:
    struct Entry {
        const Value* value;       // anything but a string
        const std::string* text;  // a string: a value's or a dictionary key's
        std::vector<uint64_t> members;
    };

    uint64_t add(const Value& value) {
        if (value.type == Value::Type::string) return addString(value.bytes);
        const uint64_t number = entries.size();
        entries.push_back({&value, nullptr, {}});
        std::vector<uint64_t> members;
        for (const auto& key : value.keys) members.push_back(addString(key));
        for (const auto& member : value.members) members.push_back(add(member));
        entries[number].members = std::move(members);
        return number;
    }

    std::vector<Entry> entries;

private:
    uint64_t addString(const std::string& text) {
        const auto [known, added] = strings.emplace(text, entries.size());
        if (added) entries.push_back({nullptr, &known->first, {}});
        return known->second;
    }

    std::map<std::string, uint64_t> strings;
};

void appendBigEndian(std::string& out, uint64_t value, size_t byteCount) {
    for (size_t i = byteCount; i-- > 0;) out += static_cast<char>((value >> (8 * i)) & 0xFF);
}

void appendInteger(std::string& out, int64_t value) {
    const size_t width = value < 0 ? 8 : widthFor(static_cast<uint64_t>(value));
    out += static_cast<char>(0x10 | std::countr_zero(width));
    appendBigEndian(out, static_cast<uint64_t>(value), width);
}

void appendMarker(std::string& out, uint8_t kind, uint64_t count) {
    if (count < 15) {
        out += static_cast<char>(kind << 4 | count);
        return;
    }
    out += static_cast<char>(kind << 4 | 0x0F);
    appendInteger(out, static_cast<int64_t>(count));
}

void appendString(std::string& out, const std::string& text) {
    if (std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; })) {
        appendMarker(out, 0x5, text.size());
        out += text;
        return;
    }
    std::vector<uint8_t> units;
    if (!BytesParser::encodeText(text, BytesParser::TextEncoding::utf16BigEndian, units))
        throw CommonError(CommonError::Case::invalidString);
    appendMarker(out, 0x6, units.size() / 2);
    out.append(units.begin(), units.end());
}

}  // namespace

std::string write(const Value& top) {
    Flattener flat;
    flat.add(top);
    const size_t referenceSize = widthFor(flat.entries.size() - 1);

    std::string out(header);
    std::vector<uint64_t> offsets;
    for (const auto& entry : flat.entries) {
        offsets.push_back(out.size());
        if (entry.text) {
            appendString(out, *entry.text);
            continue;
        }
        const Value& value = *entry.value;
        switch (value.type) {
            case Value::Type::integer: appendInteger(out, value.number); break;
            case Value::Type::string: break;  // written above
            case Value::Type::data:
                appendMarker(out, 0x4, value.bytes.size());
                out += value.bytes;
                break;
            case Value::Type::uid: {
                const size_t width = widthFor(static_cast<uint64_t>(value.number));
                out += static_cast<char>(0x80 | (width - 1));
                appendBigEndian(out, static_cast<uint64_t>(value.number), width);
                break;
            }
            case Value::Type::array:
            case Value::Type::dictionary:
                appendMarker(out, value.type == Value::Type::array ? 0xA : 0xD,
                             value.type == Value::Type::array ? value.members.size() : value.keys.size());
                for (uint64_t member : entry.members) appendBigEndian(out, member, referenceSize);
                break;
        }
    }

    const uint64_t offsetTable = out.size();
    const size_t offsetSize = widthFor(offsets.back());
    for (uint64_t offset : offsets) appendBigEndian(out, offset, offsetSize);
    out.append(6, '\0');  // five unused bytes and the sort version
    out += static_cast<char>(offsetSize);
    out += static_cast<char>(referenceSize);
    appendBigEndian(out, flat.entries.size(), 8);
    appendBigEndian(out, 0, 8);  // the top object is written first
    appendBigEndian(out, offsetTable, 8);
    return out;
}

}  // namespace PAL::bplist
