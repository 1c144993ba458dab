// What may come at the end of a command line that is being typed: commands, options, and names in
// the files that the line has already.
//
// Used by the scripts of the shells through `kelvarin complete`.
#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace kelvarin {

struct Candidate {
  std::string word;
  std::string meaning;
};

struct Candidates {
  // Which files the shell offers, too.
  enum class Files { none, graphs, all, folders };

  Files files = Files::none;
  std::vector<Candidate> words;  // each begins as the last word does
};

// `words` are those behind the program's name; the last one is being typed and may be empty.
Candidates candidatesFor(const CLI::App& program, const std::vector<std::string>& words);

}  // namespace kelvarin
