// Why something that a program asked the library for was not done, with all that is known about it.
//
// Used by: every function of the interface, and the streams that the library makes.
// Threads: plain values.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/result.h"
#include "host/engine/run_graph.h"
#include "include/kelvarin/kelvarin.h"

namespace kelvarin {

struct ErrorDetails {
  kelvarin_status status = KELVARIN_FAILED;
  std::string message;
  std::string action;
  std::string output;
  std::string expression;
  std::string token;
  std::string column;
  long long position = -1;
  long long row = -1;
  // Of the variables of the expression, in that row; none is a missing value.
  struct Value {
    std::string name;
    std::string value;
    bool isMissing = false;
    bool isText = false;
  };
  std::vector<Value> values;
  std::vector<LogLine> log;
};

template <typename T>
using Outcome = Result<T, ErrorDetails>;

ErrorDetails errorOf(kelvarin_status status, std::string message);
ErrorDetails errorOf(kelvarin_status status, const QString& message);

// The first error of a log with what explains it.
ErrorDetails errorOfLog(std::vector<LogLine> log, GlobalParameters::RunningState state);

// One JSON object; what is not known is left out.
std::string jsonOf(const ErrorDetails& error);

}  // namespace kelvarin
