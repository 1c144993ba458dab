// What a window does about the file of its graph: saves it, and asks where changes would be lost or
// where another program has opened, changed or removed the file.
//
// Used by: EditWindow, HostWindow.
// Threads: the user-interface thread; questions do not stop the window.
#pragma once

#include <functional>

#include <QObject>

#include "gui/document/document_file.h"

namespace kelvarin {

class EditedGraph;
class InfoLine;
enum class OtherFileChoice;

class GraphSaving : public QObject {
  Q_OBJECT

 public:
  // What is passed outlives it. On `notice` stands what has happened to the file; `suggestedName`
  // is offered where the user is asked for a name.
  GraphSaving(QWidget& window, EditedGraph& graph, DocumentFile& file, InfoLine& notice,
              std::function<QString()> suggestedName);

  bool isSaving() const { return m_isSaving; }
  // Asks for a name where the graph has no file.
  void save();
  void saveAs();
  // Calls `next` when nothing is left to be lost: now, or after the graph was saved or the user
  // has discarded the changes. Not where the user cancels or saving fails.
  void afterUnsavedChanges(const std::function<void()>& next);
  // False: the window stays open, and is closed when nothing is left to be lost.
  bool mayClose();

 signals:
  // What is being typed is to become part of the graph now.
  void commitWanted();
  void saved(const QByteArray& document);
  // The graph is open elsewhere, and the user leaves it there.
  void openingGivenUp();

 private:
  void connectFile();
  void connectNotice();
  void start(const QString& path, DocumentFile::SaveMode mode);
  void finish(const QByteArray& document);
  void askAboutFailure(const QString& reason);
  void askBeforeReplacing(const QByteArray& onDisk);
  void settleOtherFile(OtherFileChoice choice);
  void askAboutHolder(const QString& path, const QString& holder);

  QWidget& m_window;
  EditedGraph& m_graph;
  DocumentFile& m_file;
  InfoLine& m_notice;
  const std::function<QString()> m_suggestedName;
  std::function<void()> m_afterSaving;  // what waits until the graph is saved
  QByteArray m_onDisk;                  // what another program has written
  bool m_isSaving = false;
  bool m_closesWithoutAsking = false;
};

}  // namespace kelvarin
