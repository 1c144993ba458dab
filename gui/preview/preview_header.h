// The columns' header of a preview: name and type, a profile of the values, and a field to filter
// by.
//
// Threads: the user-interface thread.
#pragma once

#include <functional>
#include <map>

#include <QHash>
#include <QHeaderView>
#include <QPointer>

#include "gui/preview/column_profiles.h"

class QLineEdit;
class QTimer;

namespace kelvarin {

class PreviewHeader : public QHeaderView {
  Q_OBJECT

 public:
  explicit PreviewHeader(QWidget* parent = nullptr);

  // Null: there are none.
  void setProfiles(ColumnProfiles* profiles);

  void setShowsProfiles(bool shows);
  bool showsProfiles() const { return m_showsProfiles; }
  void setShowsFilters(bool shows);
  bool showsFilters() const { return m_showsFilters; }

  // What is typed above the columns, by their index; no blank ones.
  const QHash<int, QString>& filters() const { return m_filters; }
  void setFilter(int column, const QString& text);
  void clearFilters();
  // Why the text is none, shown with the field; empty: it is one.
  void setFault(int column, const QString& reason);
  // Puts the cursor into the field of the column.
  void editFilter(int column);

  QSize sizeHint() const override;

 signals:
  void filtersShown(bool areShown);
  // After a short rest.
  void filtersChanged();
  // Enter or arrow down in a field: the rows are wanted.
  void leaveWanted(int column);

 protected:
  void paintSection(QPainter* painter, const QRect& rectangle, int column) const override;
  QSize sectionSizeFromContents(int column) const override;
  void updateGeometries() override;
  void changeEvent(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  bool viewportEvent(QEvent* event) override;

 private:
  int lineHeight() const;
  int profileHeight() const;
  int filterHeight() const;
  const ColumnProfile* profile(int column) const;
  QString toolTipOf(int column) const;
  void paintProfile(QPainter& painter, QRect area, int column) const;
  void layOutFields();
  QLineEdit* fieldOf(int column);
  void fieldEdited(int column, const QString& text);
  void showFault(int column);

  QPointer<ColumnProfiles> m_profiles;
  bool m_showsProfiles = true;
  bool m_showsFilters = false;
  QHash<int, QString> m_filters;
  QHash<int, QString> m_faults;
  std::map<int, QLineEdit*> m_fields;  // of the columns that are seen, and the one with the focus
  QTimer* m_rest;
};

}  // namespace kelvarin
