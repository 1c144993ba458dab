#include "host/widgets/file_question.h"

#include <QFileDialog>
#include <QFileInfo>

namespace kelvarin {

namespace {

QFileDialog::FileMode fileModeOf(FileQuestion::Kind kind) {
  switch (kind) {
    case FileQuestion::Kind::openFile:
      return QFileDialog::ExistingFile;
    case FileQuestion::Kind::saveFile:
      return QFileDialog::AnyFile;
    case FileQuestion::Kind::folder:
      break;
  }
  return QFileDialog::Directory;
}

}  // namespace

void askForFile(QWidget* parent, const FileQuestion& question,
                std::function<void(const QString&)> chosen) {
  const QFileInfo start(question.start);
  auto* dialog = new QFileDialog(parent, question.caption,
                                 start.isDir() ? question.start : start.path(), question.filter);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setFileMode(fileModeOf(question.kind));
  dialog->setAcceptMode(question.kind == FileQuestion::Kind::saveFile ? QFileDialog::AcceptSave
                                                                      : QFileDialog::AcceptOpen);
  dialog->setOption(QFileDialog::ShowDirsOnly, question.kind == FileQuestion::Kind::folder);
  dialog->setOption(QFileDialog::DontConfirmOverwrite, !question.confirmsOverwrite);
  if (!start.isDir() && !start.fileName().isEmpty()) {
    dialog->selectFile(start.fileName());
  }
  QObject::connect(dialog, &QFileDialog::fileSelected, parent, std::move(chosen));
  dialog->open();
}

}  // namespace kelvarin
