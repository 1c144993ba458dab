// Input and output variables as XML elements, and the expressions inside them.
#pragma once

#include <sstream>
#include <vector>

#include "expression/evaluator/variables.h"
#include "host/xml/xml_node.h"

namespace kelvarin {

inline constexpr char16_t kInputVars[] = u"InputVars";
inline constexpr char16_t kInputVar[] = u"InputVar";
inline constexpr char16_t kOutputVars[] = u"OutputVars";
inline constexpr char16_t kOutputVar[] = u"OutputVar";

// A type code is one letter or digit; everything else reads as `otherwise`. Whoever loads the graph
// is told of a code that is not among `known`, and of a text of several letters.
MetaTypeColumn readMeta(const XMLNode& node, MetaTypeColumn otherwise, const char* known);
inline constexpr char kInputMetas[] = "FKUD";
inline constexpr char kOutputMetas[] = "FKU";
wchar_t metaCharacter(MetaTypeColumn meta);

// The InputVar children of `parent`, in their order.
std::vector<InputVariable> readInputVariables(const XMLNode& parent);
void writeInputVariable(std::wostringstream& out, const InputVariable& variable);

// The OutputVar children of `parent`. An empty expression becomes the missing value, except in an
// output that still has one of the names that new outputs are given.
std::vector<OutputVariable> readOutputVariables(const XMLNode& parent, const QStringList& newNames);
void writeOutputVariable(std::wostringstream& out, const OutputVariable& variable);

// Where the variables of an action stand in the graph file. Input variables may be children of the
// action itself, as in older files.
XMLNode::Place placeOfInputVariable(const XMLNode& action, int index);
XMLNode::Place placeOfOutputVariable(const XMLNode& action, int index);
std::vector<XMLNode> outputVariableElements(const XMLNode& action);
// The output variable was given an expression, be it in its text or in an attribute.
bool hasExpression(const XMLNode& outputVariable);

// The expression that gives the missing value of a type.
QString missingValueExpression(MetaTypeColumn meta);

}  // namespace kelvarin
