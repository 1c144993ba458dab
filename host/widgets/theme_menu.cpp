#include "host/widgets/theme_menu.h"

#include <utility>

#include <QActionGroup>
#include <QCoreApplication>
#include <QMenu>

#include "host/widgets/theme.h"

namespace kelvarin {

namespace {

class ThemeMenu {
  Q_DECLARE_TR_FUNCTIONS(kelvarin::ThemeMenu)
};

}  // namespace

void addThemeMenu(QMenu& menu, Theme& theme) {
  QMenu* themes = menu.addMenu(ThemeMenu::tr("&Theme"));
  auto* group = new QActionGroup(themes);
  const std::pair<ThemeChoice, QString> choices[] = {
      {ThemeChoice::system, ThemeMenu::tr("&System")},
      {ThemeChoice::light, ThemeMenu::tr("&Light")},
      {ThemeChoice::dark, ThemeMenu::tr("&Dark")}};
  for (const auto& [choice, label] : choices) {
    QAction* action = themes->addAction(label);
    action->setCheckable(true);
    action->setChecked(theme.choice() == choice);
    group->addAction(action);
    QObject::connect(action, &QAction::triggered, themes,
                     [&theme, chosen = choice] { theme.setChoice(chosen); });
  }
}

}  // namespace kelvarin
