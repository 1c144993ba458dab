#include "ui/panels/time_example.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QLocale>

#include "expression/dates/date_context.h"
#include "expression/dates/reference_time_advice.h"

namespace kelvarin {

namespace {

struct TimeExampleTexts {
  Q_DECLARE_TR_FUNCTIONS(kelvarin::TimeExample)
};

QString unitText(int unit) {
  switch (unit) {
    case 0:
      return TimeExampleTexts::tr("seconds");
    case 1:
      return TimeExampleTexts::tr("minutes");
    case 2:
      return TimeExampleTexts::tr("hours");
    case 3:
      return TimeExampleTexts::tr("days");
    case 4:
      return TimeExampleTexts::tr("weeks");
    default:
      return {};
  }
}

QString elapsedText(const DateContext& dates) {
  const QString unit = unitText(dates.parameters().elapsedTimeUnit);
  if (unit.isEmpty()) {
    return TimeExampleTexts::tr("The unit is unknown: every elapsed time is 0.");
  }
  return TimeExampleTexts::tr("Now it is %1 %2 later.")
      .arg(QLocale().toString(dates.currentElapsedTime(), 'f', 0), unit);
}

void addFormat(const TimeParameters& parameters, TimeExample& example) {
  DateContext dates;
  dates.configure(parameters);
  example.isFormatKnown = dates.prepare({.format = true}) != DateStatus::dateFormatUnknown;
  if (!example.isFormatKnown) {
    example.dateText =
        TimeExampleTexts::tr("No format is given: dates can be neither read nor written.");
    return;
  }
  example.dateText = TimeExampleTexts::tr("Now in this format: %1").arg(dates.currentDateString());
  if (!dates.formatAdvice().isEmpty()) {
    example.dateText += u'\n' + dates.formatAdvice();
  }
}

void addReference(const TimeParameters& parameters, TimeExample& example) {
  TimeParameters withoutFormat = parameters;
  withoutFormat.addNowS = false;
  DateContext dates;
  dates.configure(withoutFormat);
  example.isReferenceKnown = dates.prepare({.reference = true}) == DateStatus::ready;
  if (!example.isReferenceKnown) {
    example.reference = adviceOnReferenceTime(parameters.referenceTime) + u' ' + elapsedText(dates);
    return;
  }
  const QDateTime reference =
      QDateTime::fromMSecsSinceEpoch(dates.reference(), parameters.isUTC ? Qt::UTC : Qt::LocalTime);
  const QString zone = parameters.isUTC ? QStringLiteral("UTC") : reference.timeZoneAbbreviation();
  example.reference = TimeExampleTexts::tr("Elapsed times count from %1 %2.")
                          .arg(reference.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss")), zone) +
                      u' ' + elapsedText(dates);
}

}  // namespace

TimeExample timeExample(const TimeParameters& parameters) {
  TimeExample example;
  addFormat(parameters, example);
  addReference(parameters, example);
  return example;
}

}  // namespace kelvarin
