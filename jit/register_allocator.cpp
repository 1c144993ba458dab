#include "jit/register_allocator.h"

#include <algorithm>

namespace kelvarin::jit {

namespace {

constexpr int kBytesOfLane = 8;
constexpr std::uint32_t kNever = ~std::uint32_t{0};

}  // namespace

RegisterAllocator::RegisterAllocator(SimdAssembler& assembler, const Graph& graph,
                                     const Schedule& schedule, const Frame& frame)
    : m_assembler(assembler),
      m_graph(graph),
      m_schedule(schedule),
      m_frame(frame),
      m_locations(graph.size()) {
  m_holders.fill(kNoNode);
  for (const auto& [node, index] : frame.constants) {
    bind(node, index);
    m_kept |= 1u << index;
  }
}

void RegisterAllocator::begin(std::uint32_t instruction) {
  m_now = instruction;
  m_pinned = m_kept;
}

std::uint32_t RegisterAllocator::nextUseOf(NodeId node) const {
  const auto uses = m_schedule.usesOf(node);
  const std::uint32_t next = m_locations[node].nextUse;
  return next < uses.size() ? uses[next] : kNever;
}

bool RegisterAllocator::isNeededLater(NodeId node) const {
  const auto uses = m_schedule.usesOf(node);
  return !uses.empty() && uses.back() > m_now;
}

bool RegisterAllocator::hasUseAfterThis(NodeId node) const {
  const auto uses = m_schedule.usesOf(node);
  return m_locations[node].nextUse + 1 < uses.size();
}

int RegisterAllocator::freeRegister() const {
  const auto found = std::find(m_holders.begin(), m_holders.end(), kNoNode);
  return found == m_holders.end() ? -1 : static_cast<int>(found - m_holders.begin());
}

int RegisterAllocator::takeRegister() {
  if (const int index = freeRegister(); index >= 0) {
    return index;
  }
  int latest = -1;
  std::uint32_t latestUse = 0;
  for (int i = 0; i < kRegisterCount; ++i) {
    const std::uint32_t use = nextUseOf(m_holders[static_cast<std::size_t>(i)]);
    if ((m_pinned >> i & 1) == 0 && (latest < 0 || use > latestUse)) {
      latest = i;
      latestUse = use;
    }
  }
  evict(latest);
  return latest;
}

void RegisterAllocator::evict(int index) {
  NodeId& holder = m_holders[static_cast<std::size_t>(index)];
  save(holder);
  m_locations[holder].inRegister = -1;
  holder = kNoNode;
}

void RegisterAllocator::save(NodeId node) {
  if (isRead(m_graph.node(node)) || m_locations[node].slot >= 0) {
    return;
  }
  const int source = m_locations[node].inRegister;
  m_assembler.store(reserveSlot(node), source);
}

int RegisterAllocator::fetch(NodeId node) {
  int index = m_locations[node].inRegister;
  if (index < 0) {
    index = takeRegister();
    loadInto(index, node);
    bind(node, index);
  }
  m_pinned |= 1u << index;
  return index;
}

ValueSource RegisterAllocator::fetchSource(NodeId node, bool isWide) {
  const bool isConstant = m_graph.isConstant(node);
  const bool isReadable = isConstant || !isWide || m_assembler.lanes() == Lanes::four;
  const bool isInRegister = m_locations[node].inRegister >= 0;
  if (isInRegister || !isReadable || (hasUseAfterThis(node) && freeRegister() >= 0)) {
    return ValueSource(m_assembler.vectorRegister(fetch(node)));
  }
  return ValueSource(addressOf(node));
}

void RegisterAllocator::loadInto(int target, NodeId node) {
  const Node& value = m_graph.node(node);
  if (value.operation == Operation::constant && value.payload == 0) {
    m_assembler.loadZero(target);
    return;
  }
  m_assembler.load(target, addressOf(node));
}

void RegisterAllocator::fetchInto(int target, NodeId node) {
  if (const int source = m_locations[node].inRegister; source >= 0) {
    m_assembler.copy(target, source);
  } else {
    loadInto(target, node);
  }
}

// A move waits until no other one needs what its target holds; a ring of moves is opened through
// the scratch register.
void RegisterAllocator::fetchArguments(const NodeId* nodes, int count) {
  std::array<int, 3> sources = {-1, -1, -1};
  for (int i = 0; i < count; ++i) {
    sources[static_cast<std::size_t>(i)] = m_locations[nodes[i]].inRegister;
  }
  const auto isWanted = [&](int index, std::size_t by) {
    for (std::size_t i = 0; i < sources.size(); ++i) {
      if (i != by && sources[i] == index) {
        return true;
      }
    }
    return false;
  };
  while (true) {
    bool isMoved = false;
    std::size_t waiting = sources.size();
    for (std::size_t i = 0; i < sources.size(); ++i) {
      const int target = static_cast<int>(i);
      if (sources[i] < 0) {
        continue;
      }
      if (sources[i] != target && isWanted(target, i)) {
        waiting = i;
        continue;
      }
      m_assembler.copy(target, sources[i]);
      sources[i] = -1;
      isMoved = true;
    }
    if (waiting == sources.size()) {
      break;
    }
    if (!isMoved) {
      m_assembler.copy(SimdAssembler::kScratch, sources[waiting]);
      std::replace(sources.begin(), sources.end(), sources[waiting], SimdAssembler::kScratch);
    }
  }
  for (int i = 0; i < count; ++i) {
    if (m_locations[nodes[i]].inRegister < 0) {
      loadInto(i, nodes[i]);
    }
  }
}

void RegisterAllocator::release(NodeId node) {
  Location& location = m_locations[node];
  const auto uses = m_schedule.usesOf(node);
  while (location.nextUse < uses.size() && uses[location.nextUse] <= m_now) {
    ++location.nextUse;
  }
  if (location.nextUse < uses.size()) {
    return;
  }
  if (location.inRegister >= 0 && (m_kept >> location.inRegister & 1) == 0) {
    m_holders[static_cast<std::size_t>(location.inRegister)] = kNoNode;
    location.inRegister = -1;
  }
  freeSlot(node);
}

int RegisterAllocator::takeTarget(int preferred) {
  const bool isFree = m_holders[static_cast<std::size_t>(preferred)] == kNoNode;
  return isFree ? preferred : takeRegister();
}

void RegisterAllocator::bind(NodeId node, int target) {
  m_holders[static_cast<std::size_t>(target)] = node;
  m_locations[node].inRegister = target;
}

void RegisterAllocator::saveLiving() {
  for (const NodeId holder : m_holders) {
    if (holder != kNoNode && isNeededLater(holder)) {
      save(holder);
    }
  }
}

void RegisterAllocator::forgetRegisters() {
  for (NodeId& holder : m_holders) {
    if (holder != kNoNode) {
      m_locations[holder].inRegister = -1;
      holder = kNoNode;
    }
  }
}

void RegisterAllocator::moveToMemory(NodeId node) {
  if (m_locations[node].inRegister >= 0) {
    save(node);
  }
}

Xbyak::Address RegisterAllocator::addressOf(NodeId node, int lane) {
  const Node& value = m_graph.node(node);
  if (value.operation == Operation::constant) {
    return m_assembler.constant(value.payload);
  }
  if (value.operation == Operation::variable) {
    return variableAddress(value.payload, lane);
  }
  return reserveSlot(node, lane);
}

Xbyak::Address RegisterAllocator::reserveSlot(NodeId node, int lane) {
  std::int32_t& slot = m_locations[node].slot;
  if (slot < 0 && !m_freeSlots.empty()) {
    slot = m_freeSlots.back();
    m_freeSlots.pop_back();
  } else if (slot < 0) {
    slot = m_slotCount++;
  }
  const int bytesOfSlot = m_assembler.lanes() == Lanes::four ? 4 * kBytesOfLane : kBytesOfLane;
  return m_assembler.ptr[m_assembler.rsp + slot * bytesOfSlot + lane * kBytesOfLane];
}

void RegisterAllocator::freeSlot(NodeId node) {
  std::int32_t& slot = m_locations[node].slot;
  if (slot >= 0) {
    m_freeSlots.push_back(slot);
    slot = -1;
  }
}

Xbyak::Address RegisterAllocator::variableAddress(std::size_t element, int lane) {
  const auto offset = static_cast<int>(element * sizeof(double));
  if (!m_frame.isColumns) {
    return m_assembler.ptr[m_frame.base + offset];
  }
  Xbyak::Reg64 column = m_assembler.rax;
  const auto inRegister = std::find_if(m_frame.columns.begin(), m_frame.columns.end(),
                                       [&](const auto& known) { return known.first == element; });
  if (inRegister != m_frame.columns.end()) {
    column = inRegister->second;
  } else {
    m_assembler.mov(column, m_assembler.ptr[m_frame.base + offset]);
  }
  const int displacement = (m_frame.rowOffset + lane) * kBytesOfLane;
  return m_assembler.ptr[column + m_frame.row * kBytesOfLane + displacement];
}

}  // namespace kelvarin::jit
