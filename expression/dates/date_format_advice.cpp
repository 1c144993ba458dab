#include "expression/dates/date_format_advice.h"

#include <optional>
#include <vector>

#include <QRegularExpression>
#include <QStringView>

#include "expression/dates/messages.h"

namespace kelvarin {

namespace {

// A stretch of one letter, or anything between such stretches.
struct Piece {
  QString text;
  bool isField = false;

  QChar letter() const { return isField ? text.front() : QChar(); }
};

std::vector<Piece> piecesOf(const QString& format) {
  std::vector<Piece> pieces;
  bool isQuoted = false;
  for (const QChar c : format) {
    isQuoted ^= c == u'\'';
    const bool isField = !isQuoted && c.unicode() < 0x80 && c.isLetter();
    const bool isSame = !pieces.empty() && pieces.back().isField == isField &&
                        (!isField || pieces.back().letter() == c);
    if (isSame) {
      pieces.back().text += c;
    } else {
      pieces.push_back({QString(c), isField});
    }
  }
  return pieces;
}

QString joined(const std::vector<Piece>& pieces) {
  QString format;
  for (const Piece& piece : pieces) {
    format += piece.text;
  }
  return format;
}

struct ForeignField {
  QChar letter;
  qsizetype shortest;
  qsizetype longest;
  const char* meant;  // one letter stands for as many as there are
};

// Of spreadsheets, databases and programming languages.
constexpr ForeignField kForeignFields[] = {
    {u'Y', 2, 4, "y"},   {u'D', 1, 4, "d"},   {u'S', 1, 2, "s"},    {u'S', 3, 3, "zzz"},
    {u'f', 3, 3, "zzz"}, {u'E', 1, 3, "ddd"}, {u'E', 4, 4, "dddd"}, {u'X', 1, 3, "t"},
    {u't', 2, 2, "AP"},  {u'J', 2, 4, "y"},   {u'T', 2, 2, "d"},    {u'j', 1, 2, "d"},
    {u'a', 4, 4, "y"},
};

QString meantBy(const Piece& piece) {
  for (const ForeignField& foreign : kForeignFields) {
    const qsizetype length = piece.text.size();
    if (piece.letter() == foreign.letter && length >= foreign.shortest &&
        length <= foreign.longest) {
      const QString meant = QString::fromLatin1(foreign.meant);
      return meant.size() == 1 ? meant.repeated(length) : meant;
    }
  }
  return piece.text;
}

// The letters of the fields before and behind a piece; 0 where there is none.
class Neighbours {
 public:
  Neighbours(const std::vector<Piece>& pieces, std::size_t index) {
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      if (!isClockOrCalendar(pieces[i].letter()) || i == index) {
        continue;
      }
      if (i < index) {
        m_before = pieces[i].letter();
      } else if (m_behind.isNull()) {
        m_behind = pieces[i].letter();
      }
    }
  }
  bool isAfterHour() const { return m_before == u'h' || m_before == u'H'; }
  bool isBesideDay() const { return isDayOrYear(m_before) || isDayOrYear(m_behind); }
  bool isBeforeSecond() const { return m_behind == u's'; }
  bool isBeforeDay() const { return isDayOrYear(m_behind); }

 private:
  static bool isClockOrCalendar(QChar c) {
    return !c.isNull() && QStringView(u"yMdhHms").contains(c);
  }
  static bool isDayOrYear(QChar c) { return c == u'y' || c == u'd'; }

  QChar m_before;
  QChar m_behind;
};

// Months are capital, minutes are not; the fields beside them show which is meant.
void mendMonthsAndMinutes(std::vector<Piece>& pieces) {
  bool hasMonth = false;
  for (const Piece& piece : pieces) {
    hasMonth |= piece.letter() == u'M';
  }
  const std::vector<Piece> written = pieces;
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    const Neighbours neighbours(written, i);
    Piece& piece = pieces[i];
    if (piece.letter() == u'm' && !hasMonth && neighbours.isBesideDay() &&
        !neighbours.isAfterHour() && !neighbours.isBeforeSecond()) {
      piece.text = piece.text.toUpper();
      hasMonth = true;
    } else if (piece.letter() == u'M' && piece.text.size() <= 2 && neighbours.isAfterHour() &&
               !neighbours.isBeforeDay()) {
      piece.text = piece.text.toLower();
    }
  }
}

QString likelyFormat(const QString& format) {
  static const QRegularExpression hours(QStringLiteral("HH(?:24|12)"));
  static const QRegularExpression minutes(QStringLiteral("MI|mi"));
  QString plain = format;
  plain.replace(hours, QStringLiteral("HH")).replace(minutes, QStringLiteral("mm"));
  std::vector<Piece> pieces = piecesOf(plain);
  for (Piece& piece : pieces) {
    if (piece.isField) {
      piece.text = meantBy(piece);
    }
  }
  mendMonthsAndMinutes(pieces);
  return joined(pieces);
}

struct PercentField {
  char letter;
  const char* meant;
};

constexpr PercentField kPercentFields[] = {
    {'Y', "yyyy"},  {'y', "yy"},       {'m', "MM"},         {'d', "dd"},       {'e', "d"},
    {'H', "HH"},    {'I', "hh"},       {'k', "H"},          {'l', "h"},        {'M', "mm"},
    {'S', "ss"},    {'p', "AP"},       {'b', "MMM"},        {'h', "MMM"},      {'B', "MMMM"},
    {'a', "ddd"},   {'A', "dddd"},     {'f', "zzz"},        {'z', "t"},        {'Z', "t"},
    {'R', "HH:mm"}, {'T', "HH:mm:ss"}, {'F', "yyyy-MM-dd"}, {'D', "MM/dd/yy"}, {'%', "%"},
};

std::optional<QString> meantByPercent(QChar letter) {
  for (const PercentField& field : kPercentFields) {
    if (letter == QLatin1Char(field.letter)) {
      return QString::fromLatin1(field.meant);
    }
  }
  return std::nullopt;
}

// Nothing where a field has no counterpart here.
std::optional<QString> withoutPercents(const QString& format) {
  QString meant;
  for (qsizetype i = 0; i < format.size(); ++i) {
    const QChar c = format[i];
    if (c != u'%' || i + 1 == format.size()) {
      const bool isLetter = c.unicode() < 0x80 && c.isLetter();
      meant += isLetter ? QStringLiteral("'%1'").arg(c) : QString(c);
      continue;
    }
    const std::optional<QString> field = meantByPercent(format[++i]);
    if (!field) {
      return std::nullopt;
    }
    meant += *field;
  }
  return meant;
}

}  // namespace

QString adviceOnDateFormat(const QString& format) {
  static const QRegularExpression percent(QStringLiteral("%[A-Za-z]"));
  const bool hasPercents = format.contains(percent);
  const std::optional<QString> meant =
      hasPercents ? withoutPercents(format) : std::optional(likelyFormat(format));
  if (!meant) {
    return QString::fromLatin1(messages::kDateFormatForeign).arg(format);
  }
  return *meant == format ? QString()
                          : QString::fromLatin1(messages::kDateFormatMeant).arg(format, *meant);
}

}  // namespace kelvarin
