// Which operands of a typed tree are computed only for the rows that ask for them.
//
// The branches of a choice, and the second side of a logical operator where the first one decides.
// An operand that costs less than leaving rows out is computed for all of them.
// Used when column programs are compiled.
#pragma once

#include <cstddef>
#include <vector>

#include "expression/batches/typed_tree.h"

namespace kelvarin {

class LazyOperands {
 public:
  // `tree` outlives it.
  explicit LazyOperands(const TypedTree& tree);

  // The operand at `position` of the node at `index`.
  bool isLazy(std::size_t index, std::size_t position) const;

 private:
  bool isCheap(std::size_t index) const;

  const TypedTree& m_tree;
  std::vector<bool> m_mayFail;  // each node, or something that it is computed of
};

}  // namespace kelvarin
