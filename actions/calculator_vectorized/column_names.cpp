#include "actions/calculator_vectorized/column_names.h"

#include <mutex>

#include "actions/frame/messages.h"
#include "expression/errors/error_texts.h"
#include "expression/evaluator/expression_evaluator.h"
#include "host/contract/process_wide.h"

namespace kelvarin {

namespace {

constexpr int kElementNumber = 0;  // the variable `_n`
constexpr int kFirstAlias = 1;

InputVariable textVariable(const QString& name) {
  InputVariable variable;
  variable.label = name;
  variable.isNumber = false;
  return variable;
}

QString failureText(const QString& nameExpression, const ExpressionError& error) {
  return action_messages::nameExpressionFailed(nameExpression, errorTextWithPosition(error));
}

class ColumnNamer {
 public:
  ColumnNamer(const VectorTable& vectors, const QStringList& nameExpressions,
              const NamingRules& rules)
      : m_vectors(vectors), m_expressions(nameExpressions), m_rules(rules) {}

  Status<QString> prepare() {
    std::vector<InputVariable> texts{textVariable(QStringLiteral("_n"))};
    for (const InputVariable& vector : m_vectors.variables) {
      texts.push_back(textVariable(vector.name()));
    }
    EvaluationOptions options = m_rules.options;
    options.addN = false;
    m_evaluator.expressions.configure(options, texts, m_rules.parameters, false);
    m_evaluator.expressions.setBounds(m_rules.bounds);
    m_evaluator.expressions.requireBackend(BackendKind::string);
    const DateStatus dates = m_evaluator.expressions.prepareDateContext(m_expressions);
    if (dates == DateStatus::dateFormatUnknown) {
      return Failure{m_rules.dateFormatUnknown};
    }
    setColumns(0, [](const InputVariable& variable) { return !variable.isVector; });
    return compile();
  }

  Status<QString> addNamesOf(int element, QStringList& names) {
    m_evaluator.expressions.setText(kElementNumber, QString::number(element));
    setColumns(element, [](const InputVariable& variable) { return variable.isVector; });
    m_evaluator.rows.startRow();
    for (int i = 0; i < m_evaluator.expressions.outputCount(); ++i) {
      if (m_evaluator.rows.evaluate(i) != RowOutcome::ok) {
        return Failure{failureText(m_expressions[i], m_evaluator.rows.lastFailure().error)};
      }
      const ExpressionValue& name = m_evaluator.rows.value(i);
      if (name.type != ExpressionValue::Type::text || name.text.isNull()) {
        return Failure{action_messages::nameIsNoText(m_expressions[i])};
      }
      if (const QString refusal = controlCharacterText(name.text); !refusal.isEmpty()) {
        return Failure{action_messages::nameExpressionFailed(m_expressions[i], refusal)};
      }
      names.append(name.text);
    }
    return Done{};
  }

 private:
  Status<QString> compile() {
    for (const QString& expression : m_expressions) {
      OutputVariable output;
      output.expression = expression;
      const auto compiled = m_evaluator.expressions.compile(output, ResultUse::anyValue);
      if (!compiled) {
        return Failure{failureText(expression, compiled.error())};
      }
    }
    m_evaluator.start();
    return Done{};
  }

  template <typename IsChosen>
  void setColumns(int element, IsChosen isChosen) {
    int variable = kFirstAlias;
    for (const InputVariable& vector : m_vectors.variables) {
      if (isChosen(vector)) {
        m_evaluator.expressions.setText(
            variable, m_rules.expand(vector.columns[vector.isVector ? element : 0]));
      }
      ++variable;
    }
  }

  const VectorTable& m_vectors;
  const QStringList& m_expressions;
  const NamingRules& m_rules;
  ExpressionEvaluator m_evaluator;
};

}  // namespace

Result<QStringList, QString> nameColumns(const VectorTable& vectors,
                                         const QStringList& nameExpressions,
                                         const NamingRules& rules) {
  const std::lock_guard lock(columnNamesMutex());
  ColumnNamer namer(vectors, nameExpressions, rules);
  if (const auto prepared = namer.prepare(); !prepared) {
    return Failure{prepared.error()};
  }
  QStringList names;
  for (int element = 0; element < vectors.elementCount; ++element) {
    if (rules.isStopped && rules.isStopped()) {
      return Failure{QString()};
    }
    if (const auto added = namer.addNamesOf(element, names); !added) {
      return Failure{added.error()};
    }
  }
  return names;
}

}  // namespace kelvarin
