#include "cli/program_services.h"

#include <utility>

#include "cli/attributes_as_options.h"
#include "cli/messages.h"
#include "cli/option_words.h"
#include "cli/printable_text.h"

namespace kelvarin {

ProgramServices::ProgramServices(Console& console, int diskWaitSeconds, const QString& graphFile)
    : m_console(console), m_diskWait(console, diskWaitSeconds), m_graphFile(graphFile) {}

void ProgramServices::log(LogLevel level, const QString& text, const ActionItem* action) {
  logDetailed(level, text, action, {});
}

void ProgramServices::logDetailed(LogLevel level, const QString& said, const ActionItem* action,
                                  const LogDetails& details) {
  const QString text = m_graphFile.isEmpty() ? inWordsOfOptions(said) : said;
  const LogOrigin origin = action == nullptr ? LogOrigin() : originOf(*action, details);
  const QString shown = m_graphFile.isEmpty() ? attributesAsOptions(text) : text;
  if (details.explains) {
    m_console.writeReason(level, shown, origin);
  } else {
    m_console.writeLog(level, shown, origin);
  }
  if (action != nullptr && level != LogLevel::information && !origin.position.isEmpty()) {
    writePosition(text, *action, details, origin.position);
  }
}

// Without a position where there is no graph file.
LogOrigin ProgramServices::originOf(const ActionItem& action, const LogDetails& details) const {
  LogOrigin origin{action.name(), {}};
  const XMLNode::Position position =
      details.elementPosition.line == 0 ? action.node().position() : details.elementPosition;
  if (!m_graphFile.isEmpty() && position.line != 0) {
    origin.position =
        QStringLiteral("%1:%2:%3")
            .arg(m_graphFile, QString::number(position.line), QString::number(position.column));
  }
  return origin;
}

void ProgramServices::writePosition(const QString& text, const ActionItem& action,
                                    const LogDetails& details, const QString& position) {
  const GlobalParameters* graph = action.globalParameters();
  const bool hasPosition = text.startsWith(m_graphFile + u':') ||
                           (graph != nullptr && text.startsWith(graph->graphFile() + u':'));
  if (hasPosition) {
    return;
  }
  const QString typeName = QString::fromLatin1(action.typeName());
  const QString what = details.output.isEmpty()
                           ? program_messages::inAction(action.name(), typeName)
                           : program_messages::inOutput(details.output, action.name(), typeName);
  const QString line = QStringLiteral("%1: %2").arg(position, what);
  {
    const std::lock_guard lock(m_mutex);
    if (std::exchange(m_lastPosition, line) == line) {
      return;
    }
  }
  m_console.write(printable(line) + '\n');
}

bool ProgramServices::outOfDiskSpace(const QString& file, int missingBytes, bool canRetry) {
  return m_diskWait.shouldRetry(file, missingBytes, canRetry);
}

}  // namespace kelvarin
