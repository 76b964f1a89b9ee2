#pragma once
// Comma-separated tables as spreadsheets write them: RFC 4180 quoting, and the separator (',', ';' or
// TAB) found from the table itself.
#include <cstddef>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace PAL::csv {

using Record = std::vector<std::string>;

// The records of `text` (at most `limit`). A quoted cell may hold separators, line breaks and doubled
// quotes; every cell is trimmed of blanks, inside quotes too; records with no text at all are dropped.
// Throws CommonError invalidFormat on a quote that is never closed.
std::vector<Record> records(std::string_view text, char separator,
                            std::size_t limit = std::numeric_limits<std::size_t>::max());

// The separator that splits each of the first records into the same number of cells, more than one:
// TAB, then ';' (spreadsheets with a decimal comma), then ','. ',' when none does.
char detectSeparator(std::string_view text);

// A cell as written: quoted, with quotes doubled, when it holds the separator, a quote or a line break.
std::string cell(std::string_view text, char separator);

}  // namespace PAL::csv
