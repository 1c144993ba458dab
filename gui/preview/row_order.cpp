#include "gui/preview/row_order.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numeric>
#include <string_view>

#include "host/contract/column_bytes.h"

namespace kelvarin {

namespace {

constexpr std::size_t kCallsBetweenLooks = 1 << 14;

// Looks at the flag now and then.
class Look {
 public:
  explicit Look(const StopFlag& isStopped) : m_isStopped(isStopped) {}
  bool mustStop() { return ++m_calls % kCallsBetweenLooks == 0 && m_isStopped; }

 private:
  const StopFlag& m_isStopped;
  std::size_t m_calls = 0;
};

// Leaves std::sort, which knows no other way out; caught where it was called.
struct Stopped {};

// What a row is sorted by. Of a text it is the next part; a text that goes on ends in kGoesOn.
struct Item {
  std::uint32_t high;
  std::uint32_t low;
  std::uint32_t row;

  std::uint64_t key() const { return std::uint64_t{high} << 32 | low; }
  void setKey(std::uint64_t key) {
    high = static_cast<std::uint32_t>(key >> 32);
    low = static_cast<std::uint32_t>(key);
  }
};
static_assert(sizeof(Item) == 12);

constexpr std::uint64_t kFirst = 0;
constexpr std::uint64_t kLast = ~std::uint64_t{0};

// Keeps the order of numbers; the two zeros are one.
std::uint64_t ordered(double number) {
  const auto bits = std::bit_cast<std::uint64_t>(number + 0.0);
  constexpr std::uint64_t sign = std::uint64_t{1} << 63;
  return (bits & sign) != 0 ? ~bits : bits | sign;
}

std::uint64_t keyOfNumber(double number, bool isDescending) {
  if (isNullNumber(number)) {
    return isDescending ? kLast : kFirst;
  }
  if (std::isnan(number)) {
    return kLast - 1;
  }
  return isDescending ? ~ordered(number) : ordered(number);
}

constexpr std::size_t kPart = 7;  // bytes of a text in one key
constexpr std::uint64_t kGoesOn = kPart + 2;

// Seven bytes from `start`, then how many there are, 0 for a missing text.
std::uint64_t keyOfText(const unsigned char* bytes, std::size_t start) {
  if (isNullText(bytes)) {
    return 0;
  }
  const std::string_view text = textFromBytes(bytes);
  const std::string_view part = text.substr(std::min(start, text.size()));
  std::uint64_t key = 0;
  for (std::size_t i = 0; i < kPart; ++i) {
    key = key << 8 | (i < part.size() ? static_cast<unsigned char>(part[i]) : 0u);
  }
  return key << 8 | std::min<std::uint64_t>(part.size() + 1, kGoesOn);
}

class Sorting {
 public:
  Sorting(const PreviewRows& rows, const RowOrder& order, const StopFlag& isStopped)
      : m_rows(rows),
        m_column(order.sortColumn),
        m_type(rows.columns()[static_cast<std::size_t>(order.sortColumn)].meta),
        m_isDescending(order.isDescending),
        m_look(isStopped) {}

  bool sort(RowNumbers& numbers) {
    if (!takeKeys(numbers)) {
      return false;
    }
    try {
      sortItems(m_items.begin(), m_items.end());
      if (fixedSizeOf(m_type) == 0 && !sortFurther()) {
        return false;
      }
    } catch (const Stopped&) {
      return false;
    }
    std::transform(m_items.begin(), m_items.end(), numbers.begin(),
                   [](const Item& item) { return item.row; });
    return true;
  }

 private:
  using Items = std::vector<Item>;
  // Texts that are the same so far.
  struct Group {
    std::size_t begin;
    std::size_t end;
  };

  std::uint64_t keyOf(const unsigned char* bytes) const {
    switch (m_type) {
      case MetaTypeColumn::number:
        return keyOfNumber(numberFromBytes(bytes), m_isDescending);
      case MetaTypeColumn::key: {
        const std::uint32_t key = keyFromBytes(bytes);
        return keyOfNumber(isNullKey(key) ? kNullNumber : key, m_isDescending);
      }
      default:
        return keyOfPart(bytes, 0);
    }
  }
  std::uint64_t keyOfPart(const unsigned char* bytes, std::size_t start) const {
    const std::uint64_t key = keyOfText(bytes, start);
    return m_isDescending ? ~key : key;
  }

  bool takeKeys(const RowNumbers& numbers) {
    m_items.reserve(numbers.size());
    return m_rows.visit(m_column, numbers, [this](long long row, const unsigned char* bytes) {
      m_items.push_back({0, 0, static_cast<std::uint32_t>(row)});
      m_items.back().setKey(keyOf(bytes));
      return !m_look.mustStop();
    });
  }

