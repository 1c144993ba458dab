#include "host/contract/action_item.h"

#include <algorithm>
#include <cstddef>
#include <locale>

#include <QDir>
#include <QFileInfo>

#include "host/contract/attribute_table.h"
#include "host/contract/editor_registry.h"
#include "host/contract/host_services.h"

using kelvarin::utf16;

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
// The members stand where the contract says: plug-ins copy actions with code of their own.
struct ActionItemLayout {
  static_assert(offsetof(ActionItem, m_identifier) == 8);
  static_assert(offsetof(ActionItem, m_endpoint) == 12);
  static_assert(offsetof(ActionItem, m_node) == 16);
  static_assert(offsetof(ActionItem, m_inputPinCount) == 24);
  static_assert(offsetof(ActionItem, m_outputPinCount) == 28);
  static_assert(offsetof(ActionItem, m_hasFailed) == 32);
  static_assert(offsetof(ActionItem, m_hasPosition) == 33);
  static_assert(offsetof(ActionItem, m_x) == 36);
  static_assert(offsetof(ActionItem, m_y) == 40);
  static_assert(offsetof(ActionItem, m_fileAccess) == 44);
  static_assert(offsetof(ActionItem, m_isOpen) == 48);
  static_assert(offsetof(ActionItem, m_isFinished) == 49);
  static_assert(offsetof(ActionItem, m_copyNumber) == 52);
  static_assert(offsetof(ActionItem, m_globalParameters) == 56);
  static_assert(offsetof(ActionItem, m_run) == 64);
  static_assert(offsetof(ActionItem, computeRoutine) == 72);
  static_assert(offsetof(ActionItem, m_ports) == 80);
  static_assert(offsetof(ActionItem, m_primary) == 88);
  static_assert(sizeof(ActionItem) == 96);
};
#pragma GCC diagnostic pop

namespace {

// A whole number, though some files have fractions.
int coordinateOnCanvas(const XMLNode& node, const char16_t* name,
                       const GlobalParameters* parameters) {
  constexpr double kMaxDistance = 1e9;
  double coordinate = 0.0;
  kelvarin::readAttribute(node, name, coordinate, parameters);
  return static_cast<int>(std::clamp(coordinate, -kMaxDistance, kMaxDistance));
}

}  // namespace

ActionItem::ActionItem(XMLNode node, GlobalParameters* parameters)
    : m_node(node), m_globalParameters(parameters) {
  m_hasPosition =
      node.getAttribute(utf16(u"x")) != nullptr || node.getAttribute(utf16(u"y")) != nullptr;
  m_x = coordinateOnCanvas(node, u"x", parameters);
  m_y = coordinateOnCanvas(node, u"y", parameters);
}

ActionItem::~ActionItem() = default;

UpdateClassWidget* ActionItem::editPropertyFrame(QWidget* parent) {
  return kelvarin::EditorRegistry::instance().create(typeName(), parent, this);
}
QPixmap* ActionItem::getImage(double) const {
  return nullptr;
}
void ActionItem::addPinIn() {
  ++m_inputPinCount;
}
void ActionItem::addPinOut() {
  ++m_outputPinCount;
}
void ActionItem::removePinIn() {
  m_inputPinCount = std::max(0, m_inputPinCount - 1);
}
void ActionItem::removePinOut() {
  m_outputPinCount = std::max(0, m_outputPinCount - 1);
}
QString ActionItem::toolTip() const {
  return {};
}
void ActionItem::getHelp() const {}
QStringList ActionItem::getFileTypes() const {
  return {};
}
QStringList ActionItem::getTags() const {
  return {};
}
QStringList ActionItem::getKeywords() const {
  return {};
}
QStringList ActionItem::getAlternativeNames() const {
  return {};
}

ActionItem* ActionItem::clone(GlobalParameters* parameters) {
  std::wostringstream out;
  saveXML(out, name());
  const auto copy = kelvarin::parseXml(QString::fromStdWString(out.str()).toUtf8());
  return copy ? createFromXML(*copy, parameters) : nullptr;
}

void ActionItem::saveXML(std::wostringstream& out, QString name) {
  saveAI(out, name, 1.0);
  out << L"/>\n";
}

char ActionItem::init() {
  m_hasFailed = false;
  m_isFinished = false;
  return 0;
}

char ActionItem::close() {
  return 0;
}
void ActionItem::wakeAll() {}
float ActionItem::computeCompletion() const {
  return -1.0f;
}
bool ActionItem::completionIn2Pass() const {
  return false;
}

char ActionItem::canRunInParallel(QString, bool* reason) {
  if (reason != nullptr) {
    *reason = false;
  }
  return 1;
}

char ActionItem::fullTableRequiredToComputeMetas(int, bool* isKnown) {
  if (isKnown != nullptr) {
    *isKnown = true;
  }
  return 0;
}

QString ActionItem::getHDFile(int, bool) {
  return {};
}
long long ActionItem::getHDTime() const {
  return 0;
}
void ActionItem::clearHDFile() {}

const OneRow* ActionItem::announcedColumnsOfInPin(int pin) const {
  return isInputPinLinked(pin) ? m_ports->inputs[static_cast<std::size_t>(pin)]->announcedColumns()
                               : nullptr;
}

ActionItem* ActionItem::getActionItemOnInPin(int pin) const {
  return isInputPinLinked(pin) ? m_ports->inputs[static_cast<std::size_t>(pin)]->upstreamAction()
                               : nullptr;
}

void ActionItem::failRun() {
  m_hasFailed = true;
  if (m_run != nullptr) {
    m_run->fail();
  }
}

QString ActionItem::expandString(QString text) const {
  return m_globalParameters == nullptr ? text : m_globalParameters->expandString2(text);
}

QString ActionItem::expandFile(QString path) const {
  QString expanded = expandString(path);
  if (expanded.isEmpty() || m_globalParameters == nullptr || QDir::isAbsolutePath(expanded)) {
    return expanded;
  }
  return QDir::cleanPath(QDir(m_globalParameters->dataDirRead()).filePath(expanded));
}

QString ActionItem::expandOutputFile(QString path, QString extension) const {
  QString expanded = expandString(path);
  if (expanded.isEmpty()) {
    return expanded;
  }
  if (!extension.isEmpty() && QFileInfo(expanded).suffix().isEmpty()) {
    expanded += u'.' + extension;
  }
  if (m_globalParameters == nullptr || QDir::isAbsolutePath(expanded)) {
    return expanded;
  }
  return QDir::cleanPath(QDir(m_globalParameters->dataDirWrite()).filePath(expanded));
}

QString ActionItem::name() const {
  return kelvarin::qString(m_node.getAttribute(utf16(u"name")));
}

bool ActionItem::isDisabled() const {
  bool isDisabled = false;
  kelvarin::readAttribute(m_node, u"disabled", isDisabled, m_globalParameters);
  return isDisabled;
}

void ActionItem::attach(RunRecord* run, ActionPorts* ports) {
  m_hasFailed = m_hasFailed && run == nullptr;
  m_run = run;
  m_ports = ports;
}

void ActionItem::saveAI(std::wostringstream& out, QString name, double version) const {
  ToXMLStringTool escape;
  out.imbue(std::locale::classic());  // numbers read back whatever the program's language is
  out << L'<' << typeName() << L" name='" << escape.toXML(name) << L"' version='" << version
      << L'\'';
  if (m_hasPosition) {
    out << L" x='" << m_x << L"' y='" << m_y << L'\'';
  }
  if (isDisabled()) {
    out << L" disabled='1'";
  }
}
