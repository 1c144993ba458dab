#include "library/arrow_streams/output_stream.h"

#include <cerrno>
#include <mutex>
#include <new>
#include <utility>

#include "library/errors/messages.h"

namespace kelvarin {

struct StreamState {
  mutable std::mutex mutex;  // guards all members below
  std::unique_ptr<BatchSupply> supply;
  TextFormat texts = TextFormat::views;
  bool isOver = false;
  bool hasFailed = false;  // and fails from now on
  ErrorDetails error;
  std::string message;  // as the last call has shown it
};

namespace {

int errnoOf(kelvarin_status status) {
  switch (status) {
    case KELVARIN_STOPPED:
      return ECANCELED;
    case KELVARIN_NO_MEMORY:
      return ENOMEM;
    case KELVARIN_WRONG_ARGUMENT:
      return EINVAL;
    default:
      return EIO;
  }
}

StreamState& stateOf(ArrowArrayStream* stream) {
  return *static_cast<StreamState*>(stream->private_data);
}

int fail(StreamState& state, ErrorDetails error) {
  state.hasFailed = true;
  state.error = std::move(error);
  return errnoOf(state.error.status);
}

// Calls work() and keeps its failure; 0 or a number of errno.
template <typename Work>
int guarded(StreamState& state, Work work) {
  const std::lock_guard lock(state.mutex);
  if (state.hasFailed) {
    return errnoOf(state.error.status);
  }
  try {
    const Outcome<Done> outcome = work();
    return outcome ? 0 : fail(state, outcome.error());
  } catch (const std::bad_alloc&) {
    return fail(state, errorOf(KELVARIN_NO_MEMORY, library_messages::noMemory()));
  } catch (const std::exception& exception) {
    return fail(state, errorOf(KELVARIN_INTERNAL,
                               library_messages::internal(QString::fromUtf8(exception.what()))));
  } catch (...) {
    return fail(state, errorOf(KELVARIN_INTERNAL, library_messages::unknownException()));
  }
}

int getSchema(ArrowArrayStream* stream, ArrowSchema* out) {
  StreamState& state = stateOf(stream);
  *out = {};
  return guarded(state, [&]() -> Outcome<Done> {
    const Outcome<TableColumns> columns = state.supply->columns();
    if (!columns) {
      return Failure{columns.error()};
    }
    exportSchema(*columns, state.texts, *out);
    return Done{};
  });
}

int getNext(ArrowArrayStream* stream, ArrowArray* out) {
  StreamState& state = stateOf(stream);
  *out = {};
  return guarded(state, [&]() -> Outcome<Done> {
    if (state.isOver) {
      return Done{};
    }
    Outcome<OwnedArray> batch = state.supply->next();
    if (!batch) {
      return Failure{batch.error()};
    }
    state.isOver = batch->get().release == nullptr;
    *out = batch->take();
    return Done{};
  });
}

const char* getLastError(ArrowArrayStream* stream) {
  StreamState& state = stateOf(stream);
  const std::lock_guard lock(state.mutex);
  if (!state.hasFailed) {
    return nullptr;
  }
  state.message = state.error.message;
  return state.message.c_str();
}

void release(ArrowArrayStream* stream) {
  delete static_cast<StreamState*>(stream->private_data);
  *stream = {};
}

}  // namespace

void exportStream(std::unique_ptr<BatchSupply> supply, TextFormat texts, ArrowArrayStream& out) {
  auto state = std::make_unique<StreamState>();
  state->supply = std::move(supply);
  state->texts = texts;
  out.get_schema = &getSchema;
  out.get_next = &getNext;
  out.get_last_error = &getLastError;
  out.release = &release;
  out.private_data = state.release();
}

const StreamState* stateOf(const ArrowArrayStream& stream) {
  return stream.release == &release ? static_cast<const StreamState*>(stream.private_data)
                                    : nullptr;
}

std::optional<ErrorDetails> lastErrorOf(const StreamState& state) {
  const std::lock_guard lock(state.mutex);
  return state.hasFailed ? std::optional(state.error) : std::nullopt;
}

}  // namespace kelvarin
