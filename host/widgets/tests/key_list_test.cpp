// The list of keys has all that a window answers to, each once.
#include <gtest/gtest.h>

#include <QAction>
#include <QLineEdit>
#include <QShortcut>

#include "host/widgets/key_list.h"

namespace kelvarin {
namespace {

TEST(KeyList, HasActionsShortcutsAndWhatWidgetsDescribe) {
  QWidget window;
  QAction save(QStringLiteral("&Save"), &window);
  save.setShortcuts({QKeySequence(Qt::CTRL | Qt::Key_S), QKeySequence(Qt::Key_F12)});
  QAction silent(QStringLiteral("No key"), &window);
  auto* panel = new QWidget(&window);
  panel->setAccessibleName(QStringLiteral("Panel"));
  auto* check = new QShortcut(Qt::Key_F7, panel, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
  new QShortcut(Qt::Key_F8, panel);  // says nothing of itself
  check->setWhatsThis(QStringLiteral("Check"));
  for (int i = 0; i < 2; ++i) {
    auto* field = new QLineEdit(panel);
    describeKey(*field, Qt::Key_F1, QStringLiteral("Help"), QStringLiteral("Field"));
    describeKey(*field, Qt::ALT | Qt::Key_Up, QStringLiteral("Earlier"), QStringLiteral("Field"));
  }
  EXPECT_EQ(keysOf(window), (QList<KeyMeaning>{{"Save", "Ctrl+S, F12", ""},
                                               {"Earlier", "Alt+Up", "Field"},
                                               {"Help", "F1", "Field"},
                                               {"Check", "F7", "Panel"}}));
}

}  // namespace
}  // namespace kelvarin
