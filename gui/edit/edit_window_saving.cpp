// How the window saves, reads again, restores and closes, and what it asks before anything would be
// lost.
#include <QCloseEvent>
#include <QFileInfo>
#include <QStatusBar>

#include "gui/dialogs/difference_dialog.h"
#include "gui/dialogs/file_questions.h"
#include "gui/dialogs/question.h"
#include "gui/edit/action_list.h"
#include "gui/edit/edit_window.h"
#include "gui/properties/property_panel.h"
#include "gui/recovery/recovery_offer.h"
#include "gui/recovery/restored_texts.h"
#include "host/widgets/info_line.h"

namespace kelvarin {

void EditWindow::save() {
  if (m_isSaving || m_graph.actionCount() == 0) {
    return;
  }
  m_properties->commit();
  if (m_file.path().isEmpty()) {
    saveAs();
  } else {
    startSaving(m_file.path(), DocumentFile::SaveMode::ifUnchangedOnDisk);
  }
}

void EditWindow::saveAs() {
  const QString path = askForGraphName(this, m_fileName);
  if (path.isEmpty()) {
    m_closesAfterSaving = false;
    return;
  }
  startSaving(path, DocumentFile::SaveMode::always);
}

void EditWindow::startSaving(const QString& path, DocumentFile::SaveMode mode) {
  m_isSaving = true;
  m_file.save(m_graph.document(), path, mode);
}

void EditWindow::afterSaving(const QByteArray& document) {
  m_isSaving = false;
  m_fileName = m_file.path();
  m_graph.markSaved(document, m_fileName);
  m_unsaved.begin(m_fileName, document);
  m_notice->clear();
  statusBar()->showMessage(tr("Saved %1.").arg(m_fileName));
  showState();
  if (m_closesAfterSaving) {
    m_closesAfterSaving = false;
    close();
  }
}

void EditWindow::noteFailedSave(const QString& reason) {
  m_isSaving = false;
  askAboutFailedSave(this, reason, [this](FailedSaveChoice choice) {
    if (choice == FailedSaveChoice::otherName) {
      saveAs();
    } else {
      m_closesAfterSaving = false;
    }
  });
}

void EditWindow::askAboutOtherFile(const QByteArray& onDisk) {
  m_onDisk = onDisk;
  kelvarin::askAboutOtherFile(this, m_file.path(), [this](OtherFileChoice choice) {
    m_isSaving = false;
    if (choice == OtherFileChoice::keepMine) {
      startSaving(m_file.path(), DocumentFile::SaveMode::always);
      return;
    }
    m_closesAfterSaving = false;
    settleOtherFile(choice);
  });
}

void EditWindow::settleOtherFile(OtherFileChoice choice) {
  switch (choice) {
    case OtherFileChoice::keepMine:
      m_file.acceptDisk();
      return;
    case OtherFileChoice::loadTheirs:
      m_file.reload();
      return;
    case OtherFileChoice::compare:
      showDifference(m_onDisk, m_graph.document(), this);
      return;
    case OtherFileChoice::cancel:
      return;
  }
}

void EditWindow::askAboutLock(const QString& path, const QString& holder) {
  kelvarin::askAboutLock(this, path, holder, [this, path](LockChoice choice) {
    if (choice == LockChoice::cancel) {
      close();
      return;
    }
    m_file.open(path, choice == LockChoice::openCopy ? DocumentFile::OpenMode::copy
                                                     : DocumentFile::OpenMode::shared);
  });
}

void EditWindow::reload() {
  m_properties->commit();
  if (m_graph.isModified()) {
    askBeforeReloading();
  } else {
    readAgain();
  }
}

void EditWindow::offerRecovery() {
  m_recovery->search(QFileInfo(m_fileName).absoluteFilePath());
}

// The graph counts as changed, whatever its file has.
void EditWindow::restoreGraph() {
  std::unique_ptr<RecoveryFile> file = m_recovery->take();
  if (file == nullptr) {
    return;
  }
  const RecoveryRecord record = file->found();
  m_services.forgetColumns();
  if (!m_graph.load(record.document, record.graphFile, m_settings)) {
    showFaults(std::vector<GraphError>(m_graph.faults()));
    return;
  }
  m_graph.markSaved({}, record.graphFile);
  m_file.resume(record.graphFile, record.savedDigest);
  m_unsaved.resume(std::move(file));
  m_list->setEnabled(true);
  showStartPage();
  if (const ActionId action = m_graph.idOf(record.action); action != kNoId) {
    openAction(action);
  }
  if (const QString left = restoreTexts(record, *m_properties); !left.isEmpty()) {
    showNotice(left);
  }
  showState();
  emit graphShown();
}

// Also after a file that could not be read.
void EditWindow::readAgain() {
  if (m_file.path().isEmpty()) {
    m_file.open(m_fileName);
  } else {
    m_file.reload();
  }
}

void EditWindow::askBeforeReloading() {
  ask(this,
      {tr("Reading the file again discards your changes."),
       {},
       {{QMessageBox::Cancel, {}}, {QMessageBox::Discard, tr("&Discard and read")}}},
      [this](QMessageBox::StandardButton button) {
        if (button == QMessageBox::Discard) {
          readAgain();
        }
      });
}

void EditWindow::closeEvent(QCloseEvent* event) {
  if (!m_closesWithoutAsking) {
    m_properties->commit();
    if (m_isSaving) {
      m_closesAfterSaving = true;
      event->ignore();
      return;
    }
    if (m_graph.isModified()) {
      event->ignore();
      askBeforeClosing();
      return;
    }
  }
  m_unsaved.end();
  m_properties->showAction(kNoId);
  event->accept();
}

void EditWindow::askBeforeClosing() {
  ask(this,
      {tr("The graph has changes that are not saved."),
       tr("Save them before closing?"),
       {{QMessageBox::Save, {}}, {QMessageBox::Discard, {}}, {QMessageBox::Cancel, {}}}},
      [this](QMessageBox::StandardButton button) {
        if (button == QMessageBox::Save) {
          m_closesAfterSaving = true;
          save();
        } else if (button == QMessageBox::Discard) {
          m_closesWithoutAsking = true;
          close();
        }
      });
}

}  // namespace kelvarin
