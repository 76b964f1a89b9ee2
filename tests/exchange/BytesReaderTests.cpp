#include <gtest/gtest.h>

#include <unistd.h>

#include <fstream>
#include <random>
#include <sstream>

#include "BinaryCoderTestSupport.h"
#include "exchange/BytesReader.h"

using namespace BytesParser;
using binarytest::readerError;

namespace {
BytesReader streamReader(std::string bytes) {
    return BytesReader(std::make_unique<std::istringstream>(std::move(bytes)));
}

// A stream that hands out at most `chunk` bytes per read, as pipes and sockets do.
class TrickleBuffer : public std::streambuf {
public:
    TrickleBuffer(std::string bytes, size_t chunk) : bytes(std::move(bytes)), chunk(chunk) {}

protected:
    int_type underflow() override {
        if (offset >= bytes.size()) return traits_type::eof();
        const size_t n = std::min(chunk, bytes.size() - offset);
        setg(bytes.data() + offset, bytes.data() + offset, bytes.data() + offset + n);
        offset += n;
        return traits_type::to_int_type(*gptr());
    }

private:
    std::string bytes;
    size_t chunk, offset = 0;
};
struct TrickleStream : std::istream {
    TrickleStream(std::string bytes, size_t chunk) : std::istream(nullptr), buffer(std::move(bytes), chunk) { rdbuf(&buffer); }
    TrickleBuffer buffer;
};
}  // namespace

TEST(BytesReader, IntegersAndFloatsInBothByteOrders) {
    for (bool streamed : {false, true}) {
        const std::string bytes("\x12\x34\xFE\xFF\x3F\x80\x00\x00\x00\x00\x00\x00\x00\x00\xF0\x3F\x80\x01\x02\x03\x04\x05\x06\x07\x08", 25);
        auto reader = streamed ? streamReader(bytes) : BytesReader(bytes);
        EXPECT_EQ(reader.readInteger<uint16_t>(Endianness::big), 0x1234);
        EXPECT_EQ(reader.readInteger<int16_t>(Endianness::little), -2);
        EXPECT_EQ(reader.readFloat32(Endianness::big), 1.0f);
        EXPECT_EQ(reader.readFloat64(Endianness::little), 1.0);
        EXPECT_EQ(reader.readInteger<int8_t>(Endianness::big), -128);
        EXPECT_EQ(reader.readInteger<uint64_t>(Endianness::big), 0x0102030405060708ull);
        EXPECT_EQ(reader.readPosition(), 25u);
        EXPECT_FALSE(reader.hasMoreData());
    }
}

TEST(BytesReader, ArraysComeFromOneBlock) {
    BytesReader reader(std::string("\x00\x01\x00\x02\xFF\xFF\x3F\x80\x00\x00\xBF\x80\x00\x00", 14));
    EXPECT_EQ(reader.readIntegers<uint16_t>(3, Endianness::big), (std::vector<uint16_t>{1, 2, 0xFFFF}));
    EXPECT_EQ(reader.readFloat32s(2, Endianness::big), (std::vector<float>{1.0f, -1.0f}));
    EXPECT_EQ(readerError([&] { reader.readIntegers<uint32_t>(SIZE_MAX / 2, Endianness::big); }), ReaderError::endOfData);
}

TEST(BytesReader, ShortReadFailsAndMemoryPositionStays) {
    BytesReader reader(std::string("\x01\x02\x03", 3));
    EXPECT_EQ(readerError([&] { reader.readInteger<uint32_t>(Endianness::big); }), ReaderError::endOfData);
    EXPECT_EQ(reader.readPosition(), 0u);
    EXPECT_EQ(reader.readBytes(3), (std::vector<uint8_t>{1, 2, 3}));
    // Nothing asked for is nothing read, even at the end.
    EXPECT_TRUE(reader.readBytes(0).empty());
    EXPECT_TRUE(reader.readBytes(-4).empty());
    EXPECT_EQ(reader.readString(TextEncoding::ascii, 0), "");
    EXPECT_EQ(readerError([&] { reader.readByte(); }), ReaderError::endOfData);

    auto stream = streamReader("\x01\x02\x03");
    EXPECT_EQ(readerError([&] { stream.readInteger<uint32_t>(Endianness::big); }), ReaderError::endOfData);
    EXPECT_EQ(readerError([&] { stream.readByte(); }), ReaderError::endOfData);
}

