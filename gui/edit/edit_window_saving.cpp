// How the window saves, reads again, restores and closes.
#include <QCloseEvent>
#include <QFileInfo>
#include <QStatusBar>

#include "gui/dialogs/question.h"
#include "gui/edit/action_list.h"
#include "gui/edit/edit_window.h"
#include "gui/properties/property_panel.h"
#include "gui/recovery/recovery_offer.h"
#include "gui/recovery/restored_texts.h"
#include "host/widgets/info_line.h"

namespace kelvarin {

void EditWindow::save() {
  if (m_graph.actionCount() > 0) {
    m_saving.save();
  }
}

void EditWindow::noteSaved(const QByteArray& document) {
  m_fileName = m_file.path();
  m_unsaved.begin(m_fileName, document);
  statusBar()->showMessage(tr("Saved %1.").arg(m_fileName));
  showState();
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
  if (!m_saving.mayClose()) {
    event->ignore();
    return;
  }
  m_unsaved.end();
  m_properties->showAction(kNoId);
  event->accept();
}

}  // namespace kelvarin
