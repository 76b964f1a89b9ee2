#include <gtest/gtest.h>

#include "ExchangeTestSupport.h"
#include "ZipTestSupport.h"
#include "exchange/Zip.h"

using namespace PAL;
using namespace ziptest;
using Case = CommonError::Case;

namespace {

// Compressible text, large enough that every tool deflates it.
std::string paletteText() {
    std::string text;
    for (int i = 0; i < 200; ++i) text += "{ \"hue\" : 0." + std::to_string(i * 37 % 1000) + ", \"alpha\" : 1 },\n";
    return text;
}

std::string entryText(const zip::Reader& archive, std::string_view name) {
    const auto bytes = archive.read(name);
    EXPECT_TRUE(bytes) << "no entry " << name;
    return bytes.value_or("");
}

}  // namespace

TEST(ZipTest, ReadsWhatInfoZipWrites) {
    const ScratchFolder folder;
    const std::string text = paletteText();
    writeFile(folder / "palette.json", text);
    writeFile(folder / "tiny.txt", "hi");
    writeFile(folder / "sub/ünï.txt", "named in UTF-8");
    // A folder entry, an archive comment, a file too small to deflate, and one streamed from a pipe
    // (its sizes follow the data in a descriptor, the local header holds zeros).
    ASSERT_EQ(run(folder.path(), "zip -q -r made.zip palette.json tiny.txt sub && echo 'a comment' | zip -q -z made.zip").status, 0);
    ASSERT_EQ(run(folder.path(), "cat palette.json | zip -q - - | cat > streamed.zip").status, 0);

    const std::string made = readFile(folder / "made.zip");
    const zip::Reader archive(made);
    EXPECT_EQ(entryText(archive, "palette.json"), text);
    EXPECT_EQ(archive.find("palette.json")->method, 8);
    EXPECT_EQ(entryText(archive, "tiny.txt"), "hi");
    EXPECT_EQ(archive.find("tiny.txt")->method, 0);
    EXPECT_EQ(entryText(archive, "sub/ünï.txt"), "named in UTF-8");
    EXPECT_EQ(entryText(archive, "sub/"), "");
    EXPECT_FALSE(archive.read("Palette.json")) << "names compare exactly";

    const std::string streamed = readFile(folder / "streamed.zip");
    const zip::Reader streamedArchive(streamed);
    EXPECT_TRUE(streamedArchive.find("-")->flags & 8) << "the data descriptor case";
    EXPECT_EQ(entryText(streamedArchive, "-"), text);
}

TEST(ZipTest, FindsTheEndRecordBehindACommentThatHoldsItsSignature) {
    const ScratchFolder folder;
    writeFile(folder / "palette.json", paletteText());
    ASSERT_EQ(python(folder.path(),
                     "import zipfile\n"
                     "with zipfile.ZipFile('python.zip', 'w', zipfile.ZIP_DEFLATED) as z:\n"
                     "    z.write('palette.json')\n"
                     "    z.comment = b'PK\\x05\\x06 is not where the end record is'\n")
                  .status,
              0);
    const std::string bytes = readFile(folder / "python.zip");
    EXPECT_EQ(entryText(zip::Reader(bytes), "palette.json"), paletteText());
}

TEST(ZipTest, WhatWeWriteIsReadByUnzipAndPython) {
    const ScratchFolder folder;
    std::string binary;
    for (int i = 0; i < 256; ++i) binary += static_cast<char>(i);
    const std::string text = paletteText();
    const std::string archive = zip::write({{"swatchbook.xml", text},
                                            {"profiles/bytes.icc", binary, zip::Method::stored},
                                            {"ünï.txt", "named in UTF-8"},
                                            {"empty", ""}});
    writeFile(folder / "ours.zip", archive);

    EXPECT_EQ(run(folder.path(), "unzip -tqq ours.zip").status, 0);
    const auto tested = run(folder.path(), "python3 -m zipfile -t ours.zip");
    EXPECT_EQ(tested.output, "Done testing\n");
    EXPECT_EQ(run(folder.path(), "unzip -p ours.zip swatchbook.xml").output, text);
    // Python decodes a name as UTF-8 only when the entry says so; files unpack as ordinary files.
    EXPECT_EQ(python(folder.path(), "import zipfile\nprint(zipfile.ZipFile('ours.zip').namelist())\n").output,
              "['swatchbook.xml', 'profiles/bytes.icc', 'ünï.txt', 'empty']\n");
    EXPECT_EQ(run(folder.path(), "unzip -qq ours.zip -d out && stat -c %a out/swatchbook.xml").output, "644\n");

    const zip::Reader reader(archive);
    ASSERT_EQ(reader.entries().size(), 4u);
    EXPECT_EQ(reader.entries()[0].method, 8);
    EXPECT_LT(reader.entries()[0].compressedSize, text.size() / 4);
    EXPECT_EQ(entryText(reader, "swatchbook.xml"), text);
    EXPECT_EQ(entryText(reader, "profiles/bytes.icc"), binary);
    EXPECT_EQ(entryText(reader, "ünï.txt"), "named in UTF-8");
    EXPECT_EQ(entryText(reader, "empty"), "");
    EXPECT_EQ(zip::write({{"swatchbook.xml", text}}), zip::write({{"swatchbook.xml", text}})) << "no clock in the bytes";
}

