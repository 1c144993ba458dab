// Makes chosen texts of one template from the values of its pieces, a batch at a time.
//
// Used by ShapedTexts.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "columnar/codecs/shaped_texts.h"
#include "columnar/codecs/template_batch.h"

namespace kelvarin {

// Texts of a template, by their indices among these.
struct TextIndices {
  std::array<std::uint32_t, TemplateBatch::kMaxRows> values;
  std::size_t count = 0;

  std::span<const std::uint32_t> all() const { return {values.data(), count}; }
};

class ChosenTexts {
 public:
  // The pieces outlive it. No more than `maxRows` are chosen at a time.
  ChosenTexts(const std::vector<PieceValues>& pieces, std::size_t maxRows);

  // What the texts take together, without their lengths.
  static std::uint64_t sizeOf(const std::vector<PieceValues>& pieces,
                              std::span<const std::uint32_t> indices);

  // These are printed next.
  void choose(std::span<const std::uint32_t> indices);
  // Prints the next one and returns its end. There is memory for its size.
  unsigned char* printNext(unsigned char* out) { return m_batch.print(m_next++, out, nullptr); }

 private:
  const std::vector<PieceValues>& m_pieces;
  TemplateBatch m_batch;
  std::size_t m_next = 0;
  std::vector<std::uint32_t> m_offsets;  // of texts in fields, field after field
};

}  // namespace kelvarin
