#include "host/engine/graph_document.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include <QFileInfo>

#include "host/contract/declared_content.h"
#include "host/contract/nearest_names.h"
#include "host/contract/parameter_expansion.h"
#include "host/engine/graph_links.h"
#include "host/engine/messages.h"
#include "host/engine/missing_action.h"

namespace kelvarin {

namespace {

// Of the values of all parameters together, when those in them are replaced, in characters.
constexpr long long kLongestGrowth = 16 * ParameterExpansion::kLongestText;

QString attribute(const XMLNode& node, const char16_t* name) {
  return qString(node.getAttribute(utf16(name)));
}

// Texts that the user reads or that expressions are made of; "${" in them is no reference to a
// parameter.
}  // namespace

GraphDocument::GraphDocument(const QString& file, const ActionCatalogue& catalogue, Faults faults)
    : m_catalogue(catalogue), m_faults(faults) {
  m_graph.file = file;
  m_graph.settings = std::make_unique<GlobalParameters>();
  m_graph.settings->setGraphFile(QFileInfo(file).absoluteFilePath());
  m_graph.settings->setWorkingDir(QFileInfo(file).absolutePath());
}

void GraphDocument::refuse(const XMLNode& node, const QString& message) {
  m_errors.push_back({m_graph.file, node.position(), message});
}

void GraphDocument::read(const XMLNode& root, const std::vector<ParameterOverride>& overrides) {
  if (root.name() != QLatin1String("KelvarinGraph")) {
    refuse(root, engine_messages::notAGraph(root.name()));
    return;
  }
  const QString version = attribute(root, u"version");
  if (!version.isNull() && version != QLatin1String("1.0")) {
    refuse(root, engine_messages::unknownGraphVersion(version));
    return;
  }
  m_isGraph = true;
  checkContent(root, {QStringLiteral("version")});
  const QStringList sections{QStringLiteral("Parameters"), QStringLiteral("Actions"),
                             QStringLiteral("Links"), QStringLiteral("Notes")};
  for (int i = 0; i < root.nChildNode(); ++i) {
    const XMLNode section = root.getChildNode(i);
    if (!sections.contains(section.name())) {
      refuse(section, engine_messages::unknownElement(section.name(), root.name(), sections));
    }
  }
  const XMLNode parameters = onlyChild(root, u"Parameters");
  readParameters(parameters, overrides);
  applyOverrides(parameters.isEmpty() ? root : parameters, overrides);
  readActions(onlyChild(root, u"Actions"));
  readLinks(onlyChild(root, u"Links"));
  readNotes(onlyChild(root, u"Notes"));
}

void GraphDocument::checkContent(const XMLNode& node, const QStringList& attributes) {
  checkAttributes(node, attributes);
  if (!node.text().trimmed().isEmpty()) {
    refuse(node, engine_messages::strayText(node.name()));
  }
}

void GraphDocument::checkAttributes(const XMLNode& node, const QStringList& attributes) {
  for (int i = 0; i < node.nAttribute(); ++i) {
    if (!attributes.contains(node.attributeName(i))) {
      refuse(node,
             engine_messages::unknownAttribute(node.attributeName(i), node.name(), attributes));
    }
  }
}

XMLNode GraphDocument::onlyChild(const XMLNode& node, const char16_t* name) {
  int index = 0;
  const XMLNode child = node.getChildNode(utf16(name), &index);
  const XMLNode second = child.isEmpty() ? child : node.getChildNode(utf16(name), &index);
  if (!second.isEmpty()) {
    refuse(second, engine_messages::elementTwice(second.name()));
  }
  return child;
}

QString GraphDocument::neededAttribute(const XMLNode& node, const char16_t* name) {
  const QString value = attribute(node, name);
  if (value.isNull()) {
    refuse(node, engine_messages::missingAttribute(QString::fromUtf16(name), node.name()));
  }
  return value;
}

void GraphDocument::readParameters(const XMLNode& node,
                                   const std::vector<ParameterOverride>& overrides) {
  if (node.isEmpty()) {
    return;
  }
  checkContent(node, {});
  for (int i = 0; i < node.nChildNode(); ++i) {
    const XMLNode child = node.getChildNode(i);
    if (child.name() != QLatin1String("Parameter")) {
      refuse(child, engine_messages::unknownElement(child.name(), node.name(),
                                                    {QStringLiteral("Parameter")}));
      continue;
    }
    readParameter(child);
    // At once, so that parameters further down refer to the value of this run.
    for (const ParameterOverride& given : overrides) {
      if (given.name == attribute(child, u"name")) {
        m_graph.settings->setValue(given.name, given.value);
      }
    }
  }
}

void GraphDocument::readParameter(const XMLNode& node) {
  checkContent(node, {QStringLiteral("name"), QStringLiteral("value")});
  const QString name = neededAttribute(node, u"name");
  const QString value = neededAttribute(node, u"value");
  if (name.isNull() || value.isNull()) {
    return;
  }
  if (m_graph.settings->values().contains(name)) {
    refuse(node, engine_messages::parameterTwice(name));
    return;
  }
  m_graph.settings->setValue(name, expandedValue(node, name, value));
  m_graph.parameters.push_back({name, value});
}

QString GraphDocument::expandedValue(const XMLNode& node, const QString& name,
                                     const QString& value) {
  const ParameterExpansion expansion(value, m_graph.settings->values());
  if (expansion.isTooLong()) {
    refuse(node, engine_messages::parameterTooLong(name, ParameterExpansion::kLongestText));
    return value;
  }
  if (expansion.unknownName() == name) {
    refuse(node, engine_messages::parameterOfItself(name));
  } else if (!expansion.unknownName().isNull()) {
    refuse(node, engine_messages::unknownParameter(expansion.unknownName(), parameterNames()));
  }
  // What the file itself has is no growth.
  const qsizetype growth = std::max<qsizetype>(0, expansion.text().size() - value.size());
  if (m_growthOfParameters + growth > kLongestGrowth) {
    refuse(node, engine_messages::parametersTooLong(name, kLongestGrowth));
    return value;
  }
  m_growthOfParameters += growth;
  return expansion.text();
}

void GraphDocument::applyOverrides(const XMLNode& node,
                                   const std::vector<ParameterOverride>& overrides) {
  for (const ParameterOverride& given : overrides) {
    if (!m_graph.settings->values().contains(given.name)) {
      refuse(node, engine_messages::unknownOverride(given.name, parameterNames()));
    }
  }
}

void GraphDocument::readActions(const XMLNode& node) {
  if (node.isEmpty()) {
    return;
  }
  checkContent(node, {});
  for (int i = 0; i < node.nChildNode(); ++i) {
    const std::size_t errorsBefore = m_errors.size();
    readAction(node.getChildNode(i));
    if (m_faults == Faults::keep) {
      m_whyActionCannotRun.push_back(
          m_errors.size() == errorsBefore ? QString() : m_errors[errorsBefore].message);
    }
  }
}

void GraphDocument::readAction(const XMLNode& node) {
  checkParameterNames(node);
  const CatalogueEntry* entry = m_catalogue.find(node.name());
  if (entry == nullptr) {
    m_hasAllActions = false;
    refuse(node, engine_messages::unknownAction(node.name(),
                                                nearestNames(node.name(), m_catalogue.typeNames()),
                                                m_catalogue.typeNames()));
  }
  const QString name = neededAttribute(node, u"name");
  if (name.isNull()) {
    m_hasAllActions = false;
  } else if (name.isEmpty()) {
    refuse(node, engine_messages::emptyActionName());
  }
  const int taken = m_indexOfAction.value(name, -1);
  if (taken >= 0) {
    refuse(node, engine_messages::actionTwice(
                     name, m_graph.actions[static_cast<std::size_t>(taken)].position.line));
  }
  if (m_faults == Faults::keep || (entry != nullptr && !name.isNull())) {
    addAction(node, name, entry);
  }
}

// A null entry: nobody offers the type.
void GraphDocument::addAction(const XMLNode& node, const QString& name,
                              const CatalogueEntry* entry) {
  GlobalParameters* settings = m_graph.settings.get();
  std::unique_ptr<ActionItem> item;
  if (entry == nullptr) {
    item = std::make_unique<MissingAction>(node, settings);
  } else {
    item.reset(entry->prototype->createFromXML(node, settings));
  }
  if (!name.isNull() && !m_indexOfAction.contains(name)) {
    m_indexOfAction.insert(name, static_cast<int>(m_graph.actions.size()));
  }
  const bool isDisabled = item->isDisabled();
  m_graph.actions.push_back({name, node.position(), std::move(item), isDisabled});
  reportFaults(node, *m_graph.actions.back().item);
}

void GraphDocument::reportFaults(const XMLNode& node, const ActionItem& action) {
  const auto* described = dynamic_cast<const DescribedAction*>(&action);
  if (described == nullptr) {
    return;
  }
  std::vector<ElementFault> faults = described->settingFaults();
  std::ranges::move(contentFaults(node, described->description(), *m_graph.settings),
                    std::back_inserter(faults));
  const int index = static_cast<int>(m_graph.actions.size()) - 1;
  for (const ElementFault& fault : faults) {
    if (fault.level == LogLevel::error) {
      refuse(fault.element, fault.message);
    } else {
      warn(index, fault.element, fault.message);
    }
  }
}

void GraphDocument::warn(int action, const XMLNode& node, const QString& message) {
  m_graph.warnings.push_back(
      {action, GraphError{m_graph.file, node.position(), message}.text(), node.position()});
}

void GraphDocument::checkParameterNames(const XMLNode& action) {
  std::vector<XMLNode> open{action};
  while (!open.empty()) {
    const XMLNode node = open.back();
    open.pop_back();
    for (int i = 0; i < node.nAttribute(); ++i) {
      if (isFreeText(node.attributeName(i))) {
        continue;
      }
      const ParameterExpansion expansion(node.attributeValue(i), m_graph.settings->values());
      if (!expansion.unknownName().isNull()) {
        refuse(node, engine_messages::unknownParameter(expansion.unknownName(), parameterNames()));
      } else if (expansion.isTooLong()) {
        refuse(node, engine_messages::attributeTooLong(node.attributeName(i), node.name(),
                                                       ParameterExpansion::kLongestText));
      }
    }
    for (int i = node.nChildNode() - 1; i >= 0; --i) {
      open.push_back(node.getChildNode(i));
    }
  }
}

void GraphDocument::readLinks(const XMLNode& node) {
  if (node.isEmpty()) {
    return;
  }
  checkContent(node, {});
  for (int i = 0; i < node.nChildNode(); ++i) {
    const XMLNode child = node.getChildNode(i);
    if (child.name() == QLatin1String("Link")) {
      keepLink(child);
      readLink(child);
    } else {
      refuse(child,
             engine_messages::unknownElement(child.name(), node.name(), {QStringLiteral("Link")}));
    }
  }
  checkCycles(node);
}

void GraphDocument::keepLink(const XMLNode& node) {
  m_linksInFile.push_back({attribute(node, u"from"),
                           xmltoi(node.getAttribute(utf16(u"fromPin")), 0), attribute(node, u"to"),
                           xmltoi(node.getAttribute(utf16(u"toPin")), 0)});
}

void GraphDocument::readLink(const XMLNode& node) {
  checkContent(node, {QStringLiteral("from"), QStringLiteral("fromPin"), QStringLiteral("to"),
                      QStringLiteral("toPin")});
  const EndOfLink from = endOfLink(node, u"from", u"fromPin", false);
  const EndOfLink to = endOfLink(node, u"to", u"toPin", true);
  if (from.action < 0 || to.action < 0) {
    return;
  }
  if (m_linkedPins.contains({to.action, to.pin})) {
    refuse(node, engine_messages::pinLinkedTwice(
                     m_graph.actions[static_cast<std::size_t>(to.action)].name, to.pin));
    return;
  }
  m_linkedPins.insert({to.action, to.pin});
  m_graph.links.push_back({from.action, from.pin, to.action, to.pin});
  m_linkNodes.push_back(node);
}

// The action is -1 when this end was refused.
GraphDocument::EndOfLink GraphDocument::endOfLink(const XMLNode& node, const char16_t* nameOfAction,
                                                  const char16_t* nameOfPin, bool isInput) {
  const QString name = neededAttribute(node, nameOfAction);
  if (name.isNull()) {
    return {};
  }
  EndOfLink end{m_indexOfAction.value(name, -1), 0};
  if (end.action < 0) {
    if (m_hasAllActions || m_faults == Faults::keep) {
      refuse(node, engine_messages::absentAction(name, nearestNames(name, actionNames())));
    }
    return {};
  }
  const QString pin = attribute(node, nameOfPin);
  bool isNumber = true;
  end.pin = pin.isNull() ? 0 : pin.toInt(&isNumber);
  if (!isNumber) {
    refuse(node, engine_messages::pinNotANumber(QString::fromUtf16(nameOfPin), pin));
    return {};
  }
  ActionItem& item = *m_graph.actions[static_cast<std::size_t>(end.action)].item;
  if (auto* missing = dynamic_cast<MissingAction*>(&item)) {
    missing->needPin(isInput, end.pin);
  }
  const int count = isInput ? item.inputPinCount() : item.outputPinCount();
  if (end.pin < 0 || end.pin >= count) {
    refuse(node, engine_messages::linkToAbsentPin(name, isInput, end.pin, count));
    return {};
  }
  return end;
}

void GraphDocument::readNotes(const XMLNode& node) {
  if (node.isEmpty()) {
    return;
  }
  checkContent(node, {});
  for (int i = 0; i < node.nChildNode(); ++i) {
    const XMLNode child = node.getChildNode(i);
    if (child.name() == QLatin1String("Note")) {
      readNote(child);
    } else {
      refuse(child,
             engine_messages::unknownElement(child.name(), node.name(), {QStringLiteral("Note")}));
    }
  }
}

void GraphDocument::readNote(const XMLNode& node) {
  checkAttributes(node, {QStringLiteral("x"), QStringLiteral("y"), QStringLiteral("w"),
                         QStringLiteral("h"), QStringLiteral("color")});
  for (int i = 0; i < node.nChildNode(); ++i) {
    const XMLNode child = node.getChildNode(i);
    refuse(child, engine_messages::unknownElement(child.name(), node.name(), {}));
  }
  const QString colour = attribute(node, u"color");
  if (!colour.isEmpty() && !isNoteColour(colour)) {
    refuse(node, engine_messages::notAColour(colour));
  }
  m_graph.notes.push_back({numberOf(node, u"x"), numberOf(node, u"y"), numberOf(node, u"w"),
                           numberOf(node, u"h"), colour, node.text()});
}

double GraphDocument::numberOf(const XMLNode& node, const char16_t* name) {
  const QString text = attribute(node, name);
  bool isNumber = true;
  const double number = text.isEmpty() ? 0.0 : text.toDouble(&isNumber);
  if (!isNumber || !std::isfinite(number)) {
    refuse(node, engine_messages::notANumber(QString::fromUtf16(name), text, node.name()));
    return 0.0;
  }
  return number;
}

void GraphDocument::checkCycles(const XMLNode& links) {
  const std::vector<int> cycle = GraphLinks(m_graph).findCycle();
  if (cycle.empty()) {
    return;
  }
  QStringList names;
  for (const int action : cycle) {
    names += m_graph.actions[static_cast<std::size_t>(action)].name;
  }
  names += names.front();
  const auto closing =
      std::find_if(m_graph.links.begin(), m_graph.links.end(), [&cycle](const GraphLink& link) {
        return link.from == cycle.back() && link.to == cycle.front();
      });
  const bool isFound = closing != m_graph.links.end();
  refuse(isFound ? m_linkNodes[static_cast<std::size_t>(closing - m_graph.links.begin())] : links,
         engine_messages::cycle(names));
}

OpenedGraph GraphDocument::takeOpenedGraph() {
  return {std::move(m_graph), std::move(m_whyActionCannotRun), std::move(m_linksInFile),
          std::move(m_errors)};
}

QStringList GraphDocument::parameterNames() const {
  QStringList names;
  for (const GraphParameter& parameter : m_graph.parameters) {
    names += parameter.name;
  }
  return names;
}

QStringList GraphDocument::actionNames() const {
  QStringList names;
  for (const GraphAction& action : m_graph.actions) {
    names += action.name;
  }
  return names;
}

}  // namespace kelvarin
