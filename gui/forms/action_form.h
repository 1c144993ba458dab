// A property page made from what an action declares about itself: for the host's own actions, and
// for all others where their editors are missing.
//
// It holds the action's XML element; a change that the action can use is reported, and the owner
// puts an action made of it into the graph. What it cannot use stays in the fields, with the
// reason above them.
// Threads: the user-interface thread.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "gui/forms/edited_element.h"
#include "gui/forms/element_editor.h"
#include "host/contract/action_item.h"

class QFormLayout;

namespace kelvarin {

class ElementTree;
class InfoLine;

class ActionForm : public ElementEditor {
  Q_OBJECT

 public:
  // `action` is only looked at here; prototype and parameters outlive the form.
  ActionForm(ActionItem& action, ActionItem& prototype, GlobalParameters& parameters,
             QWidget* parent = nullptr);
  ~ActionForm() override;

  QMap<QString, QString> uncommittedState() const override;
  void restoreUncommitted(const QMap<QString, QString>& texts) override;
  void commit() override;

 private:
  struct Field {
    AttributeDescription attribute;
    std::function<QString()> text;
  };

  void addFields(const ActionDescription* description);
  void addField(QFormLayout& form, const AttributeDescription& attribute);
  void addFileField(QFormLayout& form, const AttributeDescription& attribute);
  void addRow(QFormLayout& form, const AttributeDescription& attribute, QWidget* field,
              QWidget* buddy);
  EditedElement typed() const;

  ActionItem& m_prototype;
  GlobalParameters& m_parameters;
  const bool m_isWriter;
  EditedElement m_element;  // as committed
  InfoLine* m_faults;
  std::vector<Field> m_fields;
  ElementTree* m_tree = nullptr;  // null where the action has no elements
};

}  // namespace kelvarin
