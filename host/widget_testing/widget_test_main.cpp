// The main function of tests with widgets: an application without a screen.
#include <clocale>

#include <gtest/gtest.h>
#include <QApplication>
#include <QStandardPaths>

#include "host/widgets/widget_screen.h"

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  QStandardPaths::setTestModeEnabled(true);
  QApplication application(argc, argv);
  application.setOrganizationName(QStringLiteral("kelvarin-tests"));
  kelvarin::WidgetScreen screen;
  kelvarin::installScreen(&screen);
  const int status = RUN_ALL_TESTS();
  kelvarin::installScreen(nullptr);
  return status;
}
