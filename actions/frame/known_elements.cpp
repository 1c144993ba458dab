#include "actions/frame/known_elements.h"

#include "host/contract/main_ui.h"

namespace kelvarin {

bool reportUnknownElements(const ActionItem& action, std::span<const KnownElements> table) {
  const GlobalParameters* parameters = action.globalParameters();
  const QString file = parameters == nullptr ? QString() : parameters->graphFile();
  const std::vector<UnknownContent> unknown = unknownContent(action.node(), table);
  for (const UnknownContent& content : unknown) {
    MainUI::addLog(LogLevel::error,
                   atGraphPlace(file, content.element.place(), content.message));
  }
  return !unknown.empty();
}

}  // namespace kelvarin
