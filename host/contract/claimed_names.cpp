#include "host/contract/claimed_names.h"

#include <algorithm>
#include <atomic>
#include <map>
#include <mutex>

#include "host/contract/action_item.h"
#include "host/contract/file_keys.h"
#include "host/contract/host_session.h"
#include "host/contract/messages.h"

namespace kelvarin {

FileUser::~FileUser() = default;

namespace {

struct Claim {
  const ActionItem* action;
  QString actionName;
  QString graphFile;
  UsedFile file;
  bool isCompanion;  // it has the form of a companion's name, and claims nothing else of that form

  bool writes() const { return file.use == FileUse::writes; }
  bool hinders(const Claim& other) const {
    const bool takesInput = readsStandardInput(file) && readsStandardInput(other.file);
    return action != other.action && (writes() || other.writes() || takesInput) &&
           !(isCompanion && other.isCompanion);
  }
};

}  // namespace

class FileClaims::Table {
 public:
  // Nothing, or the claim that hinders this one.
  std::optional<Claim> add(const Claim& claim, const std::vector<FileKey>& keys) {
    const std::lock_guard lock(m_mutex);
    for (const FileKey& key : keys) {
      const auto holders = m_byKey.find(key.text);
      if (holders == m_byKey.end()) {
        continue;
      }
      for (const Claim& other : holders->second) {
        if (other.hinders(of(claim, key))) {
          return other;
        }
      }
    }
    for (const FileKey& key : keys) {
      m_byKey[key.text].push_back(of(claim, key));
    }
    return std::nullopt;
  }

  void remove(const ActionItem* action, const QStringList& keys) {
    const std::lock_guard lock(m_mutex);
    for (const QString& key : keys) {
      const auto entry = m_byKey.find(key);
      auto& holders = entry->second;
      holders.erase(std::find_if(holders.begin(), holders.end(),
                                 [action](const Claim& claim) { return claim.action == action; }));
      if (holders.empty()) {
        m_byKey.erase(entry);
      }
    }
  }

  std::atomic<int> awaitedReads{0};  // actions that do not know all their files

 private:
  static Claim of(Claim claim, const FileKey& key) {
    claim.isCompanion = key.isCompanion;
    return claim;
  }

  std::mutex m_mutex;  // guards m_byKey
  std::map<QString, std::vector<Claim>> m_byKey;
};

namespace {

Claim claimOf(const ActionItem& action, const UsedFile& file) {
  const GlobalParameters* graph = action.globalParameters();
  return {&action, action.name(), graph == nullptr ? QString() : graph->graphFile(), file, false};
}

QString textAbout(const Claim& claim, const Claim& other) {
  if (claim.writes() && other.writes()) {
    return isStandardOutput(claim.file.path)
               ? messages::standardOutputTwice(other.actionName, claim.actionName)
               : messages::writtenTwice(other.actionName, other.file.path, claim.actionName,
                                        claim.file.path);
  }
  if (!claim.writes() && !other.writes()) {
    return messages::standardInputTwice(other.actionName, claim.actionName);
  }
  const Claim& writer = claim.writes() ? claim : other;
  const Claim& reader = claim.writes() ? other : claim;
  return messages::replacesSource(writer.actionName, writer.file.path, reader.actionName,
                                  reader.file.path);
}

QString textAboutOtherGraph(const Claim& claim, const Claim& other) {
  return isStandardOutput(claim.file.path)
             ? messages::standardOutputOfOtherGraph(claim.actionName, other.actionName,
                                                    other.graphFile)
             : messages::writtenByOtherGraph(claim.actionName, claim.file.path, other.actionName,
                                             other.file.path, other.graphFile);
}

QStringList textsOf(const std::vector<FileKey>& keys) {
  QStringList texts;
  for (const FileKey& key : keys) {
    texts += key.text;
  }
  return texts;
}

}  // namespace

FileClaims::FileClaims() : m_table(std::make_shared<Table>()) {}
FileClaims::~FileClaims() = default;

std::optional<QString> FileClaims::add(const ActionItem& action, const UsedFile& file) {
  const Claim claim = claimOf(action, file);
  const auto other = m_table->add(claim, keysOf(file));
  return other ? std::optional(textAbout(claim, *other)) : std::nullopt;
}

const std::shared_ptr<FileClaims::Table>& ClaimedNames::writtenByAllGraphs() {
  static const auto table = std::make_shared<FileClaims::Table>();
  return table;
}

std::optional<QString> ClaimedNames::claim(const ActionItem& action, const UsedFile& file) {
  const Claim claim = claimOf(action, file);
  const std::vector<FileKey> keys = keysOf(file);
  const std::size_t heldBefore = m_entries.size();
  if (HostSession* session = HostSession::current()) {
    const auto& table = session->claims().m_table;
    if (const auto other = table->add(claim, keys)) {
      return textAbout(claim, *other);
    }
    m_entries.push_back({table, &action, textsOf(keys)});
  }
  if (!claim.writes()) {
    return std::nullopt;
  }
  if (const auto other = writtenByAllGraphs()->add(claim, keys)) {
    giveBackAfter(heldBefore);
    return textAboutOtherGraph(claim, *other);
  }
  m_entries.push_back({writtenByAllGraphs(), &action, textsOf(keys)});
  return std::nullopt;
}

void ClaimedNames::giveBack() {
  readsAreKnown();
  giveBackAfter(0);
}

// All but the first `count` entries.
void ClaimedNames::giveBackAfter(std::size_t count) {
  for (; m_entries.size() > count; m_entries.pop_back()) {
    const Entries& last = m_entries.back();
    last.table->remove(last.action, last.keys);
  }
}

void ClaimedNames::awaitReads() {
  readsAreKnown();
  if (HostSession* session = HostSession::current()) {
    m_awaiting = session->claims().m_table;
    ++m_awaiting->awaitedReads;
  }
}

bool ClaimedNames::areReadsAwaited() {
  HostSession* session = HostSession::current();
  return session != nullptr && session->claims().m_table->awaitedReads > 0;
}

void ClaimedNames::readsAreKnown() {
  if (m_awaiting != nullptr) {
    --m_awaiting->awaitedReads;
    m_awaiting.reset();
  }
}

}  // namespace kelvarin
