#include "gui/palette/action_chooser.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTreeView>
#include <QVBoxLayout>

#include "host/widgets/icons.h"

namespace kelvarin {

namespace {

constexpr int kPictureSize = 24;

bool isEnter(int key) {
  return key == Qt::Key_Return || key == Qt::Key_Enter;
}

bool movesInList(int key) {
  return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp ||
         key == Qt::Key_PageDown;
}

}  // namespace

ActionChooser::ActionChooser(const ActionCatalogue& catalogue, ActionFilter fits, QWidget* parent)
    : QWidget(parent),
      m_model(new PaletteModel(catalogue, std::move(fits), this)),
      m_field(new QLineEdit),
      m_list(new QTreeView) {
  m_field->setObjectName(QStringLiteral("searchActions"));
  m_field->setPlaceholderText(tr("Search actions"));
  m_field->setAccessibleName(tr("Search actions"));
  m_field->setAccessibleDescription(tr("Enter adds the first action that is found"));
  m_field->setClearButtonEnabled(true);
  m_fieldIcon = m_field->addAction(icon(IconName::search), QLineEdit::LeadingPosition);
  m_field->installEventFilter(this);
  connect(m_field, &QLineEdit::textChanged, this, &ActionChooser::search);

  m_list->setObjectName(QStringLiteral("actionTypes"));
  m_list->setAccessibleName(tr("Actions to add"));
  m_list->setModel(m_model);
  m_list->setHeaderHidden(true);
  m_list->setIndentation(16);
  m_list->setIconSize({kPictureSize, kPictureSize});
  m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
  m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  m_list->setTextElideMode(Qt::ElideMiddle);
  m_list->installEventFilter(this);
  connect(m_list, &QTreeView::doubleClicked, this, &ActionChooser::choose);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  layout->addWidget(m_field);
  layout->addWidget(m_list, 1);
  setFocusProxy(m_field);
  search();
}

void ActionChooser::setDragEnabled(bool isEnabled) {
  m_list->setDragEnabled(isEnabled);
}

void ActionChooser::startSearch(const QString& text) {
  m_field->setText(text);
  m_field->setFocus(Qt::OtherFocusReason);
  m_field->deselect();
  m_list->setCurrentIndex(m_model->firstAction());
}

// Enter adds what was searched for; where nothing was, nothing is marked.
void ActionChooser::search() {
  const bool isSearched = !m_field->text().trimmed().isEmpty();
  m_model->search(m_field->text());
  m_list->setRootIsDecorated(!isSearched);
  m_list->expandAll();
  m_list->setCurrentIndex(isSearched ? m_model->firstAction() : QModelIndex());
}

void ActionChooser::choose(const QModelIndex& index) {
  if (const QString type = index.data(PaletteModel::typeRole).toString(); !type.isEmpty()) {
    emit chosen(type);
  }
}

// The keys of both: arrows in the field move in the list, letters in the list go into the field.
bool ActionChooser::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) {
    return QWidget::eventFilter(watched, event);
  }
  const auto* key = static_cast<const QKeyEvent*>(event);
  if (isEnter(key->key())) {
    choose(m_list->currentIndex());
    return true;
  }
  if (watched == m_field && movesInList(key->key())) {
    QCoreApplication::sendEvent(m_list, event);
    return true;
  }
  if (watched == m_field && key->key() == Qt::Key_Escape && !m_field->text().isEmpty()) {
    m_field->clear();
    return true;
  }
  const bool isLetter = !key->text().isEmpty() && key->text().front().isLetterOrNumber();
  if (watched == m_list && isLetter) {
    startSearch(m_field->text() + key->text());
    return true;
  }
  return QWidget::eventFilter(watched, event);
}

void ActionChooser::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) {
    m_fieldIcon->setIcon(icon(IconName::search));
  }
}

}  // namespace kelvarin
