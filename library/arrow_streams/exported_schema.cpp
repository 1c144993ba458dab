#include <string>
#include <vector>

#include "library/arrow_streams/exported_batch.h"

namespace kelvarin {

namespace {

// A column, or a table with its columns.
struct Node {
  std::string name;
  std::vector<ArrowSchema> children;
  std::vector<ArrowSchema*> pointers;
};

void releaseNode(ArrowSchema* schema) {
  for (std::int64_t i = 0; i < schema->n_children; ++i) {
    if (schema->children[i]->release != nullptr) {
      schema->children[i]->release(schema->children[i]);
    }
  }
  delete static_cast<Node*>(schema->private_data);
  schema->release = nullptr;
}

ArrowSchema schemaOf(const char* format, std::unique_ptr<Node> node) {
  ArrowSchema schema{};
  schema.format = format;
  schema.name = node->name.c_str();
  for (ArrowSchema& child : node->children) {
    node->pointers.push_back(&child);
  }
  schema.n_children = static_cast<std::int64_t>(node->children.size());
  schema.children = node->pointers.data();
  schema.release = &releaseNode;
  schema.private_data = node.release();
  return schema;
}

const char* formatOf(MetaTypeColumn type, TextFormat texts) {
  switch (type) {
    case MetaTypeColumn::number:
      return "g";
    case MetaTypeColumn::key:
      return "I";
    default:
      return texts == TextFormat::views ? "vu" : texts == TextFormat::utf8 ? "u" : "U";
  }
}

}  // namespace

void exportSchema(const TableColumns& columns, TextFormat texts, ArrowSchema& out) {
  auto table = std::make_unique<Node>();
  table->children.reserve(columns.types.size());
  for (std::size_t i = 0; i < columns.types.size(); ++i) {
    auto column = std::make_unique<Node>();
    column->name = columns.names[static_cast<qsizetype>(i)].toStdString();
    ArrowSchema schema = schemaOf(formatOf(columns.types[i], texts), std::move(column));
    schema.flags = ARROW_FLAG_NULLABLE;
    table->children.push_back(schema);
  }
  out = schemaOf("+s", std::move(table));
}

}  // namespace kelvarin
