#include "gui/host_editors/csv_guess.h"

#include <algorithm>
#include <compare>
#include <map>
#include <set>

#include "host/tables/csv/csv_scanner.h"
#include "host/tables/csv/csv_values.h"
#include "host/tables/files/input_file.h"

namespace kelvarin {

namespace {

constexpr std::size_t kMaxRecords = 200;
constexpr std::size_t kStartSize = 64 * 1024;

using Record = std::vector<std::string>;

std::vector<Record> cut(std::string_view text, bool isWhole, char separator, char quote) {
  CsvDialect dialect;
  dialect.separator = separator;
  dialect.quote = quote;
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
  for (const char separator : {',', ';', '\t', '|'}) {
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
      hasNumber = hasNumber || isNumber(field);
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

bool hasDecimalComma(const std::vector<Record>& records) {
  return std::ranges::any_of(records, [](const Record& record) {
    return std::ranges::any_of(record, [](const std::string& field) {
      return field.find(',') != field.npos && isNumberForPeople(field);
    });
  });
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

// The bytes may end within a character.
bool isUtf8Start(std::string_view text, bool isWhole) {
  for (std::size_t cutOff = 0; cutOff < (isWhole ? 1U : 4U) && cutOff <= text.size(); ++cutOff) {
    if (isUtf8(text.substr(0, text.size() - cutOff))) {
      return true;
    }
  }
  return false;
}

}  // namespace

Result<CsvStart, QString> readCsvStart(const QString& path) {
  InputFile file;
  if (const auto status = file.open(path); !status) {
    return Failure{status.error()};
  }
  CsvStart start{std::string(kStartSize, '\0')};
  const auto size = file.readAt(0, start.bytes.data(), start.bytes.size());
  if (!size) {
    return Failure{size.error()};
  }
  start.isWhole = *size < start.bytes.size();
  start.bytes.resize(*size);
  return start;
}

CsvGuess guessCsv(std::string_view start, bool isWhole) {
  CsvGuess guess;
  if (start.starts_with("\xEF\xBB\xBF")) {
    guess.hasByteOrderMark = true;
    start.remove_prefix(3);
  }
  guess.isUtf8 = isUtf8Start(start, isWhole);
  guess.lineEnd = lineEndOf(start);
  const char quote = guessQuote(start);
  std::vector<Record> best = cut(start, isWhole, ',', quote);
  if (best.empty()) {
    return guess;
  }
  char separator = ',';
  // Where two fit as well, the one that is rarer in texts.
  for (const char other : {'|', ';', '\t'}) {
    std::vector<Record> records = cut(start, isWhole, other, quote);
    const std::size_t alike = recordsAlike(records);
    const std::size_t alikeBefore = recordsAlike(best);
    const auto order = alike * best.size() <=> alikeBefore * records.size();
    if (order > 0 || (order == 0 && alike > 0 && records.front().size() >= best.front().size())) {
      best = std::move(records);
      separator = other;
    }
  }
  guess.separator = separator == '\t' ? QStringLiteral("\\t") : QString(QLatin1Char(separator));
  guess.quote = QLatin1Char(quote);
  guess.hasQuotes = start.find(quote) != start.npos;
  guess.columnCount = best.front().size();
  guess.hasHeader = looksLikeHeader(best);
  guess.nullText = guessNullText(best);
  guess.hasDecimalCommas = hasDecimalComma(best);
  return guess;
}

}  // namespace kelvarin
