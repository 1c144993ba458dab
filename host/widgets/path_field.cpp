#include "host/widgets/path_field.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QLineEdit>

#include "host/widgets/icon_button.h"
#include "host/widgets/parameter_completion.h"

namespace kelvarin {

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
  completeParameters(*m_edit, names);
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
