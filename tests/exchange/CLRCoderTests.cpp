#include <lcms2.h>

#include "BinaryCoderTestSupport.h"
#include "ExchangeTestSupport.h"
#include "exchange/PaletteCoder.h"
#include "exchange/coders/BinaryPropertyList.h"
#include "exchange/coders/Typedstream.h"

using namespace PAL;
using namespace binarytest;
using Case = CommonError::Case;
using bplist::Value;

namespace {

const auto keyedCoder = makeCLRCoder();
const auto typedstreamCoder = makeCLRCoder(CLREncoding::typedstream);

// Two calibrated colours as AppKit archives them: "Red" 1, 0, 0, 1 and "Grey 50%" white 0.5, 1.
const std::string calibratedStream = hexBytes(
    "04 0B 73 74 72 65 61 6D 74 79 70 65 64 81 E8 03"
    "84 01 69 01 84 02 40 69 85 02 84 02 40 40 84 84"
    "84 07 4E 53 43 6F 6C 6F 72 00 84 84 08 4E 53 4F"
    "62 6A 65 63 74 00 85 84 01 63 01 84 04 66 66 66"
    "66 01 00 00 01 86 84 84 84 08 4E 53 53 74 72 69"
    "6E 67 01 94 84 01 2B 03 52 65 64 86 94 84 93 97"
    "03 84 02 66 66 83 00 00 00 3F 01 86 84 96 9A 08"
    "47 72 65 79 20 35 30 25 86");

std::string withByte(std::string bytes, size_t at, char value) {
    bytes[at] = value;
    return bytes;
}

// A typed stream of a list: format 1, a nil slot, the count, then what `entries` writes.
template <typename Entries>
std::string typedList(int64_t count, Entries&& entries) {
    typedstream::Writer out;
    out.group("i");
    out.integer(1);
    out.group("@i");
    out.nil();
    out.integer(count);
    entries(out);
    return out.data();
}

void writeKey(typedstream::Writer& out, std::string_view key) {
    out.beginObject({{"NSString", 1}, {"NSObject", 0}});
    out.group("+");
    out.unsharedString(key);
    out.endObject();
}

// An NSColor of the given kind, left open for what that kind holds.
void beginColor(typedstream::Writer& out, uint8_t kind) {
    out.beginObject({{"NSColor", 0}, {"NSObject", 0}});
    out.group("c");
    out.byte(kind);
}

void writeColor(typedstream::Writer& out, uint8_t kind, std::vector<float> components) {
    beginColor(out, kind);
    out.group(std::string(components.size(), 'f'));
    for (float component : components) out.real(component);
    out.endObject();
}

// "$objects" built by hand: the test adds colours and whatever they refer to, then names the entries.
struct KeyedList {
    uint64_t add(Value value) {
        objects.push_back(std::move(value));
        return objects.size() - 1;
    }
    uint64_t color(std::vector<std::pair<std::string, Value>> fields) {
        fields.emplace_back("$class", Value::uid(colorClass));
        return add(Value::dictionary(std::move(fields)));
    }
    uint64_t key(std::string text) { return add(Value::string(std::move(text))); }
    // Entries by the numbers of their key and colour.
    std::string archive(const std::vector<std::pair<uint64_t, uint64_t>>& entries) {
        std::vector<Value> keys, colors;
        for (const auto& [key, color] : entries) {
            keys.push_back(Value::uid(key));
            colors.push_back(Value::uid(color));
        }
        const auto keysArray = add(Value::dictionary({{"NS.objects", Value::array(keys)}}));
        const auto colorsArray = add(Value::dictionary({{"NS.objects", Value::array(colors)}}));
        return bplist::write(Value::dictionary({{"$archiver", Value::string("NSKeyedArchiver")},
                                                {"$top", Value::dictionary({{"NSKeys", Value::uid(keysArray)},
                                                                            {"NSColors", Value::uid(colorsArray)}})},
                                                {"$objects", Value::array(objects)}}));
    }

