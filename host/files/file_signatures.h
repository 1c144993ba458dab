// The formats of files that are known by their first bytes.
//
// Used for hints about files of another format than an action reads, and by the reader of CSV
// files.
#pragma once

#include <string_view>

namespace kelvarin {

enum class FileFormat {
  unknown,
  text,
  csv,
  parquet,
  arrow,
  columnar,
  graph,
  utf16,
  utf32,
  compressed,
  archive
};

struct FileSignature {
  std::string_view bytes;
  FileFormat format;
};

// None is of letters alone, which may also be the name of a column at the beginning of a table.
inline constexpr FileSignature kFileSignatures[] = {
    {std::string_view("\xFF\xFE", 2), FileFormat::utf16},
    {std::string_view("\xFE\xFF", 2), FileFormat::utf16},
    {std::string_view("\0\0\xFE\xFF", 4), FileFormat::utf32},
    {std::string_view("\x1F\x8B", 2), FileFormat::compressed},
    {std::string_view("\x28\xB5\x2F\xFD", 4), FileFormat::compressed},
    {std::string_view("BZh91AY&SY", 10), FileFormat::compressed},
    {std::string_view("\xFD"
                      "7zXZ\0",
                      6),
     FileFormat::compressed},
    {std::string_view("PK\x03\x04", 4), FileFormat::archive},
    {std::string_view("PAR1\x15", 5), FileFormat::parquet},
    {std::string_view("ARROW1\0\0", 8), FileFormat::arrow},
    {std::string_view("\xFF\xFF\xFF\xFF", 4), FileFormat::arrow},  // a stream
    {std::string_view("\x40\xF4\x59\0", 4), FileFormat::columnar},
};

// `unknown` where the file begins with no signature.
inline FileFormat formatOfSignature(std::string_view start) {
  for (const FileSignature& signature : kFileSignatures) {
    if (start.starts_with(signature.bytes)) {
      return signature.format;
    }
  }
  return FileFormat::unknown;
}

}  // namespace kelvarin
