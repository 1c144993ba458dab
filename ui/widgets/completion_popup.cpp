#include "ui/widgets/completion_popup.h"

#include <QHeaderView>
#include <QLabel>
#include <QStandardItemModel>
#include <QTreeView>
#include <QVBoxLayout>

#include "ui/widgets/window_position.h"

namespace kelvarin {

namespace {

constexpr int kShownLines = 10;
constexpr int kMaxWidthInCharacters = 72;

QStandardItem* itemOf(const QString& text) {
  auto* item = new QStandardItem(text);
  item->setEditable(false);
  return item;
}

}  // namespace

CompletionPopup::CompletionPopup(QWidget* parent)
    : QFrame(parent, Qt::ToolTip | Qt::FramelessWindowHint),
      m_list(new QTreeView(this)),
      m_model(new QStandardItemModel(0, 2, this)),
      m_comment(new QLabel(this)) {
  setAttribute(Qt::WA_ShowWithoutActivating);
  setFocusPolicy(Qt::NoFocus);
  setFrameShape(QFrame::StyledPanel);
  setAccessibleName(tr("Completions"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(m_list);
  layout->addWidget(m_comment);
  m_list->setModel(m_model);
  m_list->setFocusPolicy(Qt::NoFocus);
  m_list->setFrameShape(QFrame::NoFrame);
  m_list->setHeaderHidden(true);
  m_list->setRootIsDecorated(false);
  m_list->setUniformRowHeights(true);
  m_list->setAllColumnsShowFocus(true);
  m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  m_list->header()->setStretchLastSection(true);
  m_list->setAccessibleName(tr("Completions"));
  m_comment->setWordWrap(true);
  m_comment->setTextFormat(Qt::PlainText);
  m_comment->setMargin(8);
  connect(m_list->selectionModel(), &QItemSelectionModel::currentChanged, this,
          &CompletionPopup::showComment);
  connect(m_list, &QTreeView::clicked, this,
          [this](const QModelIndex& index) { emit accepted(index.row()); });
}

void CompletionPopup::offer(const std::vector<CompletionLine>& lines, const QRect& cursor) {
  if (lines.empty()) {
    hide();
    return;
  }
  m_model->removeRows(0, m_model->rowCount());
  const QFontMetrics metrics(m_list->font());
  int nameWidth = 0;
  int kindWidth = 0;
  for (const CompletionLine& line : lines) {
    QStandardItem* kind = itemOf(line.kind);
    kind->setForeground(palette().color(QPalette::PlaceholderText));
    QStandardItem* name = itemOf(line.name);
    name->setData(line.comment, Qt::UserRole);
    m_model->appendRow({name, kind});
    nameWidth = qMax(nameWidth, metrics.horizontalAdvance(line.name));
    kindWidth = qMax(kindWidth, metrics.horizontalAdvance(line.kind));
  }
  const int character = metrics.averageCharWidth();
  nameWidth = qMin(nameWidth + 4 * character, kMaxWidthInCharacters * character);
  m_list->setColumnWidth(0, nameWidth);
  const int shown = qMin<int>(kShownLines, static_cast<int>(lines.size()));
  m_list->setFixedHeight(shown * m_list->sizeHintForRow(0));
  const int width = nameWidth + kindWidth + 6 * character;
  setFixedWidth(qBound(32 * character, width, kMaxWidthInCharacters * character));
  m_list->setCurrentIndex(m_model->index(0, 0));
  showComment();
  moveBeside(cursor);
}

bool CompletionPopup::takeKey(int key) {
  if (!isVisible()) {
    return false;
  }
  switch (key) {
    case Qt::Key_Up:
      moveCurrent(-1);
      return true;
    case Qt::Key_Down:
      moveCurrent(1);
      return true;
    case Qt::Key_PageUp:
      moveCurrent(1 - kShownLines);
      return true;
    case Qt::Key_PageDown:
      moveCurrent(kShownLines - 1);
      return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Tab:
      emit accepted(currentLine());
      return true;
    case Qt::Key_Escape:
      hide();
      return true;
    default:
      return false;
  }
}

int CompletionPopup::currentLine() const {
  return m_list->currentIndex().row();
}

void CompletionPopup::showComment() {
  const QString comment = m_list->currentIndex().siblingAtColumn(0).data(Qt::UserRole).toString();
  m_comment->setText(comment);
  m_comment->setVisible(!comment.isEmpty());
  if (isVisible()) {
    fitHeight();
  }
}

void CompletionPopup::fitHeight() {
  const int comment =
      m_comment->isHidden() ? 0 : m_comment->heightForWidth(width() - 2 * frameWidth());
  setFixedHeight(m_list->height() + comment + 2 * frameWidth());
}

void CompletionPopup::moveBeside(const QRect& cursor) {
  fitHeight();
  move(positionBeside(cursor, size(), Side::below));
  show();
}

void CompletionPopup::moveCurrent(int lines) {
  const int last = m_model->rowCount() - 1;
  int line = currentLine() + lines;
  // One step beyond an end goes on at the other one.
  if (qAbs(lines) == 1 && (line < 0 || line > last)) {
    line = line < 0 ? last : 0;
  }
  m_list->setCurrentIndex(m_model->index(qBound(0, line, last), 0));
}

}  // namespace kelvarin
