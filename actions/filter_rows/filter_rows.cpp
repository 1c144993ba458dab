#include "actions/filter_rows/filter_rows.h"

#include <algorithm>

#include "actions/filter_rows/sampling.h"
#include "actions/frame/messages.h"
#include "actions/frame/read_back.h"
#include "actions/frame/renamed_variables.h"
#include "actions/frame/variables_xml.h"
#include "expression/errors/error_texts.h"
#include "expression/errors/messages.h"
#include "expression/evaluator/messages.h"
#include "expression/options/evaluation_attributes.h"

namespace kelvarin {

namespace {

constexpr char16_t kExpression[] = u"Expression";

constexpr Attribute<FilterSettings> kBeforeOptions[] = {attribute<&FilterSettings::truncate>(
    u"truncate", "stops reading after the first row for which the expression is false")};
constexpr Attribute<FilterSettings> kAfterOptions[] = {
    attribute<&FilterSettings::comments>(u"comments", "the user's notes")};

QString readExpression(const XMLNode& node) {
  QString expression = qString(node.getAttribute(utf16(kExpression)));
  return expression.isEmpty() ? node.getChildNode(utf16(kExpression)).text() : expression;
}

// In older files the variables stand in the action itself.
XMLNode parentOfVariables(const XMLNode& node) {
  const XMLNode list = node.getChildNode(utf16(kInputVars));
  return list.isEmpty() ? node : list;
}

std::vector<AttributeDescription> describedAttributes() {
  std::vector<AttributeDescription> attributes;
  describe<FilterSettings>(attributes, kBeforeOptions);
  describe(attributes, conditionAttributes());
  describe<FilterSettings>(attributes, kAfterOptions);
  attributes.push_back({QString::fromUtf16(kExpression), AttributeKind::text,
                        QStringLiteral("the expression in older files; where the element of this "
                                       "name is there too, the attribute counts"),
                        QStringLiteral("")});
  return attributes;
}

std::vector<ElementDescription> describedElements() {
  ElementDescription expression{.name = QString::fromUtf16(kExpression),
                                .meaning = QStringLiteral("the condition"),
                                .textMeaning = QStringLiteral("the expression")};
  ElementDescription older = inputVarElement();
  older.meaning =
      QStringLiteral("a variable of the expression in older files, which have no InputVars");
  older.replacedBy = QString::fromUtf16(kInputVars);
  return {std::move(expression), inputVarsElement(), std::move(older)};
}

}  // namespace

const ActionDescription& FilterRows::catalogue() {
  static const ActionDescription entry{
      .typeName = "FilterRows",
      .toolTip = "Filter rows based on an expression",
      .helpId = "5_5_7_filter_rows_high_speed_",
      .tags = {"150_Standard"},
      .keywords = {"math", "exp", "expression", "remove", "row", "filter"},
      .image = ":/KelvarinMathParser/rowFilter.svg",
      .version = 2.08,
      .attributes = describedAttributes(),
      .children = describedElements()};
  return entry;
}

FilterRows::FilterRows(XMLNode node, GlobalParameters* parameters) : Catalogued(node, parameters) {
  m_inputPinCount = 2;
  m_outputPinCount = 2;
  m_inputs = readInputVariables(parentOfVariables(node), parameters);
  m_settings.expression = readExpression(node);
  readAttributes<FilterSettings>(node, kBeforeOptions, m_settings, parameters);
  readAttributes(node, conditionAttributes(), m_options, parameters);
  readAttributes<FilterSettings>(node, kAfterOptions, m_settings, parameters);
  if (sampleSizeOf(m_settings.expression).value_or(0) > 0) {
    m_settings.truncate = true;
  }
}

void FilterRows::saveXML(std::wostringstream& out, QString name) {
  saveAI(out, name, catalogue().version);
  writeAttributes<FilterSettings>(out, kBeforeOptions, m_settings);
  writeAttributes(out, conditionAttributes(), m_options);
  writeAttributes<FilterSettings>(out, kAfterOptions, m_settings);
  out << L">\n <Expression>" << elementText(m_settings.expression)
      << L"</Expression>\n <InputVars>\n";
  for (const InputVariable& variable : m_inputs) {
    writeInputVariable(out, variable);
  }
  out << L" </InputVars>\n</" << typeName() << L">\n";
}

std::vector<ElementFault> FilterRows::settingFaults() const {
  const XMLNode element = node().getChildNode(utf16(kExpression));
  const QString attribute = qString(node().getAttribute(utf16(kExpression))).trimmed();
  const QString text = element.text().trimmed();
  if (attribute.isEmpty() || text.isEmpty() || attribute == text) {
    return {};
  }
  return {{LogLevel::warning, element, action_messages::twoExpressionsOfFilter()}};
}

void FilterRows::setSettings(FilterSettings settings) {
  const bool truncates = settings.truncate;
  setAsReadBack(*this, &FilterRows::m_settings, std::move(settings));
  m_settings.truncate = truncates;
}

ColumnFate FilterRows::followColumn(const QString& oldName, const QString& newName) {
  RenamedVariables renamed = renamedVariables(m_inputs, oldName, newName);
  setInputVariables(std::move(renamed.variables));
  if (renamed.mustExpressionsFollow) {
    FilterSettings settings = m_settings;
    settings.expression = withRenamedVariable(settings.expression, oldName, newName);
    setSettings(std::move(settings));
  }
  return ColumnFate::passedOn;
}

void FilterRows::renameParameter(const QString& oldName, const QString& newName) {
  if (!isVariable(m_inputs, oldName)) {
    FilterSettings settings = m_settings;
    settings.expression = withRenamedVariable(settings.expression, oldName, newName);
    setSettings(std::move(settings));
  }
}

QStringList FilterRows::expressions() const {
  return {m_settings.expression};
}

QString FilterRows::pinName(int pin, bool isOutput) const {
  if (isOutput) {
    return pin == 0 ? QStringLiteral("true") : QStringLiteral("false");
  }
  return pin == 1 ? QStringLiteral("table of variables") : QString();
}

char FilterRows::init() {
  m_sampleSize = 0;
  m_rowsSampled = 0;
  m_wasTruncated = false;
  m_stage.reset();
  if (m_settings.expression.trimmed().isEmpty()) {
    MainUI::addLog(LogLevel::warning, action_messages::filterWithoutExpression());
  }
  return ExpressionAction::init();
}

LogDetails FilterRows::detailsOfOutput(int) const {
  LogDetails details;
  details.elementPosition = node().getChildNode(utf16(kExpression)).position();
  return details;
}

QString FilterRows::failedRowsText(const FailureCount& failures) const {
  return messages::failedFilterRows(failures.count, failures.firstName, failures.firstRow,
                                    failures.firstMessage);
}

void FilterRows::countRows(const StageResult& result, std::size_t begin, std::size_t end) {
  const std::array<std::size_t, 2> unread = m_stage->unreadRows(result, begin, end);
  for (std::size_t pin = 0; pin < unread.size(); ++pin) {
    countRowsOfOutputPin(static_cast<int>(pin), unread[pin]);
  }
}

void FilterRows::setComputeRoutine() {
  computeRoutine = &FilterRows::computeFirstRow;
}

float FilterRows::computeCompletion() const {
  if (isSampling()) {
    return static_cast<float>(std::min(m_rowsSampled, m_sampleSize)) /
           static_cast<float>(m_sampleSize);
  }
  const ActionItem* upstream = getActionItemOnInPin(0);
  return upstream == nullptr ? -1.0f : upstream->completion();
}

QString FilterRows::expressionFailureText(const RowFailure& failure) const {
  return filterErrorText(failure.error, rowNumber());
}

QString FilterRows::checkText(const QString&, const QString& text) const {
  return messages::filterOpening() + text;
}

QString FilterRows::referenceTimeWarning() const {
  return messages::referenceUnparsable();
}

}  // namespace kelvarin
