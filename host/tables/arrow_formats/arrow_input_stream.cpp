#include "host/tables/arrow_formats/arrow_input_stream.h"

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "arrow/buffer.h"
#include "host/tables/arrow_formats/column_memory.h"

namespace kelvarin {

ArrowInputStream::ArrowInputStream(std::shared_ptr<const InputFile> file, std::string head)
    : m_file(std::move(file)), m_head(std::move(head)) {}

arrow::Result<std::int64_t> ArrowInputStream::Read(std::int64_t size, void* bytes) {
  const auto wanted = static_cast<std::size_t>(size);
  auto* target = static_cast<char*>(bytes);
  const std::size_t ofHead = m_head.copy(target, wanted);
  m_head.erase(0, ofHead);
  std::size_t done = ofHead;
  if (done < wanted) {
    const auto got = m_file->readNext(target + done, wanted - done, wanted - done);
    if (!got) {
      return arrow::Status::IOError(got.error().toStdString());
    }
    done += got->size;
  }
  if (m_isReadKept) {
    m_read.append(target, done);
  }
  m_isExhausted = done < wanted;
  m_position += static_cast<std::int64_t>(done);
  return static_cast<std::int64_t>(done);
}

// What a damaged file claims takes no memory before it is there.
arrow::Result<std::shared_ptr<arrow::Buffer>> ArrowInputStream::Read(std::int64_t size) {
  constexpr std::int64_t kOfPipe = 4 << 20;
  const std::int64_t left = bytesLeft();
  const std::int64_t first = std::min(size, left < 0 ? kOfPipe : left);
  ARROW_ASSIGN_OR_RAISE(auto buffer, arrow::AllocateResizableBuffer(first, columnPool()));
  std::int64_t done = 0;
  for (;;) {
    const std::int64_t missing = buffer->size() - done;
    ARROW_ASSIGN_OR_RAISE(const std::int64_t got, Read(missing, buffer->mutable_data() + done));
    done += got;
    if (got < missing || done == size || left >= 0) {
      break;
    }
    ARROW_RETURN_NOT_OK(buffer->Resize(std::min(size, 2 * done)));
  }
  m_isExhausted = done < size;
  ARROW_RETURN_NOT_OK(buffer->Resize(done));
  return std::shared_ptr<arrow::Buffer>(std::move(buffer));
}

std::string ArrowInputStream::takeRead() {
  m_isReadKept = false;
  return std::exchange(m_read, {});
}

std::int64_t ArrowInputStream::bytesLeft() const {
  return m_file->canReadAgain() ? std::max<std::int64_t>(m_file->size() - m_position, 0) : -1;
}

float ArrowInputStream::fractionRead() const {
  return m_file->size() <= 0 ? -1.0f
                             : static_cast<float>(m_position) / static_cast<float>(m_file->size());
}

arrow::Status ArrowInputStream::readToTheEnd() {
  std::vector<char> rest(64 * 1024);
  std::int64_t got = 1;
  while (got > 0) {
    ARROW_ASSIGN_OR_RAISE(got, Read(static_cast<std::int64_t>(rest.size()), rest.data()));
  }
  return arrow::Status::OK();
}

}  // namespace kelvarin
