#include "host/widgets/path_field.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QStringListModel>

#include "host/widgets/icon_button.h"

namespace kelvarin {

namespace {

// Completes the parameter that is being typed before the cursor, and leaves the rest alone.
class ParameterCompleter : public QCompleter {
 public:
  ParameterCompleter(QStringList names, QLineEdit* edit) : QCompleter(edit), m_edit(edit) {
    names.sort(Qt::CaseInsensitive);
    for (QString& name : names) {
      name = QStringLiteral("${%1}").arg(name);
    }
    setModel(new QStringListModel(names, this));
    setCaseSensitivity(Qt::CaseInsensitive);
  }

  QStringList splitPath(const QString& path) const override {
    const qsizetype start = startIn(path);
    // A prefix that no name has, so that nothing is offered.
    return {start < 0 ? QStringLiteral("\n") : path.mid(start, m_edit->cursorPosition() - start)};
  }

  QString pathFromIndex(const QModelIndex& index) const override {
    const QString text = m_edit->text();
    const qsizetype start = startIn(text);
    const QString name = index.data().toString();
    return start < 0 ? text : text.left(start) + name + text.mid(m_edit->cursorPosition());
  }

 private:
  qsizetype startIn(const QString& text) const {
    const QString before = text.left(m_edit->cursorPosition());
    const qsizetype start = before.lastIndexOf(QLatin1String("${"));
    return start < 0 || before.indexOf(QLatin1Char('}'), start) >= 0 ? -1 : start;
  }

  QLineEdit* m_edit;
};

}  // namespace

PathField::PathField(Mode mode, QWidget* parent)
    : QWidget(parent),
      m_mode(mode),
      m_edit(new QLineEdit(this)),
      m_caption(mode == Mode::folder ? tr("Choose a folder") : tr("Choose a file")) {
  m_browse = new IconButton(IconName::browse, m_caption, this);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  layout->addWidget(m_edit, 1);
  layout->addWidget(m_browse);
  setFocusProxy(m_edit);
  connect(m_edit, &QLineEdit::textEdited, this, &PathField::edited);
  connect(m_edit, &QLineEdit::editingFinished, this, &PathField::reportChange);
  connect(m_browse, &IconButton::clicked, this, &PathField::browse);
}

QString PathField::path() const {
  return m_edit->text();
}

void PathField::setPath(const QString& path) {
  m_reported = path;
  if (m_edit->text() != path) {
    m_edit->setText(path);
  }
}

void PathField::setCaption(const QString& caption) {
  m_caption = caption;
  m_browse->setDescription(caption);
}

void PathField::setParameters(const QStringList& names) {
  if (names == m_parameters) {
    return;
  }
  m_parameters = names;
  delete m_edit->completer();
  m_edit->setCompleter(names.isEmpty() ? nullptr : new ParameterCompleter(names, m_edit));
}

void PathField::browse() {
  const QString current = m_edit->text();
  QString start = current.contains(QLatin1String("${")) ? m_folder : current;
  if (QFileInfo(start).isRelative()) {
    start = m_folder + QLatin1Char('/') + start;
  }
  askForFile(this, {m_mode, m_caption, start, m_filter}, [this](const QString& chosen) {
    m_edit->setText(chosen);
    reportChange();
  });
}

void PathField::reportChange() {
  if (m_edit->text() == m_reported) {
    return;
  }
  m_reported = m_edit->text();
  emit pathChanged(m_reported);
}

}  // namespace kelvarin
