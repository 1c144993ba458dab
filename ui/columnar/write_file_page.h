// The first tab of the writing dialog: the file, and how a table is split into several, with the
// names that they get.
#pragma once

#include <optional>

#include "columnar/actions/write_settings.h"
#include "host/contract/pin_columns.h"
#include "ui/columnar/summary_texts.h"
#include "ui/panels/settings_page.h"
#include "ui/widgets/expression_field.h"

class ActionItem;
class QComboBox;
class QLabel;

namespace kelvarin {

class CommittedVerdict;
class InfoLine;
class PathField;

class WriteFilePage : public SettingsPage {
  Q_OBJECT

 public:
  explicit WriteFilePage(const ActionItem& action, QWidget* parent = nullptr);

  ExpressionField* namingField() const { return m_naming; }
  void load(const WriteColumnarSettings& settings);
  void store(WriteColumnarSettings& settings) const;
  void setColumns(const PinColumns& columns);
  // With which the naming expression is tried.
  void setSplitValue(const QString& value);
  // The file name with the naming expression as it is typed, not yet the action's.
  QString typedFile() const;
  // The names of the files; a failure has no names.
  void showExamples(const QStringList& names, const ShownText& note);

 signals:
  // The naming expression was checked, and is right: its names can be shown.
  void examplesWanted();
  void helpWanted(const QString& name);
  // The page is to be shown.
  void pageWanted();

 private:
  void addFileGroup();
  void addSplitGroup();
  void addNaming(const QGroupBox& box);
  void addExampleGroup();
  void takePath(const QString& path);
  void toggleNaming(bool isOn);
  void connectNaming();
  void setNamingExpression();
  // None where the name cannot hold the naming expression that is typed.
  std::optional<QString> fileWithNaming() const;
  void showNaming(const WriteColumnarSettings& settings);
  void showNamingNote();

  const ActionItem& m_action;
  PathField* m_file;
  QString m_typed;  // the text that was last typed, not chosen
  QCheckBox* m_createDirectory;
  QRadioButton* m_oneFile;
  QRadioButton* m_bySize;
  QRadioButton* m_byValue;
  QSpinBox* m_segmentSize;
  QComboBox* m_splitColumn;
  QCheckBox* m_advancedNaming;
  ExpressionField* m_naming;
  CommittedVerdict* m_verdict;
  InfoLine* m_namingNote;
  QLabel* m_examples;
  InfoLine* m_exampleNote;
  QString m_splitValue;
  QString m_loadedNaming;  // the naming expression as the action has it
};

}  // namespace kelvarin
