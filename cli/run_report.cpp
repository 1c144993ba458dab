#include "cli/run_report.h"

#include <algorithm>

#include <fmt/format.h>

#include "cli/messages.h"

namespace kelvarin {

namespace {

using State = GlobalParameters::RunningState;

const char* statusWord(State state) {
  switch (state) {
    case State::endedNormally:
      return "ok";
    case State::stoppedByUser:
      return "stopped";
    default:
      return "failed";
  }
}

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

Json countOrNull(long long count) {
  return count < 0 ? Json(nullptr) : Json(count);
}

// What actions report beyond the rows. A check has of it how outputs are evaluated.
void addRunDetails(const ActionResult& action, Json& entry) {
  if (action.seconds >= 0.0) {
    entry["seconds"] = action.seconds;
  }
  for (const OutputReport& output : action.report.outputs) {
    entry["outputs"].push_back({{"name", output.name.toStdString()},
                                {"engine", output.engine.toStdString()},
                                {"slowedBy", output.slowedBy.toStdString()},
                                {"reason", output.reason.toStdString()},
                                {"byBatch", output.isByBatch},
                                {"batchRefusal", output.batchRefusal.toStdString()},
                                {"nulls", countOrNull(output.nulls)},
                                {"nans", countOrNull(output.nans)},
                                {"failures", countOrNull(output.failures)}});
  }
  if (action.report.blocksRead >= 0) {
    entry["blocksRead"] = action.report.blocksRead;
    entry["blocksSkipped"] = action.report.blocksSkipped;
  }
  for (const WrittenFile& file : action.files) {
    entry["files"].push_back({{"path", file.path.toStdString()}, {"bytes", file.bytes}});
  }
}

Json jsonOfAction(const ActionResult& action) {
  Json entry = {{"name", action.name.toStdString()},
                {"type", action.typeName.toStdString()},
                {"rowsIn", action.rowsIn},
                {"rowsOut", action.rowsOut},
                {"backends", jsonOf(action.backends)}};
  if (!action.namedColumns.isEmpty()) {
    entry["newColumns"] = jsonOf(action.namedColumns);
  }
  addRunDetails(action, entry);
  return entry;
}

Json jsonOfColumns(const std::vector<PinColumns::Column>& columns) {
  Json list = Json::array();
  for (const PinColumns::Column& column : columns) {
    list.push_back({{"name", column.name.toStdString()},
                    {"meta", std::string(1, static_cast<char>(column.meta))}});
  }
  return list;
}

// Where a line leads is left out as far as it is not known.
Json jsonOfLine(const LogLine& line) {
  const LogDetails& details = line.details;
  Json entry = {{"level", static_cast<int>(line.level)},
                {"action", line.action.toStdString()},
                {"text", line.text.toStdString()}};
  const std::pair<const char*, const QString&> texts[] = {
      {"output", details.output}, {"column", details.column}, {"token", details.token}};
  const std::pair<const char*, long long> numbers[] = {{"position", details.position},
                                                       {"row", details.row}};
  if (details.elementPosition.line > 0) {
    entry["line"] = details.elementPosition.line;
  }
  for (const auto& [key, text] : texts) {
    if (!text.isEmpty()) {
      entry[key] = text.toStdString();
    }
  }
  for (const auto& [key, number] : numbers) {
    if (number >= 0) {
      entry[key] = number;
    }
  }
  return entry;
}

}  // namespace

Json jsonOf(const RunResult& result) {
  Json actions = Json::array();
  for (const ActionResult& action : result.actions) {
    actions.push_back(jsonOfAction(action));
  }
  Json log = Json::array();
  for (const LogLine& line : result.log) {
    log.push_back(jsonOfLine(line));
  }
  return {{"status", statusWord(result.state)},
          {"runState", static_cast<int>(result.state)},
          {"seconds", result.seconds},
          {"actions", actions},
          {"log", log}};
}

Json jsonOfCheck(const RunResult& result) {
  Json report = jsonOf(result);
  for (std::size_t i = 0; i < result.actions.size(); ++i) {
    Json pins = Json::array();
    for (const PinColumns& pin : result.actions[i].pins) {
      pins.push_back({{"columns", pin.isKnown ? jsonOfColumns(pin.columns) : Json(nullptr)}});
    }
    report["actions"][i]["pins"] = pins;
  }
  return report;
}

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
