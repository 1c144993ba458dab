#include "ui/debugger/debugger_controls.h"

#include <limits>

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "host/widgets/icon_button.h"
#include "ui/widgets/expression_field.h"
#include "ui/widgets/flow_layout.h"
#include "ui/widgets/k_plain_text_edit.h"

namespace kelvarin {

namespace {

enum Target { toBreakpoint, toRow, toFailure, toNull, toEnd };

constexpr int kConditionCharacters = 36;

// Controls that stay side by side.
QWidget* grouped(QWidget* parent, std::initializer_list<QWidget*> widgets) {
  auto* group = new QWidget(parent);
  auto* layout = new QHBoxLayout(group);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  for (QWidget* widget : widgets) {
    layout->addWidget(widget);
  }
  return group;
}

}  // namespace

DebuggerControls::DebuggerControls(const DebuggerTexts& texts, QWidget* parent)
    : QWidget(parent), m_texts(texts) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(8);
  layout->addWidget(makeSteps(texts));
  layout->addWidget(makeRules());
  layout->addWidget(m_condition->verdict());
  m_expertOnly = {m_startStop, m_next, m_pause, m_breaks, m_condition, m_target, m_row, m_runTo};
  fitCondition();
  showTarget();
  setElementCount(0);
  setPossible({});
}

void DebuggerControls::fitCondition() {
  m_condition->setMinimumWidth(kConditionCharacters * fontMetrics().averageCharWidth());
}

void DebuggerControls::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange) {
    fitCondition();
  }
}

QWidget* DebuggerControls::makeSteps(const DebuggerTexts& texts) {
  auto* line = new QWidget(this);
  m_steps = new FlowLayout(line);
  m_startStop = new QPushButton(texts.start, line);
  m_startStop->setObjectName(QStringLiteral("pbStartStop"));
  m_next = new QPushButton(texts.next, line);
  m_next->setObjectName(QStringLiteral("pbNext"));
  m_pause = new QPushButton(tr("&Pause"), line);
  m_pause->setObjectName(QStringLiteral("pbPause"));
  m_back = new IconButton(IconName::back, tr("The row before (Shift+F10)"), line);
  m_back->setObjectName(QStringLiteral("pbBack"));
  m_forward = new IconButton(IconName::next, tr("The row after (Ctrl+Shift+F10)"), line);
  m_forward->setObjectName(QStringLiteral("pbForward"));
  auto* elementLabel = new QLabel(tr("&Element:"), line);
  m_element = new QSpinBox(line);
  m_element->setObjectName(QStringLiteral("sbElement"));
  m_element->setAccessibleName(tr("Element of the vectors"));
  elementLabel->setBuddy(m_element);
  m_elementGroup = grouped(line, {elementLabel, m_element});
  for (QWidget* widget : std::initializer_list<QWidget*>{
           m_startStop, m_next, m_pause, grouped(line, {m_back, m_forward}), m_elementGroup}) {
    m_steps->addWidget(widget);
  }
  connect(m_startStop, &QPushButton::clicked, this, &DebuggerControls::startOrStopWanted);
  connect(m_next, &QPushButton::clicked, this, &DebuggerControls::nextWanted);
  connect(m_pause, &QPushButton::clicked, this, &DebuggerControls::pauseWanted);
  connect(m_back, &IconButton::clicked, this, &DebuggerControls::backWanted);
  connect(m_forward, &IconButton::clicked, this, &DebuggerControls::forwardWanted);
  connect(m_element, &QSpinBox::valueChanged, this, [this](int element) {
    m_chosenElement = element;
    emit elementChanged(element);
  });
  return line;
}

