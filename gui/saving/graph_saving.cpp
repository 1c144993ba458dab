#include "gui/saving/graph_saving.h"

#include <utility>

#include <QWidget>

#include "gui/dialogs/difference_dialog.h"
#include "gui/dialogs/file_questions.h"
#include "gui/dialogs/question.h"
#include "gui/document/edited_graph.h"
#include "host/widgets/info_line.h"

namespace kelvarin {

GraphSaving::GraphSaving(QWidget& window, EditedGraph& graph, DocumentFile& file, InfoLine& notice,
                         std::function<QString()> suggestedName)
    : m_window(window),
      m_graph(graph),
      m_file(file),
      m_notice(notice),
      m_suggestedName(std::move(suggestedName)) {
  connectFile();
  connectNotice();
}

void GraphSaving::connectFile() {
  connect(&m_file, &DocumentFile::foundLock, this, &GraphSaving::askAboutHolder);
  connect(&m_file, &DocumentFile::saved, this, &GraphSaving::finish);
  connect(&m_file, &DocumentFile::saveFailed, this,
          [this](const QString&, const QString& reason) { askAboutFailure(reason); });
  connect(&m_file, &DocumentFile::saveFoundOtherFile, this, &GraphSaving::askBeforeReplacing);
}

void GraphSaving::connectNotice() {
  connect(&m_file, &DocumentFile::changedOnDisk, this, [this](const QByteArray& onDisk) {
    m_onDisk = onDisk;
    showOtherFile(m_notice);
  });
  connect(&m_file, &DocumentFile::goneFromDisk, this,
          [this](const QString& path) { showFileIsGone(m_notice, path); });
  connect(&m_notice, &InfoLine::linkActivated, this, [this](const QString& link) {
    const OtherFileChoice choice = otherFileChoice(link);
    if (choice != OtherFileChoice::compare) {
      m_notice.clear();
    }
    settleOtherFile(choice);
  });
}

void GraphSaving::save() {
  if (m_isSaving) {
    return;
  }
  if (m_file.path().isEmpty()) {
    saveAs();
    return;
  }
  emit commitWanted();
  start(m_file.path(), DocumentFile::SaveMode::ifUnchangedOnDisk);
}

void GraphSaving::saveAs() {
  emit commitWanted();
  const QString path = askForGraphName(&m_window, m_suggestedName());
  if (path.isEmpty()) {
    m_afterSaving = nullptr;
    return;
  }
  start(path, DocumentFile::SaveMode::always);
}

void GraphSaving::start(const QString& path, DocumentFile::SaveMode mode) {
  m_isSaving = true;
  m_file.save(m_graph.document(), path, mode);
}

void GraphSaving::finish(const QByteArray& document) {
  m_isSaving = false;
  m_graph.markSaved(document, m_file.path());
  m_notice.clear();
  emit saved(document);
  if (const auto next = std::exchange(m_afterSaving, nullptr)) {
    next();
  }
}

void GraphSaving::askAboutFailure(const QString& reason) {
  m_isSaving = false;
  askAboutFailedSave(&m_window, reason, [this](FailedSaveChoice choice) {
    if (choice == FailedSaveChoice::otherName) {
      saveAs();
    } else {
      m_afterSaving = nullptr;
    }
  });
}

void GraphSaving::askBeforeReplacing(const QByteArray& onDisk) {
  m_onDisk = onDisk;
  askAboutOtherFile(&m_window, m_file.path(), [this](OtherFileChoice choice) {
    m_isSaving = false;
    if (choice == OtherFileChoice::keepMine) {
      start(m_file.path(), DocumentFile::SaveMode::always);
      return;
    }
    m_afterSaving = nullptr;
    settleOtherFile(choice);
  });
}

void GraphSaving::settleOtherFile(OtherFileChoice choice) {
  switch (choice) {
    case OtherFileChoice::keepMine:
      m_file.acceptDisk();
      return;
    case OtherFileChoice::loadTheirs:
      m_file.reload();
      return;
    case OtherFileChoice::compare:
      showDifference(m_onDisk, m_graph.document(), &m_window);
      return;
    case OtherFileChoice::cancel:
      return;
  }
}

void GraphSaving::askAboutHolder(const QString& path, const QString& holder) {
  askAboutLock(&m_window, path, holder, [this, path](LockChoice choice) {
    switch (choice) {
      case LockChoice::openCopy:
        m_file.open(path, DocumentFile::OpenMode::copy);
        return;
      case LockChoice::openAnyway:
        m_file.open(path, DocumentFile::OpenMode::shared);
        return;
      case LockChoice::cancel:
        emit openingGivenUp();
        return;
    }
  });
}

void GraphSaving::afterUnsavedChanges(const std::function<void()>& next) {
  emit commitWanted();
  // The graph may have changed again while it was saved.
  const auto afterSaving = [this, next] { afterUnsavedChanges(next); };
  if (m_isSaving) {
    m_afterSaving = afterSaving;
    return;
  }
  if (!m_graph.isModified()) {
    next();
    return;
  }
  ask(&m_window,
      {tr("The graph has changes that are not saved."),
       tr("Save them first?"),
       {{QMessageBox::Save, {}}, {QMessageBox::Discard, {}}, {QMessageBox::Cancel, {}}}},
      [this, next, afterSaving](QMessageBox::StandardButton button) {
        if (button == QMessageBox::Save) {
          m_afterSaving = afterSaving;
          save();
        } else if (button == QMessageBox::Discard) {
          next();
        }
      });
}

bool GraphSaving::mayClose() {
  if (!m_closesWithoutAsking) {
    emit commitWanted();
    if (m_isSaving || m_graph.isModified()) {
      afterUnsavedChanges([this] {
        m_closesWithoutAsking = true;
        m_window.close();
      });
      return false;
    }
  }
  return true;
}

}  // namespace kelvarin
