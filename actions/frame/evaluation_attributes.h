// The attributes that every expression action has: the options of its evaluation and the standard
// time parameters.
#pragma once

#include <ostream>

#include <QStringList>

#include "expression/evaluator/variables.h"
#include "host/xml/xml_node.h"

namespace kelvarin {

void readEvaluationFlags(const XMLNode& node, EvaluationOptions& options);
void writeEvaluationFlags(std::wostream& out, const EvaluationOptions& options);

// NAME=VALUE of each attribute that has not its default, as `kelvarin eval --opt` takes it, but for
// the treatment of failed rows.
QStringList changedOptions(const EvaluationOptions& options);

void readKeyCast(const XMLNode& node, KeyCast& keyCast);
void writeKeyCast(std::wostream& out, const KeyCast& keyCast);

void readTimeParameters(const XMLNode& node, TimeParameters& time);
void writeTimeParameters(std::wostream& out, const TimeParameters& time);

}  // namespace kelvarin
