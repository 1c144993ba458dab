// What the plug-in's actions have beyond the declaration of every action: a picture and a page of
// the help.
#pragma once

#include "actions/frame/pictures_library.h"
#include "host/contract/described_action.h"
#include "host/contract/main_ui.h"

namespace kelvarin {

template <typename Action, typename Base>
class Catalogued : public Described<Action, Base> {
 public:
  // The host keeps the picture, one for each action class. A pixmap of our own could not exist in a
  // program without a screen.
  QPixmap* getImage(double size) const override {
    return pictureOfLibrary(size, QString::fromLatin1(Action::catalogue().image));
  }

  void getHelp() const override {
    openHelp(QString::fromLatin1(Action::catalogue().helpId), QString());
  }

 protected:
  using Described<Action, Base>::Described;
};

}  // namespace kelvarin
