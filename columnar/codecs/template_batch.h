// Prints the texts of one template, a batch of rows at a time.
//
// A text is put together from a few parts that are copied as whole words: pieces that take the same
// bytes in every row, fields of fixed widths with what stands around them, one number of varying
// width with what stands around it, or a text with what follows it. The numbers of a field are
// printed for all rows of the batch by a loop that does nothing else.
// Used wherever texts with a shape are made.
// Errors: print() returns nullptr where a text of a field does not fit.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "columnar/codecs/piece_printer.h"
#include "columnar/codecs/text_encoding.h"
#include "columnar/codecs/text_limits.h"

namespace kelvarin {

class TemplateBatch {
 public:
  static constexpr std::size_t kMaxRows = 128;
  // Printing may touch so many bytes behind the end of a text.
  static constexpr std::size_t kOverrun = 64;

  // The pieces, in their order.
  void addFixed(std::string_view bytes);
  // No number is larger than that one. The printer outlives the batch.
  void addNumbers(const PiecePrinter& printer, std::uint64_t largest);
  // These are stored in `bytes`, with kTextMargin bytes behind them.
  void addTexts(const unsigned char* bytes);
  // All pieces are there; no batch has more rows.
  void finish(std::size_t maxRows);

  // What a text takes at most, and what printing may touch behind it; long texts of fields, whose
  // sizes are checked, are left out.
  std::size_t longestText() const { return m_longestText; }

  // The values of a field in a batch. Fields count from 0, and get them in their order.
  void setNumbers(std::size_t field, std::span<const std::uint64_t> numbers);
  // `step` is 0 where all rows have the same offset.
  void setTexts(std::size_t field, const std::uint32_t* offsets, std::size_t step);

  // Prints the text of a row, at most to `end` and longestText() bytes behind it. Returns its end.
  // Null stands for an end that is known to be far enough.
  unsigned char* print(std::size_t row, unsigned char* out, const unsigned char* end) const {
    for (const Part& part : m_parts) {
      if (part.offsets != nullptr) {
        out = copyText(part.bytes + part.offsets[row * part.step], out, end);
        if (out == nullptr) {
          return nullptr;
        }
        std::memcpy(out, part.behind.data(), part.behind.size());
        out += part.size;
        continue;
      }
      const unsigned char* from = part.bytes + row * part.step;
      copyWords(from, part.copied, out);
      out += part.sizes == nullptr ? part.size : part.sizes[row];
    }
    return out;
  }

 private:
  enum class PartKind { run, number, texts };

  // What is copied at once.
  struct Part {
    PartKind kind = PartKind::run;
    const unsigned char* bytes = nullptr;    // of the first row, or those of all texts
    std::size_t step = 0;                    // from row to row in the bytes, or in the offsets
    const std::uint32_t* offsets = nullptr;  // of texts
    const std::uint8_t* sizes = nullptr;     // of each row; null where all are the same
    std::size_t size = 0;                    // of what follows a text where it is one
    std::size_t copied = 0;                  // bytes, or more where they end inside a word
    PieceCells::Word behind{};

    // While pieces are added.
    std::string fixed;        // of a run with zeros for its fields, or what stands around a field
    std::size_t before = 0;   // of these bytes
    std::size_t touched = 0;  // by printing
  };
  // Where a field is printed.
  struct Field {
    const PiecePrinter* printer = nullptr;
    std::size_t part = 0;
    std::size_t offset = 0;  // in the part
    PieceCells cells;
  };

  static constexpr std::size_t kShortText = kTextMargin;

  static unsigned char* copyText(const unsigned char* text, unsigned char* out,
                                 const unsigned char* end) {
    const auto size = loadPacked<std::uint32_t>(text);
    text += kLengthSize;
    if (size <= kShortText) [[likely]] {
      std::memcpy(out, text, kShortText);
      return out + size;
    }
    if (end != nullptr && (out > end || size > static_cast<std::size_t>(end - out))) {
      return nullptr;
    }
    std::memcpy(out, text, size);
    return out + size;
  }

  // Copies whole words, up to 15 bytes behind the end of either.
  static void copyWords(const unsigned char* from, std::size_t size, unsigned char* out) {
    constexpr std::size_t kWord = sizeof(PieceCells::Word);
    std::memcpy(out, from, kWord);
    for (std::size_t i = kWord; i < size; i += kWord) {
      std::memcpy(out + i, from + i, kWord);
    }
  }

  Part& openRun(std::size_t size);
  Part& openNumber();
  unsigned char* makeRun(Part& part, std::size_t maxRows);
  unsigned char* makeNumbers(Part& part, std::size_t maxRows);

  std::vector<Part> m_parts;
  std::vector<Field> m_fields;
  std::vector<std::vector<unsigned char>> m_cells;  // what is printed of parts
  std::vector<std::vector<std::uint8_t>> m_sizes;
  std::size_t m_longestText = 0;
};

}  // namespace kelvarin
