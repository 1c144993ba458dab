#include "cli/install/version_text.h"

#include <fmt/format.h>
#include <mpParser.h>
#include <muParser.h>
#include <snappy.h>

#include <QtGlobal>

#include "host/contract/main_ui.h"
#include "host/engine/plugin_library.h"
#include "jit/instruction_set.h"

namespace kelvarin {

namespace {

// The library's text begins with its version and goes on with how it was built.
std::string firstWord(const std::string& text) {
  const std::size_t begin = text.find_first_not_of(" V");
  return begin == std::string::npos ? text : text.substr(begin, text.find(' ', begin) - begin);
}

}  // namespace

std::string libraryVersions() {
  constexpr int kMajor = 10'000;
  constexpr int kMinor = 100;
  return fmt::format(
      "Qt {}, muParser {}, muParserX {}, RE2 {}, Snappy {}.{}.{}, fmt {}.{}.{}, Arrow {}",
      qVersion(), firstWord(mu::Parser().GetVersion(mu::pviBRIEF)),
      firstWord(mup::ParserXBase::GetVersion()), KELVARIN_RE2_VERSION, SNAPPY_MAJOR, SNAPPY_MINOR,
      SNAPPY_PATCHLEVEL, FMT_VERSION / kMajor, FMT_VERSION / kMinor % kMinor, FMT_VERSION % kMinor,
      KELVARIN_ARROW_VERSION);
}

std::string processorText() {
  switch (jit::bestInstructionSet()) {
    case jit::InstructionSet::avx2:
      return "AVX2, SSE4.1, SSE2";
    case jit::InstructionSet::sse41:
      return "SSE4.1, SSE2";
    case jit::InstructionSet::sse2:
      return "SSE2";
    case jit::InstructionSet::none:
      break;
  }
  return "no instructions that native code could use";
}

std::string versionText() {
  return fmt::format("{}\nlibraries  {}\nprocessor  {}\nplug-in    {}",
                     MainUI::kelvarinID().toStdString(), libraryVersions(), processorText(),
                     PluginLibrary::defaultFile().toStdString());
}

}  // namespace kelvarin
