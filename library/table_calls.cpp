// Columnar files: the functions of the interface that open and read them.
#include "library/arrow_streams/output_stream.h"
#include "library/calls.h"
#include "library/tables/columnar_table.h"

using kelvarin::ColumnarTable;
using kelvarin::Done;
using kelvarin::HandleKind;
using kelvarin::Handles;
using kelvarin::Outcome;
using kelvarin::ScanSettings;

namespace texts = kelvarin::library_messages;

namespace {

// Calls work(table).
template <typename Work>
kelvarin_status withTable(kelvarin_table table, kelvarin_error** error, Work work) noexcept {
  return kelvarin::withObject<ColumnarTable>(HandleKind::table, table.id, error,
                                             [&](const auto& found) { return work(*found); });
}

// An index that counts from 0, of so many.
Outcome<Done> checkedIndex(const char* name, std::int64_t index, std::size_t count) {
  if (index < 0 || static_cast<std::uint64_t>(index) >= count) {
    return kelvarin::wrongArgument(texts::outOfRange(QString::fromLatin1(name), index));
  }
  return Done{};
}

// A range from `begin` to before `end`, which is -1 for the last.
Outcome<Done> checkedRange(const char* name, std::int64_t begin, std::int64_t end) {
  if (begin < 0 || end < -1) {
    const std::int64_t wrong = begin < 0 ? begin : end;
    return kelvarin::wrongArgument(texts::outOfRange(QString::fromLatin1(name), wrong));
  }
  return Done{};
}

std::uint64_t endOf(std::int64_t end) {
  return end < 0 ? UINT64_MAX : static_cast<std::uint64_t>(end);
}

Outcome<QStringList> columnNames(const char* const* names, std::int32_t count) {
  if (count < 1) {
    return kelvarin::wrongArgument(texts::noColumns());
  }
  QStringList columns;
  for (std::int32_t i = 0; i < count; ++i) {
    if (names[i] == nullptr) {
      return kelvarin::wrongArgument(texts::nullPointer(QStringLiteral("columns")));
    }
    columns += QString::fromUtf8(names[i]);
  }
  return columns;
}

bool hasColumn(const ColumnarTable& table, const QString& name) {
  return std::ranges::any_of(table.columns(), [&](const ColumnarTable::Column& column) {
    return QString::fromStdString(column.name) == name;
  });
}

Outcome<ScanSettings> scanSettingsOf(const ColumnarTable& table,
                                     const kelvarin_scan_options& options) {
  ScanSettings settings;
  if (options.columns != nullptr) {
    auto columns = columnNames(options.columns, options.column_count);
    if (!columns) {
      return kelvarin::Failure{columns.error()};
    }
    settings.columns = std::move(*columns);
  }
  for (const auto& checked :
       {checkedRange("first_row", options.first_row, options.end_row),
        checkedRange("first_block", options.first_block, options.end_block)}) {
    if (!checked) {
      return kelvarin::Failure{checked.error()};
    }
  }
  settings.part = {static_cast<std::uint64_t>(options.first_row),   endOf(options.end_row),
                   static_cast<std::uint64_t>(options.first_block), endOf(options.end_block),
                   QString::fromUtf8(options.row_number_column),    nullptr};
  if (settings.part.hasRowNumbers() && hasColumn(table, settings.part.rowNumberColumn)) {
    return kelvarin::wrongArgument(texts::rowNumberColumnExists(settings.part.rowNumberColumn));
  }
  settings.blockFilter = QString::fromUtf8(options.block_filter).trimmed();
  settings.skipsDamage = options.skips_damage != 0;
  auto form = kelvarin::batchFormOf(options.text_format, options.batch_rows);
  auto work = kelvarin::workSettingsOf(options.threads, options.stop, options.log);
  if (!form || !work) {
    return kelvarin::Failure{form ? work.error() : form.error()};
  }
  settings.form = *form;
  settings.isGathered = options.gathers_rows != 0 && options.batch_rows == 0;
  settings.work = std::move(*work);
  return settings;
}

}  // namespace

kelvarin_status kelvarin_table_open(const char* path, const kelvarin_table_options* options,
                                    kelvarin_table* out, kelvarin_error** error) {
  return kelvarin::answered(error, [&]() -> Outcome<Done> {
    const auto given =
        kelvarin::optionsOf(options, kelvarin_table_options(KELVARIN_TABLE_OPTIONS_INIT));
    for (const auto& checked :
         {kelvarin::needed(path, "path"), kelvarin::needed(out, "out"),
          given ? Outcome<Done>(Done{}) : Outcome<Done>(kelvarin::Failure{given.error()})}) {
      if (!checked) {
        return checked;
      }
    }
    auto table = ColumnarTable::open(kelvarin::absolutePath(path), given->accepts_incomplete != 0);
    if (!table) {
      return kelvarin::Failure{table.error()};
    }
    out->id = Handles::instance().add(HandleKind::table, std::move(*table));
    return Done{};
  });
}

