// The base of the editors of the host's own actions: fields over the attributes of an element, and
// what an editor shows beside them.
//
// A derived editor adds a field for each attribute and says which children the element has. What
// can be used is reported at once; what cannot stays in its field, with the reason above.
// Threads: the user-interface thread.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <QFormLayout>
#include <QVBoxLayout>

#include "gui/forms/edited_element.h"
#include "gui/forms/element_editor.h"
#include "host/contract/action_description.h"
#include "host/contract/action_item.h"

class QGroupBox;
class QLineEdit;

namespace kelvarin {

class ChoiceField;
class InfoLine;
class PathField;

class HostEditor : public ElementEditor {
  Q_OBJECT

 public:
  // `action` is only looked at here.
  HostEditor(ActionItem& action, QWidget* parent);
  ~HostEditor() override;

  QMap<QString, QString> uncommittedState() const override;
  void restoreUncommitted(const QMap<QString, QString>& texts) override;
  void commit() override;

 protected:
  // As committed.
  const EditedElement& element() const { return m_element; }
  // False where what has been typed cannot be used.
  bool commitTyped();
  // Made of what has been typed, where that can be used; no part of any graph.
  ActionItem& action() const { return *m_action; }
  GlobalParameters& parameters() const { return *m_parameters; }
  QVBoxLayout& page() const { return *m_page; }

  // The children and attributes that have no field.
  virtual void collect(EditedElement&) const {}
  // What has been typed can be used, and differs from before.
  virtual void settingsChanged() {}

  // The fields commit what is typed; `label` has the mnemonic.
  PathField* addPath(QFormLayout& form, const QString& attribute, const QString& label);
  ChoiceField* addChoice(QFormLayout& form, const QString& attribute, const QString& label,
                         ChoiceField* field);
  QLineEdit* addLine(QFormLayout& form, const QString& attribute, const QString& label);
  // A check box, or a line where the value is neither 0 nor 1.
  void addFlag(QFormLayout& form, const QString& attribute, const QString& label);
  // Shows another value in the attribute's field, without committing it.
  void setField(const QString& attribute, const QString& value);

 private:
  struct Field {
    AttributeDescription attribute;
    std::function<QString()> text;
    std::function<void(const QString&)> setText;
  };

  const AttributeDescription& described(const QString& attribute) const;
  void addField(QFormLayout& form, const QString& attribute, const QString& label, QWidget* widget,
                QWidget* buddy);
  EditedElement typed() const;

  GlobalParameters* m_parameters;
  std::unique_ptr<GlobalParameters> m_noParameters;  // of an action without a graph
  std::unique_ptr<ActionItem> m_action;
  EditedElement m_element;
  QByteArray m_document;  // of the element
  QVBoxLayout* m_page;
  InfoLine* m_faults;
  std::vector<Field> m_fields;
  QString m_typedPath;
};

// A form whose fields go below their labels where the window is narrow.
QFormLayout* newForm();
// With a title, and a vertical layout in it.
QGroupBox* newGroup(const QString& title);

}  // namespace kelvarin
