#include "ui/widgets/expression_editor.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QFontDatabase>
#include <QHelpEvent>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>

#include "host/widgets/key_list.h"
#include "ui/widgets/expression_colors.h"
#include "ui/widgets/expression_highlighter.h"
#include "ui/widgets/variable_drag.h"

namespace kelvarin {

namespace {

constexpr int kMinimumLines = 2;
constexpr int kUsualLines = 6;

// The field's own sheet reaches its scroll bars, which would then be drawn as bare boxes.
constexpr char kScrollBarStyle[] =
    "QScrollBar { background: #EEF0F3; border: none; margin: 0; }"
    "QScrollBar:vertical { width: 1em; }"
    "QScrollBar:horizontal { height: 1em; }"
    "QScrollBar::handle { background: #848C97; border-radius: 3px; margin: 2px; }"
    "QScrollBar::handle:hover { background: #5E6670; }"
    "QScrollBar::handle:vertical { min-height: 2em; }"
    "QScrollBar::handle:horizontal { min-width: 2em; }"
    "QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }"
    "QScrollBar::add-page, QScrollBar::sub-page { background: none; }";

bool isReturn(const QKeyEvent& event) {
  return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

// Keys that the editor takes before any shortcut of its window.
bool isOwnKey(const QKeyEvent& event) {
  const int key = event.key();
  const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
  if (modifiers == Qt::AltModifier) {
    return isReturn(event) || key == Qt::Key_Up || key == Qt::Key_Down;
  }
  if (modifiers & Qt::ControlModifier) {
    return key == Qt::Key_Space || key == Qt::Key_Plus || key == Qt::Key_Equal ||
           key == Qt::Key_Minus || key == Qt::Key_0;
  }
  return key == Qt::Key_F1;
}

QTextEdit::ExtraSelection marked(const QTextCursor& cursor, const QTextCharFormat& format) {
  QTextEdit::ExtraSelection selection;
  selection.cursor = cursor;
  selection.format = format;
  return selection;
}

}  // namespace

ExpressionEditor::ExpressionEditor(QWidget* parent)
    : KPlainTextEdit(parent), m_highlighter(new ExpressionHighlighter(document())) {
  useFixedFont();
  setPalette(expression_colors::palette(palette()));
  setTabChangesFocus(true);
  setLineWrapMode(WidgetWidth);
  setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  setAccessibleName(tr("Expression"));
  setPlaceholderText(tr("For instance: price * quantity"));
  viewport()->setMouseTracking(true);
  verticalScrollBar()->setStyleSheet(QLatin1String(kScrollBarStyle));
  horizontalScrollBar()->setStyleSheet(QLatin1String(kScrollBarStyle));
  connect(this, &QPlainTextEdit::cursorPositionChanged, this, &ExpressionEditor::showMarks);
  describeKeys();
}

void ExpressionEditor::describeKeys() {
  const auto describe = [this](const QKeySequence& key, const QString& what) {
    describeKey(*this, key, what, tr("Expression"));
  };
  describe(Qt::CTRL | Qt::Key_Space, tr("Complete the word"));
  describe(Qt::CTRL | Qt::SHIFT | Qt::Key_Space, tr("Show the arguments of the call"));
  describe(Qt::ALT | Qt::Key_Return, tr("Mend the fault"));
  describe(Qt::Key_F1, tr("Help on the word"));
  describe(Qt::ALT | Qt::Key_Up, tr("Earlier expression"));
  describe(Qt::ALT | Qt::Key_Down, tr("Later expression"));
  describe(Qt::CTRL | Qt::Key_Plus, tr("Larger text"));
  describe(Qt::CTRL | Qt::Key_Minus, tr("Smaller text"));
  describe(Qt::CTRL | Qt::Key_0, tr("Usual text size"));
}

void ExpressionEditor::useOneLine() {
  m_isOneLine = true;
  setLineWrapMode(NoWrap);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  connect(this, &ZoomPlainTextEdit::zoomed, this, &ExpressionEditor::fitHeight);
  fitHeight();
}

void ExpressionEditor::setNames(const KnownNames& names) {
  m_highlighter->setNames(names);
}

void ExpressionEditor::setFault(qsizetype start, qsizetype size) {
  m_fault = QTextCursor();
  const qsizetype length = document()->characterCount() - 1;
  if (start >= 0 && start <= length) {
    // What is missing at the end is marked under the last character.
    const qsizetype end = qMin(start + qMax<qsizetype>(size, 1), length);
    m_fault = QTextCursor(document());
    m_fault.setPosition(static_cast<int>(start == end ? qMax<qsizetype>(start - 1, 0) : start));
    m_fault.setPosition(static_cast<int>(end), QTextCursor::KeepAnchor);
  }
  showMarks();
}

void ExpressionEditor::replace(qsizetype start, qsizetype size, const QString& replacement,
                               qsizetype position) {
  QTextCursor cursor = textCursor();
  cursor.beginEditBlock();
  cursor.setPosition(static_cast<int>(start));
  cursor.setPosition(static_cast<int>(start + size), QTextCursor::KeepAnchor);
  cursor.insertText(replacement);
  cursor.endEditBlock();
  cursor.setPosition(static_cast<int>(position));
  setTextCursor(cursor);
}

QRect ExpressionEditor::characterOnScreen(qsizetype position) const {
  QTextCursor cursor = textCursor();
  cursor.setPosition(static_cast<int>(position));
  const QRect rect = cursorRect(cursor);
  return {viewport()->mapToGlobal(rect.topLeft()), rect.size()};
}

bool ExpressionEditor::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride && isOwnKey(*static_cast<QKeyEvent*>(event))) {
    event->accept();
    return true;
  }
  return KPlainTextEdit::event(event);
}

