#include "gui/run/disk_question_line.h"

#include <QApplication>
#include <QDir>
#include <QLocale>

namespace kelvarin {

namespace {

const QString kTryAgain = QStringLiteral("again");

}  // namespace

DiskQuestionLine::DiskQuestionLine(GraphRun& run, QWidget* parent) : InfoLine(parent), m_run(run) {
  setObjectName(QStringLiteral("diskQuestion"));
  connect(&m_run, &GraphRun::diskQuestionChanged, this, &DiskQuestionLine::showQuestion);
  connect(&m_run, &GraphRun::ended, this, &DiskQuestionLine::showQuestion);
  connect(this, &InfoLine::linkActivated, this, [this](const QString& id) {
    if (id == kTryAgain) {
      m_run.tryDiskAgain();
    } else {
      m_run.stop();
    }
  });
}

void DiskQuestionLine::showQuestion() {
  const auto question = m_run.diskQuestion();
  if (!question) {
    clear();
    return;
  }
  const QString text =
      question->isStillFull
          ? tr("The disk is still full, and the run waits: %1 more are needed for %2. Free more "
               "space on its disk, then try again.")
          : tr("The disk is full, and the run waits: %1 more are needed for %2. Free some space "
               "on its disk, then try again.");
  setMessage(Severity::warning,
             text.arg(QLocale().formattedDataSize(question->missingBytes),
                      QDir::toNativeSeparators(question->file)),
             {{kTryAgain, tr("Try again")}, {QStringLiteral("stop"), tr("Stop the run")}});
  QApplication::alert(window());
}

}  // namespace kelvarin