    std::vector<Value> objects{Value::string("$null"),
                               Value::dictionary({{"$classname", Value::string("NSColor")},
                                                  {"$classes", Value::array({Value::string("NSColor"), Value::string("NSObject")})}})};
    const uint64_t colorClass = 1;
};

std::string savedProfile(cmsHPROFILE profile, const char* description) {
    if (description) {
        cmsMLU* text = cmsMLUalloc(nullptr, 1);
        cmsMLUsetASCII(text, "en", "US", description);
        cmsWriteTag(profile, cmsSigProfileDescriptionTag, text);
        cmsMLUfree(text);
    }
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(profile, nullptr, &size);
    std::string bytes(size, '\0');
    cmsSaveProfileToMem(profile, bytes.data(), &size);
    cmsCloseProfile(profile);
    return bytes;
}

// sRGB's primaries with red and green swapped: its red is sRGB's green.
std::string swappedPrimariesProfile() {
    cmsCIExyY white{0.3127, 0.3290, 1.0};
    cmsCIExyYTRIPLE primaries{{0.30, 0.60, 1.0}, {0.64, 0.33, 1.0}, {0.15, 0.06, 1.0}};
    cmsToneCurve* linear = cmsBuildGamma(nullptr, 1.0);
    cmsToneCurve* curves[3] = {linear, linear, linear};
    cmsHPROFILE profile = cmsCreateRGBProfile(&white, &primaries, curves);
    cmsFreeToneCurve(linear);
    return savedProfile(profile, "Swapped");
}

}  // namespace

TEST(CLRCoder, TypedstreamIsWrittenInAppKitsLayout) {
    // Device kinds (2 and 4) where the calibrated sample has 1 and 3; every other byte is AppKit's.
    const Palette palette({}, {Color::rgb(1, 0, 0, 1, "Red"), Color::gray(0.5, 1, "Grey 50%")});
    const auto expected = withByte(withByte(calibratedStream, 0x3A, 2), 0x60, 4);
    EXPECT_EQ(hexOf(typedstreamCoder->encode(palette)), hexOf(expected));

    for (const auto& bytes : {calibratedStream, expected}) {
        const auto read = keyedCoder->decode(bytes);
        EXPECT_EQ(read.format, PaletteFormat::clr);
        EXPECT_EQ(read.colors, palette.colors);
    }
}

TEST(CLRCoder, TypedstreamKindsSharedObjectsAndUnsupportedEntries) {
    // A second entry that refers back to the first entry's colour object.
    const auto shared = keyedCoder->decode(withByte(calibratedStream, 0x19, 3) + hexBytes("94 92 84 96 9A 04 53 61 6D 65 86"));
    ASSERT_EQ(shared.colors.size(), 3u);
    EXPECT_EQ(shared.colors[2].name, "Same");
    expectComponents(shared.colors[2], ColorSpace::RGB, {1, 0, 0});

    LogCapture log;
    const auto read = keyedCoder->decode(typedList(4, [](typedstream::Writer& out) {
        out.group("@@");
        writeColor(out, 5, {0.25f, 0.5f, 0.75f, 1, 0.5f});
        writeKey(out, "Ink");
        out.group("@@");  // a catalogue colour: its fallback stands in
        beginColor(out, 6);
        out.group("@@@");
        writeKey(out, "System");
        writeKey(out, "controlColor");
        writeColor(out, 3, {0.75f, 1});
        out.endObject();
        writeKey(out, "Control");
        out.group("@@");  // a pattern: left out, the list goes on
        beginColor(out, 9);
        out.group("@");
        out.nil();
        out.endObject();
        writeKey(out, "Pattern");
        out.group("@@");
        writeColor(out, 2, {0, 0, 1, 1});
        out.nil();  // no key
    }));
    ASSERT_EQ(read.colors.size(), 3u);
    EXPECT_EQ(read.colors[0], Color::cmyk(0.25, 0.5, 0.75, 1, 0.5, "Ink"));
    EXPECT_EQ(read.colors[1], Color::gray(0.75, 1, "Control"));
    EXPECT_EQ(read.colors[2], Color::rgb(0, 0, 1, 1, ""));
    EXPECT_TRUE(log.contains("PAL.Coder.CLR: Unsupported color (kind 9) at index 2, skipping..."));

    // Nothing but unsupported entries is not an empty list.
    expectCommonError(Case::unsupportedColorspace, [] {
        keyedCoder->decode(typedList(1, [](typedstream::Writer& out) {
            out.group("@@");
            beginColor(out, 10);
            out.endObject();
            out.nil();
        }));
    });
}