TEST(ZipTest, RefusesArchivesItCannotTrust) {
    // Some damage shows when the archive is opened, some only when the entry is read.
    const auto refused = [](const std::string& bytes) { expectCommonError(Case::invalidFormat, [&] { zip::Reader(bytes).read("a.json"); }); };
    const std::string text = paletteText();
    const std::string deflated = zip::write({{"a.json", text}});
    const std::string stored = zip::write({{"a.json", text, zip::Method::stored}});
    const std::size_t central = centralDirectory(deflated);

    refused("");
    refused("GIMP Palette\nName: not a zip\n");
    refused(deflated.substr(0, deflated.size() - 1));
    refused(deflated.substr(1));  // every offset now one past its record

    std::string damaged = stored;
    damaged[40] ^= 1;  // one bit of the stored data
    refused(damaged);

    // Fields patched in the central directory and the end record: sizes that do not match the data (too small,
    // an archive that inflates past what it declared, stopped early; too large; larger than we ever inflate),
    // encryption, bzip2, Zip64 in the central directory or the end record, and a central directory past the end.
    const std::size_t end = deflated.size() - 22;
    const auto u32 = [](std::size_t value) { return static_cast<std::uint32_t>(value); };
    const std::vector<std::vector<std::tuple<std::size_t, int, std::uint32_t>>> patches = {
        {{central + 24, 4, 1000}}, {{central + 24, 4, u32(text.size() + 1)}}, {{central + 24, 4, u32(zip::maximumEntrySize + 1)}},
        {{central + 8, 2, 1}},  {{central + 10, 2, 12}},  {{central + 20, 4, 0xFFFFFFFF}},
        {{end + 10, 2, 0xFFFF}, {end + 8, 2, 0xFFFF}},  {{end + 16, 4, u32(deflated.size())}}};
    for (const auto& fields : patches) {
        SCOPED_TRACE(&fields - patches.data());
        damaged = deflated;
        for (const auto& [at, width, value] : fields)
            width == 2 ? put16(damaged, at, static_cast<std::uint16_t>(value)) : put32(damaged, at, value);
        refused(damaged);
    }
}

TEST(ZipTest, RefusesNamesThatLeaveTheArchiveAndNamesTwice) {
    // Written under a harmless name of the same length, then renamed in place in both headers.
    const auto renamed = [](const std::string& to) {
        const std::string from(to.size(), 'x');
        std::string bytes = zip::write({{from, "data"}, {"other", "data"}});
        for (std::size_t at; (at = bytes.find(from)) != std::string::npos;) bytes.replace(at, to.size(), to);
        return bytes;
    };
    using namespace std::string_literals;
    for (const std::string& name : {"../evil"s, "/etc/passwd"s, "C:/evil"s, "\\evil"s, "a/../../b"s, "a\\..\\b"s, "a\0b"s, "other"s})
        expectCommonError(Case::invalidFormat, [&] { zip::Reader{renamed(name)}; });
    EXPECT_NO_THROW(zip::Reader{renamed("a..b/.c")});

    for (const std::string name : {"", "../evil", "/evil", "a/../../b"})
        expectCommonError(Case::cannotGenerateOutputZip, [&] { zip::write({{name, "data"}}); });
}
