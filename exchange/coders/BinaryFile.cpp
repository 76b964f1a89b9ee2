#include "exchange/coders/BinaryFile.h"

#include <algorithm>
#include <cmath>

namespace PAL::binaryfile {

using BytesParser::BytesReader;
using BytesParser::ReaderError;

WholeFile::WholeFile(BytesReader& source) : reader_(&source) {
    try {
        start_ = source.readPosition();
        source.seek(0, BytesReader::Seek::end);
        size_ = source.readPosition() - start_;
        source.seek(static_cast<int64_t>(start_), BytesReader::Seek::start);
    } catch (const ReaderError&) {
        // A forward-only stream: nothing was consumed by the failed seek.
        owned_ = std::make_unique<BytesReader>(source.readAll());
        reader_ = owned_.get();
        start_ = 0;
        owned_->seek(0, BytesReader::Seek::end);
        size_ = owned_->readPosition();
        owned_->seek(0, BytesReader::Seek::start);
    }
}

void WholeFile::seek(uint64_t offset) {
    if (offset > size_) throw CommonError(CommonError::Case::invalidFormat);
    reader_->seek(static_cast<int64_t>(start_ + offset), BytesReader::Seek::start);
}

void WholeFile::require(uint64_t count, uint64_t itemSize) const {
    // Division, not multiplication: a huge count times an item size could wrap around.
    if (itemSize != 0 && count > remaining() / itemSize) throw CommonError(CommonError::Case::invalidEndOfFile);
}

std::vector<uint8_t> WholeFile::readBytes(uint64_t count) {
    require(count);
    return reader_->readBytes(static_cast<int64_t>(count));
}

bool holds(std::span<const uint8_t> bytes, size_t at, std::string_view tag) {
    return bytes.size() >= at && bytes.size() - at >= tag.size() &&
           std::equal(tag.begin(), tag.end(), bytes.begin() + static_cast<ptrdiff_t>(at),
                      [](char c, uint8_t b) { return static_cast<uint8_t>(c) == b; });
}

std::string lenientUTF16(std::span<const uint8_t> bytes, BytesParser::Endianness endianness) {
    const bool big = endianness == BytesParser::Endianness::big;
    std::vector<char16_t> units(bytes.size() / 2);
    for (size_t i = 0; i < units.size(); ++i)
        units[i] = big ? static_cast<char16_t>(bytes[2 * i] << 8 | bytes[2 * i + 1])
                       : static_cast<char16_t>(bytes[2 * i + 1] << 8 | bytes[2 * i]);
    const auto isHigh = [](char16_t u) { return u >= 0xD800 && u <= 0xDBFF; };
    const auto isLow = [](char16_t u) { return u >= 0xDC00 && u <= 0xDFFF; };
    for (size_t i = 0; i < units.size(); ++i) {
        if (isHigh(units[i]) && i + 1 < units.size() && isLow(units[i + 1])) {
            ++i;
        } else if (isHigh(units[i]) || isLow(units[i])) {
            units[i] = 0xFFFD;
        }
    }
    std::vector<uint8_t> repaired(units.size() * 2);
    for (size_t i = 0; i < units.size(); ++i) {
        repaired[2 * i + (big ? 0 : 1)] = static_cast<uint8_t>(units[i] >> 8);
        repaired[2 * i + (big ? 1 : 0)] = static_cast<uint8_t>(units[i] & 0xFF);
    }
    std::string text;
    BytesParser::decodeText(repaired, big ? BytesParser::TextEncoding::utf16BigEndian
                                          : BytesParser::TextEncoding::utf16LittleEndian,
                            text);
    return text;
}

std::string readText(WholeFile& file) {
    std::string text;
    if (!BytesParser::decodeText(file.readBytes(file.read<uint32_t>()), BytesParser::TextEncoding::utf8, text))
        throw CommonError(CommonError::Case::invalidString);
    return text;
}

void writeText(BytesParser::BytesWriter& out, std::string_view text) {
    std::string checked;
    const std::span<const uint8_t> bytes(reinterpret_cast<const uint8_t*>(text.data()), text.size());
    if (text.size() > UINT32_MAX || !BytesParser::decodeText(bytes, BytesParser::TextEncoding::utf8, checked))
        throw CommonError(CommonError::Case::invalidString);
    out.writeInteger<uint32_t>(static_cast<uint32_t>(text.size()), little);
    out.writeBytes(text);
}

void requireMagic(WholeFile& file, std::string_view magic) {
    if (file.size() < magic.size() || !holds(file.readBytes(magic.size()), 0, magic))
        throw CommonError(CommonError::Case::invalidFormat);
}

Palette readOpening(WholeFile& file, const OwnFormat& own) {
    requireMagic(file, own.magic);
    if (file.read<uint16_t>() != own.version) throw CommonError(CommonError::Case::invalidVersion);
    Palette palette(readText(file));
    palette.format = own.format;
    return palette;
}

BytesParser::BytesWriter writeOpening(const OwnFormat& own, const Palette& palette) {
    BytesParser::BytesWriter out;
    out.writeBytes(own.magic);
    out.writeInteger<uint16_t>(own.version, little);
    writeText(out, palette.name);
    return out;
}

void requireEnd(const WholeFile& file) {
    if (!file.atEnd()) throw CommonError(CommonError::Case::invalidFormat);
}

double readNumber(WholeFile& file) {
    const double value = file.reader().readFloat64(little);
    if (!std::isfinite(value)) throw CommonError(CommonError::Case::invalidFormat);
    return value;
}

void writeNumber(BytesParser::BytesWriter& out, double value) {
    if (!std::isfinite(value)) throw CommonError(CommonError::Case::invalidFormat);
    out.writeFloat64(value, little);
}

uint32_t readCount(WholeFile& file, size_t smallestItem) {
    const auto count = file.read<uint32_t>();
    file.require(count, smallestItem);
    return count;
}

void writeCount(BytesParser::BytesWriter& out, size_t count) {
    if (count > UINT32_MAX) throw CommonError(CommonError::Case::indexOutOfRange);
    out.writeInteger<uint32_t>(static_cast<uint32_t>(count), little);
}

}  // namespace PAL::binaryfile
