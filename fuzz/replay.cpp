// Gives every file of the folders named on the command line to the fuzz target, and all beginnings
// of the small ones.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/fuzz_target.h"

namespace {

constexpr std::size_t kSmall = 4096;

std::string bytesOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void feed(const std::string& bytes, std::size_t size) {
  // Of exactly this size, so that a sanitizer finds any access beyond it.
  const std::vector<std::uint8_t> data(bytes.begin(),
                                       bytes.begin() + static_cast<std::ptrdiff_t>(size));
  LLVMFuzzerTestOneInput(data.data(), data.size());
}

void replay(const std::string& bytes) {
  for (std::size_t size = bytes.size() <= kSmall ? 0 : bytes.size(); size < bytes.size(); ++size) {
    feed(bytes, size);
  }
  feed(bytes, bytes.size());
}

}  // namespace

int main(int argc, char** argv) {
  int count = 0;
  for (int i = 1; i < argc; ++i) {
    for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
      replay(bytesOf(entry.path()));
      ++count;
    }
  }
  std::printf("%d inputs\n", count);
  return count > 0 ? 0 : 1;
}
