// All that is known of the values of one column: counts, range, quantiles, a large histogram and
// the most frequent values.
//
// Threads: the user-interface thread.
#pragma once

#include <QScrollArea>

#include "gui/preview/column_profiles.h"

class QFormLayout;
class QLabel;
class QTreeWidget;

namespace kelvarin {

class HistogramView;

class ProfilePanel : public QScrollArea {
  Q_OBJECT

 public:
  explicit ProfilePanel(QWidget* parent = nullptr);

  // Null profile: it is being computed.
  void setColumn(const QString& name, MetaTypeColumn type, const ColumnProfile* profile);
  void clear();

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void addFact(const QString& name, const QString& value);
  void addCount(const QString& name, long long count, long long of);
  void showFacts(const ColumnProfile& profile);
  void showFrequent(const ColumnProfile& profile);
  void fitFrequent();

  QLabel* m_title;
  QLabel* m_note;
  HistogramView* m_histogram;
  QWidget* m_facts;
  QFormLayout* m_factLayout;
  QLabel* m_frequentTitle;
  QTreeWidget* m_frequent;
};

}  // namespace kelvarin
