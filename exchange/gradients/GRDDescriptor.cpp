#include "exchange/gradients/GRDDescriptor.h"

#include "exchange/PalErrors.h"

namespace PAL::grd {

namespace {

using BytesParser::BytesReader;
constexpr auto big = BytesParser::Endianness::big;
constexpr int deepest = 32;

CommonError invalidFormat() { return CommonError(CommonError::Case::invalidFormat); }

std::string fourBytes(BytesReader& reader) { return reader.readString(BytesParser::TextEncoding::isoLatin1, 4); }

// A key or class: four characters when the stored length is 0, else that many.
std::string identifier(BytesReader& reader) {
    const auto length = reader.readInteger<std::uint32_t>(big);
    return length == 0 ? fourBytes(reader) : reader.readString(BytesParser::TextEncoding::isoLatin1, length);
}

std::string unicodeText(BytesReader& reader) { return reader.readPascalUTF16String(); }

void skipBytes(BytesReader& reader) { reader.readBytes(reader.readInteger<std::uint32_t>(big)); }

// A reference ("obj "): a list of parts, each read past.
void skipReference(BytesReader& reader) {
    const auto count = reader.readInteger<std::uint32_t>(big);
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::string form = fourBytes(reader);
        if (form == "prop") unicodeText(reader), identifier(reader), identifier(reader);
        else if (form == "Clss") unicodeText(reader), identifier(reader);
        else if (form == "Enmr") unicodeText(reader), identifier(reader), identifier(reader), identifier(reader);
        else if (form == "rele") unicodeText(reader), identifier(reader), reader.readInteger<std::uint32_t>(big);
        else if (form == "Idnt" || form == "indx") reader.readInteger<std::uint32_t>(big);
        else if (form == "name") unicodeText(reader), identifier(reader), unicodeText(reader);
        else throw invalidFormat();
    }
}

// Reads one descriptor, counting the values it makes: a file's bytes bound the tree's size, and the
// count bounds it more tightly, since a value in memory is larger than its smallest form in a file.
class DescriptorReader {
public:
    explicit DescriptorReader(BytesReader& reader) : reader_(reader) {}

    Value object(int depth) {
        Value object = made("Objc");
        unicodeText(reader_);  // the descriptor's own name, always empty or "Gradient"
        object.classID = identifier(reader_);
        const auto count = reader_.readInteger<std::uint32_t>(big);
        for (std::uint32_t i = 0; i < count; ++i) {
            object.keys.push_back(identifier(reader_));
            const std::string type = fourBytes(reader_);
            object.children.push_back(value(type, depth + 1));
        }
        return object;
    }

private:
    static constexpr std::size_t mostValues = 1'000'000;

    Value made(std::string type) {
        if (++values_ > mostValues) throw invalidFormat();
        Value value;
        value.type = std::move(type);
        return value;
    }

    Value value(const std::string& type, int depth) {
        if (depth > deepest) throw invalidFormat();
        if (type == "Objc" || type == "GlbO") return object(depth);
        if (type == "ObAr") {
            reader_.readInteger<std::uint32_t>(big);
            return object(depth);
        }
        Value value = made(type);
        if (type == "VlLs") {
            const auto count = reader_.readInteger<std::uint32_t>(big);
            for (std::uint32_t i = 0; i < count; ++i) {
                const std::string entryType = fourBytes(reader_);
                value.children.push_back(this->value(entryType, depth + 1));
            }
        } else if (type == "doub") {
            value.number = reader_.readFloat64(big);
        } else if (type == "UntF") {
            value.unit = fourBytes(reader_);
            value.number = reader_.readFloat64(big);
        } else if (type == "UnFl") {
            value.unit = fourBytes(reader_);
            reader_.readBytes(std::int64_t{reader_.readInteger<std::uint32_t>(big)} * 8);
        } else if (type == "TEXT") {
            value.text = unicodeText(reader_);
        } else if (type == "enum") {
            value.classID = identifier(reader_);
            value.text = identifier(reader_);
        } else if (type == "long") {
            value.number = reader_.readInteger<std::int32_t>(big);
        } else if (type == "comp") {
            value.number = static_cast<double>(reader_.readInteger<std::int64_t>(big));
        } else if (type == "bool") {
            value.number = reader_.readByte();
        } else if (type == "type" || type == "GlbC") {
            unicodeText(reader_);
            value.classID = identifier(reader_);
        } else if (type == "tdta" || type == "alis" || type == "Pth ") {
            skipBytes(reader_);
        } else if (type == "obj ") {
            skipReference(reader_);
        } else {
            throw invalidFormat();  // an unknown type has no known length
        }
        return value;
    }

    BytesReader& reader_;
    std::size_t values_ = 0;
};

}  // namespace

const Value* Value::find(std::string_view key) const {
    for (std::size_t i = 0; i < keys.size() && i < children.size(); ++i)
        if (keys[i] == key) return &children[i];
    return nullptr;
}

std::optional<double> Value::numberAt(std::string_view key) const {
    const Value* value = find(key);
    if (!value || (value->type != "doub" && value->type != "long" && value->type != "UntF")) return std::nullopt;
    return value->number;
}

Value readDescriptor(BytesReader& reader) {
    try {
        return DescriptorReader(reader).object(0);
    } catch (const BytesParser::ReaderError&) {
        throw invalidFormat();  // cut short, or a text that does not decode
    }
}

}  // namespace PAL::grd
