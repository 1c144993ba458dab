#include "host/tables/text_input/text_input.h"

#include "host/tables/text_input/recoded_stream.h"
#include "host/tables/text_input/uncompressed_stream.h"

namespace kelvarin {

namespace {

bool isUtf16(TextEncoding encoding) {
  return encoding == TextEncoding::utf16Little || encoding == TextEncoding::utf16Big;
}

}  // namespace

Status<QString> TextInput::open(const QString& path, std::optional<TextEncoding> encoding,
                                IsStopped isStopped) {
  m_path = path;
  if (const auto status = m_file.open(path, std::move(isStopped)); !status) {
    return status;
  }
  m_stages.push_back(std::make_unique<PeekedStream>(m_file));
  const Result<std::string_view, QString> first = signature();
  if (!first) {
    return Failure{first.error()};
  }
  if (auto decompressor = decompressorOf(*first)) {
    add(std::make_unique<UncompressedStream>(*m_stages.back(), std::move(decompressor), path));
  }
  m_encoding = encoding.value_or(TextEncoding::utf8);
  if (!encoding || *encoding == TextEncoding::utf16) {
    const Result<std::string_view, QString> text = start();
    if (!text) {
      return Failure{text.error()};
    }
    const TextEncoding found = encodingOfStart(*text, isStartWhole());
    m_encoding = !encoding || isUtf16(found) ? found : TextEncoding::utf16Little;
  }
  if (m_encoding != TextEncoding::utf8) {
    add(std::make_unique<RecodedStream>(*m_stages.back(), m_encoding));
  }
  return Done{};
}

// What files of other formats and byte order marks are known by. No such file has a line so soon.
Result<std::string_view, QString> TextInput::signature() {
  constexpr std::size_t kSignature = 16;
  return m_stages.back()->peekUntilPause(kSignature, 1);
}

Result<std::string_view, QString> TextInput::look(std::size_t size, long long lines) {
  if (canOpenAgain()) {
    return m_stages.back()->peek(size);
  }
  constexpr int kPauseMilliseconds = 200;
  m_file.file().setPatience(kPauseMilliseconds);
  Result<std::string_view, QString> text = m_stages.back()->peekUntilPause(size, lines);
  m_file.file().setPatience(InputFile::kUsualPatience);
  return text;
}

void TextInput::add(std::unique_ptr<ByteStream> stage) {
  m_conversions.push_back(std::move(stage));
  m_stages.push_back(std::make_unique<PeekedStream>(*m_conversions.back()));
}

// Of a pipe only what it is likely to have at once.
std::size_t TextInput::startSize() const {
  constexpr std::size_t kOfFile = 1024 * 1024;
  constexpr std::size_t kOfPipe = 64 * 1024;
  return canOpenAgain() ? kOfFile : kOfPipe;
}

float TextInput::fractionRead() const {
  return fileSize() <= 0 ? -1.0f
                         : static_cast<float>(m_file.bytesRead()) / static_cast<float>(fileSize());
}

}  // namespace kelvarin
