// A text in another encoding, as UTF-8.
//
// What is no character becomes bytes that are no UTF-8, so that whoever looks at the text finds it
// where it stands.
#pragma once

#include <string>
#include <string_view>

#include "host/tables/text_input/byte_stream.h"
#include "host/tables/text_input/text_encoding.h"

namespace kelvarin {

class RecodedStream final : public ByteStream {
 public:
  // `source` outlives it. `encoding` is neither UTF-8 nor UTF-16 of an unknown order.
  RecodedStream(ByteStream& source, TextEncoding encoding);

  Result<Piece, QString> readNext(char* bytes, std::size_t size, std::size_t atLeast) override;

 private:
  void recode(std::string_view raw);
  char* recodeBytes(std::string_view raw, char* target) const;
  char* recodeUnits(std::string_view raw, char* target);
  char* putUnit(unsigned unit, char* target);
  void finish();

  ByteStream& m_source;
  TextEncoding m_encoding;
  std::string m_raw;
  std::size_t m_rawKept = 0;  // the first byte of a unit whose second one follows
  unsigned m_firstHalf = 0;   // of a character of two units; 0: none
  std::string m_text;
  std::size_t m_textSize = 0;
  std::size_t m_textUsed = 0;
  bool m_isSourceRead = false;
};

}  // namespace kelvarin
