// The objects that programs know by numbers. A number is never used again, and says what kind of
// object it is, so that one that is closed or of another kind finds nothing.
//
// Threads: any. An object that is closed lives until nobody uses it.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <unordered_map>

namespace kelvarin {

enum class HandleKind : std::uint64_t { stop = 1, table, expressions, run };

// For messages.
const char* nameOf(HandleKind kind);

class Handles {
 public:
  static Handles& instance();

  std::uint64_t add(HandleKind kind, std::shared_ptr<void> object);
  // Null: there is none.
  template <typename Object>
  std::shared_ptr<Object> find(HandleKind kind, std::uint64_t handle) {
    return std::static_pointer_cast<Object>(find(kind, handle));
  }
  // The object, which has no handle any more; null: there was none.
  std::shared_ptr<void> remove(HandleKind kind, std::uint64_t handle);

 private:
  std::shared_ptr<void> find(HandleKind kind, std::uint64_t handle);

  std::mutex m_mutex;  // guards what follows
  std::uint64_t m_last = 0;
  std::unordered_map<std::uint64_t, std::shared_ptr<void>> m_objects;
};

}  // namespace kelvarin
