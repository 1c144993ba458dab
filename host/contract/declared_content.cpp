#include "host/contract/declared_content.h"

#include <algorithm>
#include <iterator>
#include <span>

#include "host/contract/messages.h"
#include "host/contract/nearest_names.h"

namespace kelvarin {

namespace {

// Its letters come in this order in `full`, the first one at the beginning: refTime, referenceTime.
bool isShortFor(const QString& full, const QString& name) {
  qsizetype found = 0;
  for (const QChar letter : full.toLower()) {
    found += found < name.size() && letter == name[found].toLower() ? 1 : 0;
  }
  return name.size() > 1 && found == name.size() && full.startsWith(name[0], Qt::CaseInsensitive);
}

QStringList attributesMeantBy(const QString& name, const QStringList& known) {
  QStringList meant = nearestNames(name, known);
  if (meant.isEmpty()) {
    std::copy_if(known.begin(), known.end(), std::back_inserter(meant),
                 [&name](const QString& full) { return isShortFor(full, name); });
    std::sort(meant.begin(), meant.end(),
              [](const QString& left, const QString& right) { return left.size() < right.size(); });
  }
  return meant;
}

// What is wrong with a value: what it should be, and what it does nevertheless.
struct Oddness {
  QString wanted;       // null: nothing is wrong
  QString effect = {};  // null: it cannot be used
};

Oddness oddnessAgainst(const AllowedValues& allowed, int value) {
  if (value >= allowed.min && value <= allowed.max) {
    return {};
  }
  return {QString::fromUtf8(allowed.inWords), QString::fromUtf8(allowed.effectOfOthers)};
}

Oddness oddnessOfWholeNumber(const QString& text, const AllowedValues& allowed) {
  bool isNumber = false;
  const int value = text.toInt(&isNumber);
  return isNumber ? oddnessAgainst(allowed, value) : Oddness{messages::aWholeNumber()};
}

Oddness oddnessOfNumber(const QString& text) {
  bool isNumber = false;
  text.toDouble(&isNumber);
  return isNumber ? Oddness{} : Oddness{messages::aNumber()};
}

Oddness oddnessOfCutNumber(const QString& text, const AllowedValues& allowed) {
  bool isNumber = false;
  const double value = text.toDouble(&isNumber);
  if (!isNumber) {
    return {messages::aNumber()};
  }
  constexpr double limit = std::numeric_limits<int>::max();
  if (!(value >= -limit && value <= limit)) {
    return {messages::aNumberWithinLimits()};
  }
  return oddnessAgainst(allowed, static_cast<int>(value));
}

Oddness oddnessOfTypeCode(const QString& text, const AllowedValues& allowed) {
  const bool isKnown = QLatin1String(allowed.codes).contains(text[0]);
  if (isKnown && text.size() == 1) {
    return {};
  }
  return {QString::fromUtf8(allowed.inWords),
          isKnown ? messages::firstLetterCounts() : QString::fromUtf8(allowed.effectOfOthers)};
}

// `text` is not empty.
Oddness oddnessOf(const QString& text, AttributeKind kind, const AllowedValues& allowed) {
  switch (kind) {
    case AttributeKind::flag: {
      const QString digit = text.trimmed();
      return digit == u"0" || digit == u"1" ? Oddness{} : Oddness{messages::aFlag()};
    }
    case AttributeKind::wholeNumber:
      return oddnessOfWholeNumber(text, allowed);
    case AttributeKind::cutNumber:
      return oddnessOfCutNumber(text, allowed);
    case AttributeKind::number:
      return oddnessOfNumber(text);
    case AttributeKind::typeCode:
      return oddnessOfTypeCode(text, allowed);
    case AttributeKind::text:
    case AttributeKind::sample:
      break;
  }
  return {};
}

// The declared attributes of an element, in the order in which messages list them.
using AttributeLists = std::span<const std::vector<AttributeDescription>* const>;

const AttributeDescription* findAttribute(AttributeLists lists, const QString& name) {
  for (const auto* list : lists) {
    const auto found = std::ranges::find(*list, name, &AttributeDescription::name);
    if (found != list->end()) {
      return &*found;
    }
  }
  return nullptr;
}

QStringList namesOf(AttributeLists lists) {
  QStringList names;
  for (const auto* list : lists) {
    for (const AttributeDescription& attribute : *list) {
      names += attribute.name;
    }
  }
  return names;
}

class Comparison {
 public:
  explicit Comparison(const GlobalParameters& parameters) : m_parameters(parameters) {}

  void visitAction(const XMLNode& node, const ActionDescription& description) {
    const std::vector<AttributeDescription>* const lists[] = {&attributesOfEveryAction(),
                                                              &description.attributes};
    checkAttributes(node, lists);
    checkText(node, {});
    visitChildren(node, description.children);
  }

  std::vector<ElementFault> takeFaults() {
    std::move(m_attributeFaults.begin(), m_attributeFaults.end(), std::back_inserter(m_faults));
    return std::move(m_faults);
  }