TEST(BytesReader, StreamsThatTrickleStillDeliverWholeReads) {
    std::string big(5000, '\0');
    for (size_t i = 0; i < big.size(); ++i) big[i] = static_cast<char>(i * 7);
    BytesReader reader(std::make_unique<TrickleStream>(big, 3));
    EXPECT_EQ(reader.readBytes(10).size(), 10u);
    const auto block = reader.readBytes(4000);  // grows the 1024-byte buffer
    EXPECT_EQ(block.front(), static_cast<uint8_t>(10 * 7));
    EXPECT_EQ(block.back(), static_cast<uint8_t>(4009 * 7));
    EXPECT_EQ(reader.readBytes(2).front(), static_cast<uint8_t>(4010 * 7));  // smaller reads reuse it
    EXPECT_EQ(reader.readAll().size(), 988u);
    EXPECT_EQ(reader.readPosition(), 5000u);
    EXPECT_FALSE(reader.hasMoreData());
}

TEST(BytesReader, SeekingInMemoryAndRefusedOnStreams) {
    BytesReader reader(std::string("abcdef"));
    reader.seek(-2, BytesReader::Seek::end);
    EXPECT_EQ(reader.readString(TextEncoding::ascii, 2), "ef");
    reader.seek(1, BytesReader::Seek::start);
    reader.seek(2, BytesReader::Seek::current);
    EXPECT_EQ(reader.readByte(), 'd');
    EXPECT_EQ(readerError([&] { reader.seek(-1, BytesReader::Seek::start); }), ReaderError::invalidOffset);
    EXPECT_EQ(readerError([&] { reader.seek(7, BytesReader::Seek::start); }), ReaderError::invalidOffset);
    EXPECT_EQ(readerError([&] { reader.seek(INT64_MAX, BytesReader::Seek::end); }), ReaderError::invalidOffset);
    EXPECT_EQ(reader.readPosition(), 4u) << "a refused seek moves nothing";

    auto stream = streamReader("abcdef");
    for (auto from : {BytesReader::Seek::start, BytesReader::Seek::end, BytesReader::Seek::current}) {
        EXPECT_EQ(readerError([&] { stream.seek(0, from); }), ReaderError::randomAccessSeekingNotSupportedBySource);
    }
}

TEST(BytesReader, FixedLengthStrings) {
    BytesReader reader(std::string("AB\0\0" "Caf\xC3\xA9" "\xE9t\xE9" "\x80", 13));
    EXPECT_EQ(reader.readString(TextEncoding::ascii, 4, true), std::string("AB\0", 3)) << "one terminator byte only";
    EXPECT_EQ(reader.readString(TextEncoding::utf8, 5), "Café");
    EXPECT_EQ(reader.readString(TextEncoding::isoLatin1, 3), "été");
    EXPECT_EQ(readerError([&] { reader.readString(TextEncoding::ascii, 1); }), ReaderError::invalidStringEncoding);

    BytesReader wide(std::string("\x00H\x00i\xD8\x3D\xDE\x00" "a\x00" "\xDC\x00", 12));
    EXPECT_EQ(wide.readUTF16String(4, TextEncoding::utf16BigEndian), "Hi😀");
    EXPECT_EQ(wide.readUTF16String(1, TextEncoding::utf16LittleEndian), "a");
    EXPECT_EQ(readerError([&] { wide.readUTF16String(1, TextEncoding::utf16BigEndian); }), ReaderError::invalidStringEncoding)
        << "a lone low surrogate";
}

TEST(BytesReader, TerminatedStrings) {
    BytesReader reader(std::string("one\0two", 7));
    EXPECT_EQ(reader.readNullTerminatedString(TextEncoding::utf8), "one");
    EXPECT_EQ(reader.readNullTerminatedString(TextEncoding::utf8), "two") << "the end of the data ends it";

    BytesReader wide(std::string("\x00W\x00\x00\x00X\x00Y", 8));
    EXPECT_EQ(wide.readWideNullTerminatedString(TextEncoding::utf16BigEndian), "W");
    EXPECT_EQ(wide.readWideNullTerminatedString(TextEncoding::utf16BigEndian), "XY");
    EXPECT_FALSE(wide.hasMoreData());

    auto stream = streamReader(std::string("\x00Z\x00", 3));
    EXPECT_EQ(stream.readWideNullTerminatedString(TextEncoding::utf16BigEndian), "Z") << "an odd last byte is not a unit";
}

TEST(BytesReader, PascalUTF16Strings) {
    // Count, units; a stored terminator is tolerated; undecodable text reads as empty.
    BytesReader reader(std::string("\0\0\0\x02\0A\0B"
                                   "\0\0\0\x02\0C\0\0"
                                   "\0\0\0\x01\xD8\x00"
                                   "\0\0\0\x00",
                                   26));
    EXPECT_EQ(reader.readPascalUTF16String(), "AB");
    EXPECT_EQ(reader.readPascalUTF16String(), "C");
    EXPECT_EQ(reader.readPascalUTF16String(), "");
    EXPECT_EQ(reader.readPascalUTF16String(), "");
    EXPECT_EQ(readerError([&] { reader.readPascalUTF16String(); }), ReaderError::endOfData);
    BytesReader huge(std::string("\xFF\xFF\xFF\xFF\0A", 6));
    EXPECT_EQ(readerError([&] { huge.readPascalUTF16String(); }), ReaderError::endOfData);
}

