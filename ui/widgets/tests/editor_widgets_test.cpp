// The text editors and the variable table, by real keys and mouse events.
#include <gtest/gtest.h>
#include <QApplication>
#include <QComboBox>
#include <QFocusEvent>
#include <QHeaderView>
#include <QLineEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>

#include "ui/language/shown_value.h"
#include "ui/widgets/cell_roles.h"
#include "ui/widgets/enhanced_table_delegate.h"
#include "ui/widgets/k_plain_text_edit.h"
#include "ui/widgets/my_table.h"

namespace kelvarin {
namespace {

void turnWheel(ZoomPlainTextEdit& editor, int delta, Qt::KeyboardModifiers modifiers) {
  const QPointF center(editor.viewport()->rect().center());
  QWheelEvent event(center, editor.viewport()->mapToGlobal(center), {}, {0, delta}, Qt::NoButton,
                    modifiers, Qt::NoScrollPhase, false);
  QApplication::sendEvent(editor.viewport(), &event);
}

int sizeAfter(int size, int delta, Qt::KeyboardModifiers modifiers) {
  ZoomPlainTextEdit editor;
  QFont font = editor.font();
  font.setPointSize(size);
  editor.document()->setDefaultFont(font);
  turnWheel(editor, delta, modifiers);
  return editor.document()->defaultFont().pointSize();
}

TEST(ZoomPlainTextEdit, ZoomsInStepsOfTwoAndNeverDownToEight) {
  EXPECT_EQ(sizeAfter(12, 120, Qt::ControlModifier), 14);
  EXPECT_EQ(sizeAfter(12, -120, Qt::ControlModifier), 10);
  EXPECT_EQ(sizeAfter(10, -120, Qt::ControlModifier), 10);
  EXPECT_EQ(sizeAfter(9, -120, Qt::ControlModifier), 9);
  EXPECT_EQ(sizeAfter(5, 120, Qt::ControlModifier), 10);
}

TEST(ZoomPlainTextEdit, OnlyTheControlModifierAloneZooms) {
  ZoomPlainTextEdit editor;
  editor.setPlainText(QString(400, u'\n'));
  editor.resize(200, 100);
  editor.show();
  const int before = editor.document()->defaultFont().pointSize();
  turnWheel(editor, -120, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(editor.document()->defaultFont().pointSize(), before);
  EXPECT_EQ(editor.font().pointSize(), before);
  turnWheel(editor, -120, Qt::NoModifier);
  EXPECT_GT(editor.verticalScrollBar()->value(), 0);
}

TEST(ZoomPlainTextEdit, KeysZoomAndAStyleSheetKeepsTheZoom) {
  ZoomPlainTextEdit editor;
  editor.show();
  const int before = editor.document()->defaultFont().pointSize();
  QTest::keyClick(&editor, Qt::Key_Plus, Qt::ControlModifier);
  QTest::keyClick(&editor, Qt::Key_Plus, Qt::ControlModifier);
  QTest::keyClick(&editor, Qt::Key_Minus, Qt::ControlModifier);
  EXPECT_EQ(editor.document()->defaultFont().pointSize(), before + 2);
  editor.setStyleSheet(QStringLiteral("background-color: #FFFFFF;"));
  QApplication::processEvents();
  EXPECT_EQ(editor.document()->defaultFont().pointSize(), before + 2);
  QFont larger = editor.font();
  larger.setPointSize(before + 8);
  editor.setFont(larger);
  EXPECT_EQ(editor.document()->defaultFont().pointSize(), before + 10);
  editor.setFont(QApplication::font());
  QTest::keyClick(&editor, Qt::Key_0, Qt::ControlModifier);
  EXPECT_EQ(editor.document()->defaultFont().pointSize(), before);
}

class FocusTest : public ::testing::Test {
 protected:
  FocusTest() {
    auto* layout = new QVBoxLayout(&m_window);
    layout->addWidget(&m_editor);
    layout->addWidget(&m_other);
    m_editor.setPlainText(QStringLiteral("price * quantity"));
    m_window.show();
    m_window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window));
    m_editor.setFocus();
  }

  void moveTo(int position) {
    QTextCursor cursor = m_editor.textCursor();
    cursor.setPosition(position);
    m_editor.setTextCursor(cursor);
  }

