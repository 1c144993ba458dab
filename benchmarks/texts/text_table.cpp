#include "benchmarks/texts/text_table.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>

namespace kelvarin {

namespace {

// As many as a piece of a file has.
constexpr std::size_t kRowsOfBatch = 4096;

BatchColumn textColumn(const std::string* texts, std::size_t count) {
  struct Values {
    std::vector<unsigned char> bytes;
    std::vector<std::uint32_t> positions;
  };
  auto values = std::make_shared<Values>();
  for (std::size_t i = 0; i < count; ++i) {
    const auto length = static_cast<std::uint32_t>(texts[i].size());
    const std::size_t position = values->bytes.size();
    values->positions.push_back(static_cast<std::uint32_t>(position));
    values->bytes.resize(position + sizeof length + length);
    std::memcpy(values->bytes.data() + position, &length, sizeof length);
    std::memcpy(values->bytes.data() + position + sizeof length, texts[i].data(), length);
  }
  const Values& kept = *values;
  return BatchColumn::ofTexts(MetaTypeColumn::text, std::move(values), kept.bytes.data(),
                              kept.positions.data(), kept.bytes.size());
}

}  // namespace

void TextTable::makeBatches() {
  for (std::size_t row = 0; row < rows(); row += kRowsOfBatch) {
    const std::size_t count = std::min(kRowsOfBatch, rows() - row);
    std::vector<BatchColumn> columns;
    for (const std::vector<std::string>& column : texts) {
      columns.push_back(textColumn(column.data() + row, count));
    }
    for (const std::vector<double>& column : numbers) {
      columns.push_back(BatchColumn::ofNumbers(nullptr, column.data() + row));
    }
    batches.push_back(std::make_shared<RowBatch>(count, std::move(columns)));
  }
}

void announceColumns(OneRow& columns) {
  QVector<QString> names;
  QVector<MetaInfo> metas;
  for (const char* name : TextTable::kTextNames) {
    names.append(QString::fromLatin1(name));
    metas.append(MetaInfo(MetaTypeColumn::text, 0));
  }
  for (const char* name : TextTable::kNumberNames) {
    names.append(QString::fromLatin1(name));
    metas.append(MetaInfo(MetaTypeColumn::number, 0));
  }
  columns.setNumberOfColumns(static_cast<int>(names.size()));
  columns.setColName(names);
  columns.setMetaData(metas);
}

}  // namespace kelvarin
