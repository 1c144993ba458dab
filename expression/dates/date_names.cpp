#include "expression/dates/date_names.h"

#include <algorithm>
#include <cstring>

#include <QLocale>

namespace kelvarin {

namespace {

constexpr int kMonths = 12;
constexpr int kWeekdays = 7;

std::uint64_t startOf(std::string_view text) {
  std::uint64_t start = 0;
  if (text.size() >= sizeof start) {
    std::memcpy(&start, text.data(), sizeof start);
  } else {
    std::memcpy(&start, text.data(), text.size());
  }
  return start;
}

template <typename NameOf>
DateNameList listOf(int count, NameOf nameOf) {
  QStringList names;
  for (int number = 1; number <= count; ++number) {
    names.append(nameOf(number));
  }
  return DateNameList(names);
}

DateNames dateNamesOf(const QLocale& locale) {
  const auto months = [&locale](QLocale::FormatType form) {
    return listOf(kMonths, [&](int month) { return locale.monthName(month, form); });
  };
  const auto weekdays = [&locale](QLocale::FormatType form) {
    return listOf(kWeekdays, [&](int weekday) { return locale.dayName(weekday, form); });
  };
  const QString am = locale.amText();
  const QString pm = locale.pmText();
  return {months(QLocale::LongFormat),
          months(QLocale::ShortFormat),
          weekdays(QLocale::LongFormat),
          weekdays(QLocale::ShortFormat),
          DateNameList({am.toUpper(), pm.toUpper()}),
          DateNameList({am.toLower(), pm.toLower()})};
}

}  // namespace

DateNameList::DateNameList(const QStringList& names) {
  for (const QString& name : names) {
    Name& added = m_names.emplace_back();
    added.text = name.toStdString();
    added.start = startOf(added.text);
    added.bits = startOf(std::string(std::min(added.text.size(), sizeof added.bits), '\xFF'));
  }
}

int DateNameList::indexOf(std::string_view text) const {
  const std::uint64_t start = startOf(text);
  for (std::size_t i = 0; i < m_names.size(); ++i) {
    const Name& name = m_names[i];
    const bool isCandidate = ((start ^ name.start) & name.bits) == 0;
    if (isCandidate && (name.text.size() <= sizeof start || text.starts_with(name.text))) {
      return static_cast<int>(i);
    }
  }
  return kNone;
}

bool DateNameList::areDistinct() const {
  for (const Name& x : m_names) {
    for (const Name& y : m_names) {
      if (x.text.empty() || (&x != &y && y.text.starts_with(x.text))) {
        return false;
      }
    }
  }
  return true;
}

std::size_t DateNameList::longest() const {
  std::size_t size = 0;
  for (const Name& name : m_names) {
    size = std::max(size, name.text.size());
  }
  return size;
}

std::shared_ptr<const DateNames> dateNames(bool isOfLocale) {
  static const auto english = std::make_shared<const DateNames>(dateNamesOf(QLocale::c()));
  return isOfLocale ? std::make_shared<const DateNames>(dateNamesOf(QLocale::system())) : english;
}

bool hasLatinDigits(bool isOfLocale) {
  return !isOfLocale || QLocale::system().zeroDigit() == QLatin1String("0");
}

}  // namespace kelvarin
