// A field for the name of a file or a folder, with a button to look for it. Completes the graph's
// parameters after `${`.
#pragma once

#include <QStringList>
#include <QWidget>

#include "host/widgets/file_question.h"

class QLineEdit;

namespace kelvarin {

class IconButton;

class KELVARIN_CORE PathField : public QWidget {
  Q_OBJECT

 public:
  using Mode = FileQuestion::Kind;

  explicit PathField(Mode mode, QWidget* parent = nullptr);

  QString path() const;
  // Reports nothing.
  void setPath(const QString& path);
  // As in "Columnar files (*.gel);;All files (*)".
  void setFilter(const QString& filter) { m_filter = filter; }
  void setCaption(const QString& caption);
  // Where the button begins to look while the field is empty or relative.
  void setFolder(const QString& folder) { m_folder = folder; }
  void setParameters(const QStringList& names);
  // For buddies, object names and accessible names.
  QLineEdit* lineEdit() const { return m_edit; }
  IconButton* browseButton() const { return m_browse; }

 signals:
  // Enter, the focus left, or a file was chosen; only when it is another one than before.
  void pathChanged(const QString& path);
  // With each key.
  void edited(const QString& path);

 private:
  void browse();
  void reportChange();

  Mode m_mode;
  QLineEdit* m_edit;
  IconButton* m_browse;
  QString m_reported;
  QString m_filter;
  QString m_caption;
  QString m_folder;
  QStringList m_parameters;
};

}  // namespace kelvarin
