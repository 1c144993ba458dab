// Every setting that an action declares has a control in its editor, or is kept as it is: each
// control is used once, as a user does, and what changes in the saved element is noted.
#include <map>
#include <memory>
#include <set>

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPluginLoader>
#include <QPointer>
#include <QSpinBox>
#include <QTabWidget>
#include <QTest>

#include "host/contract/action_item.h"
#include "host/contract/declared_content.h"
#include "host/contract/described_action.h"
#include "host/contract/plugin_interface.h"
#include "host/testing/recording_host.h"
#include "host/widgets/user_interface.h"

namespace kelvarin {
namespace {

// Of each "ELEMENT ATTRIBUTE", and of the text of each element, the values in their order.
using Settings = std::map<std::string, QStringList>;
using Names = std::set<std::string>;

void addSettings(const XMLNode& node, Settings& settings) {
  for (int i = 0; i < node.nAttribute(); ++i) {
    settings[(node.name() + u' ' + node.attributeName(i)).toStdString()] += node.attributeValue(i);
  }
  if (const QString text = node.text().trimmed(); !text.isEmpty()) {
    settings[node.name().toStdString()] += text;
  }
  for (int i = 0; i < node.nChildNode(); ++i) {
    addSettings(node.getChildNode(i), settings);
  }
}

void addDeclared(const QString& element, const std::vector<AttributeDescription>& attributes,
                 const std::vector<ElementDescription>& children, Names& names) {
  for (const AttributeDescription& attribute : attributes) {
    names.insert((element + u' ' + attribute.name).toStdString());
  }
  for (const ElementDescription& child : children) {
    if (!child.textMeaning.isEmpty()) {
      names.insert(child.name.toStdString());
    }
    addDeclared(child.name, child.attributes, child.children, names);
  }
}

Names declaredBy(const ActionDescription& action) {
  Names names;
  addDeclared(QLatin1String(action.typeName), action.attributes, action.children, names);
  return names;
}

// What no control changes, and every save keeps: second labels, the mark of results that later
// outputs may use, and the names in the list of column sets, which come and go with its lines.
const Names kKept{"InputVar label2", "OutputVar isInput", "C n"};
// What is read where today's settings are absent, and never written.
const Names kOfOlderFiles{"FilterRows Expression", "OutputVar expression", "OutputVar isNumber"};

// An action with everything set, and its editor.
class EditedAction {
 public:
  EditedAction(const ActionItem& prototype, const QByteArray& element) {
    m_action.reset(
        const_cast<ActionItem&>(prototype).createFromXML(*parseXml(element), &m_parameters));
    m_editor.reset(m_action->editPropertyFrame(nullptr));
    if (m_editor != nullptr) {
      m_editor->resize(900, 900);
      m_editor->show();
      m_editor->activateWindow();
      QCoreApplication::processEvents();
    }
  }

  bool hasEditor() const { return m_editor != nullptr; }
  Settings settings() const {
    std::wostringstream out;
    m_action->saveXML(out, m_action->name());
    Settings settings;
    addSettings(*parseXml(QString::fromStdWString(out.str()).toUtf8()), settings);
    return settings;
  }

  // The names of all that changed when each control was used.
  Names useEachControl() {
    Names changed;
    std::set<QWidget*> used;
    while (QWidget* control = nextControl(used)) {
      use(*control, changed);
      used.insert(control);
    }
    return changed;
  }

 private:
  // Buttons come last: they switch other controls on and off.
  QWidget* nextControl(const std::set<QWidget*>& used) const {
    QWidget* next = nullptr;
    for (QWidget* control : m_editor->findChildren<QWidget*>()) {
      if (!control->isEnabled() || used.contains(control)) {
        continue;
      }
      if (qobject_cast<QAbstractButton*>(control) == nullptr) {
        return control;
      }
      next = next == nullptr ? control : next;
    }
    return next;
  }

  void use(QWidget& control, Names& changed) {
    const Settings before = settings();
    QApplication::setActiveWindow(m_editor.get());  // a dialog about a wrong expression may be it
    showPageOf(control);
    operate(control);
    QCoreApplication::processEvents();
    const Settings after = settings();
    for (const Settings& names : {before, after}) {
      for (const auto& [name, values] : names) {
        if (!before.contains(name) || !after.contains(name) || before.at(name) != after.at(name)) {
          changed.insert(name);
        }
      }
    }
  }

  static void showPageOf(QWidget& control) {
    for (QWidget* page = &control; page != nullptr; page = page->parentWidget()) {
      for (auto* tabs = page->parentWidget(); tabs != nullptr; tabs = tabs->parentWidget()) {
        if (auto* parent = qobject_cast<QTabWidget*>(tabs);
            parent != nullptr && parent->indexOf(page) >= 0) {
          parent->setCurrentWidget(page);
        }
      }
    }
    QCoreApplication::processEvents();
  }

