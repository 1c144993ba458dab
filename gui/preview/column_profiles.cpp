#include "gui/preview/column_profiles.h"

#include <algorithm>
#include <utility>

namespace kelvarin {

namespace {

// More columns than a window shows have been scrolled away.
constexpr std::size_t kWantedCapacity = 64;
// While rows come, a profile is computed again when there are so many times as many.
constexpr long long kGrowth = 4;

}  // namespace

ColumnProfiles::ColumnProfiles(BackgroundQueue& queue, QObject* parent)
    : QObject(parent), m_queue(queue) {}

ColumnProfiles::~ColumnProfiles() {
  setRows(nullptr);
}

void ColumnProfiles::setRows(std::shared_ptr<const PreviewRows> rows) {
  if (m_atWork != nullptr) {
    *m_atWork = true;
    m_atWork.reset();
  }
  m_rows = std::move(rows);
  m_rowCount = 0;
  m_areAll = false;
  m_profiles.clear();
  m_wanted.clear();
}

void ColumnProfiles::setRowCount(long long count, bool areAll) {
  m_rowCount = count;
  m_areAll = areAll;
}

const ColumnProfile* ColumnProfiles::profile(int column) {
  const auto found = m_profiles.find(column);
  const bool isKnown = found != m_profiles.end();
  if (m_rows != nullptr && m_rowCount > 0 && (!isKnown || isStale(found->second))) {
    want(column);
  }
  return isKnown ? &found->second : nullptr;
}

bool ColumnProfiles::isStale(const ColumnProfile& profile) const {
  return profile.rowCount != m_rowCount &&
         (m_areAll || m_rowCount >= kGrowth * profile.rowCount || m_rowCount < profile.rowCount);
}

void ColumnProfiles::want(int column) {
  if (std::find(m_wanted.begin(), m_wanted.end(), column) != m_wanted.end()) {
    return;
  }
  m_wanted.push_back(column);
  if (m_wanted.size() > kWantedCapacity) {
    m_wanted.erase(m_wanted.begin());
  }
  if (m_atWork == nullptr) {
    startNext();
  }
}

void ColumnProfiles::startNext() {
  if (m_wanted.empty()) {
    return;
  }
  const int column = m_wanted.back();
  m_atWork = m_queue.add([this, column, rows = m_rows, count = m_rowCount](const StopFlag& stop) {
    auto profile =
        std::make_shared<std::optional<ColumnProfile>>(profileOf(*rows, column, count, stop));
    return [this, column, profile] { take(column, std::move(*profile)); };
  });
}

// Rows that cannot be read back have no profile, and are not asked for again.
void ColumnProfiles::take(int column, std::optional<ColumnProfile> profile) {
  m_atWork.reset();
  std::erase(m_wanted, column);
  if (!profile) {
    profile.emplace();
    profile->type = m_rows->columns()[static_cast<std::size_t>(column)].meta;
    profile->rowCount = m_rowCount;
  }
  m_profiles.insert_or_assign(column, std::move(*profile));
  startNext();
  emit changed(column);
}

}  // namespace kelvarin
