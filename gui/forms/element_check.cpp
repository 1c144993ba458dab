#include "gui/forms/element_check.h"

#include <algorithm>
#include <iterator>

#include "host/contract/declared_content.h"
#include "host/widgets/info_line.h"

namespace kelvarin {

ElementCheck checkElement(const XMLNode& element, ActionItem& prototype,
                          GlobalParameters& parameters) {
  ElementCheck check;
  check.action.reset(prototype.createFromXML(element, &parameters));
  const ActionDescription* description = descriptionOf(prototype);
  if (description == nullptr) {
    return check;
  }
  check.faults = contentFaults(element, *description, parameters);
  if (const auto* described = dynamic_cast<const DescribedAction*>(check.action.get())) {
    std::ranges::move(described->settingFaults(), std::back_inserter(check.faults));
  }
  std::ranges::stable_sort(check.faults, {}, &ElementFault::level);
  return check;
}

void showFaults(const ElementCheck& check, InfoLine& line) {
  if (check.faults.empty()) {
    line.clear();
    return;
  }
  QStringList texts;
  for (const ElementFault& fault : check.faults) {
    texts += fault.message;
  }
  line.setMessage(check.canBeUsed() ? Severity::warning : Severity::error, texts.join(u'\n'));
}

}  // namespace kelvarin
