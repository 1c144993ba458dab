#include "cli/console.h"

#include <cstdio>
#include <cstdlib>

#include <unistd.h>

#include "cli/printable_text.h"
#include "cli/reports/messages.h"

namespace kelvarin {

namespace {

struct LevelStyle {
  const char* head;
  const char* colour;
};

constexpr LevelStyle kStyles[] = {
    {"error: ", "\033[1;31m"}, {"warning: ", "\033[1;33m"}, {"info: ", "\033[1;36m"}};
constexpr std::string_view kPlain = "\033[0m";
constexpr std::string_view kEraseLine = "\r\033[K";

std::string_view environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string_view() : value;
}

// A terminal that says nothing about itself may print control sequences instead of obeying them.
bool isCapableTerminal() {
  const std::string_view kind = environment("TERM");
  return isatty(STDERR_FILENO) != 0 && !kind.empty() && kind != "dumb";
}

}  // namespace

bool isOutputClosed() {
  return std::ferror(stdout) != 0;
}

Console::Console(bool isQuiet)
    : m_isQuiet(isQuiet),
      m_showsProgress(!isQuiet && isCapableTerminal()),
      m_isColoured(m_showsProgress && environment("NO_COLOR").empty()) {}

Console::~Console() {
  clearProgress();
}

bool Console::canAsk() {
  return isatty(STDIN_FILENO) != 0 && isatty(STDERR_FILENO) != 0;
}

Status<QString> Console::keepLog(const QString& path) {
  auto file = std::make_unique<LogFile>();
  if (const auto opened = file->open(path); !opened) {
    return opened;
  }
  m_logFile = std::move(file);
  return Done{};
}

void Console::keep(LogLevel level, const QString& text, const LogOrigin& origin) {
  if (m_logFile != nullptr && !m_logFile->write(level, origin, text)) {
    show(LogLevel::warning, report_messages::logBroken(m_logFile->path()));
  }
}

void Console::writeLog(LogLevel level, const QString& text, const LogOrigin& origin) {
  keep(level, text, origin);
  if (!m_isQuiet || level != LogLevel::information) {
    show(level, text);
  }
}

void Console::writeReason(LogLevel level, const QString& text, const LogOrigin& origin) {
  keep(level, text, origin);
  show(level, text);
}

void Console::show(LogLevel level, const QString& text) {
  const LevelStyle& style = kStyles[static_cast<int>(level) - 1];
  std::string line;
  if (m_isColoured) {
    line.append(style.colour).append(style.head).append(kPlain);
  } else {
    line.append(style.head);
  }
  line.append(printable(text));
  if (!line.ends_with('\n')) {
    line.push_back('\n');
  }
  write(line);
}

void Console::showProgress(std::string_view line) {
  if (!m_showsProgress) {
    return;
  }
  const std::scoped_lock lock(m_mutex);
  erase();
  m_progress = line;
  put(m_progress);
}

void Console::clearProgress() {
  const std::scoped_lock lock(m_mutex);
  erase();
  m_progress.clear();
}

void Console::write(std::string_view text) {
  const std::scoped_lock lock(m_mutex);
  erase();
  put(text);
  put(m_progress);
}

void Console::erase() {
  if (!m_progress.empty()) {
    put(kEraseLine);
  }
}

void Console::put(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stderr);
}

}  // namespace kelvarin
