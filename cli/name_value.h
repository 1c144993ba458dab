// Splits the NAME=VALUE arguments of the command line.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <QString>

#include "base/result.h"

namespace kelvarin {

struct NameValue {
  QString name;
  QString value;
};

// `option` is the one with the arguments, for the message.
Result<std::vector<NameValue>, QString> splitNameValues(const char* option,
                                                        const std::vector<std::string>& arguments);

// A number as a user types it; nan, inf, -inf and null too.
std::optional<double> numberFromText(const QString& text);

}  // namespace kelvarin
