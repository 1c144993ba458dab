#include "ui/editors/evaluation_page.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QRadioButton>
#include <QScopedValueRollback>
#include <QVBoxLayout>

#include "ui/panels/time_parameters_panel.h"
#include "ui/panels/wrapping_choice.h"

namespace kelvarin {

namespace {

constexpr int kContinue = 0;
constexpr int kAbort = 1;
constexpr int kFirstKeyCast = 4;  // the number in the name of its first button

std::array<int*, 3> modesOf(KeyCast& cast) {
  return {&cast.outOfRange, &cast.fraction, &cast.nullOnInput};
}

}  // namespace

EvaluationPage::EvaluationPage(const Sections& sections, QWidget* parent) : SettingsPage(parent) {
  if (sections.truncation) {
    addTruncation();
  }
  addRowNumber();
  addErrors(sections.continueAfterError);
  addCompiler();
  if (sections.keyCasts) {
    addKeyCasts();
  }
  m_time = new TimeParametersPanel(this);
  connect(m_time, &TimeParametersPanel::changed, this, &SettingsPage::changed);
  pageLayout()->addWidget(m_time);
  pageLayout()->addStretch(1);
}

void EvaluationPage::addTruncation() {
  QGroupBox* box = group(tr("Rows"));
  m_truncate = checkBox("cbTruncate", tr("&Truncate table on first failed row"),
                        tr("The first row for which the expression is false still goes to the "
                           "second pin; no further row is read."));
  box->layout()->addWidget(choiceRow(m_truncate));
}

void EvaluationPage::addRowNumber() {
  QGroupBox* box = group(tr("Row Number"));
  m_addN = checkBox("cbAddN", tr("add '_n' as input var"), tr("The first row has the number 0."));
  box->layout()->addWidget(choiceRow(m_addN));
}

void EvaluationPage::addErrors(const QString& continueText) {
  QGroupBox* box = group(tr("Errors"));
  auto* label = new QLabel(tr("In case of Error during &Runtime:"), box);
  label->setWordWrap(true);
  m_error = new QComboBox(box);
  m_error->setObjectName(QStringLiteral("cmbError"));
  m_error->setAccessibleName(label->text().remove(u'&'));
  m_error->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  m_error->setMinimumContentsLength(20);
  m_error->addItem(continueText);
  m_error->addItem(tr("Abort the graph Execution"));
  label->setBuddy(m_error);
  box->layout()->addWidget(label);
  box->layout()->addWidget(m_error);
  connect(m_error, &QComboBox::currentIndexChanged, this, [this](int index) {
    if (!m_isLoading && index >= 0) {
      emit errorPolicyChosen(index != kContinue);
    }
  });
}

void EvaluationPage::addCompiler() {
  QGroupBox* box = group(tr("Speed"));
  m_useJIT = checkBox("cbUseJIT", tr("Use &JIT Compiler"),
                      tr("Numeric expressions are compiled to native code where they can be."));
  box->layout()->addWidget(choiceRow(m_useJIT));
}

EvaluationPage::ModeButtons EvaluationPage::addModes(QGroupBox& box, int firstNumber,
                                                     const QString& question,
                                                     const std::array<QString, 3>& answers) {
  auto* label = new QLabel(question, &box);
  label->setWordWrap(true);
  box.layout()->addWidget(label);
  ModeButtons buttons{};
  for (std::size_t mode = 0; mode < buttons.size(); ++mode) {
    const QByteArray name = "rb" + QByteArray::number(firstNumber + static_cast<int>(mode));
    buttons[mode] = radioButton(name.constData(), answers[mode], question);
    buttons[mode]->setAccessibleName(question + u' ' + answers[mode]);
    choiceRow(buttons[mode])->layout()->setContentsMargins(16, 0, 0, 0);
    box.layout()->addWidget(choiceRow(buttons[mode]));
  }
  makeExclusive({buttons[0], buttons[1], buttons[2]}, &box);
  return buttons;
}

void EvaluationPage::addKeyCasts() {
  QGroupBox* box = group(tr("Keys"));
  const std::array<QString, 3> questions{tr("A result out of the range of keys:"),
                                         tr("A result with a fraction, for a key:"),
                                         tr("A null key that is read from a column:")};
  const std::array<std::array<QString, 3>, 3> answers{
      {{tr("becomes the key 0"), tr("becomes the null key"), tr("stops the run")},
       {tr("loses its fraction"), tr("becomes the null key"), tr("stops the run")},
       {tr("is null"), tr("counts as 0"), tr("stops the run")}}};
  for (std::size_t cast = 0; cast < m_keyCasts.size(); ++cast) {
    m_keyCasts[cast] =
        addModes(*box, kFirstKeyCast + 3 * static_cast<int>(cast), questions[cast], answers[cast]);
  }
}

// A mode that has no button stays until the user chooses one.
int EvaluationPage::modeOf(const ModeButtons& buttons, int otherwise) {
  for (std::size_t mode = 0; mode < buttons.size(); ++mode) {
    if (buttons[mode] != nullptr && buttons[mode]->isChecked()) {
      return static_cast<int>(mode);
    }
  }
  return otherwise;
}

void EvaluationPage::load(const EvaluationOptions& options) {
  const QScopedValueRollback loading(m_isLoading, true);
  m_addN->setChecked(options.addN);
  m_error->setCurrentIndex(options.abortWhenError ? kAbort : kContinue);
  m_useJIT->setChecked(options.useJIT);
  m_time->setParameters(options.time);
  KeyCast keyCast = options.keyCast;
  for (std::size_t cast = 0; cast < m_keyCasts.size(); ++cast) {
    const int mode = *modesOf(keyCast)[cast];
    if (m_keyCasts[cast].front() != nullptr && mode >= 0 && mode < 3) {
      m_keyCasts[cast][static_cast<std::size_t>(mode)]->setChecked(true);
    }
  }
}

EvaluationOptions EvaluationPage::options(EvaluationOptions options) const {
  options.addN = m_addN->isChecked();
  options.abortWhenError = m_error->currentIndex() != kContinue;
  options.useJIT = m_useJIT->isChecked();
  options.time = m_time->parameters();
  const std::array<int*, 3> modes = modesOf(options.keyCast);
  for (std::size_t cast = 0; cast < m_keyCasts.size(); ++cast) {
    *modes[cast] = modeOf(m_keyCasts[cast], *modes[cast]);
  }
  return options;
}

void EvaluationPage::setTruncates(bool truncates) {
  m_truncate->setChecked(truncates);
}

bool EvaluationPage::truncates() const {
  return m_truncate->isChecked();
}

void EvaluationPage::setExpansion(std::function<QString(const QString&)> expand) {
  m_time->setExpansion(std::move(expand));
}

}  // namespace kelvarin
