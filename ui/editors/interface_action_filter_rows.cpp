#include "ui/editors/interface_action_filter_rows.h"

#include <utility>

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

#include "actions/filter_rows/sampling.h"
#include "ui/panels/notes_field.h"
#include "ui/widgets/k_plain_text_edit.h"

namespace kelvarin {

namespace {

// Keeps every row.
const QString kKeepAll = QStringLiteral("1");

EvaluationPage::Sections sections() {
  EvaluationPage::Sections sections;
  sections.truncation = true;
  sections.continueAfterError =
      Interface_actionFilterRows::tr("Return False and continue (very slowly)");
  return sections;
}

}  // namespace

Interface_actionFilterRows::Interface_actionFilterRows(QWidget* parent, FilterRows& action)
    : ExpressionActionEditor(parent, action, sections()), m_action(action) {
  setObjectName(QStringLiteral("Interface_actionFilterRows"));
  QVBoxLayout* layout = addExpressionPage(tr("Expression"));
  auto* label = new QLabel(tr("E&xpression:"), this);
  label->setBuddy(m_field->editor());
  layout->addWidget(label);
  layout->addWidget(fieldBeside(variablesPanel()), kFieldShare);
  addDebugger(*layout, {tr("Start"), tr("STOP"), tr("Eval Next")});
  layout->addWidget(makeNotes("leComments", tr("Co&mments:"), tr("Comments")));
  addOtherPages();
  m_field->editor()->setAccessibleName(tr("Expression"));
  m_field->setHistoryKey(QStringLiteral("filter"));
  reload();
}

Formula Interface_actionFilterRows::formula() const {
  Formula formula = ExpressionActionEditor::formula();
  formula.use = ResultUse::truth;
  return formula;
}

void Interface_actionFilterRows::load() {
  const FilterSettings& settings = m_action.settings();
  m_field->setExpression(settings.expression);
  settingsPage().setTruncates(settings.truncate);
  m_notes->setNotes(settings.comments);
}

// A comment that the field cannot show as it is stays until the user changes it.
bool Interface_actionFilterRows::store() {
  FilterSettings settings = m_action.settings();
  const bool isCommentNew = !texts().isCommitted(m_notes->objectName());
  if (!isCommentNew && settings.truncate == settingsPage().truncates()) {
    return false;
  }
  settings.truncate = settingsPage().truncates();
  if (isCommentNew) {
    settings.comments = m_notes->toPlainText();
    texts().setCommitted(m_notes->objectName());
  }
  m_action.setSettings(settings);
  return true;
}

void Interface_actionFilterRows::commitExpression() {
  QString expression = m_field->expression();
  if (m_mayAskAboutSampling && !m_action.settings().truncate &&
      sampleSizeOf(expression).value_or(0) > 0) {
    m_mayAskAboutSampling = false;
    askAboutSampling(expression);
  }
  if (expression.trimmed().isEmpty()) {
    expression = kKeepAll;
    m_field->setExpression(expression);
  }
  if (!texts().isCommitted(kExpressionField)) {
    texts().setCommitted(kExpressionField);
    FilterSettings settings = m_action.settings();
    settings.expression = expression;
    m_action.setSettings(settings);
    m_isExpressionDirty = true;
    propertiesChanged();
  }
  if (m_isExpressionDirty) {
    validate(ExpressionValidation::Occasion::commit);
  }
}

void Interface_actionFilterRows::askAboutSampling(const QString& expression) {
  auto* box = new QMessageBox(
      QMessageBox::Question, tr("\"Filter Rows\" Action"),
      tr("The expression '%1' seems to be a sampling expression.\nDo you want to truncate at the "
         "first failed row?")
          .arg(expression),
      QMessageBox::Ok | QMessageBox::Cancel, this);
  box->setObjectName(QStringLiteral("samplingQuestion"));
  box->setTextFormat(Qt::PlainText);
  box->setDefaultButton(QMessageBox::Ok);
  box->setAttribute(Qt::WA_DeleteOnClose);
  connect(box->button(QMessageBox::Ok), &QPushButton::clicked, this,
          &Interface_actionFilterRows::truncate);
  box->open();
}

void Interface_actionFilterRows::truncate() {
  settingsPage().setTruncates(true);
  commitChanges();
}

void Interface_actionFilterRows::checkExpressions() {
  validate(ExpressionValidation::Occasion::asked);
}

void Interface_actionFilterRows::validate(ExpressionValidation::Occasion occasion) {
  m_isExpressionDirty = false;
  m_checkedExpression = m_field->expression();
  m_validation->check({formula()}, occasion);
}

void Interface_actionFilterRows::showVerdict(int, const FormulaAnswer* failure) {
  m_action.setErrorFlag(failure != nullptr);
  if (m_field->expression() == m_checkedExpression) {
    showFieldVerdict(failure);
  }
}

}  // namespace kelvarin
