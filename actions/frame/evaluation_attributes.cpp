#include "actions/frame/evaluation_attributes.h"

#include "actions/frame/attributes.h"

namespace kelvarin {

namespace {

constexpr Attribute<EvaluationOptions> kFlags[] = {
    attribute<&EvaluationOptions::addN>(u"addN"),
    attribute<&EvaluationOptions::abortWhenError>(u"abortWhenError"),
    attribute<&EvaluationOptions::useJIT>(u"useJIT"),
};

constexpr Attribute<KeyCast> kKeyCast[] = {
    attribute<&KeyCast::outOfRange>(u"castToKey1"),
    attribute<&KeyCast::fraction>(u"castToKey2"),
    attribute<&KeyCast::nullOnInput>(u"castToKey3"),
};

constexpr Attribute<TimeParameters> kTime[] = {
    attribute<&TimeParameters::addNow>(u"addNow"),
    attribute<&TimeParameters::addNowS>(u"addNowS"),
    attribute<&TimeParameters::seed>(u"seed"),
    attribute<&TimeParameters::elapsedTimeUnit>(u"elapsedTimeUnit"),
    attribute<&TimeParameters::dateFormatType>(u"dateFormatType"),
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

void writeTimeParameters(std::wostream& out, const TimeParameters& time) {
  writeAttributes<TimeParameters>(out, kTime, time);
}

}  // namespace kelvarin
