#include "gui/run/run_services.h"

#include <utility>

#include "host/contract/host_session.h"
#include "host/engine/messages.h"

namespace kelvarin {

ActionMessages RunServices::messages() const {
  const std::lock_guard lock(m_mutex);
  return m_messages;
}

std::optional<DiskQuestion> RunServices::question() const {
  const std::lock_guard lock(m_mutex);
  return m_question;
}

void RunServices::answer(bool triesAgain) {
  {
    const std::lock_guard lock(m_mutex);
    m_answer = triesAgain;
  }
  m_answered.notify_one();
}

void RunServices::stopAsking() {
  {
    const std::lock_guard lock(m_mutex);
    m_isStopped = true;
  }
  m_answered.notify_one();
}

void RunServices::logDetailed(LogLevel level, const QString& text, const ActionItem* action,
                              const LogDetails& details) {
  ForwardingServices::logDetailed(level, text, action, details);
  bool isNews = false;
  {
    const std::lock_guard lock(m_mutex);
    isNews = m_messages.note(level, action == nullptr ? QString() : action->name(), text);
  }
  if (isNews) {
    m_news();
  }
}

bool RunServices::outOfDiskSpace(const QString& file, int missingBytes, bool canRetry) {
  const std::lock_guard asking(m_asking);
  logDetailed(LogLevel::warning, engine_messages::diskFull(file, missingBytes),
              CurrentAction::get(), {});
  std::unique_lock lock(m_mutex);
  if (!canRetry || m_isStopped) {
    return false;
  }
  m_question = DiskQuestion{file, missingBytes, ++m_questionCount, file == m_triedFile};
  m_answer.reset();
  lock.unlock();
  m_news();
  lock.lock();
  m_answered.wait(lock, [this] { return m_answer.has_value() || m_isStopped; });
  m_question.reset();
  const bool triesAgain = m_answer.value_or(false) && !m_isStopped;
  m_triedFile = triesAgain ? file : QString();
  lock.unlock();
  m_news();
  return triesAgain;
}

}  // namespace kelvarin
