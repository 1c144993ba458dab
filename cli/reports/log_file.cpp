#include "cli/reports/log_file.h"

#include <cerrno>
#include <cstring>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

#include <QDateTime>
#include <QFile>

#include "cli/reports/messages.h"

namespace kelvarin {

namespace {

constexpr const char* kLevels[] = {"error", "warning", "info"};

void appendField(std::string& line, const QString& text) {
  line += '\t';
  for (const char c : text.toStdString()) {
    switch (c) {
      case '\n':
        line += "\\n";
        break;
      case '\r':
        line += "\\r";
        break;
      case '\t':
        line += "\\t";
        break;
      case '\\':
        line += "\\\\";
        break;
      default:
        line += c;
    }
  }
}

bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno != EINTR) {
      return false;
    }
    bytes.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
  }
  return true;
}

}  // namespace

LogFile::~LogFile() {
  if (m_descriptor >= 0) {
    ::close(m_descriptor);
  }
}

Status<QString> LogFile::open(const QString& path) {
  constexpr mode_t kMode = 0666;
  m_path = path;
  m_descriptor =
      ::open(QFile::encodeName(path).constData(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, kMode);
  if (m_descriptor < 0) {
    return Failure{report_messages::logNotOpened(path, QString::fromLocal8Bit(strerror(errno)))};
  }
  return Done{};
}

bool LogFile::write(LogLevel level, const LogOrigin& origin, const QString& text) {
  const QDateTime now = QDateTime::currentDateTime();
  std::string line =
      now.toOffsetFromUtc(now.offsetFromUtc()).toString(Qt::ISODateWithMs).toStdString();
  line.append("\t").append(kLevels[static_cast<int>(level) - 1]);
  appendField(line, origin.action);
  appendField(line, origin.position);
  appendField(line, text.endsWith(u'\n') ? text.chopped(1) : text);
  line += '\n';
  const std::lock_guard lock(m_mutex);
  if (m_descriptor < 0 || writeAll(m_descriptor, line)) {
    return true;
  }
  ::close(m_descriptor);
  m_descriptor = -1;
  return false;
}

}  // namespace kelvarin
