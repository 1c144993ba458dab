// What the functions of the interface have in common: no exception leaves them, their errors reach
// the caller, options and results are structures of any version, handles are looked up.
//
// Threads: any.
#pragma once

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include <QString>

#include "library/arrow_streams/exported_batch.h"
#include "library/errors/error_details.h"
#include "library/errors/messages.h"
#include "library/handles.h"
#include "library/messages.h"
#include "library/runs/run_services.h"

// What callers know by a pointer only.
struct kelvarin_error {
  kelvarin::ErrorDetails details;
  std::string json;
};

namespace kelvarin {

// The status; `error` receives the details where it is not null.
kelvarin_status reported(ErrorDetails details, kelvarin_error** error);

// Calls work(), which returns an Outcome<Done>.
template <typename Work>
kelvarin_status answered(kelvarin_error** error, Work work) noexcept {
  if (error != nullptr) {
    *error = nullptr;
  }
  try {
    const Outcome<Done> outcome = work();
    return outcome ? KELVARIN_OK : reported(outcome.error(), error);
  } catch (const std::bad_alloc&) {
    return reported(errorOf(KELVARIN_NO_MEMORY, library_messages::noMemory()), error);
  } catch (const std::exception& exception) {
    const QString reason = QString::fromUtf8(exception.what());
    return reported(errorOf(KELVARIN_INTERNAL, library_messages::internal(reason)), error);
  } catch (...) {
    return reported(errorOf(KELVARIN_INTERNAL, library_messages::unknownException()), error);
  }
}

inline Failure<ErrorDetails> wrongArgument(const QString& text) {
  return Failure{errorOf(KELVARIN_WRONG_ARGUMENT, text)};
}

inline Failure<ErrorDetails> wrongHandle(HandleKind kind) {
  const QString name = QString::fromLatin1(nameOf(kind));
  return Failure{errorOf(KELVARIN_WRONG_HANDLE, library_messages::wrongHandle(name))};
}

// Calls work(object), which is a shared pointer.
template <typename Object, typename Work>
kelvarin_status withObject(HandleKind kind, std::uint64_t handle, kelvarin_error** error,
                           Work work) noexcept {
  return answered(error, [&]() -> Outcome<Done> {
    const auto found = Handles::instance().find<Object>(kind, handle);
    if (found == nullptr) {
      return wrongHandle(kind);
    }
    return work(found);
  });
}

// What is closed lives on where it is still used.
inline kelvarin_status closed(HandleKind kind, std::uint64_t handle) noexcept {
  return answered(nullptr, [&]() -> Outcome<Done> {
    if (Handles::instance().remove(kind, handle) == nullptr) {
      return wrongHandle(kind);
    }
    return Done{};
  });
}

// The fields that the caller knows, and for the others those of `defaults`.
template <typename Options>
Outcome<Options> optionsOf(const Options* given, Options defaults) {
  if (given == nullptr) {
    return defaults;
  }
  if (given->size < sizeof given->size) {
    return wrongArgument(library_messages::noSize());
  }
  std::memcpy(static_cast<void*>(&defaults), given, std::min(given->size, sizeof defaults));
  return defaults;
}

// Stores the fields that the caller knows.
template <typename Fields>
Outcome<Done> store(const Fields& result, Fields* out) {
  if (out == nullptr) {
    return wrongArgument(library_messages::nullPointer(QStringLiteral("out")));
  }
  const std::size_t size = out->size;
  if (size < sizeof size) {
    return wrongArgument(library_messages::noSize());
  }
  std::memcpy(static_cast<void*>(out), &result, std::min(size, sizeof result));
  out->size = size;
  return Done{};
}

template <typename Pointer>
Outcome<Done> needed(Pointer* pointer, const char* name) {
  if (pointer == nullptr) {
    return wrongArgument(library_messages::nullPointer(QString::fromLatin1(name)));
  }
  return Done{};
}

// The names and values of a list in the options, which its user knows as `argument`.
template <typename Named>
Outcome<std::vector<Named>> namedValuesOf(const kelvarin_setting* given, std::int32_t count,
                                          const char* argument) {
  std::vector<Named> found;
  for (std::int32_t i = 0; i < count; ++i) {
    if (given == nullptr || given[i].name == nullptr || given[i].value == nullptr) {
      return wrongArgument(library_messages::nullPointer(QString::fromLatin1(argument)));
    }
    found.push_back({QString::fromUtf8(given[i].name), QString::fromUtf8(given[i].value)});
  }
  return found;
}

// What all work has in its options.
Outcome<WorkSettings> workSettingsOf(std::int32_t threads, kelvarin_stop stop,
                                     const kelvarin_log& log, std::int32_t diskWaitSeconds = -1);
Outcome<BatchForm> batchFormOf(std::int32_t textFormat, std::int64_t batchRows);

// Relative names start from the working folder.
QString absolutePath(const char* path);

// For the caller, who frees it by kelvarin_free().
char* copiedText(const std::string& text);

}  // namespace kelvarin