 private:
  void visit(const XMLNode& node, const ElementDescription& description) {
    const std::vector<AttributeDescription>* const lists[] = {&description.attributes};
    checkAttributes(node, lists);
    checkText(node, description.textMeaning);
    visitChildren(node, description.children);
  }

  void visitChildren(const XMLNode& node, const std::vector<ElementDescription>& declared) {
    for (int i = 0; i < node.nChildNode(); ++i) {
      const XMLNode child = node.getChildNode(i);
      const auto found = std::find_if(declared.begin(), declared.end(), [&](const auto& element) {
        return child.name() == element.name && isReadIn(node, element);
      });
      if (found == declared.end()) {
        reportUnknownElement(node, child, declared);
      } else {
        visit(child, *found);
      }
    }
  }

  static bool isReadIn(const XMLNode& parent, const ElementDescription& element) {
    return element.replacedBy.isEmpty() ||
           parent.getChildNode(element.replacedBy.utf16()).isEmpty();
  }

  void reportUnknownElement(const XMLNode& parent, const XMLNode& child,
                            const std::vector<ElementDescription>& declared) {
    QStringList known;
    for (const ElementDescription& element : declared) {
      if (isReadIn(parent, element)) {
        known += element.name;
      }
    }
    m_faults.push_back({LogLevel::error, child,
                        messages::unknownElement(child.name(), parent.name(),
                                                 nearestNames(child.name(), known), known)});
  }

  void checkText(const XMLNode& node, const QString& meaning) {
    if (meaning.isEmpty() && !node.text().trimmed().isEmpty()) {
      m_faults.push_back(
          {LogLevel::error, node, messages::strayText(node.name(), node.text().simplified())});
    }
  }

  void checkAttributes(const XMLNode& node, AttributeLists declared) {
    for (int i = 0; i < node.nAttribute(); ++i) {
      const QString name = node.attributeName(i);
      if (const AttributeDescription* attribute = findAttribute(declared, name)) {
        checkValue(node, *attribute, node.attributeValue(i));
        continue;
      }
      const QStringList known = namesOf(declared);
      m_attributeFaults.push_back(
          {LogLevel::warning, node,
           messages::attributeIgnored(name, node.name(), attributesMeantBy(name, known), known)});
    }
  }

  // A value that is empty is no mistake, nor are blanks alone but where a letter is wanted.
  void checkValue(const XMLNode& node, const AttributeDescription& attribute,
                  const QString& value) {
    const AttributeKind kind = kindOfValueIn(node, attribute);
    if (kind == AttributeKind::text) {
      return;
    }
    const QString expanded = m_parameters.expandString2(value);
    const bool isEmpty =
        kind == AttributeKind::typeCode ? expanded.isEmpty() : expanded.trimmed().isEmpty();
    if (isEmpty) {
      return;
    }
    const Oddness oddness = oddnessOf(expanded, kind, attribute.allowed);
    if (oddness.wanted.isNull()) {
      return;
    }
    const QString text =
        messages::oddValue(attribute.name, value, expanded, node.name(), oddness.wanted);
    if (oddness.effect.isNull()) {
      m_attributeFaults.push_back({LogLevel::error, node, text});
    } else {
      m_attributeFaults.push_back({LogLevel::warning, node, text + u' ' + oddness.effect});
    }
  }

  AttributeKind kindOfValueIn(const XMLNode& node, const AttributeDescription& attribute) const {
    if (attribute.kind != AttributeKind::sample) {
      return attribute.kind;
    }
    const QString isNumber = qString(node.getAttribute(utf16(u"isNumber")));
    return xmltob(m_parameters.expandString2(isNumber).utf16(), 1) != 0 ? AttributeKind::number
                                                                        : AttributeKind::text;
  }

  const GlobalParameters& m_parameters;
  std::vector<ElementFault> m_faults;
  std::vector<ElementFault> m_attributeFaults;
};

}  // namespace

QString valuesInWords(const AttributeDescription& attribute) {
  if (*attribute.allowed.inWords != 0) {
    return QString::fromUtf8(attribute.allowed.inWords);
  }
  switch (attribute.kind) {
    case AttributeKind::flag:
      return messages::aFlag();
    case AttributeKind::wholeNumber:
      return messages::aWholeNumber();
    case AttributeKind::cutNumber:
    case AttributeKind::number:
      return messages::aNumber();
    case AttributeKind::sample:
      return messages::aSample();
    case AttributeKind::typeCode:
    case AttributeKind::text:
      break;
  }
  return messages::aText();
}

std::vector<ElementFault> contentFaults(const XMLNode& action, const ActionDescription& description,
                                        const GlobalParameters& parameters) {
  Comparison comparison(parameters);
  comparison.visitAction(action, description);
  return comparison.takeFaults();
}

}  // namespace kelvarin
