#include "exchange/coders/Typedstream.h"

#include <bit>
#include <cmath>
#include <limits>
#include <optional>

#include "exchange/PalErrors.h"

namespace PAL::typedstream {

namespace {

// Tag bytes. The whole range 0x80...0x91 is reserved for tags, so a single-byte integer lies in -110...127.
constexpr uint8_t integer2Tag = 0x81, integer4Tag = 0x82, floatTag = 0x83, newTag = 0x84, nilTag = 0x85, endOfObjectTag = 0x86;
constexpr uint8_t firstReservedTag = 0x80, lastReservedTag = 0x91;
// A reference is stored as an integer counted from the first value past the tags.
constexpr int64_t referenceBase = -110;
// Objects nest inside objects; a stream deeper than this is not a colour list or anything like one.
constexpr size_t maximumDepth = 64;

[[noreturn]] void invalid() { throw CommonError(CommonError::Case::invalidFormat); }

}  // namespace

Reader::Reader(std::string_view bytes) : bytes_(bytes) {
    if (next() != 4) invalid();  // version 3 is an older NeXT form, not read here
    const int64_t signatureLength = readInteger();
    if (signatureLength != 11) invalid();
    const auto signature = take(11);
    if (signature == "typedstream")
        bigEndian_ = true;
    else if (signature != "streamtyped")
        invalid();
    readInteger();  // the system version that wrote the stream: no bearing on the layout
}

uint8_t Reader::next() {
    if (position_ >= bytes_.size()) invalid();
    return static_cast<uint8_t>(bytes_[position_++]);
}

std::string_view Reader::take(uint64_t count) {
    if (count > bytes_.size() - position_) invalid();
    const auto taken = bytes_.substr(position_, count);
    position_ += count;
    return taken;
}

uint64_t Reader::unsignedBits(size_t byteCount) {
    const auto raw = take(byteCount);
    uint64_t value = 0;
    for (size_t i = 0; i < byteCount; ++i) {
        const auto byte = static_cast<uint8_t>(raw[bigEndian_ ? i : byteCount - 1 - i]);
        value = (value << 8) | byte;
    }
    return value;
}

int64_t Reader::integerAfter(uint8_t head) {
    if (head == integer2Tag) return static_cast<int16_t>(unsignedBits(2));
    if (head == integer4Tag) return static_cast<int32_t>(unsignedBits(4));
    if (head >= firstReservedTag && head <= lastReservedTag) invalid();
    return static_cast<int8_t>(head);
}

// The unsigned codes use the same tags; only the reading of the wider forms differs.
uint64_t Reader::readUnsigned() {
    const uint8_t head = next();
    if (head == integer2Tag) return unsignedBits(2);
    if (head == integer4Tag) return unsignedBits(4);
    return static_cast<uint64_t>(integerAfter(head));
}

double Reader::readReal(size_t width) {
    const uint8_t head = next();
    if (head != floatTag) return static_cast<double>(integerAfter(head));
    const uint64_t bits = unsignedBits(width);
    return width == 4 ? std::bit_cast<float>(static_cast<uint32_t>(bits)) : std::bit_cast<double>(bits);
}

size_t Reader::reference(uint8_t head, size_t tableSize) {
    const int64_t index = integerAfter(head) - referenceBase;
    if (index < 0 || static_cast<uint64_t>(index) >= tableSize) invalid();
    return static_cast<size_t>(index);
}

Value Reader::readSharedString() {
    const uint8_t head = next();
    Value value;
    if (head == nilTag) return value;
    value.kind = Value::Kind::bytes;
    if (head == newTag) {
        const int64_t length = readInteger();
        if (length < 0) invalid();
        strings_.emplace_back(take(static_cast<uint64_t>(length)));
        value.bytes = strings_.back();
    } else {
        value.bytes = strings_[reference(head, strings_.size())];
    }
    return value;
}

// A chain of new classes, each followed by its superclass, ends at nil (the root class) or at a class
// already in the table. Returns the first class of the chain.
size_t Reader::readClassChain() {
    std::optional<size_t> first;
    for (uint8_t head = next();; head = next()) {
        if (head == newTag) {
            const Value name = readSharedString();
            if (name.kind != Value::Kind::bytes) invalid();
            const int64_t version = readInteger();
            entries_.push_back({true, name.bytes, version, {}});
            if (!first) first = entries_.size() - 1;
            continue;
        }
        if (head == nilTag) {
            if (!first) invalid();  // an object without a class
            return *first;
        }
        const size_t known = reference(head, entries_.size());
        if (!entries_[known].isClass) invalid();
        return first.value_or(known);
    }
}

Value Reader::readObject(size_t depth) {
    const uint8_t head = next();
    Value value;
    if (head == nilTag) return value;
    value.kind = Value::Kind::object;
    if (head != newTag) {
        value.object = reference(head, entries_.size());
        return value;
    }
    if (depth > maximumDepth) invalid();
    // The object is numbered before its classes, so its contents may already refer to it.
    value.object = entries_.size();
    entries_.emplace_back();
    const Entry& objectClass = entries_[readClassChain()];
    Entry object{false, objectClass.className, objectClass.classVersion, {}};
    while (true) {
        if (position_ < bytes_.size() && static_cast<uint8_t>(bytes_[position_]) == endOfObjectTag) {
            ++position_;
            break;
        }
        object.groups.push_back(readGroup(depth + 1));
    }
    entries_[value.object] = std::move(object);
    return value;
}

Value Reader::readValue(char code, size_t depth) {
    Value value;
    switch (code) {
        case 'c': value.integer = static_cast<int8_t>(next()); break;
        case 'C': value.integer = next(); break;
        case 's':
        case 'i':
        case 'l':
        case 'q': value.integer = readInteger(); break;
        case 'S':
        case 'I':
        case 'L':
        case 'Q': value.integer = static_cast<int64_t>(readUnsigned()); break;
        case 'f':
        case 'd':
            value.kind = Value::Kind::real;
            value.real = readReal(code == 'f' ? 4 : 8);
            return value;
        case '@': return readObject(depth);
        case '#': {
            if (position_ < bytes_.size() && static_cast<uint8_t>(bytes_[position_]) == nilTag) {
                ++position_;
                return value;
            }
            value.kind = Value::Kind::object;
            value.object = readClassChain();
            return value;
        }
        case '*':
        case '%':
        case ':': return readSharedString();
        case '+': {
            const int64_t length = readInteger();
            if (length < 0) invalid();
            value.kind = Value::Kind::bytes;
            value.bytes = take(static_cast<uint64_t>(length));
            return value;
        }
        default: invalid();
    }
    value.kind = Value::Kind::integer;
    value.real = static_cast<double>(value.integer);
    return value;
}

Group Reader::readGroup(size_t depth) {
    const Value types = readSharedString();
    if (types.kind != Value::Kind::bytes || types.bytes.empty()) invalid();
    Group group{std::string(types.bytes), {}};
    for (char code : types.bytes) group.values.push_back(readValue(code, depth));
    return group;
}

Group Reader::readGroup() { return readGroup(0); }

const Entry& Reader::object(size_t index) const {
    if (index >= entries_.size() || entries_[index].isClass) invalid();
    return entries_[index];
}

Writer::Writer() {
    out_ += '\x04';
    integer(11);
    out_ += "streamtyped";
    integer(1000);
}

void Writer::integer(int64_t value) {
    const auto append = [&](uint64_t bits, size_t byteCount) {
        for (size_t i = 0; i < byteCount; ++i) out_ += static_cast<char>((bits >> (8 * i)) & 0xFF);
    };
    if (value >= -110 && value <= 127) {
        out_ += static_cast<char>(static_cast<int8_t>(value));
    } else if (value >= std::numeric_limits<int16_t>::min() && value <= std::numeric_limits<int16_t>::max()) {
        out_ += static_cast<char>(integer2Tag);
        append(static_cast<uint64_t>(value), 2);
    } else if (value >= std::numeric_limits<int32_t>::min() && value <= std::numeric_limits<int32_t>::max()) {
        out_ += static_cast<char>(integer4Tag);
        append(static_cast<uint64_t>(value), 4);
    } else {
        throw CommonError(CommonError::Case::indexOutOfRange);
    }
}

void Writer::real(float value) {
    if (std::isfinite(value) && std::trunc(value) == value && std::fabs(value) < 2147483648.0f) {
        integer(static_cast<int64_t>(value));
        return;
    }
    out_ += static_cast<char>(floatTag);
    const auto bits = std::bit_cast<uint32_t>(value);
    for (size_t i = 0; i < 4; ++i) out_ += static_cast<char>((bits >> (8 * i)) & 0xFF);
}

void Writer::byte(uint8_t value) { out_ += static_cast<char>(value); }

void Writer::nil() { out_ += static_cast<char>(nilTag); }

void Writer::reference(size_t index) { integer(static_cast<int64_t>(index) + referenceBase); }

void Writer::sharedString(std::string_view text) {
    for (size_t i = 0; i < strings_.size(); ++i)
        if (strings_[i] == text) return reference(i);
    out_ += static_cast<char>(newTag);
    integer(static_cast<int64_t>(text.size()));
    out_ += text;
    strings_.emplace_back(text);
}

void Writer::group(std::string_view types) { sharedString(types); }

void Writer::beginObject(const std::vector<std::pair<std::string, int64_t>>& classChain) {
    out_ += static_cast<char>(newTag);
    classes_.emplace_back();  // the object's own number comes before its classes'
    for (const auto& [name, version] : classChain) {
        for (size_t i = 0; i < classes_.size(); ++i)
            if (classes_[i] == name) return reference(i);
        out_ += static_cast<char>(newTag);
        sharedString(name);
        integer(version);
        classes_.push_back(name);
    }
    nil();  // the root class has no superclass
}

void Writer::endObject() { out_ += static_cast<char>(endOfObjectTag); }

void Writer::unsharedString(std::string_view bytes) {
    integer(static_cast<int64_t>(bytes.size()));
    out_ += bytes;
}

}  // namespace PAL::typedstream
