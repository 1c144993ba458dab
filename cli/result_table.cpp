#include "cli/result_table.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <utility>

#include <fmt/format.h>

#include "base/null_number.h"
#include "cli/printable_text.h"

namespace kelvarin {

namespace {

std::string shownText(const Json& cell) {
  if (cell.is_null()) {
    return "-";
  }
  if (cell.is_boolean()) {
    return cell.get<bool>() ? "yes" : "no";
  }
  if (cell.is_number_float()) {
    return roundedText(cell.get<double>());
  }
  return cell.is_string() ? printable(cell.get<std::string>(), LineBreaks::escape) : cell.dump();
}

std::string csvField(const Json& cell) {
  if (cell.is_null()) {
    return {};
  }
  if (cell.is_number_float()) {
    return shortestText(cell.get<double>()).toStdString();
  }
  if (!cell.is_string()) {
    return cell.dump();
  }
  auto text = cell.get<std::string>();
  if (!text.empty() && text.find_first_of(",\"\r\n") == std::string::npos) {
    return text;
  }
  for (std::size_t i = text.find('"'); i != std::string::npos; i = text.find('"', i + 2)) {
    text.insert(i, 1, '"');
  }
  return '"' + text + '"';
}

template <typename Items, typename TextOf>
std::string csvLine(const Items& items, TextOf textOf) {
  std::string line;
  for (const auto& item : items) {
    line += (line.empty() && &item == &items.front() ? "" : ",") + textOf(item);
  }
  return line + '\n';
}

}  // namespace

std::string roundedText(double number) {
  constexpr double kMaxRounded = 100'000.0;
  if (!isFiniteNumber(number) || number == std::trunc(number)) {
    return shortestText(number).toStdString();
  }
  return std::fabs(number) < kMaxRounded
             ? shortestText(std::stod(fmt::format("{:.6g}", number))).toStdString()
             : shortestText(std::round(number)).toStdString();
}

void ResultTable::show(std::size_t column, std::string text) {
  m_shown.push_back({m_rows.size() - 1, column, std::move(text)});
}

std::string ResultTable::asTable(std::size_t width, WideTable wide) const {
  std::vector<TableColumn> columns;
  for (const ResultColumn& column : m_columns) {
    if (!column.title.empty()) {
      columns.push_back({column.title, column.isRight});
    }
  }
  TextTable table(std::move(columns));
  auto shown = m_shown.begin();
  for (std::size_t row = 0; row < m_rows.size(); ++row) {
    std::vector<std::string> texts;
    std::transform(m_rows[row].begin(), m_rows[row].end(), std::back_inserter(texts), shownText);
    for (; shown != m_shown.end() && shown->row == row; ++shown) {
      texts[shown->column] = shown->text;
    }
    std::vector<std::string> cells;
    for (std::size_t i = 0; i < texts.size(); ++i) {
      if (!m_columns[i].title.empty()) {
        cells.push_back(std::move(texts[i]));
      }
    }
    table.add(std::move(cells));
  }
  return table.text(width, wide);
}

std::string ResultTable::asCsv() const {
  std::string text = csvLine(m_columns, [](const ResultColumn& column) { return column.name; });
  for (const auto& row : m_rows) {
    text += csvLine(row, csvField);
  }
  return text;
}

Json ResultTable::asJson() const {
  Json list = Json::array();
  for (const auto& row : m_rows) {
    Json object = Json::object();
    for (std::size_t i = 0; i < row.size(); ++i) {
      const bool isSpecial = row[i].is_number_float() && !isFiniteNumber(row[i].get<double>());
      object[m_columns[i].name] =
          isSpecial ? Json(shortestText(row[i].get<double>()).toStdString()) : row[i];
    }
    list.push_back(std::move(object));
  }
  return list;
}

void ResultTable::print(RowFormat format, WideTable wide) const {
  const std::string text = format == RowFormat::json  ? printed(asJson())
                           : format == RowFormat::csv ? asCsv()
                                                      : asTable(outputWidth(), wide);
  std::fwrite(text.data(), 1, text.size(), stdout);
}

}  // namespace kelvarin
