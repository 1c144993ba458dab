// The help tab of the expression editors: every function, sign, constant and unit, with a search,
// details, and examples that can be tried.
//
// Threads: the user-interface thread.
#pragma once

#include <QWidget>

#include "expression/help/language_entries.h"
#include "ui/help_browser/help_search.h"

class QLabel;
class QLineEdit;
class QStackedWidget;
class QTextBrowser;
class QTreeWidget;
class QTreeWidgetItem;
class QUrl;

namespace kelvarin {

class ExampleTrial;

class Interface_mathParserHelp : public QWidget {
  Q_OBJECT

 public:
  explicit Interface_mathParserHelp(QWidget* parent = nullptr);

  // Selects the entry of the name, or searches for it.
  void showName(const QString& name);
  // Its lists take the height that there is. The labels that wrap would make an editor around it
  // ask for all of the height that it would like.
  bool hasHeightForWidth() const override { return false; }

 signals:
  // The user wants it at the cursor of the expression.
  void insertWanted(const QString& text);

 protected:
  // The keys that lead from the search into its results.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void makeSearch();
  QTreeWidget* makeTree(const QString& objectName, const QString& accessibleName);
  void fillFunctions();
  QWidget* makeDetails();
  // A link of the details: inserts, or lets an example be tried.
  void follow(const QUrl& link);
  // One of the results' groups; nothing where it would be empty.
  void addResults(const QString& heading, const std::vector<const LanguageEntry*>& entries);
  void search();
  void showRemark(const HelpFinds& finds);
  QTreeWidget* shownTree() const;
  void showSelected();
  void insert(const QTreeWidgetItem* item);

  const HelpSearch m_search;
  QLineEdit* m_query = nullptr;
  QLabel* m_remark = nullptr;
  QStackedWidget* m_trees = nullptr;
  QTreeWidget* m_functions = nullptr;  // all, in their groups
  QTreeWidget* m_results = nullptr;    // of the search
  QTextBrowser* m_details = nullptr;
  ExampleTrial* m_trial = nullptr;
  const LanguageEntry* m_shown = nullptr;
};

}  // namespace kelvarin
