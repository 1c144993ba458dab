#include "ui/columnar/previous_file_page.h"
#include "ui/panels/wrapping_choice.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "host/widgets/info_line.h"

namespace kelvarin {

namespace {

constexpr int kLongestWait = 1'000'000;  // seconds

}  // namespace

PreviousFilePage::PreviousFilePage(QWidget* parent) : SettingsPage(parent) {
  QGroupBox* box = group(tr("Where there is a file of that name"));
  m_replaceAtEnd = checkBox("cbReplaceAtEnd", tr("&Keep the old table until the new one is whole"),
                            tr("A run that fails leaves the old table. The disk needs space for "
                               "both."));
  m_alwaysDelete =
      checkBox("cbAlwaysDelete", tr("&Delete the old file even when there is no row to write"));
  m_timeOut = spinBox("sbDeleteTimeOut", 0, kLongestWait, tr("Seconds to wait for a file in use"));
  auto* label = new QLabel(tr("When the old file is in use, &wait for"), box);
  label->setBuddy(m_timeOut);
  label->setWordWrap(true);
  m_oldFile = new InfoLine(box);
  m_oldFile->setObjectName(QStringLiteral("oldFile"));
  m_oldFile->setReservedLines(1);
  box->layout()->addWidget(m_oldFile);
  box->layout()->addWidget(choiceRow(m_replaceAtEnd));
  box->layout()->addWidget(choiceRow(m_alwaysDelete));
  box->layout()->addWidget(label);
  box->layout()->addWidget(indented({m_timeOut, new QLabel(tr("seconds"), box)}, box));

  QGroupBox* graph = group(tr("In this graph"));
  m_checkNames =
      checkBox("cbCheckNameCollision", tr("Refuse a na&me that another action reads or writes"),
               tr("Covers the column-set files as well."));
  graph->layout()->addWidget(choiceRow(m_checkNames));

  QGroupBox* clean = group(tr("Clean up"));
  m_delete = pushButton("pbDelete", tr("Delete the file and its &column sets..."));
  m_deletion = new InfoLine(clean);
  m_deletion->setObjectName(QStringLiteral("deletion"));
  clean->layout()->addWidget(rowOf({m_delete}, clean));
  clean->layout()->addWidget(m_deletion);
  connect(m_delete, &QPushButton::clicked, this, &PreviousFilePage::deletionWanted);
  pageLayout()->addStretch();
}

void PreviousFilePage::load(const WriteColumnarSettings& settings) {
  m_replaceAtEnd->setChecked(settings.replaceAtEnd);
  m_alwaysDelete->setChecked(settings.alwaysDelete);
  m_timeOut->setValue(settings.deleteTimeOutSeconds);
  m_checkNames->setChecked(settings.checkNameCollision);
}

void PreviousFilePage::store(WriteColumnarSettings& settings) const {
  settings.replaceAtEnd = m_replaceAtEnd->isChecked();
  settings.alwaysDelete = m_alwaysDelete->isChecked();
  storeNumber(*m_timeOut, settings.deleteTimeOutSeconds);
  settings.checkNameCollision = m_checkNames->isChecked();
}

void PreviousFilePage::showOldFile(const ShownText& text) {
  if (text.text.isEmpty()) {
    m_oldFile->clear();
  } else {
    m_oldFile->setMessage(text.severity, text.text);
  }
}

void PreviousFilePage::setDeletable(bool isDeletable, const QString& reason) {
  m_delete->setEnabled(isDeletable);
  m_delete->setToolTip(reason);
}

void PreviousFilePage::showDeletion(const ShownText& text) {
  m_deletion->setMessage(text.severity, text.text);
}

}  // namespace kelvarin
