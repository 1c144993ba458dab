// The uniform operations of an action, answered from its catalogue entry.
//
// An action derives from Catalogued<Action, Base>, has a static `catalogue()` and the public
// constructor Action(XMLNode, GlobalParameters*).
#pragma once

#include "actions/frame/action_description.h"
#include "actions/frame/editor_registry.h"
#include "host/contract/action_item.h"
#include "host/contract/main_ui.h"
#include "host/pictures/pictures.h"

namespace kelvarin {

template <typename Action, typename Base>
class Catalogued : public Base {
 public:
  const char* typeName() const override { return Action::catalogue().typeName; }

  UpdateClassWidget* editPropertyFrame(QWidget* parent) override {
    return EditorRegistry::instance().create(Action::catalogue().typeName, parent, this);
  }

  // The host keeps the picture, one for each action class. A pixmap of our own could not exist in a
  // program without a screen.
  QPixmap* getImage(double size) const override {
    return renderSVG(size, QString::fromLatin1(Action::catalogue().image), nullptr, nullptr);
  }

  QString toolTip() const override { return QString::fromLatin1(Action::catalogue().toolTip); }

  void getHelp() const override {
    openHelp(QString::fromLatin1(Action::catalogue().helpId), QString());
  }

  QStringList getFileTypes() const override {
    const char* fileType = Action::catalogue().fileType;
    return fileType == nullptr ? ActionItem::getFileTypes()
                               : QStringList{QString::fromLatin1(fileType)};
  }

  QStringList getTags() const override {
    const char* tag = Action::catalogue().tag;
    return tag == nullptr ? ActionItem::getTags() : QStringList{QString::fromLatin1(tag)};
  }

  QStringList getKeywords() const override { return Action::catalogue().keywords; }

  ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) override {
    return new Action(node, parameters);
  }

 protected:
  using Base::Base;
};

}  // namespace kelvarin
