#include "cli/row_printer.h"

#include <cstdio>

#include <unistd.h>

#include "cli/console.h"
#include "cli/printable_text.h"
#include "cli/value_json.h"
#include "host/contract/batch_collector.h"

namespace kelvarin {

namespace {

// So many rows have their widths together; the next ones get a table of their own.
constexpr std::size_t kRowsInTable = 1000;
constexpr char kNull[] = "null";

bool isForTerminal() {
  static const bool isTerminal = ::isatty(STDOUT_FILENO) != 0;
  return isTerminal;
}

// Of numbers and keys.
double numberOf(MetaTypeColumn type, const unsigned char* bytes) {
  if (type == MetaTypeColumn::number) {
    return numberFromBytes(bytes);
  }
  const std::uint32_t key = keyFromBytes(bytes);
  return isNullKey(key) ? kNullNumber : key;
}

bool isNumeric(MetaTypeColumn type) {
  return fixedSizeOf(type) != 0;
}

std::vector<TableColumn> tableColumnsOf(const OneRow& row) {
  std::vector<TableColumn> columns;
  columns.reserve(static_cast<std::size_t>(row.sz()));
  for (int i = 0; i < row.sz(); ++i) {
    columns.push_back({printable(row.colName(i).toStdString(), LineBreaks::escape),
                       isNumeric(row.getMetaType(i))});
  }
  return columns;
}

std::string jsonString(std::string_view text) {
  return Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace

void printData(std::string_view text) {
  const std::string shown = isForTerminal() ? printable(text, LineBreaks::keep) : std::string();
  const std::string_view output = isForTerminal() ? std::string_view(shown) : text;
  std::fwrite(output.data(), 1, output.size(), stdout);
}

std::string cellOfText(std::string_view text) {
  const bool needsQuotes = text.empty() || text == kNull || text.front() == ' ' ||
                           text.back() == ' ' || text.front() == '"';
  const std::string shown = printable(text);
  return needsQuotes ? '"' + shown + '"' : shown;
}

std::string cellOf(MetaTypeColumn type, const unsigned char* bytes) {
  if (isNumeric(type)) {
    const double number = numberOf(type, bytes);
    return isNullNumber(number) ? kNull : shortestText(number).toStdString();
  }
  return isNullText(bytes) ? kNull : cellOfText(textFromBytes(bytes));
}

std::string jsonTextOf(MetaTypeColumn type, const unsigned char* bytes) {
  if (!isNumeric(type)) {
    return isNullText(bytes) ? kNull : jsonString(textFromBytes(bytes));
  }
  const double number = numberOf(type, bytes);
  if (isNullNumber(number)) {
    return kNull;
  }
  const std::string text = shortestText(number).toStdString();
  return isFiniteNumber(number) ? text : jsonString(text);
}

void RowFormatOption::addTo(CLI::App& command) {
  command.add_option("--format", given, "table, csv or json [a table on a terminal, else csv]")
      ->check(CLI::IsMember({"table", "csv", "json"}))
      ->type_name("FORM");
}

RowFormat RowFormatOption::format() const {
  if (given.empty()) {
    return isForTerminal() ? RowFormat::table : RowFormat::csv;
  }
  return given == "table" ? RowFormat::table : given == "csv" ? RowFormat::csv : RowFormat::json;
}

RowPrinter::RowPrinter(RowFormat format, const OneRow& columns)
    : m_format(format), m_types(typesOf(columns)), m_table(tableColumnsOf(columns)) {
  if (format == RowFormat::csv) {
    m_csv = std::make_unique<CsvBatchFormat>(CsvDialect{}, m_types);
    printData(m_csv->encodeNames(columns)->text());
  }
  for (int i = 0; i < columns.sz(); ++i) {
    m_jsonNames.push_back(jsonString(columns.colName(i).toStdString()) + ": ");
  }
}

RowPrinter::~RowPrinter() = default;

void RowPrinter::print(const RowBatch& batch) {
  switch (m_format) {
    case RowFormat::csv:
      printData(m_csv->encodeRows(batch)->text());
      break;
    case RowFormat::json:
      printJson(batch);
      break;
    case RowFormat::table:
      printTable(batch);
      break;
  }
  m_rowCount += static_cast<long long>(batch.rowCount());
}

void RowPrinter::finish() {
  if (m_format == RowFormat::json) {
    printData(m_rowCount == 0 ? "[]\n" : "\n]\n");
  } else if (m_format == RowFormat::table && (m_table.rowCount() > 0 || m_rowCount == 0)) {
    flushTable();
  }
}

void RowPrinter::printTable(const RowBatch& batch) {
  forEachRow(batch, 0, batch.rowCount(), [&](std::size_t, std::size_t stored) {
    std::vector<std::string> cells;
    cells.reserve(m_types.size());
    for (std::size_t i = 0; i < m_types.size(); ++i) {
      cells.push_back(cellOf(m_types[i], batch.column(i).value(stored)));
    }
    m_table.add(std::move(cells));
    if (m_table.rowCount() == kRowsInTable) {
      flushTable();
    }
  });
}

void RowPrinter::flushTable() {
  const std::string text = m_table.text(outputWidth());
  std::fwrite(text.data(), 1, text.size(), stdout);
  m_table.clearRows();
}

void RowPrinter::printJson(const RowBatch& batch) {
  std::string text;
  forEachRow(batch, 0, batch.rowCount(), [&](std::size_t row, std::size_t stored) {
    text += m_rowCount == 0 && row == 0 ? "[\n  {" : ",\n  {";
    for (std::size_t i = 0; i < m_types.size(); ++i) {
      text += i == 0 ? "" : ", ";
      text += m_jsonNames[i];
      text += jsonTextOf(m_types[i], batch.column(i).value(stored));
    }
    text += '}';
  });
  printData(text);
}

}  // namespace kelvarin
