#include "library/calls.h"

#include <cstdlib>

#include <QDir>

namespace kelvarin {

kelvarin_status reported(ErrorDetails details, kelvarin_error** error) {
  const kelvarin_status status = details.status;
  if (error != nullptr) {
    try {
      auto made = std::make_unique<kelvarin_error>();
      made->json = jsonOf(details);
      made->details = std::move(details);
      *error = made.release();
    } catch (const std::bad_alloc&) {
      return KELVARIN_NO_MEMORY;
    }
  }
  return status;
}

Outcome<WorkSettings> workSettingsOf(std::int32_t threads, kelvarin_stop stop,
                                     const kelvarin_log& log, std::int32_t diskWaitSeconds) {
  constexpr std::int32_t kMaxThreads = 1024;
  if (threads < 0 || threads > kMaxThreads) {
    return wrongArgument(library_messages::outOfRange(QStringLiteral("threads"), threads));
  }
  WorkSettings settings;
  settings.threads = threads;
  settings.log = log;
  if (diskWaitSeconds >= 0) {
    settings.diskWaitSeconds = diskWaitSeconds;
  }
  if (stop.id != 0) {
    const auto source = Handles::instance().find<std::stop_source>(HandleKind::stop, stop.id);
    if (source == nullptr) {
      return wrongHandle(HandleKind::stop);
    }
    settings.stop = source->get_token();
  }
  return settings;
}

Outcome<BatchForm> batchFormOf(std::int32_t textFormat, std::int64_t batchRows) {
  if (textFormat < KELVARIN_TEXT_VIEWS || textFormat > KELVARIN_TEXT_LARGE) {
    return wrongArgument(library_messages::outOfRange(QStringLiteral("text_format"), textFormat));
  }
  if (batchRows < 0) {
    return wrongArgument(library_messages::outOfRange(QStringLiteral("batch_rows"), batchRows));
  }
  BatchForm form;
  form.texts = static_cast<TextFormat>(textFormat);
  form.mostRows = batchRows == 0 ? SIZE_MAX : static_cast<std::size_t>(batchRows);
  return form;
}

QString absolutePath(const char* path) {
  return QDir::current().absoluteFilePath(QString::fromUtf8(path));
}

char* copiedText(const std::string& text) {
  auto* copy = static_cast<char*>(std::malloc(text.size() + 1));
  if (copy == nullptr) {
    throw std::bad_alloc();
  }
  std::memcpy(copy, text.c_str(), text.size() + 1);
  return copy;
}

}  // namespace kelvarin
