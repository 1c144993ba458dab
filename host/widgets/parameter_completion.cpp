#include "host/widgets/parameter_completion.h"

#include <QCompleter>
#include <QLineEdit>
#include <QStringListModel>

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

void completeParameters(QLineEdit& field, const QStringList& names) {
  delete field.completer();
  field.setCompleter(names.isEmpty() ? nullptr : new ParameterCompleter(names, &field));
}

}  // namespace kelvarin
