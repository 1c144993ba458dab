// One message of a form: an icon for how serious it is, the text, which can be selected, and links.
//
// Used below fields and at the top of panels. Takes no height while it is empty unless it is to
// keep it, so that nothing below it jumps.
#pragma once

#include <vector>

#include <QFrame>
#include <QString>

#include "base/export.h"
#include "host/widgets/theme.h"

class QLabel;

namespace kelvarin {

struct InfoLink {
  QString id;  // reported when it is activated
  QString label;
};

class KELVARIN_CORE InfoLine : public QFrame {
  Q_OBJECT

 public:
  explicit InfoLine(QWidget* parent = nullptr);
  ~InfoLine() override;

  // Plain text; wrapped where it is long.
  void setMessage(Severity severity, const QString& text, const std::vector<InfoLink>& links = {});
  void clear();
  QString text() const { return m_text; }
  // Stays as high as this many lines when there is less to say.
  void setReservedLines(int lines);

 signals:
  void linkActivated(const QString& id);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void showMessage();

  QLabel* m_icon;
  QLabel* m_label;
  Severity m_severity = Severity::information;
  QString m_text;
  std::vector<InfoLink> m_links;
  int m_reservedLines = 0;
};

}  // namespace kelvarin
