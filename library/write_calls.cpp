// Writing columnar files: the function of the interface.
#include "columnar/codecs/chunk_codec.h"
#include "library/calls.h"
#include "library/input_settings.h"
#include "library/tables/table_writing.h"

using kelvarin::Done;
using kelvarin::Outcome;
using kelvarin::TableSettings;

namespace texts = kelvarin::library_messages;

namespace {

Outcome<Done> checkedNumbers(const kelvarin_write_options& options) {
  if (options.rows_in_block < 0 ||
      static_cast<std::uint32_t>(options.rows_in_block) > kelvarin::kMaxRowsInBlock) {
    return kelvarin::wrongArgument(
        texts::outOfRange(QStringLiteral("rows_in_block"), options.rows_in_block));
  }
  if (options.split < KELVARIN_SPLIT_NONE || options.split > KELVARIN_SPLIT_BY_VALUE) {
    return kelvarin::wrongArgument(texts::outOfRange(QStringLiteral("split"), options.split));
  }
  if (options.split == KELVARIN_SPLIT_BY_VALUE) {
    return kelvarin::needed(options.split_column, "split_column");
  }
  return Done{};
}

Outcome<TableSettings> settingsOf(const kelvarin_write_options& options) {
  if (const auto checked = checkedNumbers(options); !checked) {
    return kelvarin::Failure{checked.error()};
  }
  auto input = kelvarin::inputSettingsOf(options.input);
  auto work = kelvarin::workSettingsOf(options.threads, options.stop, options.log,
                                       options.disk_wait_seconds);
  if (!input || !work) {
    return kelvarin::Failure{input ? work.error() : input.error()};
  }
  TableSettings settings;
  settings.rowsInBlock = options.rows_in_block == 0 ? settings.rowsInBlock : options.rows_in_block;
  settings.split = options.split;
  settings.splitMebibytes = options.split_mebibytes;
  settings.splitColumn = QString::fromUtf8(options.split_column);
  settings.separatesColumns = options.separates_columns != 0;
  settings.createsFolder = options.creates_folder != 0;
  settings.input = std::move(*input);
  settings.work = std::move(*work);
  settings.progress = options.progress;
  return settings;
}

}  // namespace

kelvarin_status kelvarin_write(const char* path, struct ArrowArrayStream* input,
                               const kelvarin_write_options* options, int64_t* rows,
                               kelvarin_error** error) {
  return kelvarin::answered(error, [&]() -> Outcome<Done> {
    if (auto checked = kelvarin::needed(input, "input"); !checked) {
      return checked;
    }
    kelvarin::InputStream stream(*input);
    if (auto checked = kelvarin::needed(path, "path"); !checked) {
      return checked;
    }
    const auto given =
        kelvarin::optionsOf(options, kelvarin_write_options(KELVARIN_WRITE_OPTIONS_INIT));
    if (!given) {
      return kelvarin::Failure{given.error()};
    }
    const auto settings = settingsOf(*given);
    if (!settings) {
      return kelvarin::Failure{settings.error()};
    }
    const auto written =
        kelvarin::writeTable(kelvarin::absolutePath(path), std::move(stream), *settings);
    if (!written) {
      return kelvarin::Failure{written.error()};
    }
    if (rows != nullptr) {
      *rows = *written;
    }
    return Done{};
  });
}
