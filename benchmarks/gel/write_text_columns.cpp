// Writes each column of the table `texts` as a file of lines: write_text_columns FOLDER [ROWS].
// For looking at the texts, and for measuring them with other programs.
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>

#include <fmt/format.h>

#include "benchmarks/gel/text_columns.h"

int main(int argc, char** argv) {
  if (argc < 2) {
    fmt::print(stderr, "usage: write_text_columns FOLDER [ROWS]\n");
    return 2;
  }
  try {
    const std::filesystem::path folder = argv[1];
    for (const kelvarin::TextColumn& column :
         kelvarin::makeTextColumns(argc > 2 ? std::stoul(argv[2]) : 300'000)) {
      std::ofstream file;
      file.exceptions(std::ios::failbit | std::ios::badbit);
      file.open(folder / (column.name + ".txt"), std::ios::binary);
      for (const std::string& value : column.values) {
        file << value << '\n';
      }
      file.close();
      fmt::print("{:<10} {:>6.2f} bits a value\n", column.name, column.bitsPerValue);
    }
  } catch (const std::exception& exception) {
    fmt::print(stderr, "error: {}\n", exception.what());
    return 1;
  }
  return 0;
}
