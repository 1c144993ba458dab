#include "host/contract/known_elements.h"

#include <algorithm>

#include "host/contract/messages.h"
#include "host/contract/nearest_names.h"

namespace kelvarin {

namespace {

class Search {
 public:
  explicit Search(std::span<const KnownElements> table) : m_table(table) {}

  // `known` is the element's line of the table, null where it has none.
  void visit(const XMLNode& node, const KnownElements* known) {
    if (known != nullptr && !node.text().trimmed().isEmpty()) {
      found.push_back({node, messages::strayText(node.name(), node.text().simplified())});
    }
    const QStringList children = known == nullptr ? QStringList() : known->children;
    for (int i = 0; i < node.nChildNode(); ++i) {
      const XMLNode child = node.getChildNode(i);
      if (!children.contains(child.name())) {
        found.push_back({child, messages::unknownElement(child.name(), node.name(),
                                                         nearestNames(child.name(), children),
                                                         children)});
        continue;
      }
      const auto inside = std::find_if(m_table.begin() + 1, m_table.end(), [&](const auto& line) {
        return line.parent == child.name();
      });
      visit(child, inside == m_table.end() ? nullptr : &*inside);
    }
  }

  std::vector<UnknownContent> found;

 private:
  std::span<const KnownElements> m_table;
};

}  // namespace

std::vector<UnknownContent> unknownContent(const XMLNode& action,
                                           std::span<const KnownElements> table) {
  Search search(table);
  search.visit(action, &table.front());
  return std::move(search.found);
}

QString atGraphPlace(const QString& file, XMLNode::Place place, const QString& message) {
  return messages::atGraphPlace(file, place.line, place.column, message);
}

}  // namespace kelvarin
