#include "columnar/format/file_names.h"

#include <algorithm>
#include <cassert>

namespace kelvarin {

namespace {

constexpr int kDigits = 3;
constexpr std::string_view kSideFileExtension = ".cs";
constexpr std::string_view kOwnSideFileExtension = ".cs_kelvarin";

bool hasOwnExtension(std::string_view mainFile) {
  return nameWithoutFolder(mainFile).find("kelvarin") != std::string_view::npos;
}

std::string_view sideFileExtension(std::string_view mainFile) {
  return hasOwnExtension(mainFile) ? kOwnSideFileExtension : kSideFileExtension;
}

std::string sideFileNameWith(std::string_view extension, std::string_view mainFile, int columnSet) {
  assert(columnSet >= 0);
  std::string digits = std::to_string(columnSet);
  digits.insert(0, static_cast<std::size_t>(std::max(0, kDigits - static_cast<int>(digits.size()))),
                '0');
  return std::string(stemOfMainFile(mainFile)).append(".").append(digits).append(extension);
}

bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

}  // namespace

std::string_view nameWithoutFolder(std::string_view path) {
  return path.substr(path.rfind('/') + 1);
}

std::string folderOf(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string_view::npos ? "./" : std::string(path.substr(0, slash + 1));
}

std::string_view stemOfMainFile(std::string_view mainFile) {
  const std::size_t point = mainFile.rfind('.');
  const std::size_t slash = mainFile.find_last_of("/\\");
  const bool hasExtension =
      point != std::string_view::npos && (slash == std::string_view::npos || point > slash);
  return hasExtension ? mainFile.substr(0, point) : mainFile;
}

std::string sideFileName(std::string_view mainFile, int columnSet) {
  return sideFileNameWith(sideFileExtension(mainFile), mainFile, columnSet);
}

std::string formerSideFileName(std::string_view mainFile, int columnSet) {
  return sideFileNameWith(hasOwnExtension(mainFile) ? kSideFileExtension : kOwnSideFileExtension,
                          mainFile, columnSet);
}

bool isSideFileName(std::string_view mainFile, std::string_view file) {
  const std::string_view stem = stemOfMainFile(mainFile);
  const std::string_view extension = sideFileExtension(mainFile);
  if (file.size() != stem.size() + 1 + kDigits + extension.size() || !file.starts_with(stem) ||
      file[stem.size()] != '.' || !file.ends_with(extension)) {
    return false;
  }
  const std::string_view digits = file.substr(stem.size() + 1, kDigits);
  return std::all_of(digits.begin(), digits.end(), isDigit);
}

}  // namespace kelvarin
