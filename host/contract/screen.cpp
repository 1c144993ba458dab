#include "host/contract/screen.h"

#include "host/contract/main_ui.h"
#include "host/contract/messages.h"
#include "host/contract/one_row.h"

namespace kelvarin {

namespace {

Screen* installedScreen = nullptr;

QStringList columnNames(const OneRow* columns) {
  return columns == nullptr ? QStringList() : QStringList(columns->getColNamesDeep());
}

// Null, with a line in the log, when nobody can be asked.
Screen* screenToAskOn() {
  if (installedScreen == nullptr) {
    MainUI::addLog(LogLevel::information, messages::noColumnPicked());
  }
  return installedScreen;
}

}  // namespace

Screen::~Screen() = default;

void installScreen(Screen* screen) {
  installedScreen = screen;
}
Screen* screen() {
  return installedScreen;
}

}  // namespace kelvarin

double MainUI::pixelSize() {
  kelvarin::Screen* screen = kelvarin::screen();
  return screen == nullptr ? 1.0 : screen->pixelSize();
}

QString MainUI::selectColumn(const OneRow* columns, QWidget* parent) {
  kelvarin::Screen* screen = kelvarin::screenToAskOn();
  const QStringList names = kelvarin::columnNames(columns);
  return screen == nullptr ? QString() : names.value(screen->pickColumn(names, 0, parent));
}

QStringList MainUI::selectColumn(const OneRow* columns, QStringList selected, QWidget* parent) {
  kelvarin::Screen* screen = kelvarin::screenToAskOn();
  return screen == nullptr ? QStringList()
                           : screen->pickColumns(kelvarin::columnNames(columns), selected, parent);
}

int MainUI::selectColumn(QStringList names, int selected, QWidget* parent) {
  kelvarin::Screen* screen = kelvarin::screenToAskOn();
  return screen == nullptr ? -1 : screen->pickColumn(names, selected, parent);
}
