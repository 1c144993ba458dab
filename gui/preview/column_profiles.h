// The profiles of the columns of one preview, computed when they are asked for and again when many
// more rows have come.
//
// Threads: the user-interface thread; profiles are computed on the queue's.
#pragma once

#include <memory>
#include <unordered_map>
#include <vector>

#include <QObject>

#include "gui/preview/column_profile.h"

namespace kelvarin {

class ColumnProfiles : public QObject {
  Q_OBJECT

 public:
  // The queue outlives this object.
  explicit ColumnProfiles(BackgroundQueue& queue, QObject* parent = nullptr);
  ~ColumnProfiles() override;

  // Profiles of other rows are forgotten.
  void setRows(std::shared_ptr<const PreviewRows> rows);
  // So many of them count; `areAll` says that no more will come.
  void setRowCount(long long count, bool areAll);
  // Null until it is known; one of fewer rows until that of all is. changed() follows.
  const ColumnProfile* profile(int column);

 signals:
  void changed(int column);

 private:
  bool isStale(const ColumnProfile& profile) const;
  void want(int column);
  void startNext();
  void take(int column, std::optional<ColumnProfile> profile);

  BackgroundQueue& m_queue;
  std::shared_ptr<const PreviewRows> m_rows;
  long long m_rowCount = 0;
  bool m_areAll = false;
  std::unordered_map<int, ColumnProfile> m_profiles;
  std::vector<int> m_wanted;  // the last one first to be computed
  std::shared_ptr<StopFlag> m_atWork;
};

}  // namespace kelvarin
