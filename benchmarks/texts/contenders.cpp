// The contenders of this process behind one plain interface, so that they are timed in turns with
// libraries of other languages.
//
// Called through ctypes by contenders.py. A handle is null for what cannot be evaluated.
#include <cstdint>
#include <cstring>
#include <string>

#include "benchmarks/texts/contender.h"

#define EXPORTED extern "C" __attribute__((visibility("default")))

namespace {

struct Handle {
  std::unique_ptr<kelvarin::Contender> contender;
  kelvarin::ContenderResults results;
};

Handle* handleOf(std::unique_ptr<kelvarin::Contender> contender) {
  return contender == nullptr ? nullptr : new Handle{std::move(contender), {}};
}

}  // namespace

// Columns in the order of TextTable. The text of row i is in the bytes from offsets[i] to before
// offsets[i + 1].
EXPORTED kelvarin::TextTable* makeTable(std::size_t rows, const std::int64_t* const* offsets,
                                        const char* const* bytes, const double* const* numbers) {
  auto* table = new kelvarin::TextTable;
  for (std::size_t column = 0; column < kelvarin::TextTable::kTexts; ++column) {
    const std::int64_t* begins = offsets[column];
    for (std::size_t i = 0; i < rows; ++i) {
      table->texts[column].emplace_back(bytes[column] + begins[i], bytes[column] + begins[i + 1]);
    }
  }
  for (std::size_t column = 0; column < kelvarin::TextTable::kNumbers; ++column) {
    table->numbers[column].assign(numbers[column], numbers[column] + rows);
  }
  table->makeBatches();
  return table;
}

EXPORTED Handle* byBatch(const char* expression, bool yieldsText) {
  return handleOf(kelvarin::batchContender(expression, yieldsText));
}

EXPORTED Handle* byStringParser(const char* expression, bool yieldsText) {
  return handleOf(kelvarin::stringParserContender(expression, yieldsText));
}

EXPORTED Handle* byLoop(const char* name) {
  return handleOf(kelvarin::loopContender(name));
}

EXPORTED void runContender(Handle* handle, const kelvarin::TextTable* table) {
  handle->contender->run(*table);
}

// How many bytes the texts have that fetchTexts() writes.
EXPORTED std::size_t bytesOfTexts(Handle* handle) {
  handle->results = handle->contender->results();
  std::size_t bytes = 0;
  for (const std::string& text : handle->results.texts) {
    bytes += text.size();
  }
  return bytes;
}

EXPORTED void fetchTexts(const Handle* handle, std::int64_t* offsets, char* bytes) {
  std::int64_t end = 0;
  *offsets++ = end;
  for (const std::string& text : handle->results.texts) {
    std::memcpy(bytes + end, text.data(), text.size());
    end += static_cast<std::int64_t>(text.size());
    *offsets++ = end;
  }
}

EXPORTED void fetchNumbers(const Handle* handle, double* numbers) {
  const std::vector<double> values = handle->contender->results().numbers;
  std::memcpy(numbers, values.data(), values.size() * sizeof(double));
}

EXPORTED void forgetContender(Handle* handle) {
  delete handle;
}
