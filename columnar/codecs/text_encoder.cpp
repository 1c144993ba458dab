#include "columnar/codecs/text_encoder.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>

#include "columnar/codecs/code_array.h"
#include "columnar/codecs/shaped_text_encoder.h"
#include "columnar/codecs/short_number.h"
#include "columnar/codecs/snappy_stream.h"
#include "columnar/codecs/stored_lengths.h"
#include "columnar/codecs/text_limits.h"

namespace kelvarin {

namespace {

// Codes of less than a byte take a byte each where that compresses better.
CodeWidth widthOf(std::span<const std::uint16_t> codes, std::size_t entries,
                  std::vector<std::uint8_t>& bytes) {
  constexpr CodeWidth kByte{1, 0};
  const CodeWidth width = *codeWidthFor(entries - 1);
  if (width.bits() == 0 || width.lowBytes > 0) {
    return width;
  }
  bytes.assign(codes.begin(), codes.end());
  return doesCompressBelow(bytes, width.bits()) ? kByte : width;
}

void appendCodes(std::span<const std::uint16_t> codes, CodeWidth width, ByteBuffer& out) {
  const StoredCodes stored(out.append(codesSize(codes.size(), width)), codes.size(), width);
  std::uint32_t batch[kRowsInBatch];
  for (std::size_t first = 0; first < codes.size(); first += kRowsInBatch) {
    const auto part = codes.subspan(first, std::min(kRowsInBatch, codes.size() - first));
    std::copy(part.begin(), part.end(), batch);
    stored.store(first, {batch, part.size()});
  }
}

// Whether nearly all bytes are equally frequent and nothing repeats, as in encoded keys: then
// nothing makes them much smaller.
bool isRandom(Bytes bytes) {
  constexpr std::size_t kTrialSize = 4096;
  constexpr double kManyBits = 5.9;  // a byte; letters have about 4.5
  const Bytes trial = bytes.subspan(bytes.size() / 2).first(std::min(bytes.size() / 2, kTrialSize));
  std::array<std::uint32_t, 256> counts{};
  for (const unsigned char byte : trial) {
    ++counts[byte];
  }
  double bits = 0;
  for (const std::uint32_t count : counts) {
    bits -= count == 0 ? 0 : count * std::log2(count / static_cast<double>(trial.size()));
  }
  return bits > kManyBits * static_cast<double>(trial.size()) && !doesCompressBelow(trial, 7);
}

}  // namespace

TextEncoder::TextEncoder() = default;
TextEncoder::~TextEncoder() = default;
TextEncoder::TextEncoder(TextEncoder&&) noexcept = default;
TextEncoder& TextEncoder::operator=(TextEncoder&&) noexcept = default;

void TextEncoder::append(const TextValues& texts, TextHistory& history, ByteBuffer& out) {
  appendAt(texts, history, TextLevel::chunk, out);
}

void TextEncoder::appendNested(const TextValues& texts, TextLevel level, TextHistory& history,
                               ByteBuffer& out) {
  ByteBuffer encoded;
  appendAt(texts, history, level, encoded);
  appendShortNumber(encoded.size(), out);
  out.append(encoded.bytes());
}

void TextEncoder::appendAt(const TextValues& texts, TextHistory& history, TextLevel level,
                           ByteBuffer& out) {
  m_dictionary.clear();
  const auto trusted = history.choice.trusted();
  if (trusted && encodeAs(*trusted, texts, history, level)) {
    out.append(m_candidate.bytes());
    history.choice.setUsed(m_candidate.size(), texts.bytes.size());
    return;
  }
  compare(texts, history, level);
  out.append(m_best.bytes());
  history.choice.setCompared(static_cast<TextEncoding>(m_best.data()[0]), m_best.size(),
                             texts.bytes.size());
}

bool TextEncoder::encodeAs(TextEncoding encoding, const TextValues& texts, TextHistory& history,
                           TextLevel level) {
  switch (encoding) {
    case TextEncoding::plain:
      encodePlain(texts);
      return true;
    case TextEncoding::dictionary:
      if (!findEntries(texts, history, kMaxShareOfTrial)) {
        return false;
      }
      encodeDictionary();
      return true;
    case TextEncoding::shaped:
      beginCandidate(TextEncoding::shaped);
      return shapes().appendAsBefore(texts, history, m_candidate);
    case TextEncoding::symbols:
      return encodeSymbols(texts, history);
    case TextEncoding::encodedDictionary:
      return findEntries(texts, history, kMaxShareOfTrial) &&
             encodeEncodedDictionary(history, level);
    case TextEncoding::frontCoded:
      encodeFrontCoded(texts);
      return true;
    case TextEncoding::codedEntries:
      return encodeCodedEntries(texts);
  }
  return false;
}

void TextEncoder::compare(const TextValues& texts, TextHistory& history, TextLevel level) {
  const TextSample sample(texts);
  m_best.clear();
  m_bestSize = kUnknownSize;
  m_dictionary.clear();
  if (isAllowedAt(TextEncoding::frontCoded, level)) {
    encodeFrontCoded(texts);
    consider();
    if (encodeCodedEntries(texts)) {
      consider(kPercentOfSlower);
    }
  }
  const bool doesRepeat = sample.doesRepeat() && isAllowedAt(TextEncoding::dictionary, level);
  if (!doesRepeat) {
    considerShapes(texts, sample, history, level);
  }
  if (!sample.doesHardlyRepeat()) {
    considerDictionaries(texts, history, level);
  }
  if (doesRepeat && m_best.isEmpty()) {
    considerShapes(texts, sample, history, level);
  }
  if (m_best.isEmpty() || isPlainSmaller(texts)) {
    encodePlain(texts);
    std::swap(m_best, m_candidate);
    m_bestSize = kUnknownSize;
  }
  considerSymbols(texts, history);
}

void TextEncoder::beginCandidate(TextEncoding encoding) {
  m_candidate.clear();
  m_candidate.put(static_cast<std::uint8_t>(encoding));
}

// Takes the candidate when its compressed size is smaller than that of the others in this
// proportion.
void TextEncoder::consider(std::size_t percent) {
  if (!m_best.isEmpty()) {
    const std::size_t best = sizeOfBest();
    const std::size_t size = compressedSize(m_candidate.bytes(), m_scratch);
    if (size * 100 >= best * percent) {
      return;
    }
    m_bestSize = size;
  }
  std::swap(m_best, m_candidate);
}

// What indices and entries take at least, whatever their form.
std::size_t TextEncoder::leastSizeOfDictionary() const {
  const std::size_t entries = m_dictionary.entries().size();
  const std::size_t indices = std::bit_width(entries - 1) * m_dictionary.codes().size();
  return indices / 8 + entries;
}

// In proportion to the best encoding so far. Texts that are some times in a block are read and
// written several times as fast by their indices as by their shape.
std::size_t TextEncoder::maxPercentOfDictionary() const {
  const bool areShaped =
      !m_best.isEmpty() && m_best.data()[0] == static_cast<std::uint8_t>(TextEncoding::shaped);
  const bool areFrequent = m_dictionary.entries().size() * 5 <= m_dictionary.codes().size() * 2;
  return areShaped && areFrequent ? kPercentOfMuchFaster : kPercentOfFaster;
}

bool TextEncoder::findEntries(const TextValues& texts, TextHistory& history,
                              std::size_t maxShareOfTrial) {
  if (!m_dictionary.fill(texts, history.pool, maxShareOfTrial)) {
    return false;
  }
  m_entries.clear();
  for (const TextDictionary::Entry& entry : m_dictionary.entries()) {
    m_entries.add(entry.bytes, entry.length);
  }
  return true;
}

void TextEncoder::considerDictionaries(const TextValues& texts, TextHistory& history,
                                       TextLevel level) {
  if (!isAllowedAt(TextEncoding::dictionary, level) ||
      !findEntries(texts, history, kMaxShareOfTrial)) {
    return;
  }
  const std::size_t percent = maxPercentOfDictionary();
  if (!m_best.isEmpty() && leastSizeOfDictionary() * 100 >= m_best.size() * percent) {
    return;
  }
  encodeDictionary();
  consider(percent);
  const bool isTaken = m_best.data()[0] == static_cast<std::uint8_t>(TextEncoding::dictionary);
  if (encodeEncodedDictionary(history, level)) {
    consider(isTaken ? kPercentOfSlower : percent);
  }
}

// The entries are those of the last findEntries().
void TextEncoder::encodeDictionary() {
  const CodeWidth width = widthOf(m_dictionary.codes(), m_entries.size(), m_bytes);
  beginCandidate(TextEncoding::dictionary);
  m_candidate.put(static_cast<std::uint16_t>(m_entries.size() - 1));
  m_candidate.put(static_cast<std::uint8_t>(width.bits()));
  appendCodes(m_dictionary.codes(), width, m_candidate);
  m_frontCoded.append(m_entries.values(), m_candidate);
}

// The same entries, as nested texts.
bool TextEncoder::encodeEncodedDictionary(TextHistory& history, TextLevel level) {
  constexpr std::size_t kMinRows = 64;
  const auto codes = m_dictionary.codes();
  if (codes.size() < kMinRows || m_entries.size() < 2) {
    return false;
  }
  beginCandidate(TextEncoding::encodedDictionary);
  m_candidate.put(static_cast<std::uint32_t>(codes.size()));
  m_candidate.put(static_cast<std::uint16_t>(m_entries.size() - 1));
  m_numbers.assign(codes.begin(), codes.end());
  m_integers.append(m_numbers, m_candidate);
  if (!m_nested) {
    m_nested = std::make_unique<TextEncoder>();
  }
  m_nested->appendNested(m_entries.values(),
                         level == TextLevel::chunk ? TextLevel::entries : TextLevel::entriesOfField,
                         TextHistory::of(history.entries), m_candidate);
  return codes.size() * sizeof(std::uint32_t) <= maxDecodedSize(m_candidate.size() - 1);
}

void TextEncoder::encodeFrontCoded(const TextValues& texts) {
  beginCandidate(TextEncoding::frontCoded);
  m_frontCoded.append(texts, m_candidate);
}

bool TextEncoder::encodeCodedEntries(const TextValues& texts) {
  beginCandidate(TextEncoding::codedEntries);
  return m_frontCoded.appendCoded(texts, m_candidate);
}

ShapedTextEncoder& TextEncoder::shapes() {
  if (!m_shapes) {
    m_shapes = std::make_unique<ShapedTextEncoder>();
  }
  return *m_shapes;
}

void TextEncoder::considerShapes(const TextValues& texts, const TextSample& sample,
                                 TextHistory& history, TextLevel level) {
  constexpr std::size_t kMinTexts = 24;
  if (!isAllowedAt(TextEncoding::shaped, level) || texts.lengths.size() < kMinTexts) {
    return;
  }
  beginCandidate(TextEncoding::shaped);
  if (shapes().append(texts, sample.texts(), history, m_candidate)) {
    consider(kPercentOfSlower);
  }
}

// Whether the texts as they are would compress to less than the best encoding, judged by the first
// ones: compressing all of them would take long.
bool TextEncoder::isPlainSmaller(const TextValues& texts) {
  constexpr std::size_t kTrialSize = 1 << 13;
  // Snappy hardly gains more where texts do not repeat.
  constexpr std::size_t kMaxGain = 4;
  if (m_best.size() * kMaxGain <= texts.bytes.size() || !m_dictionary.entries().empty()) {
    return false;
  }
  const Bytes trial = texts.bytes.first(std::min(texts.bytes.size(), kTrialSize));
  const std::size_t size = compressedSize(trial, m_scratch) * texts.bytes.size() /
                           std::max<std::size_t>(trial.size(), 1);
  return size < m_best.size();
}

void TextEncoder::encodePlain(const TextValues& texts) {
  beginCandidate(TextEncoding::plain);
  appendLengths(texts.lengths, m_candidate);
  m_candidate.append(texts.bytes);
}

std::size_t TextEncoder::sizeOfBest() {
  if (m_bestSize == kUnknownSize) {
    m_bestSize = compressedSize(m_best.bytes(), m_scratch);
  }
  return m_bestSize;
}

// Judged by the last bytes, since compressing all of them would take long.
bool TextEncoder::isClearlyBelowBest(std::size_t size) {
  constexpr std::size_t kTrialSize = 1 << 14;
  constexpr std::size_t kClearPercent = 70;
  const Bytes best = m_best.bytes();
  if (m_bestSize != kUnknownSize || best.size() < 2 * kTrialSize) {
    return false;
  }
  const Bytes trial = best.last(kTrialSize);
  return size * 100 < compressedSize(trial, m_scratch) * (best.size() / kTrialSize) * kClearPercent;
}

bool TextEncoder::encodeSymbols(const TextValues& texts, TextHistory& history) {
  if (m_symbols.fit(texts, history.symbols) == 0) {
    return false;
  }
  beginCandidate(TextEncoding::symbols);
  m_symbols.append(m_candidate);
  return true;
}

// Free texts, and what no other encoding makes small. Shapes have fields that take symbols
// themselves.
void TextEncoder::considerSymbols(const TextValues& texts, TextHistory& history) {
  history.symbols.forget();
  constexpr std::size_t kMinBytes = 16384;
  // Symbols hardly take less than this share of the texts.
  constexpr std::size_t kMaxGain = 4;
  const bool areShaped = m_best.data()[0] == static_cast<std::uint8_t>(TextEncoding::shaped);
  const std::size_t entries = m_dictionary.entries().size();
  const bool areFew = entries > 0 && entries * 2 <= texts.lengths.size();
  if (areShaped || areFew || texts.bytes.size() < kMinBytes ||
      m_best.size() * kMaxGain < texts.bytes.size() || isRandom(texts.bytes) ||
      !encodeSymbols(texts, history)) {
    return;
  }
  const std::size_t size = m_candidate.size();
  if (isClearlyBelowBest(size) || size * 100 < sizeOfBest() * kPercentOfSlower) {
    std::swap(m_best, m_candidate);
  }
}

}  // namespace kelvarin
