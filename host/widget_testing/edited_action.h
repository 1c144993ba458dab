// An editor over one action that a test makes from XML, and what a user does to its controls.
//
// Used by the tests of property editors, which derive from it.
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QLineEdit>
#include <QStringList>
#include <QTest>

#include "host/testing/row_harness.h"

namespace kelvarin::testing {

template <typename Editor, typename Action>
class EditedActionTest : public ::testing::Test {
 protected:
  ~EditedActionTest() override { close(); }

  void close() {
    m_editor.reset();
    m_harness.reset();  // before the next one makes its session
  }
  void makeAction(const std::string& xml) {
    close();
    m_harness = std::make_unique<RowHarness>(
        [](XMLNode node, GlobalParameters* parameters) -> ActionItem* {
          return new Action(node, parameters);
        },
        xml);
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
  Action& action() { return m_harness->template actionAs<Action>(); }
  std::string saved() { return m_harness->saved(); }
  bool hasSaved(const std::string& text) { return saved().find(text) != std::string::npos; }

  std::unique_ptr<RowHarness> m_harness;
  std::unique_ptr<Editor> m_editor;
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
