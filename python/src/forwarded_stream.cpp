#include "python/src/forwarded_stream.h"

#include <cerrno>

namespace kelvarin_python {

namespace {

struct Forwarded {
  std::shared_ptr<StreamState> state;  // which the inner stream uses to its end
  StreamOwner inner;
  bool isInterrupted = false;
};

Forwarded& forwardedOf(ArrowArrayStream* stream) {
  return *static_cast<Forwarded*>(stream->private_data);
}

// `work` returns a number of errno.
template <typename Work>
int guarded(ArrowArrayStream* stream, Work work) {
  Forwarded& self = forwardedOf(stream);
  int status = ECANCELED;
  self.isInterrupted = !withoutLock([&] {
    status = work(self.inner.get());
    if (status != 0) {
      const std::lock_guard lock(self.state->mutex);
      Outcome& outcome = self.state->outcome;
      outcome.set(kelvarin_stream_error(self.inner.get(), outcome.error()));
    }
  });
  if (self.isInterrupted) {
    self.state->stop.request();
  }
  return status;
}

int getSchema(ArrowArrayStream* stream, ArrowSchema* out) {
  return guarded(stream, [out](ArrowArrayStream* inner) { return inner->get_schema(inner, out); });
}

int getNext(ArrowArrayStream* stream, ArrowArray* out) {
  return guarded(stream, [out](ArrowArrayStream* inner) { return inner->get_next(inner, out); });
}

const char* getLastError(ArrowArrayStream* stream) {
  Forwarded& self = forwardedOf(stream);
  return self.isInterrupted ? "The work was interrupted."
                            : self.inner.get()->get_last_error(self.inner.get());
}

void release(ArrowArrayStream* stream) {
  auto content = std::unique_ptr<Forwarded>(&forwardedOf(stream));
  stream->release = nullptr;
  releaseWithoutLock([&] { content.reset(); });
}

}  // namespace

StreamOwner forwarded(StreamOwner stream, std::shared_ptr<StreamState> state) {
  auto content = std::make_unique<Forwarded>(Forwarded{std::move(state), std::move(stream)});
  ArrowArrayStream made{getSchema, getNext, getLastError, release, content.get()};
  content.release();
  return StreamOwner(made);
}

}  // namespace kelvarin_python
