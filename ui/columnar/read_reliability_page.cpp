#include "ui/columnar/read_reliability_page.h"
#include "ui/panels/wrapping_choice.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace kelvarin {

namespace {

constexpr int kLongestWait = 1'000'000;  // seconds

}  // namespace

ReadReliabilityPage::ReadReliabilityPage(QWidget* parent) : SettingsPage(parent) {
  QGroupBox* missing = group(tr("When a file is missing"));
  auto* label =
      new QLabel(tr("&When the source file is unreadable, keep trying to read the file for"), this);
  label->setWordWrap(true);
  m_timeOut = spinBox("sbTimeOut", 0, kLongestWait, tr("Seconds to wait for a missing file"));
  label->setBuddy(m_timeOut);
  m_abort = radioButton("rbAbortIfMissing", tr("Then s&top the run"));
  m_skip = radioButton("rbSkipMissing", tr("Then s&kip it with a warning"));
  makeExclusive({m_abort, m_skip}, missing);
  missing->layout()->addWidget(label);
  missing->layout()->addWidget(rowOf({m_timeOut, new QLabel(tr("seconds"), this)}, missing));
  missing->layout()->addWidget(choiceRow(m_abort));
  missing->layout()->addWidget(choiceRow(m_skip));

  QGroupBox* damaged = group(tr("When a file is not whole"));
  m_incomplete = checkBox("cbReadIncompleteFile",
                          tr("Read a file that its writer has &not finished, as far as it goes"),
                          tr("Otherwise such a file stops the run."));
  m_skipCorrupted = checkBox("cbSkipCorruptedBlocks", tr("Skip &damaged blocks with a warning"),
                             tr("Otherwise damage stops the run."));
  damaged->layout()->addWidget(choiceRow(m_incomplete));
  damaged->layout()->addWidget(choiceRow(m_skipCorrupted));

  QGroupBox* progress = group(tr("Progress"));
  m_accurateProgress =
      checkBox("cbAccurateProgressBar", tr("Show progress by the &rows of all files"),
               tr("Looks into all files before the first row. Otherwise the files are counted."));
  progress->layout()->addWidget(choiceRow(m_accurateProgress));
  pageLayout()->addStretch();
}

void ReadReliabilityPage::load(const ReadColumnarSettings& settings) {
  m_timeOut->setValue(settings.timeOutSeconds);
  m_abort->setChecked(settings.abortIfMissing);
  m_skip->setChecked(!settings.abortIfMissing);
  m_incomplete->setChecked(settings.readIncompleteFile);
  m_skipCorrupted->setChecked(settings.skipCorruptedBlocks);
  m_accurateProgress->setChecked(settings.accurateProgressBar);
}

void ReadReliabilityPage::store(ReadColumnarSettings& settings) const {
  storeNumber(*m_timeOut, settings.timeOutSeconds);
  settings.abortIfMissing = m_abort->isChecked();
  settings.readIncompleteFile = m_incomplete->isChecked();
  settings.skipCorruptedBlocks = m_skipCorrupted->isChecked();
  settings.accurateProgressBar = m_accurateProgress->isChecked();
}

}  // namespace kelvarin
