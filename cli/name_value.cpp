#include "cli/name_value.h"

#include <charconv>

#include "base/null_number.h"
#include "cli/messages.h"

namespace kelvarin {

Result<std::vector<NameValue>, QString> splitNameValues(const char* option,
                                                        const std::vector<std::string>& arguments) {
  std::vector<NameValue> pairs;
  for (const std::string& argument : arguments) {
    const std::size_t sign = argument.find('=');
    if (sign == 0 || sign == std::string::npos) {
      return Failure{program_messages::needsNameAndValue(QLatin1String(option),
                                                         QString::fromStdString(argument))};
    }
    pairs.push_back({QString::fromStdString(argument.substr(0, sign)),
                     QString::fromStdString(argument.substr(sign + 1))});
  }
  return pairs;
}

std::optional<double> numberFromText(const QString& text) {
  if (text == QLatin1String("null")) {
    return kNullNumber;
  }
  if (text == QLatin1String("nan")) {
    return kNotANumber;
  }
  const QByteArray bytes = text.toUtf8();
  const char* first = bytes.constData() + (bytes.startsWith('+') ? 1 : 0);
  const char* last = bytes.constData() + bytes.size();
  double number = 0.0;
  const auto [end, error] = std::from_chars(first, last, number);
  if (error != std::errc() || end != last) {
    return std::nullopt;
  }
  return number;
}

}  // namespace kelvarin
