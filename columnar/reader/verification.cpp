#include "columnar/reader/verification.h"

#include <algorithm>

#include "columnar/reader/chunk_reader.h"
#include "columnar/reader/stored_statistics.h"

namespace kelvarin {

namespace {

class Verifier {
 public:
  Verifier(const GelFile& file, const std::function<void(const GelDamage&)>& report,
           const std::function<void(std::uint64_t)>& progress,
           const std::function<bool()>& isStopped)
      : m_file(file),
        m_report(report),
        m_progress(progress),
        m_isStopped(isStopped),
        m_scan(file) {}

  GelVerification run() {
    openReaders();
    while (!m_isStopped || !m_isStopped()) {
      BlockInfo block;
      switch (m_scan.next(block)) {
        case BlockScan::Step::block:
          checkBlock(block);
          break;
        case BlockScan::Step::corrupted:
          reportLostRows();
          break;
        case BlockScan::Step::truncated:
          report({.kind = GelDamage::Kind::mainFileCut,
                  .file = m_file.path(),
                  .offset = m_scan.damageOffset(),
                  .block = m_result.blocks,
                  .firstRow = m_scan.lostFirstRow(),
                  .lastRow = std::max(m_file.rowCount(), m_scan.lostFirstRow() + 1) - 1,
                  .column = {}});
          return m_result;
        case BlockScan::Step::end:
          return m_result;
      }
    }
    return m_result;
  }

 private:
  // One reader a set, so that a missing side file does not affect other sets.
  struct Reader {
    std::unique_ptr<ChunkReader> chunks;
    std::vector<std::size_t> columns;
    std::string path;
    bool isCut = false;  // reported already, with the first missing chunk
  };

  void openReaders() {
    std::size_t column = 0;
    for (int set = 0; set < m_file.columnSetCount(); ++set) {
      Reader reader;
      for (; column < m_file.columns().size() && m_file.column(column).columnSet == set; ++column) {
        reader.columns.push_back(column);
      }
      reader.path = m_file.sidePath(set);
      auto chunks = ChunkReader::open(m_file, reader.columns);
      if (!chunks) {
        report({.kind = GelDamage::Kind::sideFileMissing, .file = reader.path, .column = {}});
        continue;
      }
      reader.chunks = std::move(*chunks);
      m_readers.push_back(std::move(reader));
    }
  }

  void checkBlock(const BlockInfo& block) {
    for (Reader& reader : m_readers) {
      const FetchedBlock fetched = reader.chunks->fetch(block);
      for (const FetchedBlock::Chunk& chunk : fetched.chunks) {
        checkChunk(reader, chunk, fetched);
      }
    }
    m_result.blocks = block.index + 1;
    m_result.rows += block.rowCount;
    if (m_progress) {
      m_progress(block.lastRow() + 1);
    }
  }

  ReadStatus decode(const FetchedBlock::Chunk& chunk, std::uint32_t rows) {
    return chunk.status == ReadStatus::ok
               ? decodeColumn(m_decoder, m_file.column(chunk.column), chunk.bytes, rows, m_values)
               : chunk.status;
  }

  void checkChunk(Reader& reader, const FetchedBlock::Chunk& chunk, const FetchedBlock& block) {
    const ReadStatus status = decode(chunk, block.rowCount);
    GelDamage damage{.file = reader.path,
                     .offset = chunk.offset,
                     .block = block.index,
                     .firstRow = block.firstRow,
                     .lastRow = block.lastRow(),
                     .column = m_file.column(chunk.column).name,
                     .encoding = chunk.status == ReadStatus::ok ? m_decoder.unknownEncoding() : -1,
                     .cause = status};
    if (status == ReadStatus::truncated) {
      damage.kind = GelDamage::Kind::sideFileCut;
      if (!reader.isCut) {
        report(damage);
      }
      reader.isCut = true;
      return;
    }
    if (status != ReadStatus::ok) {
      damage.kind = damage.encoding < 0 ? GelDamage::Kind::chunk : GelDamage::Kind::unknownEncoding;
      report(damage);
      return;
    }
    ++m_result.chunks;
    if (!matchesStatistics(m_file, block.descriptor.data(), chunk.column, m_values)) {
      damage.kind = GelDamage::Kind::statistics;
      report(damage);
    }
  }

  void reportLostRows() {
    const bool isRecord = !m_scan.isRowCountWrong();
    report({.kind = isRecord ? GelDamage::Kind::record : GelDamage::Kind::rowCount,
            .file = m_file.path(),
            .offset = isRecord ? m_scan.damageOffset() : kOpeningSize,
            .block = m_scan.lostFirstRow() / m_file.rowsInBlock(),
            .firstRow = m_scan.lostFirstRow(),
            .lastRow = m_scan.lostLastRow(),
            .column = {},
            .cause = m_scan.damage()});
  }

  void report(const GelDamage& damage) {
    ++m_result.damages;
    m_report(damage);
  }

  const GelFile& m_file;
  const std::function<void(const GelDamage&)>& m_report;
  const std::function<void(std::uint64_t)>& m_progress;
  const std::function<bool()>& m_isStopped;
  BlockScan m_scan;
  std::vector<Reader> m_readers;
  ChunkDecoder m_decoder;
  DecodedColumn m_values;
  GelVerification m_result;
};

}  // namespace

GelVerification verifyGelFile(const GelFile& file,
                              const std::function<void(const GelDamage&)>& report,
                              const std::function<void(std::uint64_t)>& progress,
                              const std::function<bool()>& isStopped) {
  return Verifier(file, report, progress, isStopped).run();
}

}  // namespace kelvarin
