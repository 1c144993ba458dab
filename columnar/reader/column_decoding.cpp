#include "columnar/reader/column_decoding.h"

#include <algorithm>

#include "columnar/codecs/shaped_texts.h"
#include "host/contract/late_texts.h"

namespace kelvarin {

namespace {

template <typename Value>
void repeatFirst(ByteBuffer& values, std::size_t rows) {
  const auto value = loadPacked<Value>(values.data());
  values.resize(rows * sizeof value);
  std::fill_n(reinterpret_cast<Value*>(values.data()), rows, value);
}

class LateShapedTexts final : public LateTexts {
 public:
  explicit LateShapedTexts(std::shared_ptr<const ShapedTexts> texts) : m_texts(std::move(texts)) {}

  std::size_t byteCount() const override { return m_texts->byteCount(); }
  std::shared_ptr<const unsigned char[]> make(const Rows& rows, std::uint32_t* positions,
                                              std::size_t& size) const override {
    const ShapedTexts::Rows chosen = rowsOf(rows);
    size = m_texts->sizeOf(chosen);
    auto bytes = std::make_shared_for_overwrite<unsigned char[]>(size + ShapedTexts::kMargin);
    m_texts->make(chosen, bytes.get(), positions);
    return bytes;
  }
  void compare(std::string_view bytes, bool isEqualityOnly, std::int8_t ofNull, const Rows& rows,
               std::int8_t* orders) const override {
    m_texts->compare(bytes, isEqualityOnly, ofNull, rowsOf(rows), orders);
  }

 private:
  static ShapedTexts::Rows rowsOf(const Rows& rows) {
    return {rows.first, rows.selection, rows.count};
  }

  const std::shared_ptr<const ShapedTexts> m_texts;
};

}  // namespace

ReadStatus decodeColumn(ChunkDecoder& decoder, const GelColumn& column, Bytes chunk,
                        std::uint32_t rows, DecodedColumn& values, TextForm form) {
  switch (column.type) {
    case GelType::key:
      return decoder.decodeKeys(chunk, column.storage, rows, values.values);
    case GelType::number:
      return decoder.decodeNumbers(chunk, rows, values.values);
    case GelType::text:
      break;
  }
  return decoder.decodeTexts(chunk, rows, values.texts, form);
}

bool isRepeated(const DecodedColumn& values, MetaTypeColumn type, std::uint64_t rows) {
  const std::size_t size = fixedSizeOf(type);
  return rows > 1 && (size != 0 ? values.values.size() == size : values.texts.offsets.size() == 1);
}

void repeat(DecodedColumn& values, MetaTypeColumn type, std::size_t rows) {
  switch (fixedSizeOf(type)) {
    case sizeof(double):
      return repeatFirst<double>(values.values, rows);
    case sizeof(std::uint32_t):
      return repeatFirst<std::uint32_t>(values.values, rows);
    default:
      values.texts.entries = values.texts.offsets;
      values.texts.codes.assign(rows, 0);
      values.texts.offsets.resize(rows, values.texts.offsets.front());
  }
}

BatchColumn batchColumn(std::shared_ptr<const DecodedColumn> values, MetaTypeColumn type) {
  const unsigned char* fixed = values->values.data();
  const DecodedTexts& texts = values->texts;
  switch (type) {
    case MetaTypeColumn::number:
      return BatchColumn::ofNumbers(std::move(values), reinterpret_cast<const double*>(fixed));
    case MetaTypeColumn::key:
      return BatchColumn::ofKeys(std::move(values), reinterpret_cast<const std::uint32_t*>(fixed));
    default:
      break;
  }
  if (texts.shaped != nullptr) {
    auto late = std::make_shared<const LateShapedTexts>(texts.shaped);
    const std::size_t size = late->byteCount();
    return BatchColumn::ofLateTexts(type, std::move(late), 0, size);
  }
  BatchColumn column = BatchColumn::ofTexts(type, std::move(values), texts.bytes.data(),
                                            texts.offsets.data(), texts.bytes.size());
  if (!texts.codes.empty()) {
    column.setDictionary({texts.codes.data(), texts.entries});
  }
  return column;
}

}  // namespace kelvarin
