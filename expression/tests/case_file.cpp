#include "expression/tests/case_file.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace kelvarin {

namespace {

std::string trimmed(const std::string& text) {
  const std::size_t start = text.find_first_not_of(' ');
  return start == std::string::npos ? std::string()
                                    : text.substr(start, text.find_last_not_of(' ') - start + 1);
}

// "name=value; name=value"
std::map<std::string, std::string> settingsOf(const std::string& text) {
  std::map<std::string, std::string> settings;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find("; ", start), text.size());
    const std::size_t equals = text.find('=', start);
    settings[trimmed(text.substr(start, equals - start))] =
        text.substr(equals + 1, end - equals - 1);
    start = end + 2;
  }
  return settings;
}

void readFile(const std::filesystem::path& path, std::vector<ExpressionCase>& cases) {
  std::ifstream file(path);
  const std::string with = "with ";
  std::map<std::string, std::string> settings;
  std::string line;
  for (int number = 1; std::getline(file, line); ++number) {
    if (line.starts_with(with)) {
      settings = settingsOf(line.substr(with.size()));
      continue;
    }
    const std::size_t first = line.find(" | ");
    const std::size_t last = line.rfind(" | ");
    if (line.starts_with('#') || first == std::string::npos || first == last) {
      continue;
    }
    cases.push_back({path.filename().string() + ":" + std::to_string(number),
                     trimmed(line.substr(0, first)),
                     trimmed(line.substr(first + 3, last - first - 3)),
                     trimmed(line.substr(last + 3)), settings});
  }
}

}  // namespace

std::vector<ExpressionCase> readCases(const std::string& folder) {
  std::vector<std::filesystem::path> paths;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    paths.push_back(entry.path());
  }
  std::sort(paths.begin(), paths.end());
  std::vector<ExpressionCase> cases;
  for (const auto& path : paths) {
    readFile(path, cases);
  }
  return cases;
}

}  // namespace kelvarin