  void sortItems(Items::iterator begin, Items::iterator end) {
    std::sort(begin, end, [this](const Item& a, const Item& b) {
      if (m_look.mustStop()) {
        throw Stopped();
      }
      return a.key() != b.key() ? a.key() < b.key() : a.row < b.row;
    });
  }

  // Texts that begin alike are sorted by their next part, until they differ or end.
  bool sortFurther() {
    std::vector<Group> groups;
    addGroups({0, m_items.size()}, groups);
    for (std::size_t start = kPart; !groups.empty(); start += kPart) {
      if (!takeParts(groups, start)) {
        return false;
      }
      std::vector<Group> further;
      for (const Group& group : groups) {
        sortItems(m_items.begin() + static_cast<std::ptrdiff_t>(group.begin),
                  m_items.begin() + static_cast<std::ptrdiff_t>(group.end));
        addGroups(group, further);
      }
      groups = std::move(further);
    }
    return true;
  }

  void addGroups(const Group& range, std::vector<Group>& groups) const {
    for (std::size_t begin = range.begin; begin < range.end;) {
      const std::uint64_t key = m_items[begin].key();
      std::size_t end = begin + 1;
      while (end < range.end && m_items[end].key() == key) {
        ++end;
      }
      const std::uint64_t plain = m_isDescending ? ~key : key;
      if (end - begin > 1 && (plain & 0xFF) == kGoesOn) {
        groups.push_back({begin, end});
      }
      begin = end;
    }
  }

  // Reads the column once, in the order of the rows. Groups whose texts are all the same end here.
  bool takeParts(std::vector<Group>& groups, std::size_t start) {
    struct Position {
      std::uint32_t row;
      std::uint32_t item;
    };
    std::vector<Position> positions;
    for (const Group& group : groups) {
      for (std::size_t i = group.begin; i < group.end; ++i) {
        positions.push_back({m_items[i].row, static_cast<std::uint32_t>(i)});
      }
    }
    std::sort(positions.begin(), positions.end(),
              [](const Position& a, const Position& b) { return a.row < b.row; });
    RowNumbers rows(positions.size());
    std::transform(positions.begin(), positions.end(), rows.begin(),
                   [](const Position& position) { return position.row; });
    std::vector<std::uint64_t> hashes(m_items.size());
    std::size_t next = 0;
    const bool isRead = m_rows.visit(m_column, rows, [&](long long, const unsigned char* bytes) {
      const std::uint32_t item = positions[next++].item;
      m_items[item].setKey(keyOfPart(bytes, start));
      hashes[item] = std::hash<std::string_view>()(textFromBytes(bytes));
      return !m_look.mustStop();
    });
    std::erase_if(groups, [&hashes](const Group& group) {
      const std::uint64_t first = hashes[group.begin];
      return std::all_of(hashes.begin() + static_cast<std::ptrdiff_t>(group.begin),
                         hashes.begin() + static_cast<std::ptrdiff_t>(group.end),
                         [first](std::uint64_t hash) { return hash == first; });
    });
    return isRead;
  }

  const PreviewRows& m_rows;
  const int m_column;
  const MetaTypeColumn m_type;
  const bool m_isDescending;
  Look m_look;
  Items m_items;
};

bool keepAccepted(const PreviewRows& rows, const RowOrder::Filter& filter, Look& look,
                  RowNumbers& numbers) {
  RowNumbers kept;
  const bool isRead =
      rows.visit(filter.column, numbers, [&](long long row, const unsigned char* bytes) {
        if (filter.cells.accepts(bytes)) {
          kept.push_back(static_cast<std::uint32_t>(row));
        }
        return !look.mustStop();
      });
  numbers = std::move(kept);
  return isRead;
}

}  // namespace

std::optional<RowNumbers> rowsInOrder(const PreviewRows& rows, long long rowCount,
                                      const RowOrder& order, const StopFlag& isStopped) {
  RowNumbers numbers(static_cast<std::size_t>(rowCount));
  std::iota(numbers.begin(), numbers.end(), 0u);
  Look look(isStopped);
  for (const RowOrder::Filter& filter : order.filters) {
    if (!keepAccepted(rows, filter, look, numbers)) {
      return std::nullopt;
    }
  }
  if (order.sortColumn >= 0 && !Sorting(rows, order, isStopped).sort(numbers)) {
    return std::nullopt;
  }
  return isStopped ? std::nullopt : std::make_optional(std::move(numbers));
}

}  // namespace kelvarin
