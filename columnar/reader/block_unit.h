// What a columnar file is read by: a block, a part of a large one, or several small ones.
//
// Made by block_units.h; the reading action takes its events in order.
// Threads: those of BatchUnit.
// Errors: events; never logs, never throws.
#pragma once

#include <vector>

#include "columnar/reader/block_decoding.h"
#include "columnar/reader/read_event.h"
#include "host/contract/batch_steps.h"
#include "host/contract/partial_source.h"

namespace kelvarin {

class BlockUnit final : public BatchUnit {
 public:
  // One of the batches of a block.
  struct Part {
    std::shared_ptr<BlockDecoding> block;
    std::size_t batch = 0;
  };

  // Of the blocks, only rows in this part of the table count.
  explicit BlockUnit(std::shared_ptr<const TablePart> part = std::make_shared<const TablePart>())
      : m_part(std::move(part)) {}

  void add(Part part);
  // Rows whose descriptors are lost.
  void add(const ReadEvent& damage) { m_items.push_back({{}, damage}); }
  // Small blocks come together, since passing a unit on costs more than reading one.
  bool isFull() const;
  bool isEmpty() const { return m_items.empty(); }

  void parse() override;
  std::size_t byteCount() const override { return m_byteCount; }
  std::int64_t expectedRow() const override { return m_expectedRow; }
  // After parse(). Rows between two damages are one event.
  std::vector<ReadEvent>& events() { return m_events; }

 private:
  // A part, or a damage where it has no block.
  struct Item {
    Part part;
    ReadEvent damage;
  };
  class Rows;

  ReadEvent eventOf(const Part& part) const;
  void keepRowsOfPart(ReadEvent& rows) const;
  void parseItems();

  const std::shared_ptr<const TablePart> m_part;
  std::vector<Item> m_items;
  std::size_t m_byteCount = 0;
  std::uint64_t m_firstRow = 0;
  std::int64_t m_expectedRow = -1;
  std::uint64_t m_rowCount = 0;
  std::uint64_t m_valueCount = 0;
  std::vector<ReadEvent> m_events;
};

}  // namespace kelvarin
