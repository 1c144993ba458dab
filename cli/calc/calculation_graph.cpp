#include "cli/calc/calculation_graph.h"

#include <sstream>

#include "expression/options/evaluation_attributes.h"
#include "host/contract/attribute_table.h"

namespace kelvarin {

namespace {

// "calculate", "calculate 2" and so on.
QString numbered(const QString& name, std::size_t index) {
  return index == 0 ? name : name + u' ' + QString::number(index + 1);
}

void writeInputs(std::wostringstream& out, const std::vector<InputVariable>& inputs) {
  out << L"<InputVars>";
  for (const InputVariable& input : inputs) {
    out << L"<InputVar";
    writeAttribute(out, u"column", input.columns.first());
    writeAttribute(out, u"label", input.label);
    writeAttribute(out, u"isNumber", textOfValue(input.isNumber));
    if (input.meta == MetaTypeColumn::date) {
      writeAttribute(out, u"meta", textOfValue(input.meta));
    }
    out << L"/>";
  }
  out << L"</InputVars>";
}

class StepWriter {
 public:
  StepWriter(const Calculation& calculation, ExpressionForm form)
      : m_calculation(calculation), m_form(form) {}

  QString calculator(const QString& name, const CalculatorPlan& plan) const {
    std::wostringstream out;
    out << L"<Calculator";
    writeAttribute(out, u"name", name);
    writeAttributes<EvaluationOptions>(out, evaluationAttributes(), m_calculation.options());
    out << L'>';
    writeInputs(out, plan.inputs);
    out << L"<OutputVars>";
    for (const OutputVariable& output : plan.outputs) {
      out << L"<OutputVar";
      writeAttribute(out, u"name", output.name);
      writeAttribute(out, u"meta", textOfValue(output.meta));
      writeAttribute(out, u"update", textOfValue(output.update));
      out << L'>' << textOf(output.expression) << L"</OutputVar>";
    }
    out << L"</OutputVars></Calculator>";
    return QString::fromStdWString(out.str());
  }

  QString filter(const QString& name, const FilterPlan& plan) const {
    std::wostringstream out;
    out << L"<FilterRows";
    writeAttribute(out, u"name", name);
    writeAttributes<EvaluationOptions>(out, conditionAttributes(), m_calculation.options());
    out << L"><Expression>" << textOf(plan.condition) << L"</Expression>";
    writeInputs(out, plan.inputs);
    out << L"</FilterRows>";
    return QString::fromStdWString(out.str());
  }

 private:
  std::wstring textOf(const QString& labelled) const {
    return elementText(m_form == ExpressionForm::plain
                           ? m_calculation.labels().withoutPadding(labelled)
                           : labelled);
  }

  const Calculation& m_calculation;
  const ExpressionForm m_form;
};

}  // namespace

std::vector<ConversionStep> stepsOf(const Calculation& calculation, ExpressionForm form) {
  const StepWriter writer(calculation, form);
  std::vector<ConversionStep> steps;
  const std::vector<CalculatorPlan>& calculators = calculation.calculators();
  for (std::size_t i = 0; i < calculators.size(); ++i) {
    const QString name = numbered(QStringLiteral("calculate"), i);
    steps.push_back({name, writer.calculator(name, calculators[i])});
  }
  const std::vector<FilterPlan>& filters = calculation.filters();
  for (std::size_t i = 0; i < filters.size(); ++i) {
    const QString name = numbered(QStringLiteral("filter"), i);
    steps.push_back({name, writer.filter(name, filters[i])});
  }
  return steps;
}

}  // namespace kelvarin