TEST(CLRCoder, KeyedArchiveIsWrittenAsTheArchiverLaysItOut) {
    const auto text = [](std::string_view marker, std::string_view body) { return hexBytes(marker) + std::string(body); };
    const std::string expected =
        "bplist00" +
        hexBytes("D4 01 02 03 04 05 06 07 0C") +            //  0 the archive: $version, $archiver, $top, $objects
        text("58", "$version") + text("59", "$archiver") + text("54", "$top") + text("58", "$objects") +
        hexBytes("12 00 01 86 A0") +                        //  5 100000
        text("5F 10 0F", "NSKeyedArchiver") +               //  6
        hexBytes("D2 08 09 0A 0B") +                        //  7 $top
        text("56", "NSKeys") + text("58", "NSColors") +     //  8, 9
        hexBytes("80 01 80 04") +                           // 10, 11 their UIDs
        hexBytes("A7 0D 0E 14 15 1C 20 26") +               // 12 $objects
        text("55", "$null") +                               // 13 [0]
        hexBytes("D2 0F 10 11 13") +                        // 14 [1] the keys array
        text("5A", "NS.objects") + text("56", "$class") +   // 15, 16
        hexBytes("A1 12 80 02 80 03") +                     // 17-19 [UID 2], UID 3
        text("53", "Red") +                                 // 20 [2]
        hexBytes("D2 16 17 18 19") +                        // 21 [3] the array class
        text("5A", "$classname") + text("58", "$classes") + text("5E", "NSMutableArray") +  // 22-24
        hexBytes("A3 18 1A 1B") + text("57", "NSArray") + text("58", "NSObject") +          // 25-27
        hexBytes("D2 0F 10 1D 1F A1 1E 80 05 80 03") +      // 28-31 [4] the colours array
        hexBytes("D3 21 22 10 23 24 25") +                  // 32 [5] the colour
        text("5C", "NSColorSpace") + text("55", "NSRGB") +  // 33, 34
        hexBytes("10 02 46 31 20 30 20 30 00 80 06") +      // 35-37 2, <"1 0 0" NUL>, UID 6
        hexBytes("D2 16 17 27 28") + text("57", "NSColor") + hexBytes("A2 27 1B") +  // 38-40 [6] the colour class
        hexBytes("0008 0011 001A 0024 0029 0032 0037 0049 004E 0055 005E 0060 0062 006A"
                 "0070 0075 0080 0087 0089 008B 008D 0091 0096 00A1 00AA 00B9 00BD 00C5"
                 "00CE 00D3 00D5 00D7 00D9 00E0 00ED 00F3 00F5 00FC 00FE 0103 010B") +
        hexBytes("00 00 00 00 00 00 02 01 0000000000000029 0000000000000000 000000000000010E");

    const Palette palette({}, {Color::rgb(1, 0, 0, 1, "Red")});
    EXPECT_EQ(hexOf(keyedCoder->encode(palette)), hexOf(expected));
    EXPECT_EQ(typedstreamCoder->decode(expected).colors, palette.colors);
}

