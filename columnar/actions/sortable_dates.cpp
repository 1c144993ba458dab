#include "columnar/actions/sortable_dates.h"

#include <algorithm>
#include <array>

namespace kelvarin {

namespace {

// From the most significant field on; two spellings of hours are the same.
constexpr std::array kFields = {u"yyyy", u"MM", u"dd", u"hh", u"mm", u"ss", u"zzz"};
constexpr std::size_t kFirstTimeField = 3;

constexpr char16_t kQuote = u'\'';

// The letters of one kind that begin `format`.
QStringView fieldAt(QStringView format) {
  qsizetype size = 1;
  while (size < format.size() && format[size] == format[0]) {
    ++size;
  }
  return format.first(size);
}

// The index of a field in the list above; the size of the list when it is none of them.
std::size_t rankOf(QStringView field) {
  const QStringView name = field == u"HH" ? QStringView(u"hh") : field;
  const auto* found = std::find(kFields.begin(), kFields.end(), name);
  return static_cast<std::size_t>(found - kFields.begin());
}

}  // namespace

bool sortsAsText(const QString& dateFormat, bool isUTC) {
  QStringView rest = dateFormat;
  std::size_t next = 0;  // the most significant field that may follow
  while (!rest.isEmpty()) {
    if (rest[0] == kQuote) {
      const qsizetype end = rest.indexOf(kQuote, 1);
      if (end < 0) {
        return false;
      }
      rest = rest.sliced(end + 1);
      continue;
    }
    if (!rest[0].isLetter()) {
      rest = rest.sliced(1);
      continue;
    }
    const QStringView field = fieldAt(rest);
    const std::size_t rank = rankOf(field);
    const bool isFirst = next == 0;
    if (rank == kFields.size() || rank < next || (isFirst && rank != 0) ||
        (rank >= kFirstTimeField && !isUTC)) {
      return false;
    }
    next = rank + 1;
    rest = rest.sliced(field.size());
  }
  return next > 0;
}

}  // namespace kelvarin
