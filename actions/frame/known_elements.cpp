#include "actions/frame/known_elements.h"

#include <algorithm>

#include "actions/frame/messages.h"
#include "host/contract/main_ui.h"

namespace kelvarin {

namespace {

class Search {
 public:
  Search(const ActionItem& action, std::span<const KnownElements> table)
      : m_action(action), m_table(table) {}

  QStringList run() {
    visit(m_action.node(), m_table.front());
    return m_texts;
  }

 private:
  void visit(const XMLNode& node, const KnownElements& known) {
    for (int i = 0; i < node.nChildNode(); ++i) {
      const XMLNode child = node.getChildNode(i);
      if (!known.children.contains(child.name())) {
        m_texts += textAbout(child, node, known);
        continue;
      }
      const auto inside = std::find_if(m_table.begin() + 1, m_table.end(), [&](const auto& line) {
        return line.parent == child.name();
      });
      visit(child, inside == m_table.end() ? KnownElements{child.name(), {}} : *inside);
    }
  }

  QString textAbout(const XMLNode& child, const XMLNode& parent, const KnownElements& known) const {
    const GlobalParameters* parameters = m_action.globalParameters();
    return messages::unknownElement(parameters == nullptr ? QString() : parameters->graphFile(),
                                    child.place(), child.name(), parent.name(), known.children);
  }

  const ActionItem& m_action;
  std::span<const KnownElements> m_table;
  QStringList m_texts;
};

}  // namespace

bool reportUnknownElements(const ActionItem& action, std::span<const KnownElements> table) {
  const QStringList texts = Search(action, table).run();
  for (const QString& text : texts) {
    MainUI::addLog(LogLevel::error, text);
  }
  return !texts.isEmpty();
}

}  // namespace kelvarin