TEST(CLRCoder, KeyedArchiveColorSpaces) {
    KeyedList list;
    const auto profile = [&](std::string icc) {
        return list.add(Value::dictionary({{"NSID", Value::integer(7)}, {"NSICC", Value::uid(list.add(Value::data(std::move(icc))))}}));
    };
    const auto srgb = profile(savedProfile(cmsCreate_sRGBProfile(), nullptr));
    const auto swapped = profile(swappedPrimariesProfile());
    // What current AppKit writes: the picked components in sRGB, and the calibrated conversion beside them.
    const auto picked = list.color({{"NSColorSpace", Value::integer(1)},
                                    {"NSRGB", Value::data(std::string("0.1 0.2 0.3\0", 12))},
                                    {"NSComponents", Value::data("0.18 0.2 0.25 1")},
                                    {"NSCustomColorSpace", Value::uid(srgb)}});
    const auto converted = list.color({{"NSColorSpace", Value::integer(10)},
                                       {"NSComponents", Value::data("1 0 0 0.5")},
                                       {"NSCustomColorSpace", Value::uid(swapped)}});
    const auto unknownSpace = list.color({{"NSColorSpace", Value::integer(1)},
                                          {"NSComponents", Value::data("0.5 0.25 0 1")},
                                          {"NSCustomColorSpace", Value::uid(list.add(Value::dictionary({{"NSID", Value::integer(99)}})))}});
    const auto white = list.color({{"NSColorSpace", Value::integer(3)}, {"NSWhite", Value::data("0.25 0.5")}});
    const auto cmyk = list.color({{"NSColorSpace", Value::integer(5)}, {"NSCYMK", Value::data("0 1 0 0")}});
    const auto pattern = list.color({{"NSColorSpace", Value::integer(10)}});
    const auto catalog = list.color({{"NSColorSpace", Value::integer(6)},
                                     {"NSCatalogName", Value::string("System")},
                                     {"NSColorName", Value::string("textColor")},
                                     {"NSColor", Value::uid(white)}});
    const auto mutableKey = list.add(Value::dictionary({{"NS.string", Value::string("Mutable")}}));

    LogCapture log;
    const auto read = keyedCoder->decode(list.archive({{list.key("Picked"), picked},
                                                       {list.key("P"), converted},
                                                       {list.key("Unknown"), unknownSpace},
                                                       {list.key("Pattern"), pattern},
                                                       {mutableKey, white},
                                                       {list.key("Ink"), cmyk},
                                                       {list.key("Text"), catalog},
                                                       {list.key("Again"), picked}}));
    ASSERT_EQ(read.colors.size(), 7u);
    EXPECT_EQ(read.colors[0], Color::rgb(0.18, 0.2, 0.25, 1, "Picked"));
    expectComponents(read.colors[1], ColorSpace::RGB, {0, 1, 0}, 2e-3);
    EXPECT_EQ(read.colors[1].alpha, 0.5);
    EXPECT_EQ(read.colors[2], Color::rgb(0.5, 0.25, 0, 1, "Unknown"));
    EXPECT_EQ(read.colors[3], Color::gray(0.25, 0.5, "Mutable"));
    EXPECT_EQ(read.colors[4], Color::cmyk(0, 1, 0, 0, 1, "Ink"));
    EXPECT_EQ(read.colors[5], Color::gray(0.25, 0.5, "Text"));
    EXPECT_EQ(read.colors[6], Color::rgb(0.18, 0.2, 0.25, 1, "Again"));
    EXPECT_NE(read.colors[6].id, read.colors[0].id);
    EXPECT_TRUE(log.contains("PAL.Coder.CLR: Unsupported color (kind 10) at index 3, skipping..."));
    EXPECT_TRUE(log.contains("PAL.Coder.CLR: Color at index 2 has no known color space, assuming sRGB"));
}

