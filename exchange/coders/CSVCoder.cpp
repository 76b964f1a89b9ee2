// CSV colour tables. Files in the wild put the name first, last or in the middle, give the colour as
// hex, as three number columns or as one "r g b" cell, and sometimes head the columns. With a header
// whose names we know, the columns are taken by name; otherwise each row is read by what its cells
// look like. We write "name,hex,r,g,b" (",a" when a colour is translucent), which any spreadsheet opens.
#include "exchange/coders/CSVCoder.h"

#include <algorithm>
#include <array>

#include "exchange/BytesReader.h"
#include "exchange/PalErrors.h"
#include "exchange/PalUnit.h"
#include "exchange/coders/CSVTable.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/TextSupport.h"

namespace PAL {

namespace {

CommonError invalid() { return CommonError(CommonError::Case::invalidFormat); }

enum class Column { other, name, hex, red, green, blue, alpha, rgb };

Column columnNamed(std::string_view header) {
    std::string key(header);
    std::transform(key.begin(), key.end(), key.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (key == "name" || key == "label" || key == "title" || key == "color name" || key == "colour name") return Column::name;
    if (key == "hex" || key == "html" || key == "code" || key == "rgb_code" || key == "hex code" || key == "#" ||
        key == "color" || key == "colour")
        return Column::hex;
    if (key == "r" || key == "red") return Column::red;
    if (key == "g" || key == "green") return Column::green;
    if (key == "b" || key == "blue") return Column::blue;
    if (key == "a" || key == "alpha" || key == "opacity") return Column::alpha;
    if (key == "rgb") return Column::rgb;
    return Column::other;
}

// A colour found in a row, kept until the whole file tells whether its numbers are 0...255 or 0...1.
struct Entry {
    std::optional<RGB> hex;
    std::array<double, 3> numbers{};
    std::optional<double> alpha;  // as written, on the file's number scale
    std::string name;
};

// Reads the rows of one file: its separator decides whether ',' can be a decimal comma, and
// `decimals` records whether any colour number was written with a fraction.
class RowReader {
public:
    RowReader(char separator, ColorByteFormat hexFormat) : decimalComma_(separator != ','), hexFormat_(hexFormat) {}

    bool decimals() const { return decimals_; }

    std::optional<double> number(std::string_view cell) const {
        if (const auto value = textfile::number(cell)) return value;
        if (!decimalComma_ || std::count(cell.begin(), cell.end(), ',') != 1) return std::nullopt;
        std::string pointed(cell);
        std::replace(pointed.begin(), pointed.end(), ',', '.');
        return textfile::number(pointed);
    }

    static bool isHex(std::string_view cell) { return textfile::hexColorDigits(cell).has_value(); }

    RGB hex(std::string_view cell) const {
        // rgb and bgr have no alpha digits; their 8-digit form carries alpha last.
        ColorByteFormat format = hexFormat_;
        if (format == ColorByteFormat::rgb) format = ColorByteFormat::rgba;
        if (format == ColorByteFormat::bgr) format = ColorByteFormat::bgra;
        return parseHex(cell, format);
    }

    // Takes the number and notes whether it had a fraction; nullopt for a cell that is not a number.
    std::optional<double> component(std::string_view cell) {
        const auto value = number(cell);
        if (value && cell.find_first_of(decimalComma_ ? ".eE," : ".eE") != std::string_view::npos) decimals_ = true;
        return value;
    }

    // "255 255 0" (or with an alpha) in one cell.
    bool readTriple(std::string_view cell, Entry& entry) {
        const auto words = textfile::words(cell);
        if (words.size() != 3 && words.size() != 4) return false;
        for (const auto word : words)
            if (!number(word)) return false;
        for (std::size_t i = 0; i < 3; ++i) entry.numbers[i] = *component(words[i]);
        if (words.size() == 4) entry.alpha = component(words[3]);
        return true;
    }

private:
    bool decimalComma_;
    ColorByteFormat hexFormat_;
    bool decimals_ = false;
};

// Rows under a header: each column holds what its name says.
class HeadedRows {
public:
    explicit HeadedRows(const csv::Record& header) {
        for (std::size_t i = 0; i < header.size(); ++i) {
            const Column column = columnNamed(header[i]);
            if (column != Column::other && !index_[static_cast<int>(column)]) index_[static_cast<int>(column)] = i;
        }
    }

    bool knowsColors() const { return (has(Column::red) && has(Column::green) && has(Column::blue)) || has(Column::hex) || has(Column::rgb); }

    Entry read(const csv::Record& record, RowReader& reader) const {
        Entry entry;
        const auto cell = [&](Column column) -> std::string_view {
            const auto& i = index_[static_cast<int>(column)];
            return i && *i < record.size() ? std::string_view(record[*i]) : std::string_view();
        };
        const std::string_view red = cell(Column::red), green = cell(Column::green), blue = cell(Column::blue);
        if (reader.number(red) && reader.number(green) && reader.number(blue)) {
            entry.numbers = {*reader.component(red), *reader.component(green), *reader.component(blue)};
        } else if (reader.isHex(cell(Column::hex))) {
            entry.hex = reader.hex(cell(Column::hex));
        } else if (!reader.readTriple(cell(Column::rgb), entry)) {
            throw invalid();
        }
        if (const auto alpha = reader.component(cell(Column::alpha))) entry.alpha = alpha;
        entry.name = std::string(cell(Column::name));
        return entry;
    }

private:
    bool has(Column column) const { return index_[static_cast<int>(column)].has_value(); }

    std::array<std::optional<std::size_t>, 8> index_{};
};

// A row without a header: three numbers in a row (and a fourth for alpha), or a cell holding them, or
// a hex cell; a row of nothing but hex cells is a list of colours. The first other text is the name.
void readUnheadedRow(const csv::Record& record, RowReader& reader, std::vector<Entry>& entries) {
    Entry entry;
    std::vector<bool> used(record.size(), false);
    bool found = false;
    for (std::size_t i = 0; i + 2 < record.size() && !found; ++i) {
        if (!reader.number(record[i]) || !reader.number(record[i + 1]) || !reader.number(record[i + 2])) continue;
        for (std::size_t k = 0; k < 3; ++k) {
            entry.numbers[k] = *reader.component(record[i + k]);
            used[i + k] = true;
        }
        if (i + 3 < record.size() && reader.number(record[i + 3])) {
            entry.alpha = reader.component(record[i + 3]);
            used[i + 3] = true;
        }
        found = true;
    }
    for (std::size_t i = 0; i < record.size() && !found; ++i) found = used[i] = reader.readTriple(record[i], entry);
    if (!found) {
        std::vector<std::size_t> hexCells;
        for (std::size_t i = 0; i < record.size(); ++i)
            if (reader.isHex(record[i])) hexCells.push_back(i);
        if (hexCells.empty()) throw invalid();
        const bool onlyHex = std::all_of(record.begin(), record.end(), [&](const auto& cell) { return cell.empty() || reader.isHex(cell); });
        if (onlyHex && hexCells.size() > 1) {
            for (const auto i : hexCells) entries.push_back(Entry{reader.hex(record[i]), {}, {}, {}});
            return;
        }
        entry.hex = reader.hex(record[hexCells.front()]);
        used[hexCells.front()] = true;
    }
    for (std::size_t i = 0; i < record.size() && entry.name.empty(); ++i)
        if (!used[i] && !reader.number(record[i]) && !reader.isHex(record[i])) entry.name = record[i];
    entries.push_back(std::move(entry));
}

// A header has neither numbers nor colours, and rows follow it.
bool isHeader(const std::vector<csv::Record>& rows, const RowReader& reader) {
    return rows.size() > 1 && std::none_of(rows.front().begin(), rows.front().end(), [&](const auto& cell) {
               return reader.number(cell) || reader.isHex(cell);
           });
}

}  // namespace

Palette CSVCoder::decode(BytesParser::BytesReader& bytes) const {
    const std::string text = textfile::readText(bytes);
    const char separator = csv::detectSeparator(text);
    const auto rows = csv::records(text, separator);
    RowReader reader(separator, hexFormat);

    std::vector<Entry> entries;
    const bool headed = isHeader(rows, reader);
    const HeadedRows header(headed ? rows.front() : csv::Record());
    for (std::size_t i = headed ? 1 : 0; i < rows.size(); ++i) {
        if (header.knowsColors()) entries.push_back(header.read(rows[i], reader));
        else readUnheadedRow(rows[i], reader, entries);
    }
    if (entries.empty()) throw invalid();

    const double divisor = reader.decimals() ? 1 : 255;
    Palette palette;
    palette.format = PaletteFormat::csv;
    for (auto& entry : entries) {
        const RGB rgb = entry.hex ? *entry.hex : RGB{entry.numbers[0] / divisor, entry.numbers[1] / divisor, entry.numbers[2] / divisor};
        const double alpha = entry.alpha ? *entry.alpha / divisor : rgb.af;
        palette.colors.push_back(Color::rgb(rgb.rf, rgb.gf, rgb.bf, alpha, std::move(entry.name)));
    }
    return palette;
}

std::string CSVCoder::encode(const Palette& palette) const {
    const auto colors = palette.eachColor();
    const bool withAlpha = std::any_of(colors.begin(), colors.end(), [](const Color& c) { return byteOf(c.alpha) < 255; });
    std::string out = withAlpha ? "name,hex,r,g,b,a\n" : "name,hex,r,g,b\n";
    for (const auto& color : colors) {
        const RGB rgb = color.rgb();
        out += csv::cell(color.name, ',') + ',' + color.hexString(hexFormat, true) + ',' + std::to_string(byteOf(rgb.rf)) +
               ',' + std::to_string(byteOf(rgb.gf)) + ',' + std::to_string(byteOf(rgb.bf));
        if (withAlpha) out += ',' + std::to_string(byteOf(color.alpha));
        out += '\n';
    }
    return out;
}

std::unique_ptr<PaletteCoder> makeCSVCoder() { return std::make_unique<CSVCoder>(); }

}  // namespace PAL