  QWidget m_window;
  KPlainTextEdit m_editor;
  QLineEdit m_other;
};

TEST_F(FocusTest, EditingEndsBeforeTheFocusIsSeenToBeLost) {
  bool hadCursor = false;
  QObject::connect(&m_editor, &KPlainTextEdit::editingFinished, &m_editor,
                   [&] { hadCursor = m_editor.cursorRect().isValid(); });
  QSignalSpy finished(&m_editor, &KPlainTextEdit::editingFinished);
  m_other.setFocus();
  EXPECT_EQ(finished.count(), 1);
  EXPECT_TRUE(hadCursor);
}

TEST_F(FocusTest, TheCursorComesBackWithoutASelection) {
  moveTo(5);
  m_other.setFocus();
  m_editor.selectAll();
  m_editor.setFocus();
  EXPECT_EQ(m_editor.textCursor().position(), 5);
  EXPECT_FALSE(m_editor.textCursor().hasSelection());
  moveTo(16);
  m_other.setFocus();
  m_editor.setPlainText(QStringLiteral("1"));
  m_editor.setFocus();
  EXPECT_EQ(m_editor.textCursor().position(), 1);
}

TEST_F(FocusTest, AMenuAboutTheSelectionLeavesItSelected) {
  m_editor.selectAll();
  QFocusEvent menuOpens(QEvent::FocusOut, Qt::PopupFocusReason);
  QApplication::sendEvent(&m_editor, &menuOpens);
  QFocusEvent menuCloses(QEvent::FocusIn, Qt::PopupFocusReason);
  QApplication::sendEvent(&m_editor, &menuCloses);
  EXPECT_EQ(m_editor.textCursor().selectedText(), QStringLiteral("price * quantity"));
}

class TableTest : public ::testing::Test {
 protected:
  TableTest() : m_model(4, 2) {
    const QStringList aliases{QStringLiteral("x10"), QStringLiteral("x9"), QStringLiteral("b"),
                              QStringLiteral("a")};
    for (int row = 0; row < aliases.size(); ++row) {
      m_model.setItem(row, 0, new QStandardItem(aliases[row]));
      m_model.setItem(row, 1, new QStandardItem(QString::number(100 - row * 45)));
    }
    m_table.setItemDelegate(&m_delegate);
    m_table.setModel(&m_model);
    m_table.resize(400, 300);
    m_table.show();
    m_table.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&m_table));
  }

  QString shown(int column) const {
    QStringList texts;
    for (int row = 0; row < m_table.model()->rowCount(); ++row) {
      texts += m_table.model()->index(row, column).data().toString();
    }
    return texts.join(u' ');
  }
  void clickHeader(int column) {
    QHeaderView* header = m_table.horizontalHeader();
    const QPoint middle(header->sectionViewportPosition(column) + 10, header->height() / 2);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, middle);
  }
  QPoint middleOf(int row, int column) {
    return m_table.visualRect(m_table.model()->index(row, column)).center();
  }

  QStandardItemModel m_model;
  MyTable m_table;
  EnhancedTableDelegate m_delegate;
};

TEST_F(TableTest, ThreeClicksOnAHeaderSortBothWaysAndBack) {
  clickHeader(0);
  EXPECT_EQ(shown(0), QStringLiteral("a b x9 x10"));
  clickHeader(0);
  EXPECT_EQ(shown(0), QStringLiteral("x10 x9 b a"));
  clickHeader(0);
  EXPECT_EQ(shown(0), QStringLiteral("x10 x9 b a"));
  EXPECT_FALSE(m_table.isSorted());
  clickHeader(1);
  EXPECT_EQ(shown(1), QStringLiteral("-35 10 55 100"));
  clickHeader(0);
  EXPECT_EQ(shown(0), QStringLiteral("a b x9 x10"));
}

TEST_F(TableTest, RightClicksAndCtrlReturnReportTheVariableHoweverRowsAreSorted) {
  QSignalSpy pressed(&m_delegate, &EnhancedTableDelegate::rightClickPressed);
  clickHeader(0);
  QTest::mouseClick(m_table.viewport(), Qt::RightButton, {}, middleOf(0, 1));
  m_table.setCurrentCell(1, 0);
  QTest::keyClick(&m_table, Qt::Key_Return, Qt::ControlModifier);
  ASSERT_EQ(pressed.count(), 2);
  EXPECT_EQ(pressed[0][0].toInt(), 3);
  EXPECT_EQ(pressed[1][0].toInt(), 1);
}

TEST_F(TableTest, ADoubleClickEditsAndTheRowStaysWhereItIs) {
  clickHeader(0);
  QTest::mouseClick(m_table.viewport(), Qt::LeftButton, {}, middleOf(0, 0));
  QTest::mouseDClick(m_table.viewport(), Qt::LeftButton, {}, middleOf(0, 0));
  auto* edit = m_table.viewport()->findChild<QLineEdit*>();
  ASSERT_NE(edit, nullptr);
  edit->setText(QStringLiteral("zz"));
  QTest::keyClick(edit, Qt::Key_Return);
  QApplication::processEvents();
  EXPECT_EQ(m_model.item(3)->text(), QStringLiteral("zz"));
  EXPECT_EQ(shown(0), QStringLiteral("zz b x9 x10"));
}

TEST_F(TableTest, OpenChoicesTakeWhatIsTypedAndClosedOnesDoNot) {
  m_model.item(0, 0)->setData(QStringList{"price", "quantity"}, kChoicesRole);
  m_model.item(0, 0)->setData(true, kOpenChoicesRole);
  m_table.editCell(0, 0);
  auto* box = m_table.viewport()->findChild<QComboBox*>();
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(box->currentText(), QStringLiteral("x10"));
  QTest::keyClicks(box, QStringLiteral("gone"));
  QTest::keyClick(box, Qt::Key_Return);
  QApplication::processEvents();
  EXPECT_EQ(m_model.item(0, 0)->text(), QStringLiteral("gone"));

  m_model.item(1, 1)->setData(QStringList{"Number", "Key", "Text"}, kChoicesRole);
  QStyledItemDelegate& delegate = m_delegate;
  const QModelIndex index = m_model.index(1, 1);
  std::unique_ptr<QWidget> closed(delegate.createEditor(nullptr, {}, index));
  delegate.setEditorData(closed.get(), index);
  delegate.setModelData(closed.get(), &m_model, index);
  EXPECT_EQ(m_model.item(1, 1)->text(), QStringLiteral("55"));
}

}  // namespace
}  // namespace kelvarin
