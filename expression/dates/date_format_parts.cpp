#include "expression/dates/date_format_parts.h"

#include <algorithm>

namespace kelvarin {

namespace {

constexpr qsizetype kLongestFormat = 200;

struct FieldForm {
  const char* letters;
  DateField field;
  std::uint8_t digits;
};

constexpr FieldForm kForms[] = {
    {"yyyy", DateField::year, 4},        {"yy", DateField::yearOfCentury, 2},
    {"MMMM", DateField::monthName, 0},   {"MMM", DateField::shortMonthName, 0},
    {"MM", DateField::month, 2},         {"M", DateField::month, 1},
    {"dddd", DateField::weekdayName, 0}, {"ddd", DateField::shortWeekdayName, 0},
    {"dd", DateField::day, 2},           {"d", DateField::day, 1},
    {"HH", DateField::hour, 2},          {"H", DateField::hour, 1},
    {"hh", DateField::hourOfHalfDay, 2}, {"h", DateField::hourOfHalfDay, 1},
    {"mm", DateField::minute, 2},        {"m", DateField::minute, 1},
    {"ss", DateField::second, 2},        {"s", DateField::second, 1},
    {"zzz", DateField::millisecond, 3},  {"AP", DateField::halfDay, 0},
    {"A", DateField::halfDay, 0},        {"ap", DateField::lowerHalfDay, 0},
    {"a", DateField::lowerHalfDay, 0},   {"t", DateField::zone, 0},
};

bool isFieldLetter(QChar c) {
  constexpr QLatin1String letters("yMdHhmszaApPt");
  return c.unicode() != 0 && letters.contains(c);
}

class FormatScanner {
 public:
  explicit FormatScanner(const QString& format) : m_format(format) {}

  std::optional<DateFormatParts> parts() {
    while (m_index < m_format.size()) {
      const QChar first = m_format[m_index];
      const bool isKnown = first == u'\''         ? addQuoted()
                           : isFieldLetter(first) ? addField()
                                                  : addLiteral(m_format.sliced(m_index++, 1));
      if (!isKnown) {
        return std::nullopt;
      }
    }
    if (m_parts.parts.empty() || !isWholeUnicode()) {
      return std::nullopt;
    }
    countHours();
    return std::move(m_parts);
  }

 private:
  bool addQuoted() {
    const qsizetype end = m_format.indexOf(u'\'', m_index + 1);
    const bool isLone =
        end > m_index + 1 && (end + 1 == m_format.size() || m_format[end + 1] != u'\'');
    if (!isLone) {
      return false;
    }
    const QString text = m_format.sliced(m_index + 1, end - m_index - 1);
    m_index = end + 1;
    return addLiteral(text);
  }

  bool addLiteral(const QString& text) {
    std::vector<DateFormatPart>& parts = m_parts.parts;
    if (parts.empty() || parts.back().field != DateField::literal) {
      parts.push_back({.start = static_cast<std::uint16_t>(m_literal.toUtf8().size())});
    }
    m_literal += text;
    const auto size = static_cast<std::uint16_t>(m_literal.toUtf8().size());
    parts.back().size = static_cast<std::uint16_t>(size - parts.back().start);
    return true;
  }

  bool addField() {
    const QChar first = m_format[m_index];
    qsizetype end = m_index + 1;
    const bool isHalfDay = first == u'A' || first == u'a';
    while (end < m_format.size() && isFieldLetter(m_format[end]) &&
           (isHalfDay || m_format[end] == first)) {
      ++end;
    }
    const QString letters = m_format.sliced(m_index, end - m_index);
    const auto* form = std::find_if(std::begin(kForms), std::end(kForms), [&](const FieldForm& f) {
      return letters == QLatin1String(f.letters);
    });
    if (form == std::end(kForms)) {
      return false;
    }
    m_parts.parts.push_back({.field = form->field, .digits = form->digits});
    m_index = end;
    return true;
  }

  // Half a surrogate pair has no UTF-8.
  bool isWholeUnicode() {
    const QByteArray bytes = m_literal.toUtf8();
    m_parts.literals = bytes.toStdString();
    return QString::fromUtf8(bytes) == m_literal;
  }

  // `hh` goes to 24 where the format has no half of the day.
  void countHours() {
    std::vector<DateFormatPart>& parts = m_parts.parts;
    const bool hasHalfDay = std::any_of(parts.begin(), parts.end(), [](const DateFormatPart& part) {
      return part.field == DateField::halfDay || part.field == DateField::lowerHalfDay;
    });
    for (DateFormatPart& part : parts) {
      if (part.field == DateField::hourOfHalfDay && !hasHalfDay) {
        part.field = DateField::hour;
      }
    }
  }

  const QString& m_format;
  qsizetype m_index = 0;
  QString m_literal;
  DateFormatParts m_parts;
};

}  // namespace

std::optional<DateFormatParts> partsOfDateFormat(const QString& format) {
  return format.size() > kLongestFormat ? std::nullopt : FormatScanner(format).parts();
}

}  // namespace kelvarin
