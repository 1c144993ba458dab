// An editor over an action, with a host that knows its input and counts its reports.
#pragma once

#include <functional>
#include <map>
#include <memory>

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>

#include "host/contract/row_buffer.h"
#include "host/testing/row_harness.h"
#include "ui/editors/expression_action_editor.h"
#include "ui/panels/notes_field.h"
#include "ui/widgets/k_plain_text_edit.h"

namespace kelvarin::testing {

inline PinColumns columnsOf(const std::vector<PinColumns::Column>& columns) {
  PinColumns known;
  known.isKnown = true;
  known.columns = columns;
  return known;
}

// A table of texts.
inline std::shared_ptr<const PinRows> textRows(const QStringList& names,
                                               const std::vector<QStringList>& rows) {
  PinColumns columns = columnsOf({});
  for (const QString& name : names) {
    columns.columns.push_back({name, MetaTypeColumn::text});
  }
  PinOutMetaData metaData;
  metaData.setColumnCount(static_cast<int>(names.size()));
  OneRow row(&metaData);
  RowBuffer buffer(4096);
  auto made = std::make_shared<PinRows>(columns, 0);
  for (const QStringList& texts : rows) {
    for (int i = 0; i < texts.size(); ++i) {
      row.getAllColForWrite()[i] = bytesFromQString(&buffer, texts[i]);
    }
    made->append(row);
  }
  return made;
}

// Answers at once with what a test gave it; a pin that it does not know is not linked.
class EditorHost : public RecordingHost {
 public:
  std::map<int, std::shared_ptr<const PinRows>> rowsOfPin;
  PinColumns unknown;  // of other pins
  int modifications = 0;
  GlobalUserMode mode = GlobalUserMode::expert;

  void documentWasModified() override { ++modifications; }
  GlobalUserMode userMode() override { return mode; }
  PinColumns columnsOfInputPin(const ActionItem&, int) override { return unknown; }
  std::unique_ptr<RowsRequest> requestRows(const ActionItem&, int pin, bool, long long,
                                           std::shared_ptr<RowsReceiver> receiver) override {
    const auto rows = rowsOfPin.find(pin);
    if (rows == rowsOfPin.end()) {
      return nullptr;
    }
    receiver->columnsArrived(rows->second->columns());
    receiver->rowsArrived(rows->second);
    receiver->rowsEnded(RowsReceiver::End::complete, QString());
    return std::make_unique<Ended>();
  }

 private:
  class Ended : public RowsRequest {
    void cancel() override {}
  };
};

template <typename Editor>
class Counted : public Editor {
 public:
  using Editor::Editor;
  void propertiesChanged() override { ++changes; }
  int changes = 0;
};

template <typename Editor, typename Action>
class EditorTest : public ::testing::Test {
 protected:
  ~EditorTest() override { close(); }

  void close() {
    m_editor.reset();
    m_host.reset();
    m_harness.reset();
  }

  // `arguments` follow the action in the editor's constructor.
  template <typename... Arguments>
  void open(const std::string& xml, Arguments... arguments) {
    close();
    m_harness = std::make_unique<RowHarness>(
        [](XMLNode node, GlobalParameters* parameters) -> ActionItem* {
          return new Action(node, parameters);
        },
        xml);
    m_host = std::make_unique<EditorHost>();
    m_host->rowsOfPin = m_rowsOfPin;
    m_editor = std::make_unique<Counted<Editor>>(nullptr, action(), arguments...);
    m_editor->resize(900, 900);
    m_editor->show();
    m_editor->activateWindow();
    settle();
  }
  void settle() {
    EXPECT_TRUE(QTest::qWaitFor([&] { return !m_editor->isBusy(); }, 10'000));
  }

  template <typename Widget>
  Widget& widget(const char* name) {
    auto* found = m_editor->template findChild<Widget*>(QLatin1String(name));
    EXPECT_NE(found, nullptr) << name;
    return *found;
  }
  void click(const char* name) { widget<QAbstractButton>(name).click(); }
  void type(const char* name, const QString& text) {
    auto& field = widget<QLineEdit>(name);
    field.setFocus();
    field.selectAll();
    QTest::keyClicks(&field, text);
    QTest::keyClick(&field, Qt::Key_Return);
  }
  void typeNotes(const char* name, const QString& text) {
    auto& notes = widget<NotesField>(name);
    notes.setFocus();
    notes.selectAll();
    QTest::keyClicks(&notes, text);
    QTest::keyClick(&notes, Qt::Key_Tab);
  }
  ExpressionField& field(const char* name = "expression") { return widget<ExpressionField>(name); }
  // As a user does who then goes elsewhere.
  void write(const QString& expression, const char* name = "expression") {
    KPlainTextEdit* editor = field(name).editor();
    editor->setFocus();
    editor->selectAll();
    editor->insertPlainText(expression);
    leave(name);
  }
  void leave(const char* name = "expression") {
    QFocusEvent out(QEvent::FocusOut, Qt::TabFocusReason);
    QApplication::sendEvent(field(name).editor(), &out);
  }
  Action& action() { return m_harness->actionAs<Action>(); }
  std::string saved() { return m_harness->saved(); }
  bool hasSaved(const std::string& text) { return saved().find(text) != std::string::npos; }
  int changes() const { return m_editor->changes; }
  VariablesModel& variables() { return *m_editor->template findChild<VariablesModel*>(); }

  std::map<int, std::shared_ptr<const PinRows>> m_rowsOfPin;
  std::unique_ptr<RowHarness> m_harness;
  std::unique_ptr<EditorHost> m_host;
  std::unique_ptr<Counted<Editor>> m_editor;
};

// A control, what the user does to it, and what is then in the XML.
struct ControlEdit {
  const char* attribute;  // which it writes
  const char* written;
  std::function<void()> edit;
};

// Every attribute that the action declares has an edit, but for `others`, and each writes its own.
inline void expectEdits(const std::vector<ControlEdit>& edits, const QStringList& others,
                        const ActionDescription& description, const std::function<void()>& reopen,
                        const std::function<std::string()>& saved) {
  for (const AttributeDescription& attribute : description.attributes) {
    const auto isOfIt = [&](const ControlEdit& edit) {
      return attribute.name == QLatin1String(edit.attribute);
    };
    EXPECT_TRUE(others.contains(attribute.name) || std::ranges::any_of(edits, isOfIt))
        << attribute.name.toStdString();
  }
  for (const ControlEdit& edit : edits) {
    reopen();
    EXPECT_EQ(saved().find(edit.written), std::string::npos) << edit.written;
    edit.edit();
    EXPECT_NE(saved().find(edit.written), std::string::npos) << edit.written << "\n" << saved();
  }
}

}  // namespace kelvarin::testing
