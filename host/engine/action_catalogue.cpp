#include "host/engine/action_catalogue.h"

#include <algorithm>

#include "host/contract/host_services.h"
#include "host/contract/host_session.h"

namespace kelvarin {

namespace {

// An action names its help page by opening it; this host only notes the name.
class HelpPageOf final : private HostServices {
 public:
  explicit HelpPageOf(const ActionItem& action) : m_program(hostServices()) {
    HostSession session(this);
    const HostSession::Scope scope(&session);
    action.getHelp();
  }
  const QString& id() const { return m_id; }

 private:
  void log(LogLevel level, const QString& text, const ActionItem* action) override {
    if (m_program != nullptr) {
      m_program->log(level, text, action);
    }
  }
  void openHelp(const QString& helpId, const QString&) override { m_id = helpId; }

  HostServices* m_program;
  QString m_id;
};

// The version attribute of the element that the action writes.
double writtenVersion(ActionItem& prototype) {
  std::wostringstream out;
  prototype.saveXML(out, QStringLiteral("prototype"));
  const auto element = parseXml(QString::fromStdWString(out.str()).toUtf8());
  return element ? xmltof(element->getAttribute(utf16(u"version")), 0.0) : 0.0;
}

CatalogueEntry entryOf(ActionSource source, ActionItem& prototype) {
  CatalogueEntry entry;
  entry.typeName = QString::fromLatin1(prototype.typeName());
  entry.toolTip = prototype.toolTip();
  entry.helpId = HelpPageOf(prototype).id();
  entry.tags = prototype.getTags();
  entry.keywords = prototype.getKeywords();
  entry.fileTypes = prototype.getFileTypes();
  entry.pinsIn = prototype.inputPinCount();
  entry.pinsOut = prototype.outputPinCount();
  entry.version = writtenVersion(prototype);
  entry.source = source;
  entry.prototype = &prototype;
  return entry;
}

}  // namespace

ActionCatalogue::ActionCatalogue(std::unique_ptr<PluginLibrary> plugin, Prototypes hostActions)
    : m_plugin(std::move(plugin)) {
  if (m_plugin != nullptr) {
    add(ActionSource::plugin, m_plugin->createPrototypes());
  }
  add(ActionSource::host, std::move(hostActions));
}

void ActionCatalogue::add(ActionSource source, Prototypes prototypes) {
  for (std::unique_ptr<ActionItem>& prototype : prototypes) {
    m_entries.push_back(entryOf(source, *prototype));
    m_prototypes.push_back(std::move(prototype));
  }
}

const CatalogueEntry* ActionCatalogue::find(const QString& typeName) const {
  const auto found =
      std::find_if(m_entries.begin(), m_entries.end(),
                   [&typeName](const auto& entry) { return entry.typeName == typeName; });
  return found == m_entries.end() ? nullptr : &*found;
}

QStringList ActionCatalogue::typeNames() const {
  QStringList names;
  for (const CatalogueEntry& entry : m_entries) {
    names += entry.typeName;
  }
  return names;
}

}  // namespace kelvarin
