#include "expression/dates/reference_time_advice.h"

#include <QDateTime>
#include <QRegularExpression>

#include "expression/dates/messages.h"

namespace kelvarin {

namespace {

// The year first, or last behind the day and the month.
constexpr const char* kDatePatterns[] = {
    R"((?<y>\d{4})[-/.]?(?<m>\d\d?)[-/.]?(?<d>\d\d?))",
    R"((?<d>\d\d?)\.(?<m>\d\d?)\.(?<y>\d{4}))",
};
constexpr char kTimePattern[] = R"((?:[T ]+(?<hh>\d\d?):(?<mm>\d\d)(?::(?<ss>\d\d))?.*)?)";

// Invalid where the text is no date.
QDateTime meantTime(const QString& text) {
  for (const char* pattern : kDatePatterns) {
    const QRegularExpression whole(u'^' + QString::fromLatin1(pattern) +
                                   QString::fromLatin1(kTimePattern) + u'$');
    const auto found = whole.match(text.trimmed());
    const auto number = [&found](const char* field) {
      return found.captured(QLatin1String(field)).toInt();
    };
    const QDate date(number("y"), number("m"), number("d"));
    const QTime time(number("hh"), number("mm"), number("ss"));
    if (found.hasMatch() && date.isValid() && time.isValid()) {
      return QDateTime(date, time, Qt::UTC);
    }
  }
  return {};
}

}  // namespace

QString adviceOnReferenceTime(const QString& referenceTime) {
  if (referenceTime.trimmed().isEmpty()) {
    return QString::fromLatin1(messages::kNoReference);
  }
  const QDateTime meant = meantTime(referenceTime);
  return meant.isValid()
             ? QString::fromLatin1(messages::kReferenceMeant)
                   .arg(referenceTime, meant.toString(QStringLiteral("yyyyMMdd hh:mm:ss")))
             : QString::fromLatin1(messages::kReferenceForm).arg(referenceTime);
}

}  // namespace kelvarin
