// The beginning of a main file: header, slot table and metadata block.
#include "columnar/reader/gel_file.h"
#include "columnar/reader/tests/made_file.h"
#include "fuzz/fuzz_target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kelvarin::testing::MemoryFiles files;
  files["f.cgel_kelvarin"].assign(reinterpret_cast<const char*>(data), size);
  const auto file =
      kelvarin::GelFile::open("f.cgel_kelvarin", kelvarin::IncompleteFiles::accept, files.opener());
  if (file) {
    (void)(*file)->columnsInRowOrder();
  }
  return 0;
}
