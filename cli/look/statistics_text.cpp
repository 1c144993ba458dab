#include "cli/look/statistics_text.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "cli/look/messages.h"
#include "cli/printable_text.h"

namespace kelvarin {

namespace {

// Numbers that are whole are printed as such, not with a point.
Json jsonOfNumber(double number) {
  constexpr double kWholeNumbersEnd = 9007199254740992.0;
  const bool isWhole = number > -kWholeNumbersEnd && number < kWholeNumbersEnd &&
                       number == static_cast<double>(static_cast<long long>(number));
  return isWhole ? Json(static_cast<long long>(number)) : Json(number);
}

std::string estimated(const std::string& text) {
  return '~' + text;
}

class Line {
 public:
  Line(ResultTable& table, const std::string& name, const ColumnSummary& column)
      : m_table(table), m_column(column) {
    m_cells = {name, typeWord(column.type), column.nulls};
    m_cells.push_back(column.type == MetaTypeColumn::number ? Json(column.nans) : Json());
    m_cells.push_back(column.distinct);
    m_cells.push_back(column.isDistinctExact);
    addNumbers();
    addTexts();
    addMostFrequent();
    m_table.add(std::move(m_cells));
    for (auto& [index, text] : m_shown) {
      m_table.show(index, std::move(text));
    }
  }

 private:
  void add(Json value) { m_cells.push_back(std::move(value)); }
  void showLast(std::string text) { m_shown.emplace_back(m_cells.size() - 1, std::move(text)); }
  void addText(const std::string& text) {
    add(text);
    showLast(cellOfText(text));
  }

  void addNumbers() {
    if (!m_column.isDistinctExact) {
      m_shown.emplace_back(4, estimated(std::to_string(m_column.distinct)));
    }
    if (m_column.texts) {
      addText(m_column.texts->low);
      addText(m_column.texts->high);
    } else if (!m_column.numbers) {
      m_cells.resize(m_cells.size() + 2);
    }
    if (!m_column.numbers) {
      m_cells.resize(m_cells.size() + 6);
      return;
    }
    const ColumnSummary::Numbers& numbers = *m_column.numbers;
    add(jsonOfNumber(numbers.low));
    add(jsonOfNumber(numbers.high));
    add(numbers.mean);
    add(std::isnan(numbers.deviation) ? Json() : Json(numbers.deviation));
    for (const double quarter : numbers.quarters) {
      add(jsonOfNumber(quarter));
      if (!numbers.areQuartersExact) {
        showLast(estimated(roundedText(quarter)));
      }
    }
    add(numbers.areQuartersExact);
  }

  void addTexts() { add(m_column.texts ? Json(m_column.texts->longest) : Json()); }

  void addMostFrequent() {
    if (!m_column.mostFrequent) {
      m_cells.resize(m_cells.size() + 2);
      return;
    }
    if (m_column.type == MetaTypeColumn::text) {
      addText(m_column.mostFrequent->text);
    } else {
      add(jsonOfNumber(std::bit_cast<double>(m_column.mostFrequent->number)));
    }
    add(m_column.mostFrequent->count);
    if (!m_column.isDistinctExact) {
      showLast(estimated(std::to_string(m_column.mostFrequent->count)));
    }
  }

  ResultTable& m_table;
  const ColumnSummary& m_column;
  std::vector<Json> m_cells;
  std::vector<std::pair<std::size_t, std::string>> m_shown;
};

}  // namespace

ResultTable statisticsTable(const QStringList& names, const std::vector<ColumnSummary>& columns) {
  ResultTable table({{"column", "column"},
                     {"type", "type"},
                     {"nulls", "nulls", true},
                     {"NaNs", "nans", true},
                     {"distinct", "distinct", true},
                     {"", "distinctExact"},
                     {"min", "min", true},
                     {"max", "max", true},
                     {"mean", "mean", true},
                     {"deviation", "deviation", true},
                     {"q25", "q25", true},
                     {"median", "median", true},
                     {"q75", "q75", true},
                     {"", "quantilesExact"},
                     {"longest", "longest", true},
                     {"most frequent", "mostFrequent", true},
                     {"times", "times", true}});
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const Line line(table, names[static_cast<qsizetype>(i)].toStdString(), columns[i]);
  }
  return table;
}

QString remarksOn(const std::vector<ColumnSummary>& columns, std::size_t distinctBound) {
  const auto has = [&columns](auto isSo) {
    return std::any_of(columns.begin(), columns.end(), isSo);
  };
  QStringList remarks;
  const bool hasEstimates = has([](const ColumnSummary& c) { return !c.isDistinctExact; });
  if (hasEstimates) {
    remarks += look_messages::estimatedDistinct(QString::number(distinctBound));
  }
  if (has([](const ColumnSummary& c) { return c.numbers && !c.numbers->areQuartersExact; })) {
    remarks += look_messages::estimatedQuantiles(QString::number(QuantileSketch::kExactNumbers));
  }
  if (has([](const ColumnSummary& c) { return !c.isDistinctExact && c.mostFrequent; })) {
    remarks += look_messages::estimatedCounts();
  }
  return remarks.join(u'\n');
}

}  // namespace kelvarin
