#include "ui/editors/output_fields.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>

#include "ui/panels/form_layout.h"
#include "ui/widgets/expression_field.h"
#include "ui/widgets/flow_layout.h"
#include "ui/widgets/k_plain_text_edit.h"

namespace kelvarin {

namespace {

constexpr int kNameCharacters = 24;
constexpr MetaTypeColumn kTypes[] = {MetaTypeColumn::number, MetaTypeColumn::key,
                                     MetaTypeColumn::text};

}  // namespace

OutputFields::OutputFields(bool hasNameExpression, QWidget* parent)
    : QWidget(parent), m_hasNameExpression(hasNameExpression) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(kControlSpacing);
  auto* line = new QWidget(this);
  auto* flow = new FlowLayout(line);
  flow->setSpacing(2 * kControlSpacing);
  flow->addWidget(makeName());
  flow->addWidget(makeType());
  layout->addWidget(line);
  if (m_hasNameExpression) {
    layout->addWidget(m_nameExpression->verdict());
  }
}

QWidget* OutputFields::makeName() {
  auto* group = new QWidget(this);
  auto* layout = new QHBoxLayout(group);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2 * kControlSpacing);
  if (m_hasNameExpression) {
    makeNameExpression(*layout);
  } else {
    makeNameLine(*layout);
  }
  return group;
}

void OutputFields::makeNameLine(QBoxLayout& layout) {
  auto* label = new QLabel(tr("&Name:"), this);
  m_name = new QLineEdit(this);
  m_name->setObjectName(QStringLiteral("leName"));
  m_name->setAccessibleName(tr("Name"));
  m_name->setToolTip(tr("The name of the column that the expression makes."));
  m_name->setMinimumWidth(kNameCharacters * fontMetrics().averageCharWidth());
  label->setBuddy(m_name);
  layout.addWidget(label);
  layout.addWidget(m_name, 1);
  connect(m_name, &QLineEdit::textEdited, this, &OutputFields::nameEdited);
  connect(m_name, &QLineEdit::editingFinished, this, &OutputFields::nameFinished);
}

void OutputFields::makeNameExpression(QBoxLayout& layout) {
  auto* label = new QLabel(tr("&Name expression:"), this);
  m_nameExpression = new ExpressionField(this, ExpressionField::Form::line);
  m_nameExpression->setObjectName(QStringLiteral("nameExpression"));
  m_nameExpression->setHistoryKey(QStringLiteral("columnNames"));
  KPlainTextEdit* editor = m_nameExpression->editor();
  editor->setAccessibleName(tr("Name expression"));
  editor->setPlaceholderText({});
  editor->setToolTip(
      tr("A text for each element: _n is its number, an alias the name of its "
         "column."));
  m_nameExpression->setMinimumWidth(kNameCharacters * fontMetrics().averageCharWidth());
  label->setBuddy(editor);
  layout.addWidget(label);
  layout.addWidget(m_nameExpression, 1);
  connect(editor, &QPlainTextEdit::textChanged, this, &OutputFields::nameEdited);
  connect(m_nameExpression, &ExpressionField::editingFinished, this, &OutputFields::nameFinished);
  connect(m_nameExpression, &ExpressionField::helpWanted, this, &OutputFields::helpWanted);
}

QWidget* OutputFields::makeType() {
  const QString texts[] = {tr("Nu&mber"), tr("&Key"), tr("Te&xt")};
  auto* group = new QWidget(this);
  auto* layout = new FlowLayout(group);
  layout->addWidget(new QLabel(tr("Type:"), group));
  for (std::size_t i = 0; i < std::size(kTypes); ++i) {
    auto* button = new QRadioButton(texts[i], group);
    button->setObjectName(QStringLiteral("rb%1").arg(i + 1));
    connect(button, &QRadioButton::clicked, this, [this, i] { emit typeChosen(kTypes[i]); });
    layout->addWidget(button);
    m_types.push_back(button);
  }
  m_update = new QCheckBox(tr("&update the column"), group);
  m_update->setObjectName(QStringLiteral("cbUpdate"));
  m_update->setToolTip(tr("The result replaces the column of the input that has this name."));
  m_update->setVisible(!m_hasNameExpression);
  connect(m_update, &QCheckBox::clicked, this, &OutputFields::updateChosen);
  layout->addWidget(m_update);
  return group;
}

void OutputFields::showOutput(const OutputVariable& output) {
  setName(output.name);
  for (std::size_t i = 0; i < m_types.size(); ++i) {
    m_types[i]->setAutoExclusive(false);  // another type has no button
    m_types[i]->setChecked(output.meta == kTypes[i]);
    m_types[i]->setAutoExclusive(true);
  }
  m_update->setChecked(output.update);
}

QString OutputFields::name() const {
  return m_hasNameExpression ? m_nameExpression->expression() : m_name->text();
}

void OutputFields::setName(const QString& name) {
  if (m_hasNameExpression) {
    m_nameExpression->setExpression(name);
  } else {
    setTextKeepingCursor(*m_name, name);
  }
}

void OutputFields::setNameFormula(const Formula& formula) {
  if (m_hasNameExpression) {
    m_nameExpression->setFormula(formula);
  }
}

void OutputFields::editName() {
  if (m_hasNameExpression) {
    m_nameExpression->setFocus();
    m_nameExpression->editor()->selectAll();
    return;
  }
  m_name->setFocus();
  m_name->selectAll();
}

}  // namespace kelvarin
