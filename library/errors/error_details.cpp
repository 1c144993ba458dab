#include "library/errors/error_details.h"

#include <algorithm>
#include <utility>

#include <nlohmann/json.hpp>

#include "library/errors/messages.h"

namespace kelvarin {

namespace {

using Json = nlohmann::ordered_json;
using State = GlobalParameters::RunningState;

// An expression that is of no output is the condition of a filter.
void addDetails(const LogDetails& details, ErrorDetails& error) {
  const bool isCondition = details.output.isEmpty() && !details.expression.isEmpty();
  error.output = isCondition ? "condition" : details.output.toStdString();
  error.expression = details.expression.toStdString();
  error.token = details.token.toStdString();
  error.column = details.column.toStdString();
  error.position = details.position;
  error.row = details.row;
  for (const LoggedValue& value : details.values) {
    error.values.push_back(
        {value.name.toStdString(), value.value.toStdString(), value.value.isNull(), value.isText});
  }
}

Json jsonOfLog(const std::vector<LogLine>& log) {
  Json lines = Json::array();
  for (const LogLine& line : log) {
    lines.push_back({{"level", static_cast<int>(line.level)},
                     {"action", line.action.toStdString()},
                     {"text", line.text.toStdString()}});
  }
  return lines;
}

Json jsonOfValues(const std::vector<ErrorDetails::Value>& values) {
  Json json = Json::object();
  for (const ErrorDetails::Value& value : values) {
    json[value.name] = value.isMissing ? Json() : Json(value.value);
  }
  return json;
}

}  // namespace

ErrorDetails errorOf(kelvarin_status status, std::string message) {
  ErrorDetails error;
  error.status = status;
  error.message = std::move(message);
  return error;
}

ErrorDetails errorOf(kelvarin_status status, const QString& message) {
  return errorOf(status, message.toStdString());
}

ErrorDetails errorOfLog(std::vector<LogLine> log, State state) {
  ErrorDetails error;
  auto line = std::ranges::find(log, LogLevel::error, &LogLine::level);
  if (state == State::stoppedByUser) {
    error = errorOf(KELVARIN_STOPPED, library_messages::stopped());
  } else if (line == log.end()) {
    error.message = library_messages::failedSilently().toStdString();
  } else {
    QString text = line->text;
    error.action = line->action.toStdString();
    addDetails(line->details, error);
    for (++line; line != log.end() && line->details.explains; ++line) {
      text += u'\n' + line->text;
    }
    error.message = text.toStdString();
  }
  error.log = std::move(log);
  return error;
}

std::string jsonOf(const ErrorDetails& error) {
  Json json = {{"status", error.status}, {"message", error.message}};
  const std::pair<const char*, const std::string&> texts[] = {{"action", error.action},
                                                              {"output", error.output},
                                                              {"expression", error.expression},
                                                              {"token", error.token},
                                                              {"column", error.column}};
  for (const auto& [key, text] : texts) {
    if (!text.empty()) {
      json[key] = text;
    }
  }
  for (const auto& [key, number] : {std::pair("position", error.position), {"row", error.row}}) {
    if (number >= 0) {
      json[key] = number;
    }
  }
  if (!error.values.empty()) {
    json["values"] = jsonOfValues(error.values);
  }
  if (!error.log.empty()) {
    json["log"] = jsonOfLog(error.log);
  }
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace kelvarin
