// Rows in the form in which they leave the library through a stream.
//
// Numbers are float64, keys uint32, missing ones null; texts are views, or texts behind one another
// where the user asks for it. Values that lie as Arrow has them are not copied: the array keeps
// their owners.
// Used by: the sinks of streams.
// Threads: any. Errors: std::bad_alloc.
#pragma once

#include <vector>

#include <QString>

#include "host/contract/batch_steps.h"
#include "host/tables/files/batch_reader.h"
#include "library/arrow_streams/array_memory.h"
#include "library/arrow_streams/exported_column.h"

namespace kelvarin {

enum class TextFormat { views, utf8, largeUtf8 };

// How batches leave.
struct BatchForm {
  TextFormat texts = TextFormat::views;
  std::size_t mostRows = SIZE_MAX;  // of an array
  // Columns whose values are copied into the memory of arrays where these keep many; empty: none.
  std::vector<bool> copied = {};
};

// One array, or several where the form wants smaller ones or texts need more offsets.
std::vector<OwnedArray> exportedBatch(const RowBatch& batch, const BatchForm& form,
                                      ArrayMemory& memory);

void exportSchema(const TableColumns& columns, TextFormat texts, ArrowSchema& out);

// The arrays of a batch, made by a task.
struct ArrowBatch final : EncodedBatch {
  std::vector<OwnedArray> arrays;
};

class ArrowBatchEncoder final : public BatchEncoder {
 public:
  explicit ArrowBatchEncoder(const BatchForm& form) : m_form(form) {}
  std::unique_ptr<EncodedBatch> encode(const RowBatch& batch) const override;

 private:
  const BatchForm m_form;
  mutable ArrayMemory m_memory;
};

}  // namespace kelvarin
