#include "jit/simd_assembler.h"

#include <bit>

#include "base/null_number.h"

namespace kelvarin::jit {

namespace {

constexpr std::uint64_t kSignBit = 0x8000000000000000ull;
constexpr std::uint64_t kAllButSign = ~kSignBit;
constexpr int kBytesOfConstant = 32;

}  // namespace

SimdAssembler::SimdAssembler(void* buffer, std::size_t size, InstructionSet instructionSet)
    : Xbyak::CodeGenerator(size, buffer),
      m_instructionSet(instructionSet),
      m_isAvx(instructionSet >= InstructionSet::avx2),
      m_scratch(kScratch) {}

Xbyak::Xmm SimdAssembler::vectorRegister(int index) const {
  return Xbyak::Xmm(isScalar() ? Operand::XMM : Operand::YMM, index);
}

Xbyak::Address SimdAssembler::constant(std::uint64_t bits) {
  const auto [entry, isNew] =
      m_constantIndices.try_emplace(bits, static_cast<int>(m_constants.size()));
  if (isNew) {
    m_constants.push_back(bits);
  }
  return ptr[rip + m_constantsLabel + entry->second * kBytesOfConstant];
}

void SimdAssembler::emitConstants() {
  align(kBytesOfConstant);
  L(m_constantsLabel);
  for (const std::uint64_t bits : m_constants) {
    for (int lane = 0; lane < 4; ++lane) {
      dq(bits);
    }
  }
}

void SimdAssembler::restart() {
  reset();
  m_constantsLabel.clear();
  m_constants.clear();
  m_constantIndices.clear();
}

void SimdAssembler::copy(int target, int source) {
  if (target == source) {
    return;
  }
  if (m_isAvx) {
    vmovapd(vectorRegister(target), vectorRegister(source));
  } else {
    movapd(vectorRegister(target), vectorRegister(source));
  }
}

void SimdAssembler::load(int target, const Address& source) {
  if (!m_isAvx) {
    movsd(vectorRegister(target), source);
  } else if (isScalar()) {
    vmovsd(vectorRegister(target), source);
  } else {
    vmovupd(vectorRegister(target), source);
  }
}

void SimdAssembler::store(const Address& target, int source) {
  if (!m_isAvx) {
    movsd(target, vectorRegister(source));
  } else if (isScalar()) {
    vmovsd(target, vectorRegister(source));
  } else {
    vmovupd(target, vectorRegister(source));
  }
}

void SimdAssembler::loadZero(int target) {
  const Xbyak::Xmm x(target);
  if (m_isAvx) {
    vxorps(x, x, x);  // clears all lanes
  } else {
    xorps(x, x);
  }
}

const Xbyak::Operand& SimdAssembler::prepare(int target, int a, const Operand& b) {
  if (target == a) {
    return b;
  }
  if (b.isXMM() && b.getIdx() == target) {
    movapd(m_scratch, vectorRegister(target));
    copy(target, a);
    return m_scratch;
  }
  copy(target, a);
  return b;
}

void SimdAssembler::compute(Arithmetic operation, int target, int a, const Operand& b) {
  const Xbyak::Xmm t = vectorRegister(target);
  const Xbyak::Xmm s = vectorRegister(a);
  const Operand& source = m_isAvx ? b : prepare(target, a, b);
  switch (operation) {
    case Arithmetic::add:
      return !m_isAvx ? addsd(t, source) : isScalar() ? vaddsd(t, s, b) : vaddpd(t, s, b);
    case Arithmetic::subtract:
      return !m_isAvx ? subsd(t, source) : isScalar() ? vsubsd(t, s, b) : vsubpd(t, s, b);
    case Arithmetic::multiply:
      return !m_isAvx ? mulsd(t, source) : isScalar() ? vmulsd(t, s, b) : vmulpd(t, s, b);
    case Arithmetic::divide:
      return !m_isAvx ? divsd(t, source) : isScalar() ? vdivsd(t, s, b) : vdivpd(t, s, b);
    case Arithmetic::smaller:
      return !m_isAvx ? minsd(t, source) : isScalar() ? vminsd(t, s, b) : vminpd(t, s, b);
    case Arithmetic::larger:
      return !m_isAvx ? maxsd(t, source) : isScalar() ? vmaxsd(t, s, b) : vmaxpd(t, s, b);
  }
}

void SimdAssembler::combine(Bitwise operation, int target, int a, const Operand& b) {
  const Xbyak::Xmm t = vectorRegister(target);
  const Xbyak::Xmm s = vectorRegister(a);
  const Operand& source = m_isAvx ? b : prepare(target, a, b);
  switch (operation) {
    case Bitwise::both:
      return m_isAvx ? vandpd(t, s, b) : andpd(t, source);
    case Bitwise::either:
      return m_isAvx ? vorpd(t, s, b) : orpd(t, source);
    case Bitwise::exclusive:
      return m_isAvx ? vxorpd(t, s, b) : xorpd(t, source);
    case Bitwise::second:
      return m_isAvx ? vandnpd(t, s, b) : andnpd(t, source);
  }
}

void SimdAssembler::compare(Comparison comparison, int target, int a, const Operand& b) {
  const auto predicate = static_cast<std::uint8_t>(comparison);
  const Xbyak::Xmm t = vectorRegister(target);
  if (!m_isAvx) {
    const Operand& source = prepare(target, a, b);
    cmpsd(t, source, predicate);
  } else if (isScalar()) {
    vcmpsd(t, vectorRegister(a), b, predicate);
  } else {
    vcmppd(t, vectorRegister(a), b, predicate);
  }
}

void SimdAssembler::compareBits(int target, int a, const Operand& b) {
  const Xbyak::Xmm t = vectorRegister(target);
  if (m_isAvx) {
    vpcmpeqq(t, vectorRegister(a), b);
    return;
  }
  const Operand& source = prepare(target, a, b);
  if (m_instructionSet >= InstructionSet::sse41) {
    pcmpeqq(t, source);
    return;
  }
  constexpr std::uint8_t swapHalves = 0xB1;
  pcmpeqd(t, source);
  pshufd(m_scratch, t, swapHalves);
  pand(t, m_scratch);
}

void SimdAssembler::select(int target, int mask, int a, int b) {
  if (m_isAvx) {
    vblendvpd(vectorRegister(target), vectorRegister(b), vectorRegister(a), vectorRegister(mask));
    return;
  }
  movapd(m_scratch, vectorRegister(mask));
  andnpd(m_scratch, vectorRegister(b));
  if (target == a) {
    andpd(vectorRegister(target), vectorRegister(mask));
  } else {
    copy(target, mask);
    andpd(vectorRegister(target), vectorRegister(a));
  }
  orpd(vectorRegister(target), m_scratch);
}

void SimdAssembler::squareRoot(int target, int source) {
  const Xbyak::Xmm t = vectorRegister(target);
  const Xbyak::Xmm s = vectorRegister(source);
  if (!m_isAvx) {
    sqrtsd(t, s);
  } else if (isScalar()) {
    vsqrtsd(t, s, s);
  } else {
    vsqrtpd(t, s);
  }
}

void SimdAssembler::round(int target, int source, int mode) {
  constexpr int withoutException = 8;
  const auto control = static_cast<std::uint8_t>(mode | withoutException);
  const Xbyak::Xmm t = vectorRegister(target);
  const Xbyak::Xmm s = vectorRegister(source);
  if (!m_isAvx) {
    roundsd(t, s, control);
  } else if (isScalar()) {
    vroundsd(t, s, s, control);
  } else {
    vroundpd(t, s, control);
  }
}

// Changes the sign of all but NaNs.
void SimdAssembler::negate(int target, int source) {
  compare(Comparison::ordered, kScratch, source, vectorRegister(source));
  combine(Bitwise::both, kScratch, kScratch, constant(kSignBit));
  combine(Bitwise::exclusive, target, source, vectorRegister(kScratch));
}

// Changes the sign of all that is below zero.
void SimdAssembler::absolute(int target, int source) {
  compare(Comparison::less, kScratch, source, constant(std::bit_cast<std::uint64_t>(0.0)));
  combine(Bitwise::both, kScratch, kScratch, constant(kSignBit));
  combine(Bitwise::exclusive, target, source, vectorRegister(kScratch));
}

void SimdAssembler::compareFinite(int target, int source) {
  combine(Bitwise::both, target, source, constant(kAllButSign));
  compare(Comparison::less, target, target, constant(std::bit_cast<std::uint64_t>(kInfinity)));
}

void SimdAssembler::moveMask(const Xbyak::Reg32& target, int source) {
  if (m_isAvx) {
    vmovmskpd(target, vectorRegister(source));
  } else {
    movmskpd(target, vectorRegister(source));
  }
}

}  // namespace kelvarin::jit
