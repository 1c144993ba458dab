// Reads texts that were stored as templates and the columns of their fields.
//
// Used by the decoder of texts.
// Layout: docs/gel-format.md, "Shaped texts".
#pragma once

#include "columnar/codecs/text_encoding.h"

namespace kelvarin {

// `reader` is behind the encoding byte. False where the bytes are damaged or there are other than
// `count` texts.
[[nodiscard]] bool decodeShapedTexts(ByteReader& reader, std::size_t count, TextForm form,
                                     DecodedTexts& texts);

}  // namespace kelvarin
