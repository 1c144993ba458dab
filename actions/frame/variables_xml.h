// Input and output variables as XML elements, and the expressions inside them.
#pragma once

#include <sstream>
#include <vector>

#include "expression/evaluator/variables.h"
#include "host/contract/xml_node.h"

namespace kelvarin {

inline constexpr char16_t kInputVars[] = u"InputVars";
inline constexpr char16_t kInputVar[] = u"InputVar";
inline constexpr char16_t kOutputVars[] = u"OutputVars";
inline constexpr char16_t kOutputVar[] = u"OutputVar";

// A type code is one letter or digit; everything else reads as `otherwise`.
MetaTypeColumn readMeta(const XMLNode& node, MetaTypeColumn otherwise);
wchar_t metaCharacter(MetaTypeColumn meta);

// The InputVar children of `parent`, in their order.
std::vector<InputVariable> readInputVariables(const XMLNode& parent);
void writeInputVariable(std::wostringstream& out, const InputVariable& variable);

// The OutputVar children of `parent`. An empty expression becomes the missing value, except in an
// output that still has one of the names that new outputs are given.
std::vector<OutputVariable> readOutputVariables(const XMLNode& parent, const QStringList& newNames);
void writeOutputVariable(std::wostringstream& out, const OutputVariable& variable);

// The expression that gives the missing value of a type.
QString missingValueExpression(MetaTypeColumn meta);

}  // namespace kelvarin
