// `kelvarin doctor`: whether everything is there that the program needs, and what to do if not.
#include <algorithm>
#include <cstdio>

#include "cli/install/install_commands.h"
#include "cli/install/installation_checks.h"
#include "cli/install/messages.h"
#include "cli/printable_text.h"
#include "cli/value_json.h"

namespace kelvarin {

namespace {

void printLines(const std::vector<InstallationCheck>& checks) {
  for (const InstallationCheck& check : checks) {
    const QString line =
        QStringLiteral("%1 %2: %3")
            .arg(QLatin1String(check.isOk() ? "ok      " : "problem "), check.name, check.found);
    std::printf("%s\n", printable(line).c_str());
    if (!check.isOk()) {
      std::printf("         %s\n", qUtf8Printable(check.advice));
    }
  }
}

Json jsonOf(const std::vector<InstallationCheck>& checks) {
  Json list = Json::array();
  for (const InstallationCheck& check : checks) {
    list.push_back({{"check", check.name.toStdString()},
                    {"ok", check.isOk()},
                    {"found", check.found.toStdString()},
                    {"advice", check.advice.toStdString()}});
  }
  return list;
}

ExitStatus examine(bool isJson) {
  const std::vector<InstallationCheck> checks = checkInstallation();
  const bool isWell = std::all_of(checks.begin(), checks.end(),
                                  [](const InstallationCheck& check) { return check.isOk(); });
  if (isJson) {
    std::fputs(printed(jsonOf(checks)).c_str(), stdout);
  } else {
    printLines(checks);
    if (isWell) {
      std::printf("%s\n", qUtf8Printable(install_messages::nothingWrong()));
    }
  }
  return isWell ? ExitStatus::done : ExitStatus::failed;
}

}  // namespace

void addDoctorCommand(CLI::App& program, ChosenCommand& chosen) {
  auto isJson = std::make_shared<bool>(false);
  CLI::App* command =
      program.add_subcommand("doctor", "Check that everything is there that the program needs");
  command->add_flag("--json", *isJson, "print a JSON array");
  command->footer("Examples:\n  kelvarin doctor\n  kelvarin doctor --json");
  command->callback([isJson, &chosen] { chosen = [isJson] { return examine(*isJson); }; });
}

}  // namespace kelvarin
