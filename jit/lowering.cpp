#include "jit/lowering.h"

#include <bit>
#include <cmath>

#include "base/null_number.h"
#include "jit/arithmetic.h"

namespace kelvarin::jit {

namespace {

template <typename Pointer>
std::uint64_t addressOf(Pointer function) {
  return reinterpret_cast<std::uintptr_t>(function);
}

std::uint64_t addressOf(const Function& function) {
  return std::visit([](auto pointer) { return addressOf(pointer); }, function);
}

class Lowering {
 public:
  Lowering(bool canRound, Graph& graph) : m_canRound(canRound), m_graph(graph) {}

  NodeId lower(const Expression& expression) {
    for (const Step& step : expression.steps) {
      lowerStep(step);
    }
    return pop();
  }

 private:
  using enum Operation;

  void lowerStep(const Step& step) {
    switch (step.kind) {
      case StepKind::constant:
        return push(m_graph.constant(step.number));
      case StepKind::variable:
        return push(m_graph.variable(step.element));
      case StepKind::negate:
        return push(m_graph.make(negate, pop()));
      case StepKind::call:
        return lowerCall(step.function);
      case StepKind::skipUnless:
        m_conditions.push_back(maskOf(pop()));
        return;
      case StepKind::skip:
        return;
      case StepKind::choose: {
        const NodeId otherwise = pop();
        const NodeId then = pop();
        push(choose(m_conditions.back(), then, otherwise));
        m_conditions.pop_back();
        return;
      }
      default: {
        const NodeId b = pop();
        const NodeId a = pop();
        push(lowerBinary(step.kind, a, b));
      }
    }
  }

  NodeId lowerBinary(StepKind kind, NodeId a, NodeId b) {
    switch (kind) {
      case StepKind::add:
        return m_graph.make(add, a, b);
      case StepKind::subtract:
        return m_graph.make(subtract, a, b);
      case StepKind::multiply:
        return m_graph.make(multiply, a, b);
      case StepKind::divide:
        return quotient(a, b);
      case StepKind::remainder:
        return callTo(addressOf(static_cast<Function2>(std::fmod)), a, b);
      case StepKind::power:
        return raise(a, b);
      case StepKind::smaller:
        return m_graph.make(smaller, b, a);
      case StepKind::larger:
        return m_graph.make(larger, b, a);
      case StepKind::less:
        return numberOf(m_graph.make(less, a, b));
      case StepKind::lessOrEqual:
        return numberOf(m_graph.make(lessOrEqual, a, b));
      case StepKind::greater:
        return numberOf(m_graph.make(less, b, a));
      case StepKind::greaterOrEqual:
        return numberOf(m_graph.make(lessOrEqual, b, a));
      case StepKind::equal:
        return numberOf(m_graph.make(equal, a, b));
      case StepKind::notEqual:
        return numberOf(m_graph.make(notEqual, a, b));
      case StepKind::both:
        return conjunction(a, b);
      default:
        return disjunction(a, b);
    }
  }

  // A division by a power of two is a product with its exact inverse.
  NodeId quotient(NodeId a, NodeId b) {
    if (m_graph.isConstant(b)) {
      const double divisor = m_graph.number(b);
      int exponent = 0;
      const bool isPowerOfTwo = std::abs(std::frexp(divisor, &exponent)) == 0.5;
      if (isPowerOfTwo && std::isnormal(divisor) && std::isnormal(1.0 / divisor)) {
        return m_graph.make(multiply, a, m_graph.constant(1.0 / divisor));
      }
    }
    return m_graph.make(divide, a, b);
  }

  NodeId raise(NodeId base, NodeId exponent) {
    if (!m_graph.isConstant(exponent)) {
      return callTo(addressOf(static_cast<Function2>(power)), base, exponent);
    }
    const double value = m_graph.number(exponent);
    if (value != 2.0 && value != 3.0 && value != 4.0) {
      return callTo(addressOf(static_cast<Function2>(raised)), base, exponent);
    }
    NodeId product = base;
    for (int i = 1; i < static_cast<int>(value); ++i) {
      product = m_graph.make(multiply, product, base);
    }
    return product;
  }

  // What a call needs is left alone when the first operand decides.
  NodeId conjunction(NodeId a, NodeId b) {
    if (m_graph.node(b).isHeavy) {
      return choose(maskOf(a), numberOf(maskOf(b)), zero());
    }
    return numberOf(m_graph.make(both, maskOf(a), maskOf(b)));
  }

  NodeId disjunction(NodeId a, NodeId b) {
    if (m_graph.node(b).isHeavy) {
      return choose(maskOf(a), one(), numberOf(maskOf(b)));
    }
    return numberOf(m_graph.make(either, maskOf(a), maskOf(b)));
  }

