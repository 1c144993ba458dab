#include "columnar/reader/tests/made_file.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <fstream>

#include "columnar/codecs/chunk_codec.h"
#include "columnar/codecs/descriptor_record.h"
#include "columnar/format/block_descriptor.h"
#include "columnar/format/checksum.h"
#include "columnar/format/file_header.h"
#include "columnar/format/file_names.h"

namespace kelvarin::testing {

namespace {

class MemorySource final : public ByteSource {
 public:
  explicit MemorySource(const std::string& bytes) : m_bytes(bytes) {}
  std::uint64_t size() const override { return m_bytes.size(); }
  std::size_t readAt(std::uint64_t offset, void* bytes, std::size_t count) const override {
    if (offset >= m_bytes.size() || count == 0) {
      return 0;
    }
    const std::size_t taken = std::min<std::size_t>(count, m_bytes.size() - offset);
    std::memcpy(bytes, m_bytes.data() + offset, taken);
    return taken;
  }

 private:
  const std::string& m_bytes;
};

class FileMaker {
 public:
  FileMaker(const std::vector<MadeColumn>& columns, const std::vector<Values>& rows,
            const FileShape& shape)
      : m_rows(rows), m_shape(shape) {
    m_metadata.rowsInBlock = shape.rowsInBlock;
    for (const MadeColumn& column : columns) {
      GelColumn described;
      described.name = column.name;
      described.type = static_cast<GelType>(column.type);
      const bool isPlainKey = column.type == 'K' && column.storage == StorageCode::raw;
      described.storage = isPlainKey ? StorageCode::key : column.storage;
      described.inputPosition = static_cast<std::uint32_t>(m_metadata.columns.size());
      described.columnSet = column.set;
      m_metadata.columns.push_back(described);
      m_metadata.columnSetCount = std::max(m_metadata.columnSetCount, column.set + 1);
    }
    m_layout = DescriptorLayout(m_metadata.columns, m_metadata.columnSetCount);
    m_sides.resize(static_cast<std::size_t>(m_metadata.columnSetCount));
  }

  MemoryFiles make() {
    std::string records;
    std::vector<unsigned char> descriptors;
    for (std::size_t first = 0; first < m_rows.size(); first += m_shape.rowsInBlock) {
      appendBlock(first, descriptors);
      if (descriptors.size() == m_shape.blocksInRecord * m_layout.width()) {
        appendRecord(descriptors, records);
      }
    }
    appendRecord(descriptors, records);
    if (m_shape.hasEndMarker) {
      records.append(8, '\xFF');
    }
    MemoryFiles files;
    files[m_shape.name] = headOf(m_metadata, m_rows.size(), m_shape) + records;
    for (std::size_t set = 0; set < m_sides.size(); ++set) {
      files[sideFileName(m_shape.name, static_cast<int>(set))] =
          std::string(asText(m_sides[set].bytes()));
    }
    return files;
  }

 private:
  void appendBlock(std::size_t first, std::vector<unsigned char>& descriptors) {
    const std::size_t end = std::min(first + m_shape.rowsInBlock, m_rows.size());
    std::vector<unsigned char> bytes(m_layout.width());
    DescriptorLayout::setRowCount(bytes.data(), static_cast<std::uint32_t>(end - first));
    int set = -1;
    std::size_t blockBegin = 0;
    for (std::size_t column = 0; column < m_metadata.columns.size(); ++column) {
      const GelColumn& described = m_metadata.columns[column];
      ByteBuffer& side = m_sides[static_cast<std::size_t>(described.columnSet)];
      if (described.columnSet != set) {
        set = described.columnSet;
        blockBegin = side.size();
        m_layout.setBlockLocation(bytes.data(), set, {blockBegin, false});
      }
      m_layout.setChunkPosition(bytes.data(), column,
                                static_cast<std::uint32_t>(side.size() - blockBegin));
      appendChunk(column, first, end, bytes.data(), side);
    }
    descriptors.insert(descriptors.end(), bytes.begin(), bytes.end());
  }

  void appendChunk(std::size_t column, std::size_t first, std::size_t end,
                   unsigned char* descriptor, ByteBuffer& side) {
    switch (m_metadata.columns[column].type) {
      case GelType::key:
        return appendKeys(column, first, end, descriptor, side);
      case GelType::number:
        return appendNumbers(column, first, end, descriptor, side);
      case GelType::text:
        return appendTexts(column, first, end, descriptor, side);
    }
  }

