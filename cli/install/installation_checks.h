// What the program needs of the machine that it is installed on, looked at one by one.
#pragma once

#include <vector>

#include <QString>

namespace kelvarin {

struct InstallationCheck {
  QString name;
  QString found;
  QString advice;  // what to do; empty where nothing is wrong

  bool isOk() const { return advice.isEmpty(); }
};

std::vector<InstallationCheck> checkInstallation();

}  // namespace kelvarin
