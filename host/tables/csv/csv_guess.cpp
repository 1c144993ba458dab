#include "host/tables/csv/csv_guess.h"

#include <algorithm>
#include <compare>
#include <map>
#include <set>

#include "host/tables/csv/csv_number.h"
#include "host/tables/csv/csv_scanner.h"
#include "host/tables/text_input/text_input.h"

namespace kelvarin {

namespace {

constexpr std::size_t kMaxRecords = 200;
constexpr std::size_t kStartSize = 64 * 1024;
// Where two fit as well, the one that is rarer in texts comes later.
constexpr char kSeparators[] = {',', '|', ';', '\t'};

using Record = std::vector<std::string>;

std::vector<Record> cut(std::string_view text, bool isWhole, const CsvDialect& dialect) {
  CsvScanner scanner(dialect, true, 1);
  std::vector<Record> records;
  const auto add = [&] {
    const CsvRecord& record = scanner.record();
    records.emplace_back(record.fields.begin(),
                         record.fields.begin() + static_cast<std::ptrdiff_t>(record.fieldCount));
  };
  const char* next = text.data();
  const char* const end = next + text.size();
  while (records.size() < kMaxRecords && scanner.scan(next, end)) {
    add();
  }
  const bool isLastOpen = records.size() < kMaxRecords;
  if (isLastOpen && (isWhole || records.empty()) && scanner.finish()) {
    add();
  }
  return records;
}

// How many records have as many fields as the first, where these are several.
std::size_t recordsAlike(const std::vector<Record>& records) {
  if (records.empty() || records.front().size() < 2) {
    return 0;
  }
  const auto isAlike = [&](const Record& record) {
    return record.size() == records.front().size();
  };
  return static_cast<std::size_t>(std::ranges::count_if(records, isAlike));
}

// Quotes at both ends of fields; only `'` is looked for beside the usual one.
char guessQuote(std::string_view text) {
  if (text.find('"') != text.npos) {
    return '"';
  }
  for (const char separator : kSeparators) {
    const std::string between{'\'', separator, '\''};
    if (text.find(between) != text.npos) {
      return '\'';
    }
  }
  return '"';
}

bool isNumber(const std::string& field) {
  double number = 0;
  return parseNumber(field, number);
}

// Names are no numbers, and none comes twice.
bool looksLikeHeader(const std::vector<Record>& records) {
  const Record& first = records.front();
  const std::set<std::string> names(first.begin(), first.end());
  const bool areNames = std::ranges::none_of(
      first, [](const std::string& field) { return isNumber(field) || isNumberForPeople(field); });
  return areNames && names.size() == first.size();
}

// The word for a missing value that stands most often among numbers.
QString guessNullText(const std::vector<Record>& records) {
  std::map<std::string, int> counts;
  for (std::size_t column = 0; column < records.front().size(); ++column) {
    bool hasNumber = false;
    std::map<std::string, int> words;
    for (std::size_t row = 1; row < records.size(); ++row) {
      if (column >= records[row].size()) {
        continue;
      }
      const std::string& field = records[row][column];
      hasNumber = hasNumber || isNumber(field) || isNumberForPeople(field);
      if (isMissingWord(field)) {
        ++words[field];
      }
    }
    for (const auto& [word, count] : words) {
      counts[word] += hasNumber ? count : 0;
    }
  }
  const auto most = std::ranges::max_element(
      counts, {}, [](const std::pair<const std::string, int>& word) { return word.second; });
  return most == counts.end() || most->second == 0 ? QString()
                                                   : QString::fromStdString(most->first);
}

// Of numbers with commas that parsers do not read. Where commas may be either, they stand before
// decimals in a file that has another separator.
CsvNumberFormat guessNumbers(const std::vector<Record>& records, char separator) {
  constexpr CsvNumberFormat kDecimalComma{',', '.'};
  constexpr CsvNumberFormat kThousandsComma{'.', ','};
  bool hasNumbers = false;
  bool hasPoints = false;
  bool mayBeDecimal = true;
  bool mayBeThousands = true;
  std::string plain;
  for (const Record& record : records) {
    for (const std::string& field : record) {
      if (field.find(',') == field.npos || !isNumberForPeople(field)) {
        continue;
      }
      hasNumbers = true;
      hasPoints = hasPoints || field.find('.') != field.npos;
      mayBeDecimal = mayBeDecimal && toPlainNumber(field, kDecimalComma, plain);
      mayBeThousands = mayBeThousands && toPlainNumber(field, kThousandsComma, plain);
    }
  }
  if (!hasNumbers || (!mayBeDecimal && !mayBeThousands)) {
    return {};
  }
  const bool isDecimal = mayBeDecimal && (!mayBeThousands || separator != ',');
  return isDecimal ? CsvNumberFormat{',', hasPoints ? '.' : '\0'} : kThousandsComma;
}

QString lineEndOf(std::string_view text) {
  const std::size_t end = text.find_first_of("\r\n");
  if (end == text.npos) {
    return {};
  }
  if (text[end] == '\n') {
    return QStringLiteral("LF");
  }
  return text.substr(end, 2) == "\r\n" ? QStringLiteral("CR LF") : QStringLiteral("CR");
}

// All commas stand in numbers, so that they separate nothing.
bool areCommasDecimal(const std::vector<Record>& records) {
  return std::ranges::all_of(records, [](const Record& record) {
    return std::ranges::all_of(record, [](const std::string& field) {
      return field.find(',') == field.npos || isNumberForPeople(field);
    });
  });
}

struct Cutting {
  char separator;
  std::vector<Record> records;