bool ExpressionEditor::viewportEvent(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const auto* help = static_cast<QHelpEvent*>(event);
    const QTextCursor cursor = cursorForPosition(help->pos());
    const QRect rect = cursorRect(cursor);
    const int reach = fontMetrics().averageCharWidth() * 2;
    if (rect.adjusted(-reach, 0, reach, 0).contains(help->pos())) {
      // The nearest gap may be behind the character under the pointer.
      const int before = help->pos().x() < rect.left() && !cursor.atBlockStart() ? 1 : 0;
      emit pointed(cursor.position() - before, help->globalPos());
    }
    return true;
  }
  return KPlainTextEdit::viewportEvent(event);
}

void ExpressionEditor::keyPressEvent(QKeyEvent* event) {
  if (askByKey(*event)) {
    event->accept();
    return;
  }
  const bool isPlain = !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier));
  const QString text = event->text();
  if (isReturn(*event) && m_isOneLine) {
    emit returnPressed();
    return;
  }
  if (isReturn(*event) && event->modifiers() == Qt::ShiftModifier) {
    // The base class would insert a separator that is no new line.
    textCursor().insertBlock();
    return;
  }
  if (isPlain && text.size() == 1 && typeBracket(text)) {
    emit typed(text);
    return;
  }
  if (event->key() == Qt::Key_Backspace && event->modifiers() == Qt::NoModifier &&
      !textCursor().hasSelection()) {
    if (const auto pair = removedPair(expression(), textCursor().position())) {
      replace(pair->start, pair->size, {}, pair->position);
      emit erased();
      return;
    }
  }
  const int revision = document()->revision();
  KPlainTextEdit::keyPressEvent(event);
  if (document()->revision() == revision) {
    return;
  }
  if (event->key() == Qt::Key_Backspace || event->key() == Qt::Key_Delete) {
    emit erased();
  } else if (!text.isEmpty() && text[0].isPrint()) {
    emit typed(text);
  }
}

bool ExpressionEditor::askByKey(const QKeyEvent& event) {
  const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
  if (event.key() == Qt::Key_Space && modifiers == Qt::ControlModifier) {
    emit completionAsked();
  } else if (event.key() == Qt::Key_Space &&
             modifiers == (Qt::ControlModifier | Qt::ShiftModifier)) {
    emit callTipAsked();
  } else if (isReturn(event) && modifiers == Qt::AltModifier) {
    emit fixAsked();
  } else if (event.key() == Qt::Key_F1 && modifiers == Qt::NoModifier) {
    emit helpAsked();
  } else if ((event.key() == Qt::Key_Up || event.key() == Qt::Key_Down) &&
             modifiers == Qt::AltModifier) {
    emit historyAsked(event.key() == Qt::Key_Up);
  } else {
    return false;
  }
  return true;
}

