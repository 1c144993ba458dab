#include "gui/properties/property_panel.h"

#include <utility>

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QScrollArea>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "gui/forms/action_form.h"
#include "gui/forms/element_editor.h"
#include "gui/properties/editor_focus.h"
#include "host/widgets/action_icon.h"
#include "host/widgets/empty_state.h"
#include "host/widgets/info_line.h"

namespace kelvarin {

namespace {

constexpr int kPictureSize = 32;

QLabel* plainLabel() {
  auto* label = new QLabel;
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  return label;
}

}  // namespace

PropertyPanel::PropertyPanel(GraphCommands& commands, QWidget* parent)
    : QWidget(parent),
      m_commands(commands),
      m_graph(commands.graph()),
      m_pages(new QStackedWidget),
      m_nothing(new EmptyState(IconName::information,
                               tr("Select an action to see and change its properties."))),
      m_page(new QWidget),
      m_picture(new QLabel),
      m_title(plainLabel()),
      m_toolTip(plainLabel()),
      m_fault(new InfoLine),
      m_scroll(new QScrollArea) {
  QFont font = m_title->font();
  font.setPointSizeF(font.pointSizeF() * 1.25);
  m_title->setFont(font);
  m_scroll->setWidgetResizable(true);
  m_scroll->setFrameShape(QFrame::NoFrame);
  m_scroll->setObjectName(QStringLiteral("editorArea"));

  auto* texts = new QVBoxLayout;
  texts->setSpacing(0);
  texts->addWidget(m_title);
  texts->addWidget(m_toolTip);
  auto* header = new QHBoxLayout;
  header->setSpacing(12);
  header->addWidget(m_picture);
  header->addLayout(texts, 1);
  auto* page = new QVBoxLayout(m_page);
  page->setContentsMargins(12, 8, 12, 8);
  page->setSpacing(8);
  page->addLayout(header);
  page->addWidget(m_fault);
  page->addWidget(m_scroll, 1);
  m_pages->addWidget(m_nothing);
  m_pages->addWidget(m_page);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(m_pages);

  // Later, for the focus also changes while widgets are being destroyed.
  connect(
      qApp, &QApplication::focusChanged, this, [this] { followFocus(QApplication::focusWidget()); },
      Qt::QueuedConnection);
  connect(&m_graph, &EditedGraph::loaded, this, [this] { showAction(kNoId); });
  connect(&m_graph, &EditedGraph::actionAboutToBeRemoved, this, [this](ActionId id) {
    if (id == m_action) {
      showAction(kNoId);
    }
  });
  connect(&m_graph, &EditedGraph::actionAboutToBeReplaced, this, &PropertyPanel::forgetReplaced);
  connect(&m_graph, &EditedGraph::actionChanged, this, &PropertyPanel::renewReplaced);
  // Later, since the editor commits first, which is a command of its own.
  connect(&m_graph, &EditedGraph::parametersChanged, this, &PropertyPanel::renewEditor,
          Qt::QueuedConnection);
}

PropertyPanel::~PropertyPanel() {
  closeEditor();
}

void PropertyPanel::showAction(ActionId action) {
  if (action == m_action) {
    return;
  }
  if (m_action != kNoId && m_graph.hasAction(m_action)) {
    commit();
  }
  closeEditor();
  m_action = action;
  if (m_action == kNoId) {
    m_pages->setCurrentWidget(m_nothing);
    return;
  }
  openEditor();
  m_pages->setCurrentWidget(m_page);
}

void PropertyPanel::openEditor() {
  m_editor = newEditor();
  m_scroll->setWidget(m_editor);
  showHeader();
}

// At once, since it refers to the action, and may be running it. A field that loses the focus
// reports what is in it, which must not come out of an editor that is half destroyed.
void PropertyPanel::closeEditor() {
  if (m_editor != nullptr && !m_graph.hasAction(m_action)) {
    m_editor->disconnect(this);  // there is nothing left to be changed
  }
  QWidget* focused = QApplication::focusWidget();
  if (m_editor != nullptr && focused != nullptr && m_editor->isAncestorOf(focused)) {
    focused->clearFocus();
  }
  delete std::exchange(m_editor, nullptr);
}

UpdateClassWidget* PropertyPanel::newEditor() {
  ActionItem& action = m_graph.action(m_action);
  UpdateClassWidget* editor = action.editPropertyFrame(m_scroll->viewport());
  const CatalogueEntry* entry = m_graph.catalogue().find(m_graph.typeName(m_action));
  if (editor == nullptr && entry != nullptr) {
    editor =
        new ActionForm(action, *entry->prototype, *m_graph.graph().settings, m_scroll->viewport());
  }
  if (auto* elements = qobject_cast<ElementEditor*>(editor)) {
    connect(elements, &ElementEditor::committed, this, [this](const QByteArray& element) {
      m_isCommitting = true;
      m_commands.setElement(m_action, element, position());
      m_isCommitting = false;
    });
  }
  return editor == nullptr ? new UpdateClassWidget(m_scroll->viewport()) : editor;
}

void PropertyPanel::showHeader() {
  const ActionItem& action = m_graph.action(m_action);
  m_picture->setPixmap(actionIcon(action, kPictureSize).pixmap(kPictureSize));
  m_title->setText(m_graph.name(m_action));
  m_toolTip->setText(QStringLiteral("%1: %2").arg(m_graph.typeName(m_action), action.toolTip()));
  if (const QString why = m_graph.whyCannotRun(m_action); !why.isEmpty()) {
    m_fault->setMessage(Severity::error, why);
  } else if (m_graph.isDisabled(m_action)) {
    m_fault->setMessage(Severity::information,
                        tr("This action is switched off: rows go through it unchanged."));
  } else {
    m_fault->clear();
  }
}

// An editor that holds an element stays when it is itself that asked for another action.
void PropertyPanel::forgetReplaced(ActionId action) {
  if (action == m_action && !m_isCommitting) {
    m_lastPosition = position();
    m_hadFocus = isInside(QApplication::focusWidget(), *m_editor);
    m_lastTexts = m_editor->uncommittedState();
    closeEditor();
  }
}

void PropertyPanel::renewReplaced(ActionId action) {
  if (action != m_action) {
    return;
  }
  if (m_editor != nullptr) {
    showHeader();
    return;
  }
  openEditor();
  EditorPosition position = std::exchange(m_lastPosition, {});
  if (!m_hadFocus) {
    position.field.clear();
  }
  goTo(position, *m_editor);
  m_editor->restoreUncommitted(std::exchange(m_lastTexts, {}));
}

// A field commits after it has lost the focus, and perhaps its page, to another one.
EditorPosition PropertyPanel::position() const {
  if (m_editor == nullptr) {
    return {};
  }
  EditorPosition position = positionIn(*m_editor, m_field);
  if (m_field != nullptr) {
    position.page = m_fieldPages;
  }
  return position;
}

void PropertyPanel::followFocus(QWidget* focused) {
  if (m_editor == nullptr || focused == nullptr || !isInside(focused, *m_editor)) {
    return;
  }
  if (m_field != nullptr) {
    m_field->removeEventFilter(this);
  }
  m_field = focused;
  m_field->installEventFilter(this);
  m_fieldPages = pagesOf(*m_editor);
}

bool PropertyPanel::eventFilter(QObject* watched, QEvent* event) {
  if (watched == m_field && event->type() == QEvent::KeyPress && m_editor != nullptr) {
    m_fieldPages = pagesOf(*m_editor);
  }
  return QWidget::eventFilter(watched, event);
}

void PropertyPanel::commit() {
  if (m_editor != nullptr) {
    m_editor->commit();
  }
}

void PropertyPanel::noteEdit() {
  if (m_editor != nullptr && m_graph.hasAction(m_action)) {
    m_commands.noteEdit(m_action, position());
  }
}

void PropertyPanel::showPosition(const EditorPosition& position) {
  if (m_editor != nullptr) {
    goTo(position, *m_editor);
  }
}

void PropertyPanel::renewEditor() {
  if (m_editor == nullptr) {
    return;
  }
  commit();
  EditorPosition shown = position();
  if (!isInside(QApplication::focusWidget(), *m_editor)) {
    shown.field.clear();
  }
  const QMap<QString, QString> texts = m_editor->uncommittedState();
  closeEditor();
  openEditor();
  goTo(shown, *m_editor);
  m_editor->restoreUncommitted(texts);
}

void PropertyPanel::focusEditor() {
  if (m_editor == nullptr) {
    return;
  }
  m_editor->setFocus(Qt::OtherFocusReason);
  for (QWidget* next = m_editor->nextInFocusChain(); next != m_editor;
       next = next->nextInFocusChain()) {
    if (m_editor->isAncestorOf(next) && next->isVisible() && next->isEnabled() &&
        (next->focusPolicy() & Qt::TabFocus) != 0) {
      next->setFocus(Qt::TabFocusReason);
      return;
    }
  }
}

}  // namespace kelvarin
