// The settings tab of the expression editors: row number, times, what becomes of errors, the
// compiler, and what only one of the actions has.
//
// Threads: the user-interface thread.
#pragma once

#include <array>
#include <functional>

#include "expression/evaluator/variables.h"
#include "ui/panels/settings_page.h"

class QComboBox;

namespace kelvarin {

class TimeParametersPanel;

class EvaluationPage : public SettingsPage {
  Q_OBJECT

 public:
  // What the page has beyond the settings of all expression actions.
  struct Sections {
    bool truncation = false;
    bool keyCasts = false;
    QString continueAfterError;  // the first item of cmbError
  };

  explicit EvaluationPage(const Sections& sections, QWidget* parent = nullptr);

  // Fills the controls; nothing is reported.
  void load(const EvaluationOptions& options);
  // The page's, on top of what cannot be set here.
  EvaluationOptions options(EvaluationOptions options) const;
  void setTruncates(bool truncates);
  bool truncates() const;
  void setExpansion(std::function<QString(const QString&)> expand);

 signals:
  // cmbError has another item.
  void errorPolicyChosen(bool abortWhenError);

 private:
  using ModeButtons = std::array<QRadioButton*, 3>;

  void addTruncation();
  void addRowNumber();
  void addErrors(const QString& continueText);
  void addCompiler();
  void addKeyCasts();
  ModeButtons addModes(QGroupBox& box, int firstNumber, const QString& question,
                       const std::array<QString, 3>& answers);
  static int modeOf(const ModeButtons& buttons, int otherwise);

  QCheckBox* m_truncate = nullptr;  // null: the action cannot
  QCheckBox* m_addN;
  TimeParametersPanel* m_time;
  QComboBox* m_error;
  QCheckBox* m_useJIT;
  std::array<ModeButtons, 3> m_keyCasts{};  // null: the action has none
  bool m_isLoading = false;
};

}  // namespace kelvarin
