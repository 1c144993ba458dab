// What the earlier blocks of a column have shown about its texts, so that it need not be found out
// again in every block: which encoding is the smallest, which templates the texts follow.
//
// The blocks of a column are encoded in their order, whatever the number of threads, so the bytes
// of a block follow from the column's texts up to its end and from nothing else.
// Used by TextEncoder, one object a column, and inside it one for each field of shaped texts.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "columnar/codecs/integer_history.h"
#include "columnar/codecs/string_pool.h"
#include "columnar/codecs/text_encoding.h"
#include "columnar/codecs/text_template.h"
#include "columnar/codecs/trained_symbols.h"

namespace kelvarin {

// Which encoding won when all were compared, for the blocks that take it without comparing.
class EncodingChoice {
 public:
  // The encoding that the next block takes unseen; nothing when it is time to compare.
  std::optional<TextEncoding> trusted() const {
    return m_blocksLeft > 0 ? std::optional(m_encoding) : std::nullopt;
  }
  // All encodings have been compared, and `size` is that of the winner for so many bytes of texts.
  void setCompared(TextEncoding encoding, std::size_t size, std::size_t texts) {
    const bool isSame = m_trust > 0 && encoding == m_encoding;
    const bool isSlow = encoding != TextEncoding::plain && encoding != TextEncoding::dictionary;
    const int maxTrust = isSlow ? kMaxTrustOfSlow : kMaxTrust;
    m_trust = isSame ? std::min(4 * m_trust + 3, maxTrust) : kMinTrust;
    m_blocksLeft = m_trust;
    m_encoding = encoding;
    m_size = static_cast<double>(size) / static_cast<double>(texts + 1);
  }
  // A block took the trusted encoding. Where it takes clearly more, the next block compares.
  void setUsed(std::size_t size, std::size_t texts) {
    constexpr double kClearlyMore = 1.03;
    const bool isLarger =
        static_cast<double>(size) > kClearlyMore * m_size * static_cast<double>(texts + 1);
    m_blocksLeft = isLarger ? 0 : m_blocksLeft - 1;
  }

 private:
  static constexpr int kMinTrust = 3;  // blocks
  static constexpr int kMaxTrust = 15;
  static constexpr int kMaxTrustOfSlow = 63;

  TextEncoding m_encoding = TextEncoding::plain;
  int m_trust = 0;
  int m_blocksLeft = 0;
  double m_size = 0;  // per byte of texts
};

struct TextHistory {
  EncodingChoice choice;
  StringPool pool;
  IntegerHistory integers;  // of a field that is none of texts
  TrainedSymbols symbols;
  // Of shaped texts, from the last block where they were inferred.
  std::vector<TextTemplate> templates;
  double maxOthers = 0;  // that followed none of them, a part of 1
  // Of the texts inside these.
  std::vector<TextHistory> fields;  // template after template
  std::unique_ptr<TextHistory> others;
  std::unique_ptr<TextHistory> entries;  // of a dictionary

  static TextHistory& of(std::unique_ptr<TextHistory>& inner) {
    if (!inner) {
      inner = std::make_unique<TextHistory>();
    }
    return *inner;
  }
};

}  // namespace kelvarin
