#include "gui/forms/element_tree.h"

#include <algorithm>
#include <functional>

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "host/widgets/icons.h"

namespace kelvarin {

namespace {

enum Column { nameColumn, valueColumn, meaningColumn, columnCount };
enum ItemType { elementItem = QTreeWidgetItem::UserType, attributeItem };
// Of an element's item, its declaration; null for an element that is not declared.
constexpr int kDeclarationRole = Qt::UserRole;
// Of an attribute's item: it stood in the file, or the user gave it a value.
constexpr int kIsSetRole = Qt::UserRole + 1;

const ElementDescription* declarationOf(const QTreeWidgetItem& item) {
  return static_cast<const ElementDescription*>(
      item.data(nameColumn, kDeclarationRole).value<void*>());
}

const ElementDescription* declarationIn(const std::vector<ElementDescription>& declared,
                                        const QString& name) {
  const auto found = std::ranges::find(declared, name, &ElementDescription::name);
  return found == declared.end() ? nullptr : &*found;
}

void addAttribute(QTreeWidgetItem* parent, const QString& name, const QString& meaning,
                  const QString& value, const QString& defaultText) {
  auto* item = new QTreeWidgetItem(parent, attributeItem);
  item->setText(nameColumn, name);
  item->setText(valueColumn, value.isNull() ? defaultText : value);
  item->setText(meaningColumn, meaning);
  item->setToolTip(meaningColumn, meaning);
  item->setData(valueColumn, kIsSetRole, !value.isNull());
  item->setFlags(item->flags() | Qt::ItemIsEditable);
}

EditedElement elementOf(const QTreeWidgetItem& item) {
  EditedElement element;
  element.name = item.text(nameColumn);
  element.text = item.text(valueColumn);
  for (int i = 0; i < item.childCount(); ++i) {
    const QTreeWidgetItem& child = *item.child(i);
    if (child.type() == elementItem) {
      element.children.push_back(elementOf(child));
    } else if (child.data(valueColumn, kIsSetRole).toBool()) {
      element.attributes.emplace_back(child.text(nameColumn), child.text(valueColumn));
    }
  }
  return element;
}

}  // namespace

ElementTree::ElementTree(const std::vector<ElementDescription>& declared, QWidget* parent)
    : QWidget(parent),
      m_declared(declared),
      m_tree(new QTreeWidget),
      m_add(new QToolButton),
      m_remove(new QToolButton) {
  m_tree->setObjectName(QStringLiteral("elements"));
  m_tree->setAccessibleName(tr("Elements"));
  m_tree->setColumnCount(columnCount);
  m_tree->setHeaderLabels({tr("Name"), tr("Value"), tr("Meaning")});
  m_tree->header()->setSectionResizeMode(nameColumn, QHeaderView::ResizeToContents);
  m_tree->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                          QAbstractItemView::AnyKeyPressed);
  m_tree->setMinimumHeight(fontMetrics().height() * 9);
  auto* title = new QLabel(tr("&Elements"));
  title->setBuddy(m_tree);
  m_add->setIcon(icon(IconName::add));
  m_add->setAccessibleName(tr("Add an element"));
  m_add->setToolTip(tr("Add an element at the end, or inside the chosen one"));
  m_add->setPopupMode(QToolButton::InstantPopup);
  m_add->setMenu(new QMenu(m_add));
  m_remove->setIcon(icon(IconName::remove));
  m_remove->setAccessibleName(tr("Remove the element"));
  m_remove->setToolTip(tr("Remove the chosen element"));
  for (QToolButton* button : {m_add, m_remove}) {
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::StrongFocus);
  }
  connect(m_add->menu(), &QMenu::aboutToShow, this, &ElementTree::offerNewElements);
  connect(m_remove, &QToolButton::clicked, this, &ElementTree::removeCurrent);
  connect(m_tree, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item, int column) {
    if (!m_isFilling && column == valueColumn) {
      m_isFilling = true;
      item->setData(valueColumn, kIsSetRole, true);
      m_isFilling = false;
      emit changed();
    }
  });

  auto* head = new QHBoxLayout;
  head->addWidget(title);
  head->addStretch();
  head->addWidget(m_add);
  head->addWidget(m_remove);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  layout->addLayout(head);
  layout->addWidget(m_tree);
}

