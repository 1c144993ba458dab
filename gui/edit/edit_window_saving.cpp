// How the window saves, reads again and closes, and what it asks before anything would be lost.
#include <QCloseEvent>
#include <QStatusBar>

#include "gui/dialogs/question.h"
#include "gui/edit/edit_window.h"
#include "host/widgets/info_line.h"

namespace kelvarin {

void EditWindow::save() {
  if (!m_isSaving && m_graph.actionCount() > 0) {
    commitEditor();
    startSaving(GraphFiles::SaveMode::ifUnchangedOnDisk);
  }
}

void EditWindow::startSaving(GraphFiles::SaveMode mode) {
  m_isSaving = true;
  m_saving = m_graph.document();
  m_files.save(m_saving, mode);
}

void EditWindow::afterSaving() {
  m_isSaving = false;
  m_graph.markSaved(m_saving, m_files.file());
  m_notice->clear();
  statusBar()->showMessage(tr("Saved %1.").arg(m_files.file()));
  if (m_closesAfterSaving) {
    m_closesAfterSaving = false;
    close();
  }
}

void EditWindow::askAboutOtherFile() {
  ask(this,
      {tr("The graph was changed on the disk meanwhile."),
       tr("Another program has written %1 since it was read here.").arg(m_files.file()),
       {{QMessageBox::Save, tr("&Keep mine")},
        {QMessageBox::Reset, tr("&Load theirs")},
        {QMessageBox::Cancel, {}}}},
      [this](QMessageBox::StandardButton button) {
        m_isSaving = false;
        if (button == QMessageBox::Save) {
          startSaving(GraphFiles::SaveMode::always);
          return;
        }
        m_closesAfterSaving = false;
        if (button == QMessageBox::Reset) {
          m_files.load();
        }
      });
}

void EditWindow::warnOfOtherFile() {
  m_notice->setMessage(
      Severity::warning, tr("The graph was changed on the disk meanwhile."),
      {{QStringLiteral("load"), tr("Load theirs")}, {QStringLiteral("keep"), tr("Keep mine")}});
}

void EditWindow::reload() {
  commitEditor();
  if (m_graph.isModified()) {
    askBeforeReloading();
  } else {
    m_files.load();
  }
}

void EditWindow::askBeforeReloading() {
  ask(this,
      {tr("Reading the file again discards your changes."),
       {},
       {{QMessageBox::Cancel, {}}, {QMessageBox::Discard, tr("&Discard and read")}}},
      [this](QMessageBox::StandardButton button) {
        if (button == QMessageBox::Discard) {
          m_files.load();
        }
      });
}

void EditWindow::closeEvent(QCloseEvent* event) {
  if (!m_closesWithoutAsking) {
    commitEditor();
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
  closeEditor();
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
          startSaving(GraphFiles::SaveMode::ifUnchangedOnDisk);
        } else if (button == QMessageBox::Discard) {
          m_closesWithoutAsking = true;
          close();
        }
      });
}

}  // namespace kelvarin
