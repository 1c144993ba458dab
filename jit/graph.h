// An expression as a graph of operations on 64-bit values, each computed once however often it is
// used.
//
// Built by lowering.cpp through make(), which finds equal nodes and folds constants to the bits
// that the operation would have at run time; read by schedule.cpp and the code generator. Operands
// come before their users. Truths are masks: all bits set or none.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace kelvarin::jit {

enum class Operation : std::uint8_t {
  constant,  // payload: the bits
  variable,  // payload: the element
  add,
  subtract,
  multiply,
  divide,
  smaller,  // x < y ? x : y
  larger,   // x > y ? x : y
  negate,
  absolute,
  squareRoot,
  roundDown,
  truncate,
  // Masks.
  less,
  lessOrEqual,
  equal,
  notEqual,
  unordered,  // one of both is a NaN
  sameBits,
  finite,
  both,
  either,
  // Bitwise choices.
  keepWhere,  // (mask, value): the value where the mask is set, else 0
  dropWhere,  // (mask, value): 0 where the mask is set, else the value
  select,     // (mask, a, b)
  call        // payload: the address; the operands are its arguments
};

using NodeId = std::uint32_t;
inline constexpr NodeId kNoNode = ~NodeId{0};

struct Node {
  Operation operation = Operation::constant;
  std::uint8_t operandCount = 0;
  bool isHeavy = false;  // needs a call, itself or an operand
  std::array<NodeId, 3> operands = {kNoNode, kNoNode, kNoNode};
  std::uint64_t payload = 0;

  bool operator==(const Node&) const = default;
};

// Neither computed nor kept: an operand that is read where it is needed.
inline bool isRead(const Node& node) {
  return node.operation == Operation::constant || node.operation == Operation::variable;
}

class Graph {
 public:
  explicit Graph(std::size_t expectedNodes);

  NodeId constant(double value);
  NodeId bits(std::uint64_t value);
  NodeId variable(std::size_t element);
  NodeId make(Operation operation, NodeId a, NodeId b = kNoNode, NodeId c = kNoNode);
  NodeId call(std::uint64_t address, const NodeId* arguments, int count);

  const Node& node(NodeId id) const { return m_nodes[id]; }
  std::size_t size() const { return m_nodes.size(); }
  bool isConstant(NodeId id) const { return m_nodes[id].operation == Operation::constant; }
  double number(NodeId id) const;

 private:
  NodeId intern(const Node& node);
  void grow();

  std::vector<Node> m_nodes;
  std::vector<NodeId> m_table;  // open addressing, a power of two
};

}  // namespace kelvarin::jit
