#include "exchange/coders/CSVTable.h"

#include "exchange/PalErrors.h"
#include "exchange/coders/TextSupport.h"

namespace PAL::csv {

namespace {

// Enough records to tell the separator by, without reading a long file three times.
constexpr std::size_t sampleRecords = 20;

bool isBreak(char c) { return c == '\n' || c == '\r'; }

bool hasText(const Record& record) {
    for (const auto& cell : record)
        if (!cell.empty()) return true;
    return false;
}

}  // namespace

std::vector<Record> records(std::string_view text, char separator, std::size_t limit) {
    std::vector<Record> out;
    Record record;
    std::string cell;
    const auto endCell = [&] {
        record.emplace_back(textfile::trimmed(cell));
        cell.clear();
    };
    const auto endRecord = [&] {
        endCell();
        if (hasText(record)) out.push_back(std::move(record));
        record.clear();
    };
    std::size_t i = 0;
    while (i < text.size() && out.size() < limit) {
        const char c = text[i++];
        if (c == '"' && textfile::trimmed(cell).empty()) {
            cell.clear();
            for (;;) {
                if (i >= text.size()) throw CommonError(CommonError::Case::invalidFormat);
                const char q = text[i++];
                if (q != '"') cell.push_back(q);
                else if (i < text.size() && text[i] == '"') cell.push_back(text[i++]);
                else break;
            }
        } else if (c == separator) {
            endCell();
        } else if (isBreak(c)) {
            if (c == '\r' && i < text.size() && text[i] == '\n') ++i;
            endRecord();
        } else {
            cell.push_back(c);  // text after a closing quote is kept, as spreadsheets keep it
        }
    }
    if (out.size() < limit) endRecord();
    return out;
}

char detectSeparator(std::string_view text) {
    for (const char candidate : {'\t', ';', ','}) {
        const auto sample = records(text, candidate, sampleRecords);
        bool even = !sample.empty() && sample.front().size() > 1;
        for (const auto& record : sample) even = even && record.size() == sample.front().size();
        if (even) return candidate;
    }
    return ',';
}

std::string cell(std::string_view text, char separator) {
    if (text.find_first_of(std::string{separator, '"', '\n', '\r'}) == std::string_view::npos) return std::string(text);
    std::string out = "\"";
    for (const char c : text) {
        if (c == '"') out += '"';
        out += c;
    }
    return out + "\"";
}

}  // namespace PAL::csv
