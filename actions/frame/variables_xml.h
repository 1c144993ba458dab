// Input and output variables as XML elements, and the expressions inside them.
#pragma once

#include <sstream>
#include <vector>

#include "expression/evaluator/variables.h"
#include "host/contract/described_action.h"

namespace kelvarin {

inline constexpr char16_t kInputVars[] = u"InputVars";
inline constexpr char16_t kInputVar[] = u"InputVar";
inline constexpr char16_t kOutputVars[] = u"OutputVars";
inline constexpr char16_t kOutputVar[] = u"OutputVar";

// The elements of a list of texts, of the input variables and of the outputs.
ElementDescription stringListElement(const QString& textMeaning);
ElementDescription inputVarElement();
ElementDescription inputVarsElement();
ElementDescription outputVarsElement();
// The types that an input variable may have.
inline constexpr char kCountsAsText[] = "It counts as U (text).";
inline constexpr AllowedValues kInputTypes{.codes = "FKUD",
                                           .inWords = "F (number), K (key), U (text) or D (date)",
                                           .effectOfOthers = kCountsAsText};

// The InputVar children of `parent`, in their order.
std::vector<InputVariable> readInputVariables(const XMLNode& parent,
                                              const GlobalParameters* parameters);
void writeInputVariable(std::wostringstream& out, const InputVariable& variable);

// The OutputVar children of `parent`. An empty expression becomes the missing value, except in an
// output that still has one of the names that new outputs are given.
std::vector<OutputVariable> readOutputVariables(const XMLNode& parent, const QStringList& newNames,
                                                const GlobalParameters* parameters);
void writeOutputVariable(std::wostringstream& out, const OutputVariable& variable);

// Where the variables of an action stand in the graph file. Input variables may be children of the
// action itself, as in older files.
XMLNode::Position positionOfInputVariable(const XMLNode& action, int index);
XMLNode::Position positionOfOutputVariable(const XMLNode& action, int index);
std::vector<XMLNode> outputVariableElements(const XMLNode& action);
// The output variable was given an expression, be it in its text or in an attribute.
bool hasExpression(const XMLNode& outputVariable);
// Warnings about outputs with an expression in the text and another one in the attribute.
std::vector<ElementFault> faultsOfOutputVariables(const XMLNode& action);

// The expression whose value is the missing one of a type.
QString missingValueExpression(MetaTypeColumn meta);

}  // namespace kelvarin
