// The main function of tests with widgets: an application without a screen, and with settings and
// data of its own, so that neither an earlier test nor one beside it changes what a window shows.
#include <clocale>

#include <gtest/gtest.h>
#include <QApplication>
#include <QTemporaryDir>

#include "host/widgets/widget_screen.h"

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  const QTemporaryDir home;
  for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"}) {
    qputenv(variable, home.path().toLocal8Bit());
  }
  QApplication application(argc, argv);
  application.setOrganizationName(QStringLiteral("kelvarin-tests"));
  kelvarin::WidgetScreen screen;
  kelvarin::installScreen(&screen);
  const int status = RUN_ALL_TESTS();
  kelvarin::installScreen(nullptr);
  return status;
}
