#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "exchange/BytesReader.h"
#include "exchange/BytesWriter.h"

using namespace BytesParser;

namespace {
template <typename Action>
std::optional<WriterError::Code> writerError(Action&& action) {
    try {
        action();
    } catch (const WriterError& error) {
        return error.code;
    }
    return std::nullopt;
}

std::string fileText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}
}  // namespace

TEST(BytesWriter, NumbersInBothByteOrders) {
    BytesWriter writer;
    writer.writeInteger<uint16_t>(0x1234, Endianness::big);
    writer.writeInteger<int16_t>(-2, Endianness::little);
    writer.writeInteger<int8_t>(-1, Endianness::big);
    writer.writeInteger<uint64_t>(0x0102030405060708ull, Endianness::little);
    writer.writeFloat32(1.0f, Endianness::big);
    writer.writeFloat64(-2.0, Endianness::big);
    writer.writeIntegers<uint32_t>(std::vector<uint32_t>{7, 8}, Endianness::big);
    writer.writeIntegers<uint32_t>(std::vector<uint32_t>{}, Endianness::big);
    EXPECT_EQ(writer.data(), std::string("\x12\x34\xFE\xFF\xFF\x08\x07\x06\x05\x04\x03\x02\x01\x3F\x80\x00\x00"
                                         "\xC0\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x07\x00\x00\x00\x08",
                                         33));
    EXPECT_EQ(writer.count(), 33u);
}

TEST(BytesWriter, StringsAndWhatTheyCannotCarry) {
    BytesWriter writer;
    writer.writeString("Hi😀", TextEncoding::utf16BigEndian);
    writer.writeString("é", TextEncoding::utf16LittleEndian);
    writer.writeString("é", TextEncoding::isoLatin1, true);
    writer.writeString("ok", TextEncoding::ascii);
    EXPECT_EQ(writer.data(), std::string("\x00H\x00i\xD8\x3D\xDE\x00\xE9\x00\xE9\x00ok", 14));
    EXPECT_EQ(writerError([&] { writer.writeString("é", TextEncoding::ascii); }), WriterError::cannotConvertStringEncoding);
    EXPECT_EQ(writerError([&] { writer.writeString("€", TextEncoding::isoLatin1); }), WriterError::cannotConvertStringEncoding);
    EXPECT_EQ(writerError([&] { writer.writeString("\xC3", TextEncoding::utf8); }), WriterError::cannotConvertStringEncoding);
    EXPECT_EQ(writer.count(), 14u) << "a refused string writes nothing";

    // Every encoding reads back what it wrote.
    for (auto encoding : {TextEncoding::utf8, TextEncoding::utf16BigEndian, TextEncoding::utf16LittleEndian}) {
        BytesWriter out;
        out.writeString("Ünïcødé 𝄞", encoding);
        BytesReader in(out.data());
        EXPECT_EQ(in.readString(encoding, static_cast<int64_t>(out.count())), "Ünïcødé 𝄞");
    }
}

TEST(BytesWriter, FileTargetReplacesTheFileOnlyWhenFinished) {
    const std::string folder = std::filesystem::temp_directory_path() / ("kro-writer-" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    const std::string path = folder + "/out.bin";
    std::ofstream(path) << "old";
    {
        auto writer = BytesWriter::toFileURL(path);
        writer.writeString("abandoned", TextEncoding::ascii);
    }
    EXPECT_EQ(fileText(path), "old") << "an unfinished write leaves the old file whole";
    {
        auto writer = BytesWriter::toFileURL("file://" + path);
        writer.writeInteger<uint16_t>(0x4142, Endianness::big);
        EXPECT_EQ(writerError([&] { writer.data(); }), WriterError::notSupported);
        writer.finish();
    }
    EXPECT_EQ(fileText(path), "AB");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1) << "no temporary left";
    EXPECT_EQ(writerError([&] { BytesWriter::toFileURL(folder + "/missing/out.bin"); }), WriterError::cannotOpenOutputFile);
    EXPECT_EQ(writerError([&] { BytesWriter::toFileURL("https://example.com/x"); }), WriterError::cannotOpenOutputFile);
    std::filesystem::remove_all(folder);
}
