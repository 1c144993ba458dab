// The commands with windows, which a library of its own brings along: `kelvarin gui` draws and runs
// graphs, `kelvarin edit` edits the properties of a graph's actions.
#include <cstdio>

#include "base/sibling_library.h"
#include "cli/commands.h"
#include "cli/graph_run.h"
#include "cli/messages.h"
#include "cli/name_value.h"
#include "host/contract/window_request.h"

namespace kelvarin {

namespace {

struct WindowArguments {
  std::string graph;
  std::string action;
  std::string plugin;
  std::vector<std::string> settings;
  int closeAfterMilliseconds = -1;
};

ExitStatus fail(const QString& text, ExitStatus status = ExitStatus::failed) {
  std::fprintf(stderr, "error: %s\n", qUtf8Printable(text));
  return status;
}

ExitStatus showWindow(const char* functionName, const WindowArguments& arguments,
                      const ProgramArguments& program) {
  const auto settings = splitNameValues("--set", arguments.settings);
  if (!settings) {
    return fail(settings.error(), ExitStatus::wrongUsage);
  }
  WindowRequest request;
  request.graph = QString::fromStdString(arguments.graph);
  request.action = QString::fromStdString(arguments.action);
  request.plugin = arguments.plugin.empty() ? PluginLibrary::defaultFile()
                                            : QString::fromStdString(arguments.plugin);
  for (const NameValue& setting : *settings) {
    request.settings.emplace_back(setting.name, setting.value);
  }
  request.closeAfterMilliseconds = arguments.closeAfterMilliseconds;

  // It lies beside KelvarinCore.
  const auto path = siblingLibrary(reinterpret_cast<const void*>(&MainUI::kelvarinID), kGuiLibrary);
  const auto function = functionOfLibrary(path, functionName);
  if (!function) {
    return fail(program_messages::windowsNotLoaded(
        QString::fromStdString(path), QString::fromLocal8Bit(function.error().c_str())));
  }
  program.endApplication();
  return static_cast<ExitStatus>(
      reinterpret_cast<WindowFunction>(*function)(1, program.argv, request));
}

void addWindowOptions(CLI::App& command, WindowArguments& arguments) {
  command.add_option("--set", arguments.settings, "a value for a parameter of the graph")
      ->allow_extra_args(false)
      ->type_name("NAME=VALUE");
  addPluginOption(command, arguments.plugin);
  // For tests, which have nobody to close the window.
  command.add_option("--close-after", arguments.closeAfterMilliseconds)->group("");
}

}  // namespace

void addGuiCommand(CLI::App& program, ChosenCommand& chosen, ProgramArguments programArguments) {
  auto arguments = std::make_shared<WindowArguments>();
  CLI::App* command =
      program.add_subcommand("gui", "Draw a graph in a window, see its rows, run it");
  command->add_option("GRAPH", arguments->graph, "the graph file to open")->type_name("");
  addWindowOptions(*command, *arguments);
  command->footer("Examples:\n  kelvarin gui\n  kelvarin gui examples/flights/flights.kelvarin");
  command->callback([arguments, programArguments, &chosen] {
    chosen = [arguments, programArguments] {
      return showWindow(kGuiFunction, *arguments, programArguments);
    };
  });
}

void addEditCommand(CLI::App& program, ChosenCommand& chosen, ProgramArguments programArguments) {
  auto arguments = std::make_shared<WindowArguments>();
  CLI::App* command = program.add_subcommand(
      "edit", "Edit the actions of a graph in a window, with help and a step debugger");
  command->add_option("GRAPH", arguments->graph, "the graph file")->required()->type_name("");
  command
      ->add_option("ACTION", arguments->action,
                   "the name of the action to begin with; otherwise choose one from a list")
      ->type_name("");
  addWindowOptions(*command, *arguments);
  command->footer(
      "Examples:\n  kelvarin edit examples/flights/flights.kelvarin\n"
      "  kelvarin edit examples/flights/flights.kelvarin 'speed and delays'");
  command->callback([arguments, programArguments, &chosen] {
    chosen = [arguments, programArguments] {
      return showWindow(kEditFunction, *arguments, programArguments);
    };
  });
}

}  // namespace kelvarin