void ElementTree::setElements(const std::vector<EditedElement>& elements) {
  m_isFilling = true;
  m_tree->clear();
  for (const EditedElement& element : elements) {
    addItem(m_tree->invisibleRootItem(), element, declarationIn(m_declared, element.name));
  }
  m_isFilling = false;
}

void ElementTree::addItem(QTreeWidgetItem* parent, const EditedElement& element,
                          const ElementDescription* description) {
  auto* item = new QTreeWidgetItem(parent, elementItem);
  item->setText(nameColumn, element.name);
  item->setText(valueColumn, element.text);
  item->setData(nameColumn, kDeclarationRole,
                QVariant::fromValue(const_cast<void*>(static_cast<const void*>(description))));
  if (description != nullptr) {
    item->setText(meaningColumn, description->meaning);
    item->setToolTip(meaningColumn, description->meaning);
    item->setToolTip(valueColumn, description->textMeaning);
    if (!description->textMeaning.isEmpty()) {
      item->setFlags(item->flags() | Qt::ItemIsEditable);
    }
    for (const AttributeDescription& attribute : description->attributes) {
      addAttribute(item, attribute.name, attribute.meaning, element.attribute(attribute.name),
                   attribute.defaultText);
    }
  }
  for (const auto& [name, value] : element.attributes) {
    const bool isDeclared =
        description != nullptr &&
        std::ranges::find(description->attributes, name, &AttributeDescription::name) !=
            description->attributes.end();
    if (!isDeclared) {
      addAttribute(item, name, {}, value, {});
    }
  }
  for (const EditedElement& child : element.children) {
    addItem(item, child,
            description == nullptr ? nullptr : declarationIn(description->children, child.name));
  }
}

std::vector<EditedElement> ElementTree::elements() const {
  std::vector<EditedElement> elements;
  elements.reserve(static_cast<std::size_t>(m_tree->topLevelItemCount()));
  for (int i = 0; i < m_tree->topLevelItemCount(); ++i) {
    elements.push_back(elementOf(*m_tree->topLevelItem(i)));
  }
  return elements;
}

// Of the current item, or the one around it where that is an attribute; null: none.
QTreeWidgetItem* ElementTree::currentElement() const {
  QTreeWidgetItem* item = m_tree->currentItem();
  return item != nullptr && item->type() == attributeItem ? item->parent() : item;
}

void ElementTree::offerNewElements() {
  QMenu& menu = *m_add->menu();
  menu.clear();
  const auto offer = [&](QTreeWidgetItem* parent, const ElementDescription& description,
                         const QString& label) {
    QAction* action =
        menu.addAction(label, this, [this, parent, &description] { addNew(parent, description); });
    action->setToolTip(description.meaning);
  };
  for (QTreeWidgetItem* item = currentElement(); item != nullptr; item = item->parent()) {
    const ElementDescription* around = declarationOf(*item);
    if (around == nullptr) {
      continue;
    }
    for (const ElementDescription& child : around->children) {
      offer(item, child, tr("%1 in this %2").arg(child.name, around->name));
    }
  }
  for (const ElementDescription& description : m_declared) {
    offer(m_tree->invisibleRootItem(), description, description.name);
  }
}

void ElementTree::addNew(QTreeWidgetItem* parent, const ElementDescription& description) {
  EditedElement element;
  element.name = description.name;
  m_isFilling = true;
  addItem(parent, element, &description);
  QTreeWidgetItem* added = parent->child(parent->childCount() - 1);
  parent->setExpanded(true);
  added->setExpanded(true);
  m_isFilling = false;
  m_tree->setCurrentItem(added);
  emit changed();
}

void ElementTree::removeCurrent() {
  if (QTreeWidgetItem* item = currentElement()) {
    delete item;
    emit changed();
  }
}

}  // namespace kelvarin