TEST(CLRCoder, WritingFlattensAndKeepsEveryColourUnderItsOwnKey) {
    Palette palette({}, {Color::rgb(1, 0, 0, 1, "Red"), Color::rgb(0.2, 0.4, 0.6, 0.3, "Red"), Color::rgb(1, 0.5, 0)});
    palette.groups.push_back(Group("Inks", {Color::cmyk(0.1, 0.2, 0.3, 0.4, 1, "Red"), Color::gray(0.3, 1, "Shade"),
                                            Color::lab(50, 20, -30, 1, "Lab")}));
    for (const auto* clr : {keyedCoder.get(), typedstreamCoder.get()}) {
        const auto read = decode(clr->encode(palette), "clr");
        ASSERT_EQ(read.colors.size(), 6u);
        EXPECT_TRUE(read.groups.empty());
        std::vector<std::string> names;
        for (const auto& color : read.colors) names.push_back(color.name);
        EXPECT_EQ(names, (std::vector<std::string>{"Red", "Red 2", "#FF8000", "Red 3", "Shade", "Lab"}));
        for (size_t i = 0; i < 5; ++i) {
            Color written = palette.allColors()[i];
            written.name = names[i];
            EXPECT_TRUE(read.colors[i].isEqual(written, 6)) << i;
        }
        EXPECT_EQ(read.colors[5].colorSpace, ColorSpace::RGB);  // Lab goes out as RGB
        EXPECT_EQ(read.colors[5].hexString(), palette.groups[0].colors[2].hexString());
    }
}

TEST(CLRCoder, RealListsFromDesignTokenPackages) {
    // Both written by their makers' tools as device RGB typed streams.
    const struct {
        const char* file;
        size_t count;
        const char* firstName;
        const char* firstHex;
        const char* lastName;
    } lists[] = {{"clr/Polaris.clr", 58, "purple-text", "50495a", "white"},
                 {"clr/ibm-colors.clr", 202, "ultramarine 1", "e7e9f7", "warm-white 4"}};
    // They come from the npm registry, which the fixture may not have reached; it says so when it did not.
    if (!std::filesystem::exists(realPalettes() / "clr" / ".done")) GTEST_SKIP() << "no color lists were fetched from npm";
    for (const auto& expected : lists) {
        const auto bytes = realFile(expected.file);
        const auto read = keyedCoder->decode(bytes);
        ASSERT_EQ(read.colors.size(), expected.count) << expected.file;
        EXPECT_EQ(read.colors.front().name, expected.firstName);
        EXPECT_EQ(read.colors.front().hexString(), expected.firstHex);
        EXPECT_EQ(read.colors.back().name, expected.lastName);
        // The typed stream writes AppKit's bytes back; the keyed archive reads back the same colours.
        EXPECT_EQ(typedstreamCoder->encode(read), bytes) << expected.file;
        EXPECT_EQ(keyedCoder->decode(keyedCoder->encode(read)).colors, read.colors) << expected.file;
    }
}

