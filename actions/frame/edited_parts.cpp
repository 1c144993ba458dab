// The parts of an expression action that editors set.
#include "actions/frame/expression_action.h"
#include "actions/frame/read_back.h"
#include "actions/frame/variables_xml.h"

namespace kelvarin {

void ExpressionAction::setInputVariables(std::vector<InputVariable> variables) {
  setAsReadBack(*this, &ExpressionAction::m_inputs, std::move(variables));
  m_areInputsEdited = true;
}

void ExpressionAction::setOptions(EvaluationOptions options) {
  setAsReadBack(*this, &ExpressionAction::m_options, std::move(options));
}

XMLNode::Position ExpressionAction::locationOfInput(int index) const {
  return m_areInputsEdited ? XMLNode::Position{} : positionOfInputVariable(node(), index);
}

}  // namespace kelvarin