QWidget* DebuggerControls::makeRules() {
  auto* line = new QWidget(this);
  auto* layout = new FlowLayout(line);
  m_breaks = new QCheckBox(tr("&Breakpoint where"), line);
  m_breaks->setObjectName(QStringLiteral("cbBreakpoint"));
  m_condition = new ExpressionField(line, ExpressionField::Form::line);
  m_condition->setHistoryKey(QStringLiteral("breakpoint"));
  KPlainTextEdit* editor = m_condition->editor();
  editor->setObjectName(QStringLiteral("leBreakpoint"));
  editor->setAccessibleName(tr("Condition of the breakpoint"));
  editor->setPlaceholderText(tr("price > 100"));
  auto* runToLabel = new QLabel(tr("&Run to:"), line);
  m_target = new QComboBox(line);
  m_target->setObjectName(QStringLiteral("cbRunTo"));
  m_target->addItems({tr("the breakpoint"), tr("row number"), tr("the next error"),
                      tr("the next null or NaN"), tr("the end")});
  m_target->setAccessibleName(tr("Where the run stops next"));
  runToLabel->setBuddy(m_target);
  m_row = new QSpinBox(line);
  m_row->setObjectName(QStringLiteral("sbRunToRow"));
  m_row->setAccessibleName(tr("Number of the row, counted from 0"));
  m_row->setRange(0, std::numeric_limits<int>::max());
  m_row->setGroupSeparatorShown(true);
  m_runTo = new QPushButton(tr("Run (Ctrl+F10)"), line);
  m_runTo->setObjectName(QStringLiteral("pbRunTo"));
  layout->addWidget(grouped(line, {m_breaks, m_condition}));
  layout->addWidget(grouped(line, {runToLabel, m_target, m_row, m_runTo}));
  connect(m_breaks, &QCheckBox::clicked, this, &DebuggerControls::conditionChanged);
  connect(m_condition, &ExpressionField::editingFinished, this,
          &DebuggerControls::conditionChanged);
  connect(editor, &QPlainTextEdit::textChanged, this,
          [this] { m_breaks->setChecked(!m_condition->expression().trimmed().isEmpty()); });
  connect(m_target, &QComboBox::currentIndexChanged, this, &DebuggerControls::showTarget);
  connect(m_runTo, &QPushButton::clicked, this, &DebuggerControls::runToWanted);
  return line;
}

void DebuggerControls::showTarget() {
  m_row->setVisible(m_target->currentIndex() == toRow);
}

void DebuggerControls::addCheckButton(QPushButton* check) {
  std::vector<QLayoutItem*> behind;
  while (QLayoutItem* item = m_steps->takeAt(0)) {
    behind.push_back(item);
  }
  m_steps->addWidget(check);
  for (QLayoutItem* item : behind) {
    m_steps->addItem(item);
  }
  setTabOrder(m_startStop, check);  // from wherever it was made to this pair, and then its order
  setTabOrder(check, m_startStop);
}

void DebuggerControls::setPossible(const Possible& possible) {
  const QString hint = possible.isExpert ? QString() : tr("Switch To Expert Mode to Activate");
  for (QWidget* widget : m_expertOnly) {
    widget->setEnabled(possible.isExpert);
    widget->setToolTip(hint);
  }
  if (possible.isExpert) {
    m_startStop->setToolTip(tr("F5 starts, and goes on to the breakpoint; Shift+F5 stops"));
    m_breaks->setToolTip(
        tr("Stops where the condition is true (F9). It may use the variables "
           "and the results of the row."));
    m_condition->setToolTip(m_breaks->toolTip());
  }
  m_startStop->setText(possible.isRunning ? m_texts.stop : m_texts.start);
  m_next->setEnabled(possible.isExpert && possible.isRunning);
  m_pause->setEnabled(possible.isExpert && possible.isRunning && !possible.isWaiting);
  m_back->setEnabled(possible.hasEarlierRow);
  m_forward->setEnabled(possible.hasLaterRow);
}

// Shorter vectors of another run do not change what was chosen.
void DebuggerControls::setElementCount(int count) {
  const QSignalBlocker notChosen(m_element);
  m_element->setMaximum(std::max(0, count - 1));
  m_element->setValue(m_chosenElement);
  m_elementGroup->setVisible(count > 0);
}

void DebuggerControls::setElement(int element) {
  m_element->setMaximum(std::max(m_element->maximum(), element));
  m_element->setValue(element);
}

int DebuggerControls::element() const {
  return m_element->value();
}

QString DebuggerControls::condition() const {
  return m_breaks->isChecked() ? m_condition->expression().trimmed() : QString();
}

DebugRules DebuggerControls::breakpointRules() const {
  DebugRules rules;
  rules.everyRow = false;
  rules.condition = condition();
  rules.element = element();
  return rules;
}

// A breakpoint on the way to another target stops, too.
DebugRules DebuggerControls::rules() const {
  DebugRules rules = breakpointRules();
  const int target = m_target->currentIndex();
  rules.row = target == toRow ? m_row->value() : -1;
  rules.atFailure = target == toFailure;
  rules.atNull = target == toNull;
  if (target == toEnd) {
    rules.condition.clear();
  }
  return rules;
}

void DebuggerControls::setConditionFormula(const Formula& formula) {
  m_condition->setFormula(formula);
}

void DebuggerControls::toggleBreakpoint() {
  if (m_condition->expression().trimmed().isEmpty()) {
    m_condition->setFocus(Qt::ShortcutFocusReason);
    return;
  }
  m_breaks->click();
}

}  // namespace kelvarin
