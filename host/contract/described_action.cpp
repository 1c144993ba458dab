#include "host/contract/described_action.h"

namespace kelvarin {

DescribedAction::~DescribedAction() = default;

const ActionDescription* descriptionOf(const ActionItem& action) {
  const auto* described = dynamic_cast<const DescribedAction*>(&action);
  return described == nullptr ? nullptr : &described->description();
}

const std::vector<AttributeDescription>& attributesOfEveryAction() {
  static const std::vector<AttributeDescription> attributes{
      {.name = QStringLiteral("name"),
       .kind = AttributeKind::text,
       .meaning = QStringLiteral("the action's name, which no other action of the graph has"),
       .defaultText = QString()},
      {.name = QStringLiteral("version"),
       .kind = AttributeKind::text,
       .meaning = QStringLiteral("the version of the action's settings; kept, without effect"),
       .defaultText = QString()},
      {.name = QStringLiteral("x"),
       .kind = AttributeKind::number,
       .meaning = QStringLiteral("the position on the canvas, from the left"),
       .defaultText = QStringLiteral("0")},
      {.name = QStringLiteral("y"),
       .kind = AttributeKind::number,
       .meaning = QStringLiteral("the position on the canvas, from the top"),
       .defaultText = QStringLiteral("0")},
      {.name = QStringLiteral("disabled"),
       .kind = AttributeKind::flag,
       .meaning = QStringLiteral("1: switched off; rows of input pin 0 go through unchanged to "
                                 "output pin 0, a source has none, a sink writes nothing"),
       .defaultText = QStringLiteral("0")}};
  return attributes;
}

}  // namespace kelvarin
