#include "exchange/coders/RGBTextRows.h"

#include <array>
#include <cstdio>

#include "exchange/ExchangeLog.h"
#include "exchange/PalErrors.h"
#include "exchange/PalUnit.h"
#include "exchange/coders/TextSupport.h"

namespace PAL::rgbtext {

namespace {

constexpr int maxComponents = 4;

struct Row {
    std::array<double, maxComponents> values{};
    std::array<bool, maxComponents> written{};  // with a point or an exponent
    std::array<std::string_view, maxComponents + 1> nameAfter{};  // the rest of the line after k numbers
    int count = 0;
};

bool isComment(std::string_view line) {
    return line.empty() || line.front() == '#' || line.front() == '!' || line.front() == ';' || line.starts_with("//");
}

Row parseRow(std::string_view line) {
    Row row;
    while (row.count < maxComponents) {
        std::string_view rest = line;
        const std::string_view word = textfile::nextWord(rest);
        const auto value = textfile::number(word);
        if (!value) break;
        row.values[row.count] = *value;
        row.written[row.count] = word.find_first_of(".eE") != std::string_view::npos;
        line = rest;
        row.nameAfter[++row.count] = textfile::trimmed(line);
    }
    return row;
}

std::vector<Row> colorRows(std::string_view text, int components) {
    std::vector<Row> rows;
    bool everyRowHasMore = true;
    for (const auto line : textfile::splitLines(text)) {
        if (isComment(textfile::trimmed(line))) continue;
        rows.push_back(parseRow(line));
        if (rows.back().count < components) throw CommonError(CommonError::Case::invalidFormat);
        everyRowHasMore = everyRowHasMore && rows.back().count > components;
    }
    if (rows.empty() || (components == 3 && everyRowHasMore)) throw CommonError(CommonError::Case::invalidFormat);
    return rows;
}

// 255 for a file of integers, 1 for one with any decimal among its colour numbers.
double divisor(const std::vector<Row>& rows, int components, Scale scale) {
    if (scale == Scale::byte) return 255;
    bool onlyZeroAndOne = true;
    for (const auto& row : rows) {
        for (int i = 0; i < components; ++i) {
            if (row.written[i]) return 1;
            onlyZeroAndOne = onlyZeroAndOne && (row.values[i] == 0 || row.values[i] == 1);
        }
    }
    if (onlyZeroAndOne) logInfo("RGB text: every value is 0 or 1 and none has a decimal point: read as 0...255");
    return 255;
}

// Six decimals, more than any 8-bit value needs, with the point always written so that the file reads
// back as decimals even when every value is 0 or 1.
std::string unitText(double value) {
    std::string text = textfile::fixed(clampUnit(value), 6);
    while (text.ends_with('0') && !text.ends_with(".0")) text.pop_back();
    return text;
}

}  // namespace

std::vector<Color> readColors(std::string_view text, int components, Scale scale) {
    const auto rows = colorRows(text, components);
    const double d = divisor(rows, components, scale);
    std::vector<Color> colors;
    colors.reserve(rows.size());
    for (const auto& row : rows) {
        const double alpha = components == 4 ? row.values[3] / d : 1.0;
        colors.push_back(Color::rgb(row.values[0] / d, row.values[1] / d, row.values[2] / d, alpha,
                                    std::string(row.nameAfter[components])));
    }
    return colors;
}

std::string writeColors(const ColorsInOrder& colors, int components, Scale scale) {
    std::string out;
    char numbers[24];
    for (const auto& color : colors) {
        const RGB rgb = color.rgb();
        const double values[] = {rgb.rf, rgb.gf, rgb.bf, color.alpha};
        for (int i = 0; i < components; ++i) {
            if (i) out += ' ';
            if (scale == Scale::unit) {
                out += unitText(values[i]);
            } else {
                std::snprintf(numbers, sizeof numbers, "%3u", byteOf(values[i]));
                out += numbers;
            }
        }
        const std::string name = textfile::singleLine(textfile::trimmed(color.name));
        if (!name.empty()) out += '\t' + name;
        out += '\n';
    }
    return out;
}

}  // namespace PAL::rgbtext
