#include "python/src/arrow_owners.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <nanobind/stl/string.h>

namespace kelvarin_python {

namespace {

constexpr const char* kStreamName = "arrow_array_stream";
constexpr const char* kSchemaName = "arrow_schema";

// The destructor that a capsule of the interface must have.
template <typename Structure>
nb::capsule capsule(Owner<Structure> owner, const char* name) {
  auto content = std::make_unique<Owner<Structure>>(std::move(owner));
  // The first member of an owner is its structure, which is what a capsule points to.
  static_assert(sizeof(Owner<Structure>) == sizeof(Structure));
  nb::capsule made(content.get(), name,
                   [](void* pointer) noexcept { delete static_cast<Owner<Structure>*>(pointer); });
  content.release();
  return made;
}

struct CopiedSchema {
  std::string format;
  std::string name;
  std::vector<SchemaOwner> children;
  std::vector<ArrowSchema*> childPointers;
  SchemaOwner dictionary;
};

void releaseCopy(ArrowSchema* schema) {
  delete static_cast<CopiedSchema*>(schema->private_data);
  schema->release = nullptr;
}

std::string_view textOf(const char* text) {
  return text == nullptr ? "" : text;
}

}  // namespace

nb::capsule capsuleOf(StreamOwner stream) {
  return capsule(std::move(stream), kStreamName);
}

nb::capsule capsuleOf(SchemaOwner schema) {
  return capsule(std::move(schema), kSchemaName);
}

StreamOwner streamOf(nb::handle table) {
  if (!nb::hasattr(table, "__arrow_c_stream__")) {
    const std::string type = nb::cast<std::string>(table.type().attr("__name__"));
    throw nb::type_error((type +
                          " is no table: it has no __arrow_c_stream__. Tables of pyarrow, pandas "
                          "(2.2 or later), Polars and DuckDB have it, and what this package makes.")
                             .c_str());
  }
  const nb::object capsule = table.attr("__arrow_c_stream__")();
  auto* stream = static_cast<ArrowArrayStream*>(PyCapsule_GetPointer(capsule.ptr(), kStreamName));
  if (stream == nullptr) {
    throw nb::python_error();
  }
  if (stream->release == nullptr) {
    throw nb::value_error("The stream of the table has been taken already.");
  }
  return StreamOwner(*stream);
}

SchemaOwner copyOf(const ArrowSchema& schema) {
  auto content = std::make_unique<CopiedSchema>();
  content->format = textOf(schema.format);
  content->name = textOf(schema.name);
  for (int64_t child = 0; child < schema.n_children; ++child) {
    content->children.push_back(copyOf(*schema.children[child]));
  }
  for (SchemaOwner& child : content->children) {
    content->childPointers.push_back(child.get());
  }
  ArrowSchema copy{};
  if (schema.dictionary != nullptr) {
    content->dictionary = copyOf(*schema.dictionary);
    copy.dictionary = content->dictionary.get();
  }
  copy.format = content->format.c_str();
  copy.name = content->name.c_str();
  copy.flags = schema.flags;
  copy.n_children = schema.n_children;
  copy.children = content->childPointers.data();
  copy.release = releaseCopy;
  copy.private_data = content.release();
  return SchemaOwner(copy);
}

bool areEqual(const ArrowSchema& one, const ArrowSchema& other) {
  if (textOf(one.format) != textOf(other.format) || textOf(one.name) != textOf(other.name) ||
      one.n_children != other.n_children ||
      (one.dictionary == nullptr) != (other.dictionary == nullptr)) {
    return false;
  }
  for (int64_t child = 0; child < one.n_children; ++child) {
    if (!areEqual(*one.children[child], *other.children[child])) {
      return false;
    }
  }
  return one.dictionary == nullptr || areEqual(*one.dictionary, *other.dictionary);
}

}  // namespace kelvarin_python
