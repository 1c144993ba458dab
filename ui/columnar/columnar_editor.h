// The base of the two columnar dialogs: tabs of settings that are written to the action at the end
// of each change, and a state of what has been typed and not yet written.
//
// While the controls are filled from the action, nothing is written.
// Threads: the user-interface thread.
#pragma once

#include <vector>

#include "host/widgets/user_interface.h"
#include "ui/panels/settings_page.h"

class QTabWidget;

namespace kelvarin {

class ExpressionField;
class Interface_mathParserHelp;

class ColumnarEditor : public UpdateClassWidget {
  Q_OBJECT

 public:
  explicit ColumnarEditor(QWidget* parent);

  QMap<QString, QString> uncommittedState() const override;
  void restoreUncommitted(const QMap<QString, QString>& texts) override;
  void commit() override;

 protected:
  // For destructors: a field that loses the focus then writes nothing.
  void endEditing();

  void addPage(SettingsPage* page, const QString& title);
  void showPage(const QWidget* page);
  // A last tab, filled when it is first shown.
  void addHelpPage();
  void showHelp(const QString& name);
  // Its text belongs to the uncommitted state, under this name.
  void watch(ExpressionField* field, const char* name);

  // Fills the controls, without writing anything.
  void reload();
  // Writes what differs to the action.
  void commitChanges();
  bool isLoading() const { return m_isLoading; }

  virtual void load() = 0;
  // False: nothing differed.
  virtual bool store() = 0;
  // Of the help, for the expression.
  virtual void insertIntoExpression(const QString&) {}
  // After the action was changed and the controls were filled anew.
  virtual void committed() {}

 private:
  QMap<QString, QString> texts() const;
  void fillHelpPage();

  QTabWidget* m_tabs;
  std::vector<SettingsPage*> m_pages;
  QWidget* m_helpPage = nullptr;
  Interface_mathParserHelp* m_help = nullptr;  // once it was shown
  QMap<QString, ExpressionField*> m_expressions;
  QMap<QString, QString> m_committedTexts;
  bool m_isLoading = false;
};

// An absolute name that a file dialog returned, relative where the file lies below the folder, as
// graphs that move with their data have it.
QString relativeBelow(const QString& folder, const QString& path);

}  // namespace kelvarin
