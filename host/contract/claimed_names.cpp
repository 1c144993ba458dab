#include "host/contract/claimed_names.h"

#include <mutex>

#include <QDir>
#include <QFileInfo>
#include <QSet>

namespace kelvarin {

namespace {

struct AllClaims {
  std::mutex mutex;  // guards names
  QSet<std::pair<quintptr, QString>> names;
};

AllClaims& allClaims() {
  static AllClaims claims;
  return claims;
}

std::pair<quintptr, QString> entryOf(const GlobalParameters* graph, const QString& name) {
  return {reinterpret_cast<quintptr>(graph), name};
}

}  // namespace

bool ClaimedNames::claim(const GlobalParameters* graph, const QString& name) {
  m_graph = graph;
  if (m_names.contains(name)) {
    return true;
  }
  AllClaims& claims = allClaims();
  const std::lock_guard lock(claims.mutex);
  const auto entry = entryOf(graph, name);
  if (claims.names.contains(entry)) {
    return false;
  }
  claims.names.insert(entry);
  m_names.push_back(name);
  return true;
}

void ClaimedNames::giveBack() {
  AllClaims& claims = allClaims();
  const std::lock_guard lock(claims.mutex);
  for (const QString& name : m_names) {
    claims.names.remove(entryOf(m_graph, name));
  }
  m_names.clear();
}

QString ClaimedNames::nameOf(const QString& path) {
  return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

}  // namespace kelvarin
