#include "expression/functions/recent_patterns.h"

#include <array>
#include <cstddef>
#include <mutex>

namespace kelvarin {

class RecentPatterns::Shared {
 public:
  using Pattern = std::shared_ptr<const TextPattern>;

  // Compiles with the lock held, so that threads that begin together compile a pattern once.
  Pattern of(std::string_view text) {
    const std::lock_guard lock(m_mutex);
    for (const Pattern& pattern : m_patterns) {
      if (pattern != nullptr && pattern->isMadeOf(text)) {
        return pattern;
      }
    }
    Pattern& oldest = m_patterns[m_oldest++ % m_patterns.size()];
    oldest = std::make_shared<const TextPattern>(text);
    return oldest;
  }

 private:
  std::mutex m_mutex;
  std::array<Pattern, 8> m_patterns;
  std::size_t m_oldest = 0;
};

RecentPatterns::RecentPatterns() : m_shared(std::make_shared<Shared>()) {}

const TextPattern& RecentPatterns::of(std::string_view pattern) {
  if (m_last == nullptr || !m_last->isMadeOf(pattern)) {
    m_last = m_shared->of(pattern);
  }
  return *m_last;
}

}  // namespace kelvarin
