#include "ui/columnar/read_file_page.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "host/widgets/icons.h"
#include "host/widgets/info_line.h"
#include "host/widgets/path_field.h"
#include "ui/columnar/columnar_editor.h"
#include "ui/columnar/summary_texts.h"
#include "ui/panels/wrapping_choice.h"

namespace kelvarin {

namespace {

QLabel* plainLabel(const char* name, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setObjectName(QLatin1String(name));
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return label;
}

}  // namespace

ReadFilePage::ReadFilePage(const ActionItem& action, QWidget* parent)
    : SettingsPage(parent), m_action(action) {
  addFileGroup();
  addContentsGroup();
  addExtentGroup();
  pageLayout()->addStretch();
}

void ReadFilePage::addFileGroup() {
  QGroupBox* box = group(tr("File"));
  m_isNamed = radioButton("rbFileName", tr("&This file:"));
  m_file = new PathField(PathField::Mode::openFile, this);
  watch(m_file->lineEdit(), "leFileName", tr("Columnar file"));
  m_file->setCaption(tr("Choose a columnar file"));
  m_file->setFilter(tr("Columnar files (*.cgel_kelvarin);;All files (*)"));
  m_isFromPin =
      radioButton("rbFileNameFromPin", tr("The files &named in the first column of input pin 0"));
  makeExclusive({m_isNamed, m_isFromPin}, box);
  box->layout()->addWidget(choiceRow(m_isNamed));
  box->layout()->addWidget(m_file);
  box->layout()->addWidget(choiceRow(m_isFromPin));
  connect(m_file, &PathField::edited, this, [this](const QString& text) { m_typed = text; });
  connect(m_file, &PathField::pathChanged, this, &ReadFilePage::takePath);
}

// A chosen name becomes relative, a typed one stays as it is.
void ReadFilePage::takePath(const QString& path) {
  if (path != m_typed && m_action.globalParameters() != nullptr) {
    m_file->setPath(relativeBelow(m_action.globalParameters()->dataDirRead(), path));
  }
  emit changed();
}

void ReadFilePage::addContentsGroup() {
  QGroupBox* box = group(tr("In this file"));
  m_state = new InfoLine(box);
  m_state->setObjectName(QStringLiteral("state"));
  m_contents = plainLabel("contents", box);
  m_lookAgain = pushButton("pbLookAgain", tr("Loo&k again"));
  m_lookAgain->setIcon(icon(IconName::reload));
  m_verify = pushButton("pbVerify", tr("Verif&y..."));
  m_verify->setToolTip(tr("Checks every block and every value."));
  m_salvage = pushButton("pbSalvage", tr("&Salvage..."));
  m_salvage->setToolTip(tr("Writes what is whole to a new table."));
  box->layout()->addWidget(m_state);
  box->layout()->addWidget(m_contents);
  box->layout()->addWidget(rowOf({m_lookAgain, m_verify, m_salvage}, box));
  connect(m_lookAgain, &QPushButton::clicked, this, &ReadFilePage::lookAgainWanted);
  connect(m_verify, &QPushButton::clicked, this, &ReadFilePage::verifyWanted);
  connect(m_salvage, &QPushButton::clicked, this, &ReadFilePage::salvageWanted);
}

void ReadFilePage::addExtentGroup() {
  QGroupBox* box = group(tr("What is read"));
  m_columns = plainLabel("extentOfColumns", box);
  m_blocks = plainLabel("extentOfBlocks", box);
  QPushButton* columns = pushButton("pbChooseColumns", tr("Choose &columns"));
  QPushButton* blocks = pushButton("pbSkipBlocks", tr("Skip &blocks"));
  box->layout()->addWidget(m_columns);
  box->layout()->addWidget(m_blocks);
  box->layout()->addWidget(rowOf({columns, blocks}, box));
  connect(columns, &QPushButton::clicked, this, &ReadFilePage::columnsWanted);
  connect(blocks, &QPushButton::clicked, this, &ReadFilePage::blocksWanted);
}

void ReadFilePage::load(const ReadColumnarSettings& settings) {
  m_isNamed->setChecked(!settings.fileNameFromPin);
  m_isFromPin->setChecked(settings.fileNameFromPin);
  m_file->setPath(settings.fileName);
  m_file->setEnabled(!settings.fileNameFromPin);
  if (const GlobalParameters* parameters = m_action.globalParameters()) {
    m_file->setParameters(parameters->values().keys());
    m_file->setFolder(parameters->dataDirRead());
  }
}

void ReadFilePage::store(ReadColumnarSettings& settings) const {
  settings.fileName = m_file->path();
  settings.fileNameFromPin = m_isFromPin->isChecked();
}

void ReadFilePage::showSummary(const TableSummary& summary) {
  const ShownText state = stateText(summary);
  m_state->setMessage(state.severity, state.text);
  QStringList lines{contentsText(summary), orderText(summary)};
  lines.removeAll(QString());
  m_contents->setText(lines.join(u'\n'));
  m_contents->show();
  m_verify->setEnabled(true);
  m_salvage->setEnabled(!summary.isBeingWritten);
}

void ReadFilePage::showNoSummary(const QString& reason, bool isFailure) {
  m_state->setMessage(isFailure ? Severity::error : Severity::information, reason);
  m_contents->clear();
  m_contents->hide();
  m_verify->setEnabled(false);
  m_salvage->setEnabled(false);
}

void ReadFilePage::showBusy() {
  m_state->setMessage(Severity::information, tr("Looking into the file..."));
}

void ReadFilePage::showExtent(const QString& columns, const QString& blocks) {
  m_columns->setText(columns);
  m_blocks->setText(blocks);
}

}  // namespace kelvarin
