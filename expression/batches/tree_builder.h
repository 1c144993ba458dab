// Builds a typed tree from its leaves upwards and decides on the type of every part.
//
// Part of TypedParser. The rules of types are those of the String Parser; what it would report as
// an error at a row, or decide on only there, gets no node.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "expression/batches/typed_tree.h"

namespace kelvarin {

using NodeIndex = std::size_t;
// Nothing where the types do not allow it.
using NewNode = std::optional<NodeIndex>;

class TreeBuilder {
 public:
  NodeIndex number(double value, ValueType type = ValueType::number);
  NodeIndex text(std::string value);
  NodeIndex nullText();
  NodeIndex variable(std::size_t storeIndex, bool isText);

  NewNode negated(NodeIndex operand);
  NewNode cast(NodeIndex operand, bool toInteger);
  NewNode withUnit(NodeIndex operand, double factor);
  NewNode binary(Operation operation, NodeIndex left, NodeIndex right);
  NewNode choice(NodeIndex condition, NodeIndex first, NodeIndex second);
  NewNode call(const FunctionLine& line, std::vector<NodeIndex> arguments);
  NewNode call(Number1 libraryFunction, NodeIndex argument);

  ValueType typeOf(NodeIndex node) const { return m_tree.nodes[node].type; }
  // The tree with this root, and nothing that can be built upon.
  TypedTree take(NodeIndex root);

 private:
  using Key = std::tuple<Operation, ValueType, std::vector<std::size_t>, std::uint64_t, std::string,
                         bool, std::size_t, const void*, const void*>;

  NodeIndex add(TreeNode node);
  NewNode join(NodeIndex left, NodeIndex right);
  NewNode ofNumbers(Operation operation, std::vector<NodeIndex> operands);
  std::vector<ValueType> typesOf(const std::vector<NodeIndex>& nodes) const;

  TypedTree m_tree;
  std::map<Key, NodeIndex> m_known;
};

}  // namespace kelvarin
