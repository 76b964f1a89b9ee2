#pragma once
// What every text palette coder needs: bytes to UTF-8 text, lines under any ending, trimming, and
// locale-free numbers. A coder reads the file's text through these so that a byte-order mark, a
// CR LF file or a Latin-1 name is handled the same way everywhere.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace BytesParser {
class BytesReader;
}

namespace PAL::textfile {

// The file's text as UTF-8: a UTF-8 byte-order mark is dropped, a UTF-16 one (either order) is
// decoded, and bytes that are not valid UTF-8 are taken as Latin-1.
std::string fromBytes(std::string_view bytes);
// Everything left in the reader, as bytes for fromBytes.
std::string remainingBytes(BytesParser::BytesReader& reader);

// The rest of the stream, as fromBytes reads it.
std::string readText(BytesParser::BytesReader& reader);

bool isValidUTF8(std::string_view text);
std::string latin1ToUTF8(std::string_view text);
// Windows-1252 is Latin-1 except for 0x80...0x9F, where it has typographic quotes, dashes and the euro.
std::string windows1252ToUTF8(std::string_view text);
// UTF-8 to Windows-1252; a character the code page lacks becomes `replacement`.
std::string utf8ToWindows1252(std::string_view text, char replacement = '?');
// Appends one code point as UTF-8.
void appendUTF8(std::string& out, std::uint32_t codePoint);

// Lines split on LF, CR LF or a lone CR; a final line ending does not add an empty line.
std::vector<std::string_view> splitLines(std::string_view text);

bool isBlank(char c);  // space or tab
std::string_view trimmed(std::string_view text);
// Splits on runs of spaces and tabs.
std::vector<std::string_view> words(std::string_view text);
// Splits on one separator character; fields are not trimmed.
std::vector<std::string_view> fields(std::string_view text, char separator);
// The next word of `rest` (skipping blanks before it), which is removed from `rest`; empty at the end.
std::string_view nextWord(std::string_view& rest);

// Non-empty and nothing but hexadecimal digits, in either case.
bool isHexDigits(std::string_view text);

bool startsWithIgnoringCase(std::string_view text, std::string_view prefix);
// ASCII letters lowercased, every other byte as it is.
std::string lowercased(std::string_view text);

// A whole token as a decimal integer (optional sign, digits only, never octal); nullopt otherwise.
std::optional<long long> integer(std::string_view token);
// A whole token as a C-locale decimal number (optional sign, '.', exponent); nullopt otherwise,
// and for infinities and NaN.
std::optional<double> number(std::string_view token);
// The same for a field that must hold a number: throws CommonError invalidFormat otherwise.
double requiredNumber(std::string_view token);
// The hex digits of a colour token: 6 or 8 hex digits, or 3 or 4 after a '#' or "0x" (without one,
// "123" is a number and "bad" a word); nullopt for any other token.
std::optional<std::string_view> hexColorDigits(std::string_view token);

// `value` with at most `decimals` digits after the point, trailing zeros kept, always with '.'.
std::string fixed(double value, int decimals);
// `fixed` without the trailing zeros, nor a bare point: 0.55, 0, 64.37 at six decimals.
std::string fixedTrimmed(double value, int decimals);
// The shortest text that reads back as `value`, always with '.'.
std::string shortest(double value);
// `value` as C's "%g" writes it with `digits` significant digits (trailing zeros dropped), always with '.'.
std::string significant(double value, int digits);

// Line breaks and tabs inside a name would break a line-based format: they become spaces.
std::string singleLine(std::string_view text);

}  // namespace PAL::textfile
