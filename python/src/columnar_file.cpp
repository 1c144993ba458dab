#include "python/src/columnar_file.h"

#include <optional>

#include <nanobind/stl/optional.h>
#include <nanobind/stl/pair.h>
#include <nanobind/stl/string.h>
#include <nanobind/stl/unique_ptr.h>
#include <nanobind/stl/vector.h>

#include "python/src/input_options.h"
#include "python/src/progress.h"
#include "python/src/stream.h"

namespace kelvarin_python {

namespace {

class ColumnarFile {
 public:
  ColumnarFile(const std::string& path, bool acceptsIncomplete) {
    kelvarin_table_options options = KELVARIN_TABLE_OPTIONS_INIT;
    options.accepts_incomplete = acceptsIncomplete ? 1 : 0;
    Outcome outcome;
    {
      const nb::gil_scoped_release release;
      outcome.set(kelvarin_table_open(path.c_str(), &options, &m_handle, outcome.error()));
    }
    outcome.check();
  }
  ~ColumnarFile() { kelvarin_table_close(m_handle); }
  ColumnarFile(const ColumnarFile&) = delete;
  ColumnarFile& operator=(const ColumnarFile&) = delete;

  kelvarin_table handle() const { return m_handle; }

  // rows, blocks, columns, rows in a block, column sets, whether it is complete
  nb::tuple info() const {
    kelvarin_table_info info{};
    info.size = sizeof info;
    call(kelvarin_table_get_info, m_handle, &info);
    return nb::make_tuple(info.rows, info.blocks, info.columns, info.rows_in_block,
                          info.column_sets, info.is_complete != 0);
  }

  // name, type, order, position among the sorted columns, column set
  nb::tuple column(int32_t index) const {
    kelvarin_column_info info{};
    info.size = sizeof info;
    call(kelvarin_table_get_column, m_handle, index, &info);
    return nb::make_tuple(info.name, info.type, info.order, info.sort_position, info.column_set);
  }

  // first row, rows, whether it is damaged
  nb::tuple block(int64_t index) const {
    kelvarin_block_info info{};
    info.size = sizeof info;
    call(kelvarin_table_get_block, m_handle, index, &info);
    return nb::make_tuple(info.first_row, info.rows, info.is_damaged != 0);
  }

  // least, largest (None: not known), whether there are nulls
  nb::tuple statistics(int64_t block, int32_t column, bool isText) const {
    kelvarin_statistics found{};
    found.size = sizeof found;
    call(kelvarin_table_get_statistics, m_handle, block, column, &found);
    if (found.has_bounds == 0) {
      return nb::make_tuple(nb::none(), nb::none(), found.has_nulls != 0, found.has_nan != 0);
    }
    if (!isText) {
      return nb::make_tuple(found.min_number, found.max_number, found.has_nulls != 0,
                            found.has_nan != 0);
    }
    return nb::make_tuple(bytes(found.min_text, found.min_text_size),
                          bytes(found.max_text, found.max_text_size), found.has_nulls != 0, false);
  }

 private:
  // Bounds may be cut in the middle of a character.
  static nb::bytes bytes(const char* text, int64_t size) {
    return nb::bytes(text, static_cast<size_t>(size));
  }

