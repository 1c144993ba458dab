// An action that declares what its XML element may hold, and answers the questions of a catalogue
// from the same declaration.
//
// An action derives from Described<Action, Base>, has a static `catalogue()` and the public
// constructor Action(XMLNode, GlobalParameters*). Actions of plug-ins without a declaration are run
// all the same; what their elements hold is not checked.
// Used by: the reader of graph files and the list of actions.
#pragma once

#include <type_traits>
#include <vector>

#include "host/contract/action_description.h"
#include "host/contract/action_item.h"
#include "host/contract/main_ui.h"

namespace kelvarin {

// An error stops the graph from being loaded; a warning states the effect.
struct ElementFault {
  LogLevel level = LogLevel::error;
  XMLNode element;
  QString message;
};

class KELVARIN_CORE DescribedAction {
 public:
  virtual ~DescribedAction();
  virtual const ActionDescription& description() const = 0;
  // What is wrong with the settings beyond what the description can say. Asked while a graph is
  // loaded.
  virtual std::vector<ElementFault> settingFaults() const { return {}; }
};

// Null for an action that declares nothing.
KELVARIN_CORE const ActionDescription* descriptionOf(const ActionItem& action);

// Those that the host reads from every action's element.
KELVARIN_CORE const std::vector<AttributeDescription>& attributesOfEveryAction();

// The base with a declaration, which it has already where it is an action of its own.
template <typename Base>
struct WithDescription : Base, DescribedAction {
 protected:
  using Base::Base;
};

template <typename Base>
using DescribedBase =
    std::conditional_t<std::is_base_of_v<DescribedAction, Base>, Base, WithDescription<Base>>;

template <typename Action, typename Base>
class Described : public DescribedBase<Base> {
 public:
  const ActionDescription& description() const override { return Action::catalogue(); }

  const char* typeName() const override { return Action::catalogue().typeName; }
  QString toolTip() const override { return QString::fromLatin1(Action::catalogue().toolTip); }
  QStringList getFileTypes() const override { return Action::catalogue().fileTypes; }
  QStringList getTags() const override { return Action::catalogue().tags; }
  QStringList getKeywords() const override { return Action::catalogue().keywords; }
  ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) override {
    return new Action(node, parameters);
  }

 protected:
  using Parent = DescribedBase<Base>;
  using Parent::Parent;
};

}  // namespace kelvarin