  void appendKeys(std::size_t column, std::size_t first, std::size_t end, unsigned char* descriptor,
                  ByteBuffer& side) {
    std::vector<std::uint32_t> keys;
    std::vector<std::uint32_t> present;
    for (std::size_t row = first; row < end; ++row) {
      const Value& value = m_rows[row][column];
      keys.push_back(value.isNull() ? kNoKey : static_cast<std::uint32_t>(*value.number()));
      if (keys.back() < kSmallestMissingKey) {
        present.push_back(keys.back());
      }
    }
    KeyStatistics statistics{.hasNull = present.size() < keys.size()};
    if (!present.empty()) {
      const auto [low, high] = std::minmax_element(present.begin(), present.end());
      statistics.low = *low;
      statistics.high = *high;
    }
    m_encoder.appendKeys(keys, m_metadata.columns[column].storage, side);
    m_layout.writeStatistics(descriptor, column, statistics);
  }

  void appendNumbers(std::size_t column, std::size_t first, std::size_t end,
                     unsigned char* descriptor, ByteBuffer& side) {
    std::vector<std::uint64_t> numbers;
    NumberStatistics statistics;
    for (std::size_t row = first; row < end; ++row) {
      const Value& value = m_rows[row][column];
      numbers.push_back(value.isNull() ? ~0ull : std::bit_cast<std::uint64_t>(*value.number()));
      statistics.hasNull |= value.isNull();
      if (!value.isNull() && std::isnan(*value.number())) {
        statistics.hasNotANumber = true;
      } else if (!value.isNull()) {
        const double number = *value.number();
        statistics.low = statistics.hasValues ? std::min(statistics.low, number) : number;
        statistics.high = statistics.hasValues ? std::max(statistics.high, number) : number;
        statistics.hasValues = true;
      }
    }
    m_encoder.appendNumbers(numbers, side);
    m_layout.writeStatistics(descriptor, column, statistics);
  }

  void appendTexts(std::size_t column, std::size_t first, std::size_t end,
                   unsigned char* descriptor, ByteBuffer& side) {
    std::vector<std::uint32_t> lengths;
    std::vector<std::string> texts;
    std::string bytes;
    for (std::size_t row = first; row < end; ++row) {
      const std::string* text = m_rows[row][column].text();
      lengths.push_back(text == nullptr ? kNullLength : static_cast<std::uint32_t>(text->size()));
      if (text != nullptr) {
        texts.push_back(*text);
        bytes += *text;
      }
    }
    TextStatistics statistics{.hasNull = texts.size() < lengths.size(), .low = {}, .high = {}};
    if (!texts.empty()) {
      const auto [low, high] = std::minmax_element(texts.begin(), texts.end());
      statistics.low = TextBound::of(*low);
      statistics.high = TextBound::of(*high);
    }
    m_encoder.appendTexts({lengths, asBytes(bytes)}, side);
    m_layout.writeStatistics(descriptor, column, statistics);
  }

  void appendRecord(std::vector<unsigned char>& descriptors, std::string& records) {
    if (!descriptors.empty()) {
      ByteBuffer record;
      encodeDescriptorRecord(descriptors, record);
      records += asText(record.bytes());
      descriptors.clear();
    }
  }

  const std::vector<Values>& m_rows;
  const FileShape& m_shape;
  MetadataBlock m_metadata;
  DescriptorLayout m_layout;
  std::vector<ByteBuffer> m_sides;
  ChunkEncoder m_encoder;
};

}  // namespace

OpenSource MemoryFiles::opener() const {
  return [this](const std::string& name) -> std::unique_ptr<ByteSource> {
    const auto file = m_files.find(name);
    return file == m_files.end() ? nullptr : std::make_unique<MemorySource>(file->second);
  };
}

void MemoryFiles::saveTo(const std::string& folder) const {
  for (const auto& [name, bytes] : m_files) {
    std::ofstream(folder + '/' + name, std::ios::binary) << bytes;
  }
}

std::string headOf(const MetadataBlock& metadata, std::uint64_t rows, const FileShape& shape) {
  std::vector<unsigned char> bytes;
  ByteWriter writer(bytes);
  FileHeader fields;
  fields.isComplete = shape.isComplete;
  fields.rowCount = shape.hasFinalHeader ? rows : 0;
  fields.columnCount = static_cast<std::uint32_t>(metadata.columns.size());
  writeRecord(writer, fields);
  writer.putZeros(kSlotSize * metadata.columns.size());
  writeMetadata(writer, metadata);
  storePacked(bytes.data() + kCompleteFlagOffset + 1,
              static_cast<std::uint32_t>(bytes.size() - kOpeningSize));
  return std::string(asText(bytes));
}

std::size_t firstRecord(const std::string& mainFile) {
  return loadPacked<std::uint32_t>(asBytes(mainFile).data() + kCompleteFlagOffset + 1) +
         kOpeningSize;
}

std::string sealedChunk(const std::string& stream) {
  const std::uint32_t sum = checksum(asBytes(stream));
  return std::string(reinterpret_cast<const char*>(&sum), sizeof sum) + stream;
}

MemoryFiles makeFile(const std::vector<MadeColumn>& columns, const std::vector<Values>& rows,
                     const FileShape& shape) {
  return FileMaker(columns, rows, shape).make();
}

}  // namespace kelvarin::testing