  kelvarin_table m_handle{};
};

std::vector<const char*> pointersOf(const std::vector<std::string>& texts) {
  std::vector<const char*> pointers;
  pointers.reserve(texts.size());
  for (const std::string& text : texts) {
    pointers.push_back(text.c_str());
  }
  return pointers;
}

const char* pointerOf(const std::optional<std::string>& text) {
  return text ? text->c_str() : nullptr;
}

std::unique_ptr<Stream> scan(const ColumnarFile& file,
                             const std::optional<std::vector<std::string>>& columns, int textFormat,
                             std::pair<int64_t, int64_t> rows, std::pair<int64_t, int64_t> blocks,
                             const std::optional<std::string>& blockFilter, bool skipsDamage,
                             int threads, int64_t batchRows,
                             const std::optional<std::string>& rowNumber, bool gathersRows) {
  auto state = std::make_shared<StreamState>();
  kelvarin_scan_options options = KELVARIN_SCAN_OPTIONS_INIT;
  const auto names = columns ? pointersOf(*columns) : std::vector<const char*>{};
  options.columns = columns ? names.data() : nullptr;
  options.column_count = static_cast<int32_t>(names.size());
  options.text_format = textFormat;
  std::tie(options.first_row, options.end_row) = rows;
  std::tie(options.first_block, options.end_block) = blocks;
  options.block_filter = pointerOf(blockFilter);
  options.skips_damage = skipsDamage ? 1 : 0;
  options.threads = threads;
  options.batch_rows = batchRows;
  options.row_number_column = pointerOf(rowNumber);
  options.gathers_rows = gathersRows ? 1 : 0;
  options.stop = state->stop.handle();
  options.log = state->log.receiver();
  ArrowArrayStream stream{};
  call(kelvarin_table_scan, file.handle(), &options, &stream);
  return std::make_unique<Stream>(StreamOwner(stream), std::move(state));
}

// The number of rows, and what was logged.
nb::tuple write(const std::string& path, nb::handle table, NamedNumbers types,
                NamedNumbers sortedBy, bool takesBadValuesAsNull, int rowsInBlock, int threads,
                int split, double splitMebibytes, const std::optional<std::string>& splitColumn,
                bool separatesColumns, bool createsFolder, int diskWaitSeconds,
                const std::optional<nb::callable>& progress) {
  const InputOptions input(std::move(types), std::move(sortedBy), takesBadValuesAsNull);
  StreamState state;
  Progress shown(progress);
  kelvarin_write_options options = KELVARIN_WRITE_OPTIONS_INIT;
  options.input = input.get();
  options.rows_in_block = rowsInBlock;
  options.threads = threads;
  options.split = split;
  options.split_mebibytes = splitMebibytes;
  options.split_column = pointerOf(splitColumn);
  options.separates_columns = separatesColumns ? 1 : 0;
  options.creates_folder = createsFolder ? 1 : 0;
  options.disk_wait_seconds = diskWaitSeconds;
  options.stop = state.stop.handle();
  options.log = state.log.receiver();
  options.progress = shown.receiver();
  StreamOwner stream = streamOf(table);
  int64_t rows = 0;
  Outcome outcome;
  interruptible(state.stop, [&] {
    ArrowArrayStream given = stream.take();
    outcome.set(kelvarin_write(path.c_str(), &given, &options, &rows, outcome.error()));
  });
  outcome.check();
  return nb::make_tuple(rows, listOf(state.log));
}

}  // namespace

void bindColumnarFiles(nb::module_& module) {
  nb::class_<ColumnarFile>(module, "ColumnarFile")
      .def(nb::init<const std::string&, bool>(), nb::arg("path"), nb::arg("accepts_incomplete"))
      .def("info", &ColumnarFile::info)
      .def("column", &ColumnarFile::column)
      .def("block", &ColumnarFile::block)
      .def("statistics", &ColumnarFile::statistics, nb::arg("block"), nb::arg("column"),
           nb::arg("is_text"))
      .def("scan", scan, nb::kw_only(), nb::arg("columns").none(), nb::arg("text_format"),
           nb::arg("rows"), nb::arg("blocks"), nb::arg("block_filter").none(),
           nb::arg("skips_damage"), nb::arg("threads"), nb::arg("batch_rows"),
           nb::arg("row_number").none(), nb::arg("gathers_rows"));
  module.def("write", write, nb::arg("path"), nb::arg("table"), nb::kw_only(), nb::arg("types"),
             nb::arg("sorted_by"), nb::arg("takes_bad_values_as_null"), nb::arg("rows_in_block"),
             nb::arg("threads"), nb::arg("split"), nb::arg("split_mebibytes"),
             nb::arg("split_column").none(), nb::arg("separates_columns"),
             nb::arg("creates_folder"), nb::arg("disk_wait_seconds"), nb::arg("progress").none());
}

}  // namespace kelvarin_python
