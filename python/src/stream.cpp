#include "python/src/stream.h"

#include <cerrno>

#include <string_view>
#include <type_traits>

#include <nanobind/ndarray.h>
#include <nanobind/stl/shared_ptr.h>
#include <nanobind/stl/string.h>

#include "python/src/forwarded_stream.h"

namespace kelvarin_python {

namespace {

// Of a batch with the same buffers as another one, which it keeps alive.
struct SharedColumns {
  std::shared_ptr<ArrayOwner> owner;
  std::vector<ArrowArray> children;
  std::vector<ArrowArray*> childPointers;
  ArrowArray dictionary{};
};

void releaseShared(ArrowArray* array) {
  const auto content =
      std::unique_ptr<SharedColumns>(static_cast<SharedColumns*>(array->private_data));
  array->release = nullptr;
  for (ArrowArray& child : content->children) {
    if (child.release != nullptr) {
      child.release(&child);
    }
  }
  if (content->dictionary.release != nullptr) {
    content->dictionary.release(&content->dictionary);
  }
}

ArrowArray shared(const ArrowArray& array, const std::shared_ptr<ArrayOwner>& owner) {
  auto content = std::make_unique<SharedColumns>();
  content->owner = owner;
  content->children.resize(static_cast<size_t>(array.n_children));
  for (size_t child = 0; child < content->children.size(); ++child) {
    content->children[child] = shared(*array.children[child], owner);
    content->childPointers.push_back(&content->children[child]);
  }
  ArrowArray made = array;
  made.children = content->childPointers.data();
  if (array.dictionary != nullptr) {
    content->dictionary = shared(*array.dictionary, owner);
    made.dictionary = &content->dictionary;
  }
  made.release = releaseShared;
  made.private_data = content.release();
  return made;
}

struct BatchesReader {
  std::shared_ptr<Batches> batches;
  size_t next = 0;
};

BatchesReader& readerOf(ArrowArrayStream* stream) {
  return *static_cast<BatchesReader*>(stream->private_data);
}

int getSchema(ArrowArrayStream* stream, ArrowSchema* out) {
  *out = copyOf(*readerOf(stream).batches->schemaOwner().get()).take();
  return 0;
}

int getNext(ArrowArrayStream* stream, ArrowArray* out) {
  BatchesReader& reader = readerOf(stream);
  const std::shared_ptr<ArrayOwner> batch = reader.batches->batch(reader.next++);
  *out = batch == nullptr ? ArrowArray{} : shared(*batch->get(), batch);
  return 0;
}

const char* getLastError(ArrowArrayStream*) {
  return nullptr;
}

void release(ArrowArrayStream* stream) {
  delete &readerOf(stream);
  stream->release = nullptr;
}

}  // namespace

nb::list listOf(const MessageLog& log) {
  nb::list found;
  for (const Message& message : log.messages()) {
    found.append(nb::make_tuple(message.level, message.action, message.text));
  }
  return found;
}

StreamOwner Stream::taken() {
  if (m_stream.isReleased()) {
    throw nb::value_error("The stream has been taken already.");
  }
  return std::move(m_stream);
}

Stream::~Stream() {
  releaseWithoutLock([this] { StreamOwner(std::move(m_stream)); });
}

nb::capsule Stream::schema() {
  if (m_stream.isReleased()) {
    throw nb::value_error("The stream has been taken already.");
  }
  ArrowSchema schema{};
  Outcome outcome;
  {
    const nb::gil_scoped_release release;
    if (m_stream.get()->get_schema(m_stream.get(), &schema) != 0) {
      outcome.set(kelvarin_stream_error(m_stream.get(), outcome.error()));
    }
  }
  outcome.check();
  return capsuleOf(SchemaOwner(schema));
}

nb::capsule Stream::capsule() {
  return capsuleOf(forwarded(taken(), m_state));
}

std::shared_ptr<Batches> Stream::collect() {
  Outcome outcome;
  std::shared_ptr<Batches> batches;
  StreamOwner stream = taken();
  interruptible(m_state->stop,
                [&] { batches = std::make_shared<Batches>(std::move(stream), outcome); });
  outcome.check();
  return batches;
}

void Stream::check() const {
  const std::lock_guard lock(m_state->mutex);
  m_state->outcome.check();
}

Batches::Batches(StreamOwner stream, Outcome& outcome) {
  ArrowArrayStream* source = stream.get();
  ArrowSchema schema{};
  int status = source->get_schema(source, &schema);
  m_schema = SchemaOwner(schema);
  while (status == 0) {
    ArrowArray array{};
    status = source->get_next(source, &array);
    if (status != 0 || array.release == nullptr) {
      break;
    }
    append(array);
  }
  if (status != 0) {
    outcome.set(kelvarin_stream_error(source, outcome.error()));
  }
}

void Batches::append(ArrowArray& array) {
  m_rows += array.length;
  m_arrays.push_back(std::make_shared<ArrayOwner>(array));
}

nb::capsule Batches::schema() const {
  return capsuleOf(copyOf(*m_schema.get()));
}

nb::capsule Batches::capsule(std::shared_ptr<Batches> batches) {
  auto content = std::make_unique<BatchesReader>(BatchesReader{std::move(batches)});
  ArrowArrayStream made{getSchema, getNext, getLastError, release, content.get()};
  content.release();
  return capsuleOf(StreamOwner(made));
}

nb::object Batches::values(const std::shared_ptr<Batches>& batches, size_t column) {
  if (batches->m_arrays.size() != 1) {
    return nb::none();
  }
  const ArrowSchema& field = *batches->m_schema.get()->children[column];
  const ArrowArray& array = *batches->m_arrays.front()->get()->children[column];
  const std::string_view format = field.format;
  const auto shaped = [&](auto first) {
    auto owner = std::make_unique<std::shared_ptr<Batches>>(batches);
    const nb::capsule capsule(owner.get(), [](void* kept) noexcept {
      delete static_cast<std::shared_ptr<Batches>*>(kept);
    });
    owner.release();
    using Value = std::remove_reference_t<decltype(*first)>;
    const size_t rows = static_cast<size_t>(array.length);
    return nb::cast(
        nb::ndarray<nb::numpy, Value, nb::ndim<1>>(first + array.offset, {rows}, capsule));
  };
  void* values = const_cast<void*>(array.buffers[1]);
  if (format == "g") {
    return shaped(static_cast<double*>(values));
  }
  return format == "I" ? shaped(static_cast<uint32_t*>(values)) : nb::none();
}

std::shared_ptr<ArrayOwner> Batches::batch(size_t index) const {
  return index < m_arrays.size() ? m_arrays[index] : nullptr;
}

void bindStreams(nb::module_& module) {
  nb::class_<Stream>(module, "Stream")
      .def("schema", &Stream::schema)
      .def("capsule", &Stream::capsule)
      .def("collect", &Stream::collect)
      .def("check", &Stream::check)
      .def("messages", &Stream::messages);
  nb::class_<Batches>(module, "Batches")
      .def_prop_ro("rows", &Batches::rows)
      .def("schema", &Batches::schema)
      .def("capsule", [](const std::shared_ptr<Batches>& self) { return Batches::capsule(self); })
      .def("values", [](const std::shared_ptr<Batches>& self, size_t column) {
        return Batches::values(self, column);
      });
}

}  // namespace kelvarin_python
