#include "library/expressions/expression_graph.h"

#include <algorithm>
#include <set>

#include "expression/options/evaluation_attributes.h"
#include "expression/tokens/expression_tokens.h"

namespace kelvarin {

namespace {

constexpr char16_t kSource[] = u"stream";
constexpr char16_t kCalculation[] = u"calculation";
constexpr char16_t kCondition[] = u"condition";
constexpr char16_t kSink[] = u"output";
const QString kRowNumber = QStringLiteral("_n");
const QString kOffersRowNumber = QStringLiteral("addN");
const QString kTruncates = QStringLiteral("truncate");

std::set<QString> namesIn(const QStringList& expressions) {
  std::set<QString> names;
  for (const QString& expression : expressions) {
    const ExpressionTokens tokens(expression);
    for (std::size_t i = 0; i < tokens.size(); ++i) {
      if (isFreeName(tokens.all(), i)) {
        names.insert(tokens.text(tokens[i]).toString());
      }
    }
  }
  return names;
}

bool isAmong(EvaluationAttributes attributes, const QString& name) {
  return std::ranges::any_of(attributes, [&](const Attribute<EvaluationOptions>& line) {
    return name == QString::fromUtf16(line.name);
  });
}

// Whether the setting is given, and off.
bool isOff(const QString* setting) {
  return setting != nullptr && *setting == QLatin1String("0");
}

}  // namespace

const QString* ExpressionSettings::valueOf(const QString& setting) const {
  const auto found = std::ranges::find(settings, setting, &Setting::name);
  return found == settings.end() ? nullptr : &found->value;
}

bool isExpressionSetting(const QString& name) {
  return isAmong(evaluationAttributes(), name) || name == kTruncates;
}

bool truncates(const ExpressionSettings& settings) {
  const QString* value = settings.valueOf(kTruncates);
  return value != nullptr && !isOff(value);
}

Outcome<Graph> ExpressionGraph::whole(const ActionCatalogue& catalogue) const {
  GraphText text;
  text.openAction(u"InlineTable", kSource);
  text.close();
  if (!m_settings.outputs.empty()) {
    addCalculator(text);
  }
  if (!m_settings.condition.isEmpty()) {
    addFilter(text);
  }
  text.openAction(u"Discard", kSink);
  text.close();
  return text.parse(catalogue);
}

Outcome<Graph> ExpressionGraph::calculator(const ActionCatalogue& catalogue) const {
  GraphText text;
  addCalculator(text);
  return text.parse(catalogue);
}

std::vector<bool> ExpressionGraph::unreadColumns() const {
  QStringList expressions = outputExpressions();
  expressions += m_settings.condition;
  const std::set<QString> names = namesIn(expressions);
  std::vector<bool> unread;
  for (const QString& name : m_input.names) {
    unread.push_back(!names.contains(name));
  }
  return unread;
}

QStringList ExpressionGraph::outputExpressions() const {
  QStringList expressions;
  for (const ExpressionSettings::Output& output : m_settings.outputs) {
    expressions += output.expression;
  }
  return expressions;
}

int ExpressionGraph::transformCount() const {
  return (m_settings.outputs.empty() ? 0 : 1) + (m_settings.condition.isEmpty() ? 0 : 1);
}

bool ExpressionGraph::hasRowNumber(bool isCondition) const {
  const TableColumns& columns = isCondition ? columnsOfCondition() : m_input;
  return !isOff(m_settings.valueOf(kOffersRowNumber)) && !columns.names.contains(kRowNumber);
}

// It sees the outputs, too.
TableColumns ExpressionGraph::columnsOfCondition() const {
  TableColumns columns = m_input;
  for (const ExpressionSettings::Output& output : m_settings.outputs) {
    const qsizetype index = columns.names.indexOf(output.name);
    if (index < 0) {
      columns.names.append(output.name);
      columns.types.push_back(output.type.value_or(MetaTypeColumn::number));
    } else {
      columns.types[static_cast<std::size_t>(index)] = output.type.value_or(MetaTypeColumn::number);
    }
  }
  return columns;
}

void ExpressionGraph::addSettings(GraphText& graph, bool isCondition) const {
  for (const ExpressionSettings::Setting& setting : m_settings.settings) {
    const bool isKnown = setting.name == kTruncates
                             ? isCondition
                             : !isCondition || isAmong(conditionAttributes(), setting.name);
    if (isKnown && setting.name != kOffersRowNumber) {
      graph.attribute(setting.name.toStdU16String().c_str(), setting.value);
    }
  }
  graph.attribute(u"addN", hasRowNumber(isCondition) ? 1 : 0);
}

// Only the columns that the expressions name, so that no others are loaded.
void ExpressionGraph::addVariables(GraphText& graph, const QStringList& expressions,
                                   const TableColumns& columns) const {
  const std::set<QString> names = namesIn(expressions);
  graph.open(u"InputVars");
  for (std::size_t i = 0; i < columns.types.size(); ++i) {
    const QString& name = columns.names[static_cast<qsizetype>(i)];
    if (names.contains(name)) {
      graph.open(u"InputVar");
      graph.attribute(u"column", name);
      graph.attribute(u"isNumber", fixedSizeOf(columns.types[i]) != 0 ? 1 : 0);
      graph.close();
    }
  }
  graph.close();
}

void ExpressionGraph::addCalculator(GraphText& graph) const {
  graph.openAction(u"Calculator", kCalculation);
  addSettings(graph, false);
  addVariables(graph, outputExpressions(), m_input);
  graph.open(u"OutputVars");
  for (const ExpressionSettings::Output& output : m_settings.outputs) {
    const auto type = static_cast<char>(output.type.value_or(MetaTypeColumn::number));
    graph.open(u"OutputVar");
    graph.attribute(u"name", output.name);
    graph.attribute(u"meta", QString(QChar::fromLatin1(type)));
    graph.attribute(u"update", m_input.names.contains(output.name) ? 1 : 0);
    graph.text(output.expression);
    graph.close();
  }
  graph.close();
  graph.close();
}

void ExpressionGraph::addFilter(GraphText& graph) const {
  graph.openAction(u"FilterRows", kCondition);
  addSettings(graph, true);
  graph.open(u"Expression");
  graph.text(m_settings.condition);
  graph.close();
  addVariables(graph, {m_settings.condition}, columnsOfCondition());
  graph.close();
}

}  // namespace kelvarin
