// The elements inside an action's element, as a tree in which their attributes and texts are
// edited, and elements added and removed, as the action declares them.
//
// Used by: action_form.cpp.
// Threads: the user-interface thread.
#pragma once

#include <vector>

#include <QWidget>

#include "gui/forms/edited_element.h"
#include "host/contract/action_description.h"

class QToolButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace kelvarin {

class ElementTree : public QWidget {
  Q_OBJECT

 public:
  // `declared` outlives the tree.
  explicit ElementTree(const std::vector<ElementDescription>& declared, QWidget* parent = nullptr);

  // Reports nothing.
  void setElements(const std::vector<EditedElement>& elements);
  std::vector<EditedElement> elements() const;

 signals:
  void changed();

 private:
  // A null description is that of an element that is not declared.
  void addItem(QTreeWidgetItem* parent, const EditedElement& element,
               const ElementDescription* description);
  void offerNewElements();
  void addNew(QTreeWidgetItem* parent, const ElementDescription& description);
  void removeCurrent();
  QTreeWidgetItem* currentElement() const;

  const std::vector<ElementDescription>& m_declared;
  QTreeWidget* m_tree;
  QToolButton* m_add;
  QToolButton* m_remove;
  bool m_isFilling = false;
};

}  // namespace kelvarin