  void lowerCall(const NamedFunction& function) {
    const int count = argumentCountOf(function.function);
    NodeId arguments[3] = {kNoNode, kNoNode, kNoNode};
    for (int i = count; i > 0; --i) {
      arguments[i - 1] = pop();
    }
    if (function.intrinsic == Intrinsic::none) {
      push(m_graph.call(addressOf(function.function), arguments, count));
      return;
    }
    push(lowerIntrinsic(function.intrinsic, arguments[0], arguments[1], arguments[2]));
  }

  NodeId lowerIntrinsic(Intrinsic intrinsic, NodeId x, NodeId y, NodeId z) {
    switch (intrinsic) {
      case Intrinsic::isNull:
        return numberOf(isNull(x));
      case Intrinsic::isNan:
        return numberOf(m_graph.make(sameBits, x, m_graph.bits(kNotANumberBits)));
      case Intrinsic::isFinite:
        return m_graph.make(keepWhere, m_graph.make(finite, x), m_graph.constant(-1.0));
      case Intrinsic::isTrue:
        return m_graph.make(dropWhere, isNull(x), numberOf(maskOf(x)));
      case Intrinsic::logicalNot:
        return choose(isNull(x), null(), numberOf(m_graph.make(equal, x, zero())));
      case Intrinsic::square:
        return m_graph.make(multiply, x, x);
      case Intrinsic::nvl:
        return choose(isNull(x), y, x);
      case Intrinsic::nvl2:
        return choose(isNull(x), z, y);
      case Intrinsic::nanvl:
        return choose(m_graph.make(unordered, x, x), y, x);
      case Intrinsic::nanvl2:
        return choose(m_graph.make(unordered, x, x), z, y);
      case Intrinsic::finitevl:
        return choose(m_graph.make(finite, x), x, y);
      case Intrinsic::finitevl2:
        return choose(m_graph.make(finite, x), y, z);
      case Intrinsic::floor2:
        return largestMultiple(x, y);
      case Intrinsic::absolute:
        return m_graph.make(absolute, x);
      case Intrinsic::sign:
        return choose(m_graph.make(less, x, zero()), m_graph.constant(-1.0),
                      numberOf(m_graph.make(less, zero(), x)));
      case Intrinsic::rint:
        return floorOf(m_graph.make(add, x, m_graph.constant(0.5)));
      case Intrinsic::squareRoot:
        return m_graph.make(squareRoot, x);
      default:
        return truncated(x);
    }
  }

  // Of y, at most x.
  NodeId largestMultiple(NodeId x, NodeId y) {
    const NodeId count = m_graph.make(divide, x, y);
    const NodeId rest = m_graph.make(subtract, count, floorOf(count));
    const NodeId multiple = m_graph.make(subtract, x, m_graph.make(multiply, rest, y));
    return choose(m_graph.make(either, isNull(x), isNull(y)), null(), multiple);
  }

  NodeId floorOf(NodeId x) {
    return m_canRound ? m_graph.make(roundDown, x) : callTo(addressOf(jit::roundDown), x);
  }

  NodeId truncated(NodeId x) {
    return m_canRound ? m_graph.make(truncate, x) : callTo(addressOf(jit::truncate), x);
  }

  NodeId isNull(NodeId x) { return m_graph.make(sameBits, x, null()); }
  NodeId null() { return m_graph.bits(kNullNumberBits); }
  NodeId zero() { return m_graph.constant(0.0); }
  NodeId one() { return m_graph.constant(1.0); }

  NodeId numberOf(NodeId mask) { return m_graph.make(keepWhere, mask, one()); }

  NodeId maskOf(NodeId number) {
    const Node& node = m_graph.node(number);
    if (node.operation == keepWhere && m_graph.isConstant(node.operands[1]) &&
        isTruth(m_graph.number(node.operands[1]))) {
      return node.operands[0];
    }
    return m_graph.make(notEqual, number, zero());
  }

  NodeId choose(NodeId mask, NodeId a, NodeId b) {
    if (a == b) {
      return a;
    }
    if (m_graph.isConstant(mask)) {
      return m_graph.node(mask).payload != 0 ? a : b;
    }
    if (b == zero() && !m_graph.node(a).isHeavy) {
      return m_graph.make(keepWhere, mask, a);
    }
    if (a == zero() && !m_graph.node(b).isHeavy) {
      return m_graph.make(dropWhere, mask, b);
    }
    return m_graph.make(select, mask, a, b);
  }

  template <typename... Nodes>
  NodeId callTo(std::uint64_t address, Nodes... operands) {
    const NodeId arguments[] = {operands...};
    return m_graph.call(address, arguments, sizeof...(operands));
  }

  void push(NodeId node) { m_stack.push_back(node); }

  NodeId pop() {
    const NodeId node = m_stack.back();
    m_stack.pop_back();
    return node;
  }

  bool m_canRound;
  Graph& m_graph;
  std::vector<NodeId> m_stack;
  std::vector<NodeId> m_conditions;
};

}  // namespace

NodeId lower(const Expression& expression, bool canRound, Graph& graph) {
  return Lowering(canRound, graph).lower(expression);
}

}  // namespace kelvarin::jit
