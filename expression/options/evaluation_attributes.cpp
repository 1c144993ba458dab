#include "expression/options/evaluation_attributes.h"

namespace kelvarin {

namespace {

using Options = EvaluationOptions;
using Time = TimeParameters;

constexpr AllowedValues kZeroToTwo{0, 2, "", "0, 1 or 2"};
constexpr AllowedValues kTimeUnits{0, 4, "",
                                   "0 (seconds), 1 (minutes), 2 (hours), 3 (days) or 4 (weeks)",
                                   "With any other unit every elapsed time is 0."};
constexpr AllowedValues kDateFormats{
    0, 6, "", "0 (as dateFormat says) or one of the locale's formats 1 to 6"};

constexpr Attribute<Options> kAttributes[] = {
    attribute<&Options::keyCast, &KeyCast::outOfRange>(
        u"castToKey1",
        "a result for a key column that is out of range: 0 the key 0, 1 null, 2 stops the run",
        kZeroToTwo),
    attribute<&Options::keyCast, &KeyCast::fraction>(
        u"castToKey2",
        "a result for a key column with a fraction: 0 cuts it off, 1 null, 2 stops the run",
        kZeroToTwo),
    attribute<&Options::keyCast, &KeyCast::nullOnInput>(
        u"castToKey3",
        "a null key read from a column enters a variable as: 0 null, 1 zero, 2 stops the run",
        kZeroToTwo),
    attribute<&Options::addN>(u"addN", "offers the row number, counted from 0, as _n"),
    attribute<&Options::abortWhenError>(
        u"abortWhenError",
        "a row whose expression fails stops the run; 0: its result is null, or false"),
    attribute<&Options::useJIT>(u"useJIT", "allows native code"),
    attribute<&Options::time, &Time::addNow>(u"addNow",
                                             "offers the current time as _now, an elapsed time"),
    attribute<&Options::time, &Time::addNowS>(u"addNowS",
                                              "offers the current time as _nowS, a date text"),
    attribute<&Options::time, &Time::seed>(
        u"seed", "start of the random numbers, which then repeat; -1 takes it from the clock"),
    attribute<&Options::time, &Time::elapsedTimeUnit>(u"elapsedTimeUnit", "unit of elapsed times",
                                                      kTimeUnits),
    attribute<&Options::time, &Time::dateFormatType>(
        u"dateFormatType",
        "0: dateFormat; 1 and 2: the locale's date, short and long; 3 and 4: time; 5 and 6: date "
        "and time",
        kDateFormats),
    attribute<&Options::time, &Time::isUTC>(
        u"isUTC", "dates that state no zone are in UTC; 0: in local time"),
    attribute<&Options::time, &Time::emptyETToNull>(u"emptyETToNull",
                                                    "an empty date input is null; 0: it is 0"),
    attribute<&Options::time, &Time::referenceTime>(
        u"referenceTime", "the instant from which elapsed times count, as yyyyMMdd hh:mm:ss"),
    attribute<&Options::time, &Time::dateFormat>(u"dateFormat",
                                                 "how dates are written, for instance yyyy-MM-dd"),
    attribute<&Options::time, &Time::castToET1>(
        u"castToET1", "not 0: a date before the reference instant is 0 instead of null"),
    attribute<&Options::time, &Time::castToET2>(
        u"castToET2", "not 0: a date that is empty or cannot be read is 0 instead of null"),
};

// From the attribute of this name to the end.
EvaluationAttributes attributesFrom(std::u16string_view name) {
  EvaluationAttributes attributes = kAttributes;
  while (attributes.front().name != name) {
    attributes = attributes.subspan(1);
  }
  return attributes;
}

}  // namespace

EvaluationAttributes evaluationAttributes() {
  return kAttributes;
}

EvaluationAttributes conditionAttributes() {
  return attributesFrom(u"addN");
}

EvaluationAttributes timeAttributes() {
  return attributesFrom(u"addNow");
}

QStringList changedOptions(const EvaluationOptions& options) {
  EvaluationOptions tried = options;
  tried.abortWhenError = true;
  const EvaluationOptions defaults;
  QStringList changed;
  for (const Attribute<EvaluationOptions>& line : kAttributes) {
    if (const QString text = line.text(tried); text != line.text(defaults)) {
      changed += QString::fromUtf16(line.name) + u'=' + text;
    }
  }
  return changed;
}

}  // namespace kelvarin