TEST(BytesReader, Files) {
    char name[] = "/tmp/kro-bytes-XXXXXX";
    const int descriptor = mkstemp(name);
    ASSERT_GE(descriptor, 0);
    ASSERT_EQ(write(descriptor, "\x00\x2A", 2), 2);
    close(descriptor);
    auto reader = BytesReader::fromFileURL(std::string("file://") + name);
    EXPECT_EQ(reader.readInteger<uint16_t>(Endianness::big), 42);
    EXPECT_EQ(BytesReader::fromFileURL(name).readAll().size(), 2u);
    unlink(name);

    EXPECT_EQ(readerError([&] { BytesReader::fromFileURL(name); }), ReaderError::invalidFile);
    EXPECT_EQ(readerError([&] { BytesReader::fromFileURL("https://example.com/a.ase"); }), ReaderError::invalidFile);
    EXPECT_EQ(readerError([&] { BytesReader::fromFileURL("/tmp"); }), ReaderError::invalidFile);
    EXPECT_EQ(readerError([&] { BytesReader(std::unique_ptr<std::istream>()); }), ReaderError::invalidFile);
}

// A regular file is read a window at a time; every answer must be the one the whole file in memory gives,
// across the window's edges, at the end, and after seeks (a fixed seed picks the reads).
TEST(BytesReader, AFileSourceAnswersAsMemoryDoes) {
    std::string bytes(200'000, '\0');
    for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 31 + (i >> 8));
    char name[] = "/tmp/kro-bytes-XXXXXX";
    const int descriptor = mkstemp(name);
    ASSERT_GE(descriptor, 0);
    ASSERT_EQ(write(descriptor, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    close(descriptor);

    auto source = FileSource::open(name);
    ASSERT_TRUE(source);
    BytesReader file(std::move(source)), memory(bytes);
    std::mt19937 random(5);
    for (int step = 0; step < 400; ++step) {
        const size_t count = random() % 3 == 0 ? random() % 70'000 : random() % 9;
        switch (random() % 5) {
            case 0: {
                const auto expected = readerError([&] { memory.readBytes(static_cast<int64_t>(count)); });
                std::vector<uint8_t> read;
                EXPECT_EQ(readerError([&] { read = file.readBytes(static_cast<int64_t>(count)); }), expected);
                if (!expected) {
                    EXPECT_EQ(read, std::vector<uint8_t>(bytes.begin() + static_cast<ptrdiff_t>(file.readPosition() - count),
                                                         bytes.begin() + static_cast<ptrdiff_t>(file.readPosition())));
                }
                break;
            }
            case 1: {
                const auto expected = readerError([&] { memory.readInteger<uint32_t>(Endianness::big); });
                uint32_t value = 0;
                EXPECT_EQ(readerError([&] { value = file.readInteger<uint32_t>(Endianness::big); }), expected);
                if (!expected) {
                    EXPECT_EQ(value, BytesReader(bytes.substr(file.readPosition() - 4, 4)).readInteger<uint32_t>(Endianness::big));
                }
                break;
            }
            case 2: {
                const auto from = static_cast<BytesReader::Seek>(random() % 3);
                const int64_t offset = static_cast<int64_t>(random() % 260'000) - 130'000;
                EXPECT_EQ(readerError([&] { file.seek(offset, from); }), readerError([&] { memory.seek(offset, from); }));
                break;
            }
            case 3:
                if (random() % 8 == 0) {
                    EXPECT_EQ(file.readAll(), memory.readAll());
                }
                break;
            default:
                if (random() % 8 == 0) {
                    const auto rest = memory.readRemaining();
                    const auto read = file.readRemaining();
                    EXPECT_TRUE(std::equal(read.begin(), read.end(), rest.begin(), rest.end()));
                }
        }
        ASSERT_EQ(file.readPosition(), memory.readPosition()) << "step " << step;
        EXPECT_EQ(file.hasMoreData(), memory.hasMoreData());
        EXPECT_EQ(file.bytesLeft(), memory.bytesLeft());
    }
    unlink(name);
    EXPECT_FALSE(FileSource::open(name));
    EXPECT_FALSE(FileSource::open("/tmp")) << "a folder is not a file to read";
}
