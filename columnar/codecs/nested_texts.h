// Encoded texts inside other encoded texts: those of a field, of a dictionary, and those of no
// shape.
//
// Their size stands before them. Which encodings may be inside which is limited, so that reading
// never goes deeper than a few levels.
// Layout: docs/gel-format.md, "Nested texts".
// Errors: a read returns false where the bytes are damaged.
#pragma once

#include "columnar/codecs/text_encoding.h"

namespace kelvarin {

// Where encoded texts stand.
enum class TextLevel : std::uint8_t {
  chunk,           // the texts of a chunk
  entries,         // the entries of a chunk's dictionary
  field,           // a field of shaped texts, or those of no shape
  entriesOfField,  // the entries of a dictionary of these
};

bool isAllowedAt(TextEncoding encoding, TextLevel level);

// `bytes` begin with the encoding byte and end with the texts.
[[nodiscard]] bool decodeTextsAt(Bytes bytes, std::size_t count, TextLevel level, TextForm form,
                                 DecodedTexts& texts);
// The same with the size before the encoding byte.
[[nodiscard]] bool readNestedTexts(ByteReader& reader, std::size_t count, TextLevel level,
                                   DecodedTexts& texts);

}  // namespace kelvarin
