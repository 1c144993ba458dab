#include "library/handles.h"

#include <utility>

namespace kelvarin {

namespace {

constexpr int kKindShift = 56;

bool isOfKind(HandleKind kind, std::uint64_t handle) {
  return handle >> kKindShift == static_cast<std::uint64_t>(kind);
}

}  // namespace

const char* nameOf(HandleKind kind) {
  switch (kind) {
    case HandleKind::stop:
      return "stop";
    case HandleKind::table:
      return "table";
    case HandleKind::expressions:
      return "expressions";
    case HandleKind::run:
      return "run";
  }
  return "";
}

// Never destroyed: streams may be released while the process ends.
Handles& Handles::instance() {
  static auto* const handles = new Handles;
  return *handles;
}

std::uint64_t Handles::add(HandleKind kind, std::shared_ptr<void> object) {
  const std::lock_guard lock(m_mutex);
  const std::uint64_t handle = static_cast<std::uint64_t>(kind) << kKindShift | ++m_last;
  m_objects.emplace(handle, std::move(object));
  return handle;
}

std::shared_ptr<void> Handles::find(HandleKind kind, std::uint64_t handle) {
  if (!isOfKind(kind, handle)) {
    return nullptr;
  }
  const std::lock_guard lock(m_mutex);
  const auto found = m_objects.find(handle);
  return found == m_objects.end() ? nullptr : found->second;
}

std::shared_ptr<void> Handles::remove(HandleKind kind, std::uint64_t handle) {
  if (!isOfKind(kind, handle)) {
    return nullptr;
  }
  const std::lock_guard lock(m_mutex);
  const auto found = m_objects.find(handle);
  if (found == m_objects.end()) {
    return nullptr;
  }
  std::shared_ptr<void> object = std::move(found->second);
  m_objects.erase(found);
  return object;
}

}  // namespace kelvarin
