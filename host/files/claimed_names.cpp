#include "host/files/claimed_names.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <mutex>
#include <set>
#include <vector>

#include <sys/stat.h>

#include <QFile>

#include "host/contract/action_item.h"
#include "host/files/messages.h"

namespace kelvarin {

FileUser::~FileUser() = default;

namespace {

namespace fs = std::filesystem;

struct Claim {
  const ActionItem* action;
  QString actionName;
  UsedFile file;
  bool isCompanion;  // it has the form of a companion's name, and claims nothing else of that form
};

struct AllClaims {
  std::mutex mutex;  // guards what follows
  std::map<std::pair<const GlobalParameters*, QString>, std::vector<Claim>> byKey;
  std::set<std::pair<const GlobalParameters*, const ClaimedNames*>> awaitingReads;
};

AllClaims& allClaims() {
  static AllClaims claims;
  return claims;
}

struct Key {
  QString text;
  bool isCompanion = false;
};

QString textOf(const fs::path& path) {
  return QFile::decodeName(QByteArray::fromStdString(path.string()));
}

fs::path withoutLinks(const fs::path& path) {
  std::error_code error;
  const fs::path resolved = fs::weakly_canonical(path, error);
  return error ? path.lexically_normal() : resolved;
}

// Where a link leads although nothing is there yet.
fs::path endOfLinks(fs::path path) {
  constexpr int kMostLinks = 40;
  std::error_code error;
  for (int i = 0; i < kMostLinks && fs::is_symlink(fs::symlink_status(path, error)); ++i) {
    path = path.parent_path() / fs::read_symlink(path, error);
  }
  return withoutLinks(path);
}

// "sales.012.cs" has the form "sales.???.cs"; empty when the name has no such form.
QString formOfCompanion(const QString& name) {
  const qsizetype last = name.lastIndexOf(u'.');
  const qsizetype first = last < 1 ? -1 : name.lastIndexOf(u'.', last - 1);
  if (first < 0 || last - first < 2) {
    return {};
  }
  QString form = name;
  for (qsizetype i = first + 1; i < last; ++i) {
    if (form[i] < u'0' || form[i] > u'9') {
      return {};
    }
    form[i] = u'?';
  }
  return form;
}

std::vector<Key> keysOf(const UsedFile& file) {
  if (isStandardOutput(file.path)) {
    return {{QStringLiteral("-")}};
  }
  std::error_code error;
  const fs::path path = fs::absolute(QFile::encodeName(file.path).toStdString(), error);
  std::vector<Key> keys;
  struct stat status {};
  if (::stat(path.c_str(), &status) == 0) {
    if (!S_ISREG(status.st_mode)) {
      return {};
    }
    keys.push_back({QStringLiteral("i%1:%2").arg(status.st_dev).arg(status.st_ino)});
  }
  const fs::path folder = withoutLinks(path.parent_path());
  const QString name = textOf(path.filename());
  keys.push_back({u'n' + textOf(folder / path.filename())});
  if (const QString end = u'n' + textOf(endOfLinks(path)); end != keys.back().text) {
    keys.push_back({end});
  }
  const auto companionKey = [&](const QString& form) {
    return u'c' + textOf(folder) + u'/' + form;
  };
  if (!file.companions.isEmpty()) {
    keys.push_back({companionKey(file.companions)});
  }
  if (const QString form = formOfCompanion(name); !form.isEmpty()) {
    keys.push_back({companionKey(form), true});
  }
  return keys;
}

bool hinder(const Claim& claim, const Claim& other) {
  const bool isWritten = claim.file.use == FileUse::writes || other.file.use == FileUse::writes;
  return claim.action != other.action && isWritten && !(claim.isCompanion && other.isCompanion);
}

QString textAbout(const Claim& claim, const Claim& other) {
  if (claim.file.use == FileUse::writes && other.file.use == FileUse::writes) {
    return isStandardOutput(claim.file.path)
               ? messages::standardOutputTwice(other.actionName, claim.actionName)
               : messages::writtenTwice(other.actionName, other.file.path, claim.actionName,
                                        claim.file.path);
  }
  const bool isWriter = claim.file.use == FileUse::writes;
  const Claim& writer = isWriter ? claim : other;
  const Claim& reader = isWriter ? other : claim;
  return messages::replacesSource(writer.actionName, writer.file.path, reader.actionName,
                                  reader.file.path);
}

}  // namespace

std::optional<QString> ClaimedNames::claim(const ActionItem& action, const UsedFile& file) {
  m_graph = action.globalParameters();
  m_action = &action;
  const std::vector<Key> keys = keysOf(file);
  AllClaims& claims = allClaims();
  const std::lock_guard lock(claims.mutex);
  const auto claimOf = [&](const Key& key) {
    return Claim{&action, action.name(), file, key.isCompanion};
  };
  for (const Key& key : keys) {
    const auto holders = claims.byKey.find({m_graph, key.text});
    if (holders == claims.byKey.end()) {
      continue;
    }
    for (const Claim& other : holders->second) {
      if (hinder(claimOf(key), other)) {
        return textAbout(claimOf(key), other);
      }
    }
  }
  for (const Key& key : keys) {
    claims.byKey[{m_graph, key.text}].push_back(claimOf(key));
    m_keys.append(key.text);
  }
  return std::nullopt;
}

void ClaimedNames::giveBack() {
  readsAreKnown();
  AllClaims& claims = allClaims();
  const std::lock_guard lock(claims.mutex);
  for (const QString& key : m_keys) {
    const auto entry = claims.byKey.find({m_graph, key});
    auto& holders = entry->second;
    holders.erase(std::find_if(holders.begin(), holders.end(),
                               [this](const Claim& claim) { return claim.action == m_action; }));
    if (holders.empty()) {
      claims.byKey.erase(entry);
    }
  }
  m_keys.clear();
}

void ClaimedNames::awaitReads(const ActionItem& action) {
  readsAreKnown();
  m_graph = action.globalParameters();
  m_awaitsReads = true;
  AllClaims& claims = allClaims();
  const std::lock_guard lock(claims.mutex);
  claims.awaitingReads.emplace(m_graph, this);
}

void ClaimedNames::readsAreKnown() {
  if (!m_awaitsReads) {
    return;
  }
  m_awaitsReads = false;
  AllClaims& claims = allClaims();
  const std::lock_guard lock(claims.mutex);
  claims.awaitingReads.erase({m_graph, this});
}

bool ClaimedNames::areReadsAwaited(const GlobalParameters* graph) {
  AllClaims& claims = allClaims();
  const std::lock_guard lock(claims.mutex);
  const auto first = claims.awaitingReads.lower_bound({graph, nullptr});
  return first != claims.awaitingReads.end() && first->first == graph;
}

bool isStandardOutput(const QString& path) {
  return path == QLatin1String("-") || path == QLatin1String("/dev/stdout") ||
         path == QLatin1String("/dev/fd/1") || path == QLatin1String("/proc/self/fd/1");
}

}  // namespace kelvarin