TEST(CLRCoder, RefusesWhatIsNotAColourList) {
    const auto refused = [](std::string_view bytes) {
        return commonError([&] { keyedCoder->decode(bytes); }).value_or(Case::notImplemented);
    };
    const auto keyed = keyedCoder->encode(Palette({}, {Color::rgb(1, 0, 0, 1, "Red")}));
    // Cut anywhere, either encoding is refused, never read past its end.
    for (const auto& whole : {calibratedStream, keyed})
        for (size_t length = 0; length < whole.size(); ++length)
            EXPECT_EQ(refused(std::string_view(whole).substr(0, length)), Case::invalidFormat) << length;

    EXPECT_EQ(refused(withByte(calibratedStream, 0, 3)), Case::invalidFormat);        // an older stream version
    EXPECT_EQ(refused(withByte(calibratedStream, 4, 'T')), Case::invalidFormat);      // not "streamtyped"
    EXPECT_EQ(refused(withByte(calibratedStream, 0x57, 0x7F)), Case::invalidFormat);  // a key longer than the file
    EXPECT_EQ(refused(withByte(calibratedStream, 0x5E, 0x99)), Case::invalidFormat);  // a class not yet in the table
    EXPECT_EQ(refused(withByte(calibratedStream, 0x19, 0x83)), Case::invalidFormat);  // a float tag for the count
    EXPECT_EQ(refused("bplist01" + keyed.substr(8)), Case::invalidFormat);
    EXPECT_EQ(refused(withByte(keyed, keyed.size() - 1, 0x7F)), Case::invalidFormat);  // offset table past the end
    EXPECT_EQ(refused(withByte(keyed, keyed.size() - 9, 0x7F)), Case::invalidFormat);  // a top object that is not there
    // An array that claims 2^63 members is refused without making room for them.
    const auto huge = hexBytes("AF 13 7F FF FF FF FF FF FF FF 08 00 00 00 00 00 00 01 01"
                               "0000000000000001 0000000000000000 0000000000000012");
    EXPECT_EQ(commonError([&] { bplist::Document("bplist00" + huge).object(0); }), Case::invalidFormat);
    // 16384 objects that overlap, each 16 KiB of the same 64 KiB: reading them all would read the file
    // thousands of times over, and is refused early.
    std::string overlapping = "bplist00";
    for (int i = 0; i < 16384; ++i) overlapping += hexBytes("4F 11 40 00");
    const auto bigEndian = [](uint64_t value, int bytes) {
        std::string out;
        for (int i = bytes - 1; i >= 0; --i) out += static_cast<char>((value >> (8 * i)) & 0xFF);
        return out;
    };
    const size_t table = overlapping.size();
    for (uint32_t i = 0; i < 16384; ++i) overlapping += bigEndian(8 + 4 * i, 4);
    overlapping += hexBytes("00 00 00 00 00 00 04 02") + bigEndian(16384, 8) + bigEndian(0, 8) + bigEndian(table, 8);
    const bplist::Document document(overlapping);
    size_t read = 0;
    EXPECT_EQ(commonError([&] {
                  for (; read < 16384; ++read) document.object(read);
              }),
              Case::invalidFormat);
    EXPECT_LT(read, 1000u);  // not where the objects would start to run past the end (12288)

    // A catalogue colour whose fallback is itself, and a key that is its own keys array.
    KeyedList loop;
    const auto self = loop.color({{"NSColorSpace", Value::integer(6)}, {"NSColor", Value::uid(loop.objects.size())}});
    EXPECT_EQ(refused(loop.archive({{loop.key("Loop"), self}})), Case::invalidFormat);
    KeyedList keys;
    const auto red = keys.color({{"NSColorSpace", Value::integer(2)}, {"NSRGB", Value::data("1 0 0")}});
    const auto ownArray = keys.add(Value::dictionary({{"NS.string", Value::uid(keys.objects.size() + 1)}}));
    EXPECT_EQ(refused(keys.archive({{ownArray, red}})), Case::invalidFormat);
    // A UID past "$objects", and components that are not numbers.
    KeyedList broken;
    const auto past = broken.color({{"NSColorSpace", Value::integer(2)}, {"NSRGB", Value::uid(999)}});
    const auto word = broken.color({{"NSColorSpace", Value::integer(2)}, {"NSRGB", Value::data("1 0 nan")}});
    EXPECT_EQ(refused(broken.archive({{broken.key("Past"), past}})), Case::invalidFormat);
    EXPECT_EQ(refused(broken.archive({{broken.key("Word"), word}})), Case::invalidFormat);

    // One long key referred back to by many entries would be far larger read than stored.
    const std::string longKey(4000, 'k');
    std::string repeated = typedList(1000, [&](typedstream::Writer& out) {
        out.group("@@");
        writeColor(out, 2, {1, 0, 0, 1});
        writeKey(out, longKey);
    });
    for (int i = 1; i < 1000; ++i) repeated += hexBytes("94 92 95");  // "@@", the first colour, the first key
    EXPECT_EQ(refused(repeated), Case::invalidFormat);
}
