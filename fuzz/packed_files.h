// A columnar file of one column set as one input: the main file's length (32 bits), the main file,
// the side file.
#pragma once

#include <cstring>
#include <string>

#include "columnar/format/file_names.h"
#include "columnar/reader/tests/made_file.h"

namespace kelvarin {

inline const std::string kFuzzedFile = "f.cgel_kelvarin";

inline testing::MemoryFiles unpackFiles(const unsigned char* data, std::size_t size) {
  std::uint32_t mainSize = 0;
  testing::MemoryFiles files;
  if (size < sizeof mainSize) {
    return files;
  }
  std::memcpy(&mainSize, data, sizeof mainSize);
  const std::string bytes(reinterpret_cast<const char*>(data) + sizeof mainSize,
                          size - sizeof mainSize);
  files[kFuzzedFile] = bytes.substr(0, mainSize);
  files[sideFileName(kFuzzedFile, 0)] = mainSize < bytes.size() ? bytes.substr(mainSize) : "";
  return files;
}

inline std::string packFiles(const testing::MemoryFiles& files) {
  const std::string& main = files.at(kFuzzedFile);
  const auto mainSize = static_cast<std::uint32_t>(main.size());
  return std::string(reinterpret_cast<const char*>(&mainSize), sizeof mainSize) + main +
         files.at(sideFileName(kFuzzedFile, 0));
}

}  // namespace kelvarin
