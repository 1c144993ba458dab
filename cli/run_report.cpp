#include "cli/run_report.h"

#include <algorithm>

#include <fmt/format.h>

#include "host/reports/run_json.h"

#include "cli/text_table.h"

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

}  // namespace

std::string rowTable(const RunResult& result) {
  TextTable table({{"action"}, {"type"}, {"rows in", true}, {"rows out", true}});
  for (const ActionResult& action : result.actions) {
    table.add({action.name.toStdString(), action.typeName.toStdString(), joinedInput(action.rowsIn),
               joined(action.rowsOut)});
  }
  return table.text() +
         fmt::format("{} after {:.2f} s\n", statusWord(result.state), result.seconds);
}

}  // namespace kelvarin