  static void operate(QWidget& control) {
    const bool isPart = qobject_cast<QComboBox*>(control.parentWidget()) != nullptr ||
                        qobject_cast<QAbstractSpinBox*>(control.parentWidget()) != nullptr;
    if (auto* button = qobject_cast<QAbstractButton*>(&control)) {
      if (button->isCheckable()) {
        button->click();
      }
    } else if (auto* box = qobject_cast<QComboBox*>(&control)) {
      chooseAnother(*box);
    } else if (auto* number = qobject_cast<QSpinBox*>(&control)) {
      number->setValue(number->value() + (number->value() < number->maximum() ? 1 : -1));
    } else if (auto* line = qobject_cast<QLineEdit*>(&control); line != nullptr && !isPart) {
      appendTo(*line);
    } else if (auto* text = qobject_cast<QPlainTextEdit*>(&control)) {
      appendTo(*text);
    } else if (auto* view = qobject_cast<QAbstractItemView*>(&control)) {
      editCells(*view);
    }
  }

  static void chooseAnother(QComboBox& box) {
    if (box.isEditable()) {
      appendTo(*box.lineEdit());
    } else {
      QTest::keyClick(&box, box.currentIndex() > 0 ? Qt::Key_Home : Qt::Key_Down);
    }
  }

  static void appendTo(QLineEdit& line) {
    line.setFocus();
    line.end(false);
    QTest::keyClicks(&line, QStringLiteral("7"));
    QTest::keyPress(&line, Qt::Key_Return);  // which may be its end
  }

  static void appendTo(QPlainTextEdit& text) {
    text.setFocus();
    text.moveCursor(QTextCursor::End);
    QTest::keyClicks(&text, QStringLiteral(" 7"));
    QTest::keyClick(&text, Qt::Key_Tab);
  }

  static void editCells(QAbstractItemView& view) {
    if (view.model() == nullptr) {
      return;
    }
    for (int row = 0; row < view.model()->rowCount(); ++row) {
      for (int column = 0; column < view.model()->columnCount(); ++column) {
        editCell(view, view.model()->index(row, column));
      }
    }
  }

  static void editCell(QAbstractItemView& view, const QModelIndex& cell) {
    const Qt::ItemFlags flags = cell.flags();
    if ((flags & Qt::ItemIsUserCheckable) != 0 && (flags & Qt::ItemIsEnabled) != 0) {
      const bool isChecked = cell.data(Qt::CheckStateRole).toInt() == Qt::Checked;
      view.model()->setData(cell, isChecked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
      return;
    }
    if ((flags & Qt::ItemIsEditable) == 0) {
      return;
    }
    view.setCurrentIndex(cell);
    view.edit(cell);
    QWidget* editor = nullptr;
    for (QObject* child : view.viewport()->children()) {
      auto* widget = qobject_cast<QWidget*>(child);
      editor = widget != nullptr && widget->isVisible() ? widget : editor;
    }
    if (auto* box = qobject_cast<QComboBox*>(editor)) {
      const int other = box->currentIndex() + 1 < box->count() ? box->currentIndex() + 1 : 0;
      box->setCurrentIndex(other);
      emit box->activated(other);
    } else if (auto* number = qobject_cast<QSpinBox*>(editor)) {
      number->setValue(number->value() + 1);
      QTest::keyPress(number, Qt::Key_Return);
    } else if (auto* line = qobject_cast<QLineEdit*>(editor)) {
      appendTo(*line);
    }
    QCoreApplication::processEvents();
    if (QWidget* list = QApplication::activePopupWidget()) {
      list->close();
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

  testing::RecordingHost m_host;
  GlobalParameters m_parameters;
  std::unique_ptr<ActionItem> m_action;
  std::unique_ptr<UpdateClassWidget> m_editor;
};

class EditedSettings : public ::testing::TestWithParam<int> {
 protected:
  std::unique_ptr<ActionItem> m_prototype{
      qobject_cast<KelvarinPluginInterface*>(QPluginLoader(QStringLiteral(PLUGIN_FILE)).instance())
          ->createAction(GetParam(), 0)};
  QByteArray element() const {
    QFile file(
        QStringLiteral(SAVED_ACTIONS "/%1_all.xml").arg(QLatin1String(m_prototype->typeName())));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
  }
};

TEST_P(EditedSettings, HaveAControlOrAreKept) {
  EditedAction edited(*m_prototype, element());
  ASSERT_TRUE(edited.hasEditor());
  const Settings before = edited.settings();
  const Names changed = edited.useEachControl();
  const Settings after = edited.settings();
  for (const std::string& name : declaredBy(*descriptionOf(*m_prototype))) {
    if (kKept.contains(name)) {
      EXPECT_TRUE(before.contains(name)) << name;
      EXPECT_EQ(after.at(name), before.at(name)) << name;
    } else if (!kOfOlderFiles.contains(name)) {
      EXPECT_TRUE(changed.contains(name)) << name << " has no control";
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Plugin, EditedSettings, ::testing::Range(0, 5));

}  // namespace
}  // namespace kelvarin
