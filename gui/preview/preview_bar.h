// The line above the rows of a preview: which pin, how many rows, what is shown, and the buttons.
//
// Threads: the user-interface thread.
#pragma once

#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;

namespace kelvarin {

class IconButton;

class PreviewBar : public QWidget {
  Q_OBJECT

 public:
  explicit PreviewBar(QWidget* parent = nullptr);

  void setTitle(const QString& title);
  void setStatus(const QString& text);
  void setComputing(bool isComputing);
  // There is a pin, and rows to export.
  void setReady(bool hasPin, bool hasRows);
  void setFiltersShown(bool areShown);
  long long limit() const;

 signals:
  void limitChanged();
  void reloadWanted();
  void stopWanted();
  void exportWanted();
  void profilesToggled(bool areShown);
  void filtersToggled(bool areShown);
  void detailsToggled(bool areShown);

 private:
  QCheckBox* addSwitch(const QString& label, const QString& toolTip, bool isOn);
  void changeEvent(QEvent* event) override;
  void showTitle();
  void resizeEvent(QResizeEvent* event) override;

  QLabel* m_title;
  QString m_titleText;
  QComboBox* m_limit;
  QLabel* m_status;
  IconButton* m_reload;
  IconButton* m_stop;
  IconButton* m_export;
  QCheckBox* m_profiles;
  QCheckBox* m_filters;
  QCheckBox* m_details;
};

}  // namespace kelvarin