  bool isBetterThan(const Cutting& other) const {
    const std::size_t alike = recordsAlike(records);
    const auto order =
        alike * other.records.size() <=> recordsAlike(other.records) * records.size();
    if (order != 0 || alike == 0) {
      return order > 0;
    }
    return records.front().size() >= other.records.front().size() || areCommasDecimal(records);
  }
};

std::string_view afterLines(std::string_view text, int count) {
  for (; count > 0 && !text.empty(); --count) {
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    const std::size_t endSize = text.substr(end, 2) == "\r\n" ? 2 : 1;
    text.remove_prefix(std::min(end + endSize, text.size()));
  }
  return text;
}

Cutting bestCutting(std::string_view text, bool isWhole, CsvDialect dialect,
                    const CsvGuessed& guessed) {
  Cutting best{dialect.separator, {}};
  if (!guessed.isSeparator) {
    best.records = cut(text, isWhole, dialect);
    return best;
  }
  for (const char separator : kSeparators) {
    const bool isOther = (dialect.hasQuote && separator == dialect.quote) ||
                         (dialect.hasComments && separator == dialect.comment);
    if (isOther) {
      continue;
    }
    dialect.separator = separator;
    Cutting cutting{separator, cut(text, isWhole, dialect)};
    if (best.records.empty() || cutting.isBetterThan(best)) {
      best = std::move(cutting);
    }
  }
  return best;
}

}  // namespace

Result<CsvStart, QString> readCsvStart(const QString& path) {
  TextInput file;
  if (const auto status = file.open(path, std::nullopt); !status) {
    return Failure{status.error()};
  }
  const Result<std::string_view, QString> text = file.start();
  if (!text) {
    return Failure{text.error()};
  }
  return CsvStart{std::string(text->substr(0, kStartSize)), file.encoding(),
                  file.isStartWhole() && text->size() <= kStartSize};
}

CsvGuess guessCsv(std::string_view start, bool isWhole, const CsvDialect& known,
                  CsvGuessed guessed) {
  CsvGuess guess;
  guess.separator = known.separator;
  if (start.starts_with("\xEF\xBB\xBF")) {
    guess.hasByteOrderMark = true;
    start.remove_prefix(3);
  }
  start = afterLines(start, known.skippedLines);
  guess.lineEnd = lineEndOf(start);
  CsvDialect dialect = known;
  dialect.quote = guessed.isQuote ? guessQuote(start) : known.quote;
  guess.quote = dialect.quote;
  const Cutting best = bestCutting(start, isWhole, dialect, guessed);
  if (best.records.empty()) {
    return guess;
  }
  guess.separator = best.separator;
  guess.hasQuotes = dialect.hasQuote && start.find(dialect.quote) != start.npos;
  guess.columnCount = best.records.front().size();
  guess.hasHeader = looksLikeHeader(best.records);
  guess.nullText = guessNullText(best.records);
  guess.numbers = guessNumbers(best.records, best.separator);
  return guess;
}

QString separatorText(char separator) {
  return separator == '\t' ? QStringLiteral("\\t") : QString(QLatin1Char(separator));
}

}  // namespace kelvarin
