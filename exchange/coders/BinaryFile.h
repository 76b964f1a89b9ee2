#pragma once
// What the binary coders that need a whole file share: its size, known before anything is read, so
// that every stated count or length is checked against the bytes that remain before it is used (a
// corrupt field is a refusal, never an allocation); reads past the end turned into the layer's own
// refusal; and the length-prefixed UTF-8 text of our own formats.
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/BytesReader.h"
#include "exchange/BytesWriter.h"
#include "exchange/PalErrors.h"
#include "exchange/PalPalette.h"

namespace PAL::binaryfile {

constexpr auto little = BytesParser::Endianness::little;

// A file read from where the given reader stands to its end. A reader over memory is used as it
// is; one over a forward-only stream is drained into memory first, since the size must be known.
class WholeFile {
public:
    explicit WholeFile(BytesParser::BytesReader& source);

    BytesParser::BytesReader& reader() { return *reader_; }
    // Offsets count from the start of the file, not of the reader's data.
    size_t size() const { return size_; }
    size_t position() const { return reader_->readPosition() - start_; }
    size_t remaining() const { return size_ - position(); }
    bool atEnd() const { return remaining() == 0; }
    // Throws CommonError invalidFormat when the offset lies beyond the end.
    void seek(uint64_t offset);
    // Throws CommonError invalidEndOfFile unless `count` items of `itemSize` bytes fit in what remains.
    void require(uint64_t count, uint64_t itemSize = 1) const;
    std::vector<uint8_t> readBytes(uint64_t count);

    template <BytesParser::FixedInteger T>
    T read() { return reader_->readInteger<T>(little); }

private:
    std::unique_ptr<BytesParser::BytesReader> owned_;
    BytesParser::BytesReader* reader_;
    size_t start_ = 0;
    size_t size_ = 0;
};

// Runs a decode; a read that runs past the end becomes CommonError invalidEndOfFile and text that
// does not decode becomes invalidString, so every refusal is the layer's own error.
template <typename Decode>
Palette refusingShortReads(Decode&& decode) {
    try {
        return decode();
    } catch (const BytesParser::ReaderError& error) {
        const bool text = error.code == BytesParser::ReaderError::invalidStringEncoding;
        throw CommonError(text ? CommonError::Case::invalidString : CommonError::Case::invalidEndOfFile);
    }
}

// Whether `tag` stands in `bytes` at `at` (tags are written as text, compared as bytes).
bool holds(std::span<const uint8_t> bytes, size_t at, std::string_view tag);
// Reads the file's first bytes; throws CommonError invalidFormat unless they are `magic`.
void requireMagic(WholeFile& file, std::string_view magic);

// UTF-16 text as other programs write it: a unit left unpaired (a name cut in the middle of a
// surrogate pair) becomes U+FFFD instead of costing the whole name. A trailing odd byte is dropped.
std::string lenientUTF16(std::span<const uint8_t> bytes, BytesParser::Endianness endianness);

// Our own formats (dcp, clf) open with a magic, a u16 version and the palette's name, and hold
// nothing after their content; anything else is refused.
struct OwnFormat {
    PaletteFormat format;
    std::string_view magic;
    uint16_t version;
};

// The palette named by the opening and tagged with the format. Throws CommonError invalidFormat for
// another magic, invalidVersion for another version.
Palette readOpening(WholeFile& file, const OwnFormat& own);
// Throws CommonError invalidFormat when bytes remain.
void requireEnd(const WholeFile& file);
// The whole decode: the opening, `readContent(file, palette)`, the end, with short reads refused.
template <typename ReadContent>
Palette readOwnFormat(BytesParser::BytesReader& source, const OwnFormat& own, ReadContent&& readContent) {
    return refusingShortReads([&] {
        WholeFile file(source);
        Palette palette = readOpening(file, own);
        readContent(file, palette);
        requireEnd(file);
        return palette;
    });
}
// The opening of `palette`'s file, for the content to follow.
BytesParser::BytesWriter writeOpening(const OwnFormat& own, const Palette& palette);
// An f64 that must be a number: invalidFormat for an infinity or NaN, read or written.
double readNumber(WholeFile& file);
void writeNumber(BytesParser::BytesWriter& out, double value);
// A u32 count, refused with invalidEndOfFile when that many items of at least `smallestItem` bytes
// cannot fit in what remains.
uint32_t readCount(WholeFile& file, size_t smallestItem);
// Throws CommonError indexOutOfRange past what a u32 counts.
void writeCount(BytesParser::BytesWriter& out, size_t count);

// A u32 byte length, then that many bytes of UTF-8. Throws invalidEndOfFile / invalidString.
std::string readText(WholeFile& file);
// Throws CommonError invalidString when the text is not UTF-8 or longer than a u32 can count.
void writeText(BytesParser::BytesWriter& out, std::string_view text);

}  // namespace PAL::binaryfile