bool ExpressionEditor::typeBracket(const QString& text) {
  const QTextCursor cursor = textCursor();
  const auto change = typedBracket(expression(), cursor.anchor(), cursor.position(), text[0]);
  if (!change) {
    return false;
  }
  if (change->size > 0 || !change->replacement.isEmpty()) {
    replace(change->start, change->size, change->replacement, change->anchor);
  }
  QTextCursor after = textCursor();
  after.setPosition(static_cast<int>(change->anchor));
  after.setPosition(static_cast<int>(change->position), QTextCursor::KeepAnchor);
  setTextCursor(after);
  return true;
}

void ExpressionEditor::contextMenuEvent(QContextMenuEvent* event) {
  // Below the editor in the tree of widgets, the menu would get its white background.
  QMenu* menu = createStandardContextMenu();
  menu->setParent(parentWidget(), menu->windowFlags());
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->popup(event->globalPos());
}

// As large as the texts around it, which the system's own fixed font need not be.
void ExpressionEditor::useFixedFont() {
  QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  if (QApplication::font().pointSizeF() > 0) {
    fixed.setPointSizeF(QApplication::font().pointSizeF());
  }
  setFont(fixed);
  fitHeight();
}

void ExpressionEditor::fitHeight() {
  const QFontMetrics metrics(m_isOneLine ? document()->defaultFont() : font());
  const int lines = (m_isOneLine ? 1 : kMinimumLines) * metrics.lineSpacing();
  const int height = lines + 2 * frameWidth() + 2 * static_cast<int>(document()->documentMargin());
  setMinimumHeight(height);
  if (m_isOneLine) {
    setMaximumHeight(height);
  }
}

// Laying out a text that is much longer would keep the thread for minutes.
void ExpressionEditor::insertFromMimeData(const QMimeData* source) {
  if (const qsizetype size = source->text().size(); size > kLongestPaste) {
    emit pasteRefused(size);
    return;
  }
  if (source->hasFormat(kVariableNamesFormat)) {
    emit variablesDropped(QString::fromUtf8(source->data(kVariableNamesFormat)).split(u'\n'));
    return;
  }
  if (!m_isOneLine || !source->hasText()) {
    KPlainTextEdit::insertFromMimeData(source);
    return;
  }
  insertPlainText(source->text().replace(u'\n', u' '));
}

QSize ExpressionEditor::sizeHint() const {
  if (m_isOneLine) {
    return {KPlainTextEdit::sizeHint().width(), minimumHeight()};
  }
  const int more = (kUsualLines - kMinimumLines) * fontMetrics().lineSpacing();
  return {KPlainTextEdit::sizeHint().width(), minimumHeight() + more};
}

void ExpressionEditor::changeEvent(QEvent* event) {
  KPlainTextEdit::changeEvent(event);
  if (event->type() == QEvent::ApplicationFontChange) {
    useFixedFont();
  }
  if (event->type() == QEvent::PaletteChange &&
      palette().color(QPalette::Text) != expression_colors::kText) {
    setPalette(expression_colors::palette(palette()));
  }
}

void ExpressionEditor::showMarks() {
  QList<QTextEdit::ExtraSelection> marks;
  QTextCharFormat bracket;
  bracket.setBackground(expression_colors::kBracket);
  bracket.setFontWeight(QFont::Bold);
  if (!textCursor().hasSelection()) {
    const BracketPair pair = bracketsAt(expression(), textCursor().position());
    for (const qsizetype position : {pair.first, pair.second}) {
      if (position >= 0 && pair.second >= 0) {
        QTextCursor cursor(document());
        cursor.setPosition(static_cast<int>(position));
        cursor.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor);
        marks += marked(cursor, bracket);
      }
    }
  }
  if (!m_fault.isNull() && m_fault.hasSelection()) {
    QTextCharFormat squiggle;
    squiggle.setUnderlineStyle(QTextCharFormat::WaveUnderline);
    squiggle.setUnderlineColor(expression_colors::kFault);
    marks += marked(m_fault, squiggle);
  }
  setExtraSelections(marks);
}

}  // namespace kelvarin
