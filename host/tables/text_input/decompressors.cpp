#include <algorithm>

#include <zlib.h>
#include <zstd.h>

#include "host/tables/text_input/messages.h"
#include "host/tables/text_input/uncompressed_stream.h"

namespace kelvarin {

namespace {

constexpr std::string_view kGzipStart("\x1F\x8B", 2);
constexpr std::string_view kZstdStart("\x28\xB5\x2F\xFD", 4);

class GzipDecompressor final : public Decompressor {
 public:
  GzipDecompressor() {
    constexpr int kGzipOnly = 16;
    m_isReady = ::inflateInit2(&m_stream, MAX_WBITS + kGzipOnly) == Z_OK;
  }
  ~GzipDecompressor() override { ::inflateEnd(&m_stream); }

  const char* formatName() const override { return "gzip"; }
  bool isBetween() const override { return m_isBetween; }

  Status<QString> step(std::string_view& input, char*& output, char* outputEnd) override {
    if (!m_isReady) {
      return Failure{text_messages::noMemory()};
    }
    if (m_isBetween) {
      // Tapes and some programs fill up with zeros.
      input.remove_prefix(std::min(input.find_first_not_of('\0'), input.size()));
      if (input.empty()) {
        return Done{};
      }
      ::inflateReset(&m_stream);
      m_isBetween = false;
    }
    m_stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(input.data()));
    m_stream.avail_in = static_cast<uInt>(input.size());
    m_stream.next_out = reinterpret_cast<Bytef*>(output);
    m_stream.avail_out = static_cast<uInt>(outputEnd - output);
    const int status = ::inflate(&m_stream, Z_NO_FLUSH);
    input.remove_prefix(input.size() - m_stream.avail_in);
    output = outputEnd - m_stream.avail_out;
    m_isBetween = status == Z_STREAM_END;
    if (status == Z_OK || status == Z_STREAM_END || status == Z_BUF_ERROR) {
      return Done{};
    }
    return Failure{m_stream.msg != nullptr ? QString::fromLatin1(m_stream.msg)
                                           : QString::fromLatin1(::zError(status))};
  }

 private:
  z_stream m_stream{};
  bool m_isReady;
  bool m_isBetween = false;
};

class ZstdDecompressor final : public Decompressor {
 public:
  ZstdDecompressor() : m_stream(::ZSTD_createDStream()) {}
  ~ZstdDecompressor() override { ::ZSTD_freeDStream(m_stream); }
  ZstdDecompressor(const ZstdDecompressor&) = delete;
  ZstdDecompressor& operator=(const ZstdDecompressor&) = delete;

  const char* formatName() const override { return "zstd"; }
  bool isBetween() const override { return m_isBetween; }

  Status<QString> step(std::string_view& input, char*& output, char* outputEnd) override {
    if (m_stream == nullptr) {
      return Failure{text_messages::noMemory()};
    }
    if (m_isBetween && input.empty()) {
      return Done{};
    }
    ZSTD_inBuffer in{input.data(), input.size(), 0};
    ZSTD_outBuffer out{output, static_cast<std::size_t>(outputEnd - output), 0};
    const std::size_t left = ::ZSTD_decompressStream(m_stream, &out, &in);
    input.remove_prefix(in.pos);
    output += out.pos;
    if (::ZSTD_isError(left) != 0) {
      return Failure{QString::fromLatin1(::ZSTD_getErrorName(left))};
    }
    m_isBetween = left == 0;
    return Done{};
  }

 private:
  ZSTD_DStream* m_stream;
  bool m_isBetween = false;
};

}  // namespace

std::unique_ptr<Decompressor> decompressorOf(std::string_view start) {
  if (start.starts_with(kGzipStart)) {
    return std::make_unique<GzipDecompressor>();
  }
  if (start.starts_with(kZstdStart)) {
    return std::make_unique<ZstdDecompressor>();
  }
  return nullptr;
}

}  // namespace kelvarin
