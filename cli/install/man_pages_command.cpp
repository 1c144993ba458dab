// `kelvarin man-pages`: writes the manual page of every command into a folder.
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "cli/install/described_options.h"
#include "cli/install/install_commands.h"
#include "cli/install/man_page.h"
#include "cli/install/messages.h"
#include "host/contract/main_ui.h"

namespace kelvarin {

namespace {

bool writePages(const CLI::App& command, const std::filesystem::path& folder,
                const std::string& version) {
  std::ofstream file(folder / (fullName(command, '-') + ".1"), std::ios::binary);
  file << manPageOf(command, version);
  file.close();
  bool isWritten = !file.fail();
  for (const CLI::App* below : describedCommands(command)) {
    isWritten = writePages(*below, folder, version) && isWritten;
  }
  return isWritten;
}

ExitStatus writeManual(const CLI::App& program, const std::string& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error || !writePages(program, folder, MainUI::kelvarinID().toStdString())) {
    std::fprintf(
        stderr, "error: %s\n",
        qUtf8Printable(install_messages::manualNotWritten(QString::fromStdString(folder))));
    return ExitStatus::failed;
  }
  return ExitStatus::done;
}

}  // namespace

void addManPagesCommand(CLI::App& program, ChosenCommand& chosen) {
  auto folder = std::make_shared<std::string>();
  CLI::App* command =
      program.add_subcommand("man-pages", "Write the manual page of every command")->group("");
  command->add_option("DIR", *folder, "the folder to write to")->required()->type_name("");
  command->footer("Example:\n  kelvarin man-pages manual && man -l manual/kelvarin-run.1");
  command->callback([folder, &program, &chosen] {
    chosen = [folder, &program] { return writeManual(program, *folder); };
  });
}

}  // namespace kelvarin
