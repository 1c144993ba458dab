#include "actions/frame/evaluation_attributes.h"

#include <sstream>

#include "actions/frame/attributes.h"

namespace kelvarin {

namespace {

constexpr Attribute<EvaluationOptions> kFlags[] = {
    attribute<&EvaluationOptions::addN>(u"addN"),
    attribute<&EvaluationOptions::abortWhenError>(u"abortWhenError"),
    attribute<&EvaluationOptions::useJIT>(u"useJIT"),
};

constexpr Attribute<KeyCast> kKeyCast[] = {
    attribute<&KeyCast::outOfRange, kZeroToTwo>(u"castToKey1"),
    attribute<&KeyCast::fraction, kZeroToTwo>(u"castToKey2"),
    attribute<&KeyCast::nullOnInput, kZeroToTwo>(u"castToKey3"),
};

constexpr AllowedNumbers kTimeUnits{
    0, 4, "0 (seconds), 1 (minutes), 2 (hours), 3 (days) or 4 (weeks)",
    "With any other unit every elapsed time is 0."};
constexpr AllowedNumbers kDateFormats{
    0, 6, "0 (as dateFormat says) or one of the locale's formats 1 to 6"};

constexpr Attribute<TimeParameters> kTime[] = {
    attribute<&TimeParameters::addNow>(u"addNow"),
    attribute<&TimeParameters::addNowS>(u"addNowS"),
    attribute<&TimeParameters::seed>(u"seed"),
    attribute<&TimeParameters::elapsedTimeUnit, kTimeUnits>(u"elapsedTimeUnit"),
    attribute<&TimeParameters::dateFormatType, kDateFormats>(u"dateFormatType"),
    attribute<&TimeParameters::isUTC>(u"isUTC"),
    attribute<&TimeParameters::emptyETToNull>(u"emptyETToNull"),
    attribute<&TimeParameters::referenceTime>(u"referenceTime"),
    attribute<&TimeParameters::dateFormat>(u"dateFormat"),
    attribute<&TimeParameters::castToET1>(u"castToET1"),
    attribute<&TimeParameters::castToET2>(u"castToET2"),
};

}  // namespace

void readEvaluationFlags(const XMLNode& node, EvaluationOptions& options) {
  readAttributes<EvaluationOptions>(node, kFlags, options);
}

void writeEvaluationFlags(std::wostream& out, const EvaluationOptions& options) {
  writeAttributes<EvaluationOptions>(out, kFlags, options);
}

void readKeyCast(const XMLNode& node, KeyCast& keyCast) {
  readAttributes<KeyCast>(node, kKeyCast, keyCast);
}

void writeKeyCast(std::wostream& out, const KeyCast& keyCast) {
  writeAttributes<KeyCast>(out, kKeyCast, keyCast);
}

void readTimeParameters(const XMLNode& node, TimeParameters& time) {
  readAttributes<TimeParameters>(node, kTime, time);
}

QStringList changedOptions(const EvaluationOptions& options) {
  EvaluationOptions tried = options;
  tried.abortWhenError = true;
  std::wostringstream out;
  out << L"<o";
  writeEvaluationFlags(out, tried);
  writeKeyCast(out, tried.keyCast);
  writeTimeParameters(out, tried.time);
  out << L"/>";
  QStringList changed;
  const auto element = parseXml(QString::fromStdWString(out.str()).toUtf8());
  for (int i = 0; element && i < element->nAttribute(); ++i) {
    changed += element->attributeName(i) + u'=' + element->attributeValue(i);
  }
  return changed;
}

void writeTimeParameters(std::wostream& out, const TimeParameters& time) {
  writeAttributes<TimeParameters>(out, kTime, time);
}

}  // namespace kelvarin
