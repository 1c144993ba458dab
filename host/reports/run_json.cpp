#include "host/reports/run_json.h"

#include <string>
#include <utility>

namespace kelvarin {

namespace {

using State = GlobalParameters::RunningState;

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

Json jsonOf(const QStringList& texts) {
  Json list = Json::array();
  for (const QString& text : texts) {
    list.push_back(text.toStdString());
  }
  return list;
}

std::string printed(const Json& document) {
  return document.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

Json jsonOf(const RunResult& result) {
  Json actions = Json::array();
  for (const ActionResult& action : result.actions) {
    actions.push_back(jsonOfAction(action));
  }
  Json log = Json::array();
  for (const LogLine& line : result.log) {
    log.push_back(jsonOfLine(line));
  }
  Json report = {{"status", statusWord(result.state)},
                 {"runState", static_cast<int>(result.state)},
                 {"seconds", result.seconds},
                 {"actions", actions},
                 {"log", log}};
  if (result.rejectedRows >= 0) {
    report["rejectedRows"] = result.rejectedRows;
  }
  return report;
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

}  // namespace kelvarin
