#include "cli/run_report.h"

#include <algorithm>

#include <fmt/format.h>

#include "host/reports/run_json.h"

#include "cli/messages.h"

namespace kelvarin {

namespace {

std::string joined(const std::vector<long long>& rowsOfPins) {
  return rowsOfPins.empty() ? "-" : fmt::format("{}", fmt::join(rowsOfPins, " + "));
}

// Without later input pins that gave nothing: most of them are not linked.
std::string joinedInput(std::vector<long long> rowsOfPins) {
  while (rowsOfPins.size() > 1 && rowsOfPins.back() == 0) {
    rowsOfPins.pop_back();
  }
  return joined(rowsOfPins);
}

// Columns as wide as their widest cell; the first two to the left, the others to the right.
std::string aligned(const std::vector<std::vector<std::string>>& rows) {
  std::vector<std::size_t> widths(rows.front().size(), 0);
  const auto shownWidth = [](const std::string& text) {
    return static_cast<std::size_t>(QString::fromStdString(text).size());
  };
  for (const auto& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      widths[i] = std::max(widths[i], shownWidth(row[i]));
    }
  }
  std::string text;
  for (const auto& row : rows) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      const std::string padding(widths[i] - shownWidth(row[i]), ' ');
      line += (i == 0 ? "" : "  ") + (i < 2 ? row[i] + padding : padding + row[i]);
    }
    text += line + '\n';
  }
  return text;
}

}  // namespace

std::string rowTable(const RunResult& result) {
  std::vector<std::vector<std::string>> rows = {{"action", "type", "rows in", "rows out"}};
  for (const ActionResult& action : result.actions) {
    rows.push_back({action.name.toStdString(), action.typeName.toStdString(),
                    joinedInput(action.rowsIn), joined(action.rowsOut)});
  }
  return aligned(rows) +
         fmt::format("{} after {:.2f} s\n", statusWord(result.state), result.seconds);
}

}  // namespace kelvarin
