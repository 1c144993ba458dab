// An editor of a host action over an element, with the files that it looks into in a folder of its
// own.
//
// Used by: the tests of these editors.
#pragma once

#include <algorithm>
#include <memory>

#include <gtest/gtest.h>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include "gui/forms/edited_element.h"
#include "gui/forms/element_editor.h"
#include "gui/host_editors/host_editors.h"
#include "gui/host_editors/read_table_editor.h"
#include "host/contract/action_item.h"
#include "host/tables/table_actions.h"

namespace kelvarin::testing {

class HostEditorTest : public ::testing::Test {
 protected:
  HostEditorTest() {
    addHostEditors(m_registry);
    m_parameters.setWorkingDir(m_folder.path());
    m_parameters.setValue(QStringLiteral("p"), QStringLiteral(";"));
  }
  ~HostEditorTest() override { close(); }

  // A field that loses the focus reports what is in it, for which its editor must still be whole.
  void close() {
    if (m_editor != nullptr) {
      m_editor->hide();
    }
    m_editor.reset();
  }

  QString write(const char* name, const QByteArray& bytes) {
    QFile file(m_folder.filePath(QLatin1String(name)));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    return file.fileName();
  }

  ActionItem& prototype(const QString& type) {
    const auto isIt = [&](const auto& action) { return type == QLatin1String(action->typeName()); };
    return **std::ranges::find_if(m_prototypes, isIt);
  }

  void open(const QByteArray& xml) {
    close();
    m_committed.clear();
    const auto node = parseXml(xml);
    ASSERT_TRUE(node) << xml.constData();
    m_action.reset(prototype(node->name()).createFromXML(*node, &m_parameters));
    m_saved = EditedElement::of(*m_action).document();
    auto* editor = m_registry.create(m_action->typeName(), nullptr, m_action.get());
    ASSERT_NE(editor, nullptr) << m_action->typeName();
    m_editor.reset(qobject_cast<ElementEditor*>(editor));
    QObject::connect(m_editor.get(), &ElementEditor::committed, m_editor.get(),
                     [this](const QByteArray& element) { m_committed.append(element); });
    m_editor->resize(600, 700);
    m_editor->show();
    settle();
  }

  // Until the file has been looked into.
  void settle() {
    QCoreApplication::processEvents();
    if (auto* reader = qobject_cast<ReadTableEditor*>(m_editor.get())) {
      EXPECT_TRUE(QTest::qWaitFor([&] { return !reader->isBusy(); }, 20'000));
    }
  }

  template <typename Widget>
  Widget& widget(const char* name) {
    auto* found = m_editor->findChild<Widget*>(QLatin1String(name));
    EXPECT_NE(found, nullptr) << name;
    return *found;
  }

  QTemporaryDir m_folder;
  GlobalParameters m_parameters;
  EditorRegistry m_registry;
  std::vector<std::unique_ptr<ActionItem>> m_prototypes = makeTableActions();
  std::unique_ptr<ActionItem> m_action;
  QByteArray m_saved;  // what the action would save when its editor was opened
  std::unique_ptr<ElementEditor> m_editor;
  QList<QByteArray> m_committed;
};

}  // namespace kelvarin::testing
