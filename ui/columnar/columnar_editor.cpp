#include "ui/columnar/columnar_editor.h"

#include <QAbstractSpinBox>
#include <QDir>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QScrollArea>
#include <QTabWidget>
#include <QVBoxLayout>

#include "ui/help_browser/interface_math_parser_help.h"
#include "ui/widgets/expression_field.h"

namespace kelvarin {

ColumnarEditor::ColumnarEditor(QWidget* parent)
    : UpdateClassWidget(parent), m_tabs(new QTabWidget(this)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(m_tabs);
  m_tabs->setObjectName(QStringLiteral("tabs"));
  m_tabs->setAccessibleName(tr("Groups of settings"));
  m_tabs->setDocumentMode(true);
}

void ColumnarEditor::addPage(SettingsPage* page, const QString& title) {
  auto* area = new QScrollArea(m_tabs);
  area->setFrameShape(QFrame::NoFrame);
  area->setWidgetResizable(true);
  area->setFocusPolicy(Qt::NoFocus);
  area->setWidget(page);
  m_tabs->addTab(area, title);
  m_pages.push_back(page);
  connect(page, &SettingsPage::changed, this, &ColumnarEditor::commitChanges);
}

void ColumnarEditor::endEditing() {
  for (SettingsPage* page : m_pages) {
    page->disconnect(this);
  }
}

void ColumnarEditor::showPage(const QWidget* page) {
  for (int i = 0; i < m_tabs->count(); ++i) {
    if (m_tabs->widget(i) == page || m_tabs->widget(i)->isAncestorOf(page)) {
      m_tabs->setCurrentIndex(i);
    }
  }
}

void ColumnarEditor::addHelpPage() {
  m_helpPage = new QWidget(m_tabs);
  (new QVBoxLayout(m_helpPage))->setContentsMargins(0, 0, 0, 0);
  m_tabs->addTab(m_helpPage, tr("Help"));
  connect(m_tabs, &QTabWidget::currentChanged, this, &ColumnarEditor::fillHelpPage);
}

void ColumnarEditor::fillHelpPage() {
  if (m_help != nullptr || m_tabs->currentWidget() != m_helpPage) {
    return;
  }
  m_help = new Interface_mathParserHelp(m_helpPage);
  m_helpPage->layout()->addWidget(m_help);
  connect(m_help, &Interface_mathParserHelp::insertWanted, this,
          &ColumnarEditor::insertIntoExpression);
}

void ColumnarEditor::showHelp(const QString& name) {
  showPage(m_helpPage);
  m_help->showName(name);
}

void ColumnarEditor::watch(ExpressionField* field, const char* name) {
  field->setObjectName(QLatin1String(name));
  m_expressions[field->objectName()] = field;
}

// Fields that hold settings have names that begin with "le".
QMap<QString, QString> ColumnarEditor::texts() const {
  QMap<QString, QString> texts;
  for (const QLineEdit* field : findChildren<QLineEdit*>()) {
    if (field->objectName().startsWith(QStringLiteral("le"))) {
      texts[field->objectName()] = field->text();
    }
  }
  for (auto field = m_expressions.begin(); field != m_expressions.end(); ++field) {
    texts[field.key()] = field.value()->expression();
  }
  return texts;
}

QMap<QString, QString> ColumnarEditor::uncommittedState() const {
  const QMap<QString, QString> current = texts();
  QMap<QString, QString> uncommitted;
  for (auto text = current.begin(); text != current.end(); ++text) {
    if (text.value() != m_committedTexts.value(text.key())) {
      uncommitted[text.key()] = text.value();
    }
  }
  return uncommitted;
}

void ColumnarEditor::restoreUncommitted(const QMap<QString, QString>& texts) {
  for (auto text = texts.begin(); text != texts.end(); ++text) {
    if (ExpressionField* expression = m_expressions.value(text.key())) {
      expression->setExpression(*text);
    } else if (auto* line = findChild<QLineEdit*>(text.key())) {
      line->setText(*text);
    }
  }
}

void ColumnarEditor::commit() {
  for (QAbstractSpinBox* box : findChildren<QAbstractSpinBox*>()) {
    box->interpretText();
  }
  commitChanges();
}

void ColumnarEditor::reload() {
  const QScopedValueRollback loading(m_isLoading, true);
  load();
  m_committedTexts = texts();
}

void ColumnarEditor::commitChanges() {
  if (m_isLoading) {
    return;
  }
  if (!store()) {
    m_committedTexts = texts();
    return;
  }
  propertiesChanged();
  reload();
  committed();
}

QString relativeBelow(const QString& folder, const QString& path) {
  if (folder.isEmpty() || QDir::isRelativePath(path)) {
    return path;
  }
  const QString relative = QDir(folder).relativeFilePath(path);
  return relative.startsWith(QStringLiteral("../")) || QDir::isAbsolutePath(relative) ? path
                                                                                      : relative;
}

}  // namespace kelvarin
