#include "gui/dialogs/file_questions.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QFileInfo>

#include "gui/dialogs/question.h"
#include "host/widgets/info_line.h"

namespace kelvarin {

namespace {

const QString kGraphSuffix = QStringLiteral(".kelvarin");
const QString kLoad = QStringLiteral("load");
const QString kKeep = QStringLiteral("keep");
const QString kCompare = QStringLiteral("compare");

class FileQuestions {
  Q_DECLARE_TR_FUNCTIONS(kelvarin::FileQuestions)
};

QString changedMeanwhile() {
  return FileQuestions::tr("The graph was changed on the disk meanwhile.");
}

}  // namespace

void askAboutOtherFile(QWidget* window, const QString& file,
                       const std::function<void(OtherFileChoice)>& answer) {
  ask(window,
      {changedMeanwhile(),
       FileQuestions::tr("Another program has written %1 since it was read here.").arg(file),
       {{QMessageBox::Save, FileQuestions::tr("&Keep mine")},
        {QMessageBox::Reset, FileQuestions::tr("&Load theirs")},
        {QMessageBox::Help, FileQuestions::tr("&Compare")},
        {QMessageBox::Cancel, {}}}},
      [answer](QMessageBox::StandardButton button) {
        switch (button) {
          case QMessageBox::Save:
            return answer(OtherFileChoice::keepMine);
          case QMessageBox::Reset:
            return answer(OtherFileChoice::loadTheirs);
          case QMessageBox::Help:
            return answer(OtherFileChoice::compare);
          default:
            return answer(OtherFileChoice::cancel);
        }
      });
}

void showOtherFile(InfoLine& line) {
  line.setMessage(Severity::warning, changedMeanwhile(),
                  {{kLoad, FileQuestions::tr("Load theirs")},
                   {kKeep, FileQuestions::tr("Keep mine")},
                   {kCompare, FileQuestions::tr("Compare")}});
}

OtherFileChoice otherFileChoice(const QString& link) {
  if (link == kLoad) {
    return OtherFileChoice::loadTheirs;
  }
  if (link == kCompare) {
    return OtherFileChoice::compare;
  }
  return link == kKeep ? OtherFileChoice::keepMine : OtherFileChoice::cancel;
}

void showFileIsGone(InfoLine& line, const QString& file) {
  line.setMessage(
      Severity::warning,
      FileQuestions::tr("%1 is no longer there. Saving writes it anew, under another name if its "
                        "folder has gone as well.")
          .arg(file),
      {{QStringLiteral("close"), FileQuestions::tr("Close")}});
}

void askAboutLock(QWidget* window, const QString& file, const QString& holder,
                  const std::function<void(LockChoice)>& answer) {
  ask(window,
      {FileQuestions::tr("%1 is open already.").arg(QFileInfo(file).fileName()),
       FileQuestions::tr("%1. Whoever saves last replaces what the other one saved.").arg(holder),
       {{QMessageBox::Open, FileQuestions::tr("Open a &copy")},
        {QMessageBox::Ignore, FileQuestions::tr("Open &anyway")},
        {QMessageBox::Cancel, {}}}},
      [answer](QMessageBox::StandardButton button) {
        if (button == QMessageBox::Open) {
          return answer(LockChoice::openCopy);
        }
        answer(button == QMessageBox::Ignore ? LockChoice::openAnyway : LockChoice::cancel);
      });
}

void askAboutFailedSave(QWidget* window, const QString& reason,
                        const std::function<void(FailedSaveChoice)>& answer) {
  ask(window,
      {FileQuestions::tr("The graph is not saved"),
       reason,
       {{QMessageBox::Save, FileQuestions::tr("Save under another &name ...")},
        {QMessageBox::Cancel, {}}}},
      [answer](QMessageBox::StandardButton button) {
        answer(button == QMessageBox::Save ? FailedSaveChoice::otherName
                                           : FailedSaveChoice::cancel);
      });
}

// The suffix is added before the dialog asks whether a file is to be replaced.
QString askForGraphName(QWidget* window, const QString& suggestion) {
  QFileDialog dialog(window, FileQuestions::tr("Save the graph"), QFileInfo(suggestion).path(),
                     graphFileFilter());
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(kGraphSuffix);
  dialog.selectFile(QFileInfo(suggestion).fileName());
  return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

QString graphFileFilter() {
  return FileQuestions::tr("Graphs (*%1);;All files (*)").arg(kGraphSuffix);
}

}  // namespace kelvarin