kelvarin_status kelvarin_table_close(kelvarin_table table) {
  return kelvarin::closed(HandleKind::table, table.id);
}

kelvarin_status kelvarin_table_get_info(kelvarin_table table, kelvarin_table_info* out,
                                        kelvarin_error** error) {
  return withTable(table, error, [&](const ColumnarTable& found) {
    const kelvarin::GelFile& file = found.file();
    return kelvarin::store(
        kelvarin_table_info{.size = 0,
                            .rows = static_cast<std::int64_t>(found.rowCount()),
                            .blocks = static_cast<std::int64_t>(found.blocks().size()),
                            .columns = static_cast<std::int32_t>(found.columns().size()),
                            .rows_in_block = static_cast<std::int32_t>(file.rowsInBlock()),
                            .column_sets = file.columnSetCount(),
                            .is_complete = file.isComplete() ? 1 : 0},
        out);
  });
}

kelvarin_status kelvarin_table_get_column(kelvarin_table table, int32_t column,
                                          kelvarin_column_info* out, kelvarin_error** error) {
  return withTable(table, error, [&](const ColumnarTable& found) -> Outcome<Done> {
    if (auto checked = checkedIndex("column", column, found.columns().size()); !checked) {
      return checked;
    }
    const ColumnarTable::Column& of = found.columns()[static_cast<std::size_t>(column)];
    const std::int32_t order = of.sortPosition < 0 ? KELVARIN_UNSORTED
                               : of.isDescending   ? KELVARIN_DESCENDING
                                                   : KELVARIN_ASCENDING;
    return kelvarin::store(kelvarin_column_info{.size = 0,
                                                .name = of.name.c_str(),
                                                .type = static_cast<std::int32_t>(of.type),
                                                .order = order,
                                                .sort_position = of.sortPosition,
                                                .column_set = of.columnSet},
                           out);
  });
}

kelvarin_status kelvarin_table_get_block(kelvarin_table table, int64_t block,
                                         kelvarin_block_info* out, kelvarin_error** error) {
  return withTable(table, error, [&](const ColumnarTable& found) -> Outcome<Done> {
    if (auto checked = checkedIndex("block", block, found.blocks().size()); !checked) {
      return checked;
    }
    const ColumnarTable::Block& of = found.blocks()[static_cast<std::size_t>(block)];
    return kelvarin::store(kelvarin_block_info{.size = 0,
                                               .first_row = static_cast<std::int64_t>(of.firstRow),
                                               .rows = static_cast<std::int64_t>(of.rows),
                                               .is_damaged = of.isDamaged ? 1 : 0},
                           out);
  });
}

kelvarin_status kelvarin_table_get_statistics(kelvarin_table table, int64_t block, int32_t column,
                                              kelvarin_statistics* out, kelvarin_error** error) {
  return withTable(table, error, [&](ColumnarTable& found) -> Outcome<Done> {
    for (const auto& checked : {checkedIndex("block", block, found.blocks().size()),
                                checkedIndex("column", column, found.columns().size())}) {
      if (!checked) {
        return checked;
      }
    }
    kelvarin_statistics made{};
    if (const auto* known =
            found.statistics(static_cast<std::size_t>(block), static_cast<std::size_t>(column))) {
      made = {.size = 0,
              .has_nulls = known->hasNulls ? 1 : 0,
              .has_bounds = known->hasBounds ? 1 : 0,
              .min_number = known->low,
              .max_number = known->high,
              .min_text = known->lowText.c_str(),
              .min_text_size = static_cast<std::int64_t>(known->lowText.size()),
              .max_text = known->highText.c_str(),
              .max_text_size = static_cast<std::int64_t>(known->highText.size()),
              .has_nan = known->hasNotANumber ? 1 : 0};
    }
    return kelvarin::store(made, out);
  });
}

kelvarin_status kelvarin_table_scan(kelvarin_table table, const kelvarin_scan_options* options,
                                    struct ArrowArrayStream* out, kelvarin_error** error) {
  return withTable(table, error, [&](const ColumnarTable& found) -> Outcome<Done> {
    if (auto checked = kelvarin::needed(out, "out"); !checked) {
      return checked;
    }
    const auto given =
        kelvarin::optionsOf(options, kelvarin_scan_options(KELVARIN_SCAN_OPTIONS_INIT));
    if (!given) {
      return kelvarin::Failure{given.error()};
    }
    const auto settings = scanSettingsOf(found, *given);
    if (!settings) {
      return kelvarin::Failure{settings.error()};
    }
    auto stream = found.scan(*settings);
    if (!stream) {
      return kelvarin::Failure{stream.error()};
    }
    // So that a wrong name or filter is an error of this call.
    if (const auto columns = (*stream)->columns(); !columns) {
      return kelvarin::Failure{columns.error()};
    }
    kelvarin::exportStream(std::move(*stream), settings->form.texts, *out);
    return Done{};
  });
}
