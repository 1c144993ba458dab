#include "jit/graph.h"

#include <algorithm>
#include <bit>

#include "jit/arithmetic.h"

namespace kelvarin::jit {

namespace {

constexpr std::uint64_t kAllBits = ~std::uint64_t{0};

std::uint64_t maskOf(bool truth) {
  return truth ? kAllBits : 0;
}

std::uint64_t bitsOf(double value) {
  return std::bit_cast<std::uint64_t>(value);
}

std::uint64_t fold(Operation operation, std::uint64_t a, std::uint64_t b, std::uint64_t c) {
  const auto x = std::bit_cast<double>(a);
  const auto y = std::bit_cast<double>(b);
  switch (operation) {
    case Operation::add:
      return bitsOf(add(x, y));
    case Operation::subtract:
      return bitsOf(subtract(x, y));
    case Operation::multiply:
      return bitsOf(multiply(x, y));
    case Operation::divide:
      return bitsOf(divide(x, y));
    case Operation::smaller:
      return bitsOf(smaller(x, y));
    case Operation::larger:
      return bitsOf(larger(x, y));
    case Operation::negate:
      return bitsOf(negate(x));
    case Operation::absolute:
      return bitsOf(absolute(x));
    case Operation::squareRoot:
      return bitsOf(squareRoot(x));
    case Operation::roundDown:
      return bitsOf(roundDown(x));
    case Operation::truncate:
      return bitsOf(truncate(x));
    case Operation::less:
      return maskOf(x < y);
    case Operation::lessOrEqual:
      return maskOf(x <= y);
    case Operation::equal:
      return maskOf(x == y);
    case Operation::notEqual:
      return maskOf(x != y);
    case Operation::unordered:
      return maskOf(std::isnan(x) || std::isnan(y));
    case Operation::sameBits:
      return maskOf(a == b);
    case Operation::finite:
      return maskOf(isFiniteNumber(x));
    case Operation::both:
    case Operation::keepWhere:
      return a & b;
    case Operation::either:
      return a | b;
    case Operation::dropWhere:
      return ~a & b;
    default:
      return (a & b) | (~a & c);
  }
}

// A function depends on its arguments alone, so that it can be called when they are constants.
double callNow(std::uintptr_t address, const std::array<double, 3>& arguments, int count) {
  switch (count) {
    case 1:
      return reinterpret_cast<double (*)(double)>(address)(arguments[0]);
    case 2:
      return reinterpret_cast<double (*)(double, double)>(address)(arguments[0], arguments[1]);
    default:
      return reinterpret_cast<double (*)(double, double, double)>(address)(
          arguments[0], arguments[1], arguments[2]);
  }
}

std::size_t hashOf(const Node& node) {
  std::uint64_t hash = node.payload + static_cast<std::uint64_t>(node.operation);
  for (const NodeId operand : node.operands) {
    hash = (hash ^ operand) * 0x9E3779B97F4A7C15ull;
    hash ^= hash >> 29;
  }
  return static_cast<std::size_t>(hash);
}

}  // namespace

Graph::Graph(std::size_t expectedNodes) {
  m_nodes.reserve(expectedNodes);
  m_table.assign(std::bit_ceil(std::max<std::size_t>(expectedNodes * 2, 64)), kNoNode);
}

NodeId Graph::constant(double value) {
  return bits(bitsOf(value));
}

NodeId Graph::bits(std::uint64_t value) {
  return intern({.operation = Operation::constant, .payload = value});
}

NodeId Graph::variable(std::size_t element) {
  return intern({.operation = Operation::variable, .payload = element});
}

double Graph::number(NodeId id) const {
  return std::bit_cast<double>(m_nodes[id].payload);
}

NodeId Graph::make(Operation operation, NodeId a, NodeId b, NodeId c) {
  Node node{.operation = operation, .operands = {a, b, c}};
  std::array<std::uint64_t, 3> payloads = {};
  bool isKnown = true;
  for (const NodeId operand : node.operands) {
    if (operand == kNoNode) {
      break;
    }
    node.isHeavy = node.isHeavy || m_nodes[operand].isHeavy;
    isKnown = isKnown && isConstant(operand);
    payloads[node.operandCount++] = m_nodes[operand].payload;
  }
  return isKnown ? bits(fold(operation, payloads[0], payloads[1], payloads[2])) : intern(node);
}

NodeId Graph::call(std::uint64_t address, const NodeId* arguments, int count) {
  Node node{.operation = Operation::call, .isHeavy = true, .payload = address};
  std::array<double, 3> numbers = {};
  bool isKnown = true;
  for (int i = 0; i < count; ++i) {
    const auto index = static_cast<std::size_t>(i);
    node.operands[index] = arguments[i];
    numbers[index] = number(arguments[i]);
    isKnown = isKnown && isConstant(arguments[i]);
  }
  node.operandCount = static_cast<std::uint8_t>(count);
  return isKnown ? constant(callNow(static_cast<std::uintptr_t>(address), numbers, count))
                 : intern(node);
}

NodeId Graph::intern(const Node& node) {
  if ((m_nodes.size() + 1) * 2 > m_table.size()) {
    grow();
  }
  const std::size_t mask = m_table.size() - 1;
  std::size_t slot = hashOf(node) & mask;
  while (m_table[slot] != kNoNode) {
    if (m_nodes[m_table[slot]] == node) {
      return m_table[slot];
    }
    slot = (slot + 1) & mask;
  }
  const auto id = static_cast<NodeId>(m_nodes.size());
  m_table[slot] = id;
  m_nodes.push_back(node);
  return id;
}

void Graph::grow() {
  m_table.assign(m_table.size() * 2, kNoNode);
  const std::size_t mask = m_table.size() - 1;
  for (NodeId id = 0; id < m_nodes.size(); ++id) {
    std::size_t slot = hashOf(m_nodes[id]) & mask;
    while (m_table[slot] != kNoNode) {
      slot = (slot + 1) & mask;
    }
    m_table[slot] = id;
  }
}

}  // namespace kelvarin::jit
