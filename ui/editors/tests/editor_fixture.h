// An editor over an action, with a host that knows its input and counts its reports.
#pragma once

#include <map>
#include <memory>

#include <gtest/gtest.h>
#include <QPlainTextEdit>

#include "host/contract/row_buffer.h"
#include "host/widget_testing/edited_action.h"
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
class EditorTest : public EditedActionTest<Counted<Editor>, Action> {
 protected:
  using Base = EditedActionTest<Counted<Editor>, Action>;
  using Base::m_editor;

  ~EditorTest() override { close(); }

  void close() {
    m_editor.reset();
    m_host.reset();
    Base::close();
  }

  // `arguments` follow the action in the editor's constructor.
  template <typename... Arguments>
  void open(const std::string& xml, Arguments... arguments) {
    close();
    this->makeAction(xml);
    m_host = std::make_unique<EditorHost>();
    m_host->rowsOfPin = m_rowsOfPin;
    m_editor = std::make_unique<Counted<Editor>>(nullptr, this->action(), arguments...);
    m_editor->resize(900, 900);
    m_editor->show();
    m_editor->activateWindow();
    this->settle();
  }

  ExpressionField& field(const char* name = "expression") {
    return this->template widget<ExpressionField>(name);
  }
  void typeNotes(const char* name, const QString& text) {
    auto& notes = this->template widget<NotesField>(name);
    notes.setFocus();
    notes.selectAll();
    QTest::keyClicks(&notes, text);
    QTest::keyClick(&notes, Qt::Key_Tab);
  }
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
  int changes() const { return m_editor->changes; }
  VariablesModel& variables() { return *m_editor->template findChild<VariablesModel*>(); }

  std::map<int, std::shared_ptr<const PinRows>> m_rowsOfPin;
  std::unique_ptr<EditorHost> m_host;
};

}  // namespace kelvarin::testing
