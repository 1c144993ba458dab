// `kelvarin complete`: answers the scripts of the shells, which pass the words that are typed. The
// first line says which files fit, "none", "graphs", "all" or "folders"; then a word a line, a tab,
// and what it means.
#include <cstdio>

#include "cli/install/completion_candidates.h"
#include "cli/install/install_commands.h"

namespace kelvarin {

namespace {

const char* wordOf(Candidates::Files files) {
  switch (files) {
    case Candidates::Files::graphs:
      return "graphs";
    case Candidates::Files::all:
      return "all";
    case Candidates::Files::folders:
      return "folders";
    case Candidates::Files::none:
      break;
  }
  return "none";
}

// A name with a line break looks like two.
bool fitsInLine(const Candidate& candidate) {
  return candidate.word.find_first_of("\n\t") == std::string::npos;
}

ExitStatus answer(const CLI::App& program, const std::vector<std::string>& words) {
  const Candidates candidates = candidatesFor(program, words);
  std::printf("%s\n", wordOf(candidates.files));
  for (const Candidate& candidate : candidates.words) {
    if (fitsInLine(candidate)) {
      const std::string meaning = candidate.meaning.substr(0, candidate.meaning.find('\n'));
      std::printf("%s\t%s\n", candidate.word.c_str(), meaning.c_str());
    }
  }
  return ExitStatus::done;
}

}  // namespace

void addCompleteCommand(CLI::App& program, ChosenCommand& chosen) {
  auto words = std::make_shared<std::vector<std::string>>();
  CLI::App* command =
      program.add_subcommand("complete", "Answer the completion of a shell")->group("");
  command->add_option("WORD", *words, "behind --, what is typed behind the program's name")
      ->type_name("");
  command->callback([words, &program, &chosen] {
    chosen = [words, &program] { return answer(program, *words); };
  });
}

}  // namespace kelvarin
