#include "columnar/codecs/front_coded_texts.h"

#include <algorithm>
#include <optional>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace kelvarin {

namespace {

using Texts = std::vector<std::optional<std::string>>;

// Nothing where texts are not stored so.
std::string coded(const Texts& texts) {
  std::vector<std::uint32_t> lengths;
  std::vector<unsigned char> bytes;
  for (const auto& text : texts) {
    lengths.push_back(text ? static_cast<std::uint32_t>(text->size()) : kNullLength);
    const std::string content = text.value_or("");
    bytes.insert(bytes.end(), content.begin(), content.end());
  }
  ByteBuffer out;
  return FrontCodedEncoder().appendCoded({lengths, bytes}, out) ? std::string(asText(out.bytes()))
                                                                : "";
}

// Nothing where the bytes are refused.
std::optional<Texts> decoded(const std::string& bytes, std::size_t count) {
  // A copy, so that a sanitizer sees what reads beyond.
  const std::vector<unsigned char> copy(bytes.begin(), bytes.end());
  ByteReader reader(copy);
  DecodedTexts decoded;
  if (!decodeCodedEntries(reader, count, decoded)) {
    return std::nullopt;
  }
  Texts texts;
  for (std::size_t i = 0; i < count; ++i) {
    const auto length = loadPacked<std::uint32_t>(decoded.text(i));
    texts.push_back(length == kNullLength
                        ? std::nullopt
                        : std::optional(std::string(asText({decoded.text(i) + 4, length}))));
  }
  return texts;
}

Texts randomEntries(std::mt19937_64& random) {
  Texts texts;
  const std::uint64_t letters = 1 + random() % 256;
  const std::uint64_t longest = std::uint64_t{1} << random() % 10;
  for (std::size_t i = 1 + random() % 300; i > 0; --i) {
    std::string text(random() % longest, '\0');
    std::ranges::generate(text, [&] { return static_cast<char>(random() % letters); });
    texts.push_back(std::move(text));
  }
  std::ranges::sort(texts);
  if (random() % 2 == 0) {
    texts.insert(texts.begin(), std::nullopt);
  }
  return texts;
}

}  // namespace

TEST(CodedEntries, EveryTextComesBack) {
  for (std::uint64_t seed = 0; seed < 200; ++seed) {
    std::mt19937_64 random(seed);
    const Texts texts = randomEntries(random);
    ASSERT_EQ(decoded(coded(texts), texts.size()), texts) << "seed " << seed;
  }
  const Texts alike(300, std::string(4000, 'x'));
  EXPECT_EQ(decoded(coded(alike), alike.size()), alike);
  EXPECT_EQ(coded({"a", std::string(5000, 'x')}), "") << "one text is too long";
}

TEST(CodedEntries, DamageIsRefusedOrChangesTextsOnly) {
  for (std::uint64_t seed = 0; seed < 30; ++seed) {
    std::mt19937_64 random(seed);
    const Texts texts = randomEntries(random);
    const std::string sound = coded(texts);
    for (std::size_t i = 0; i < sound.size(); i += 1 + sound.size() / 300) {
      std::string forged = sound;
      forged[i] = static_cast<char>(forged[i] ^ (1 << random() % 8));
      (void)decoded(forged, texts.size());
      EXPECT_FALSE(decoded(sound.substr(0, i), texts.size())) << i;
    }
    EXPECT_FALSE(decoded(sound + "x", texts.size()));
  }
}

// The single symbols of three streams claim 65536 texts of 255 bytes and more.
TEST(CodedEntries, FewBytesClaimNoMuchMemory) {
  Texts claimed(2, std::string(4000, 'y'));
  const std::string bytes = coded(claimed);
  EXPECT_EQ(decoded(bytes, 2), claimed);
  EXPECT_FALSE(decoded(std::string("\x00\x80\xFF\x8F\x79\x80", 6), 65536));
}

}  // namespace kelvarin
