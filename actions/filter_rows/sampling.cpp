#include "actions/filter_rows/sampling.h"

#include <algorithm>

namespace kelvarin {

std::optional<std::uint64_t> sampleSizeOf(const QString& expression) {
  const QString text = expression.simplified().remove(u' ');
  const QStringView start = u"_n<";
  if (!text.startsWith(start)) {
    return std::nullopt;
  }
  const QStringView digits = QStringView(text).mid(start.size());
  const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
  if (!std::all_of(digits.begin(), digits.end(), isDigit)) {
    return std::nullopt;
  }
  return digits.toULongLong();
}

}  // namespace kelvarin
