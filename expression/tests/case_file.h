// Reads case files: lines of "back-ends | expression | result", where back-ends are letters of F
// (native), M (Fast) and X (String). A line that starts with # is a comment. A line "with
// name=value; name=value" sets the time parameters of the lines below it in its file.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace kelvarin {

struct ExpressionCase {
  std::string origin;  // file and line
  std::string backends;
  std::string expression;
  std::string result;
  std::map<std::string, std::string> timeParameters;
};

std::vector<ExpressionCase> readCases(const std::string& folder);

}  // namespace kelvarin
