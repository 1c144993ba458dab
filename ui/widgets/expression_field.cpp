#include "ui/widgets/expression_field.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLocale>
#include <QTimer>
#include <QVBoxLayout>

#include "host/widgets/icon_button.h"
#include "ui/language/call_tip.h"
#include "ui/language/formula_service.h"
#include "ui/widgets/call_tip_window.h"
#include "ui/widgets/completion_popup.h"
#include "ui/widgets/expression_completion.h"
#include "ui/widgets/expression_editor.h"
#include "ui/widgets/expression_verdict.h"
#include "ui/widgets/history_keys.h"
#include "ui/widgets/part_value_tip.h"
#include "ui/widgets/value_strip.h"

namespace kelvarin {

namespace {

constexpr int kRestMilliseconds = 150;

constexpr char kNormalStyle[] = "background-color: #FFFFFF; background-image: none;";
constexpr char kRefusedStyle[] =
    "background-color: #FFE8E8; background-image: "
    "url(:/KelvarinMathParser/errorExplanation.png);background-repeat:no-repeat;background-"
    "position:center bottom;";

// What an expression is before the user has written one.
constexpr char kDefaultExpression[] = "1";

// A menu of the field takes the focus for a moment; editing goes on after it.
bool isInMenuOf(const QWidget& field) {
  const QWidget* widget = QApplication::activePopupWidget();
  while (widget != nullptr && widget != &field) {
    widget = widget->parentWidget();
  }
  return widget != nullptr;
}

}  // namespace

class ExpressionField::Parts : public QObject {
 public:
  Parts(ExpressionField& field, Form form);

  bool eventFilter(QObject* watched, QEvent* event) override;

  ExpressionEditor& editor() { return *m_editor; }
  PartValueTip& tip() const { return *m_tip; }
  ExpressionVerdict& verdict() { return *m_verdict; }
  const FormulaAnswer& answer() const { return m_answer; }
  void setFormula(const Formula& formula);
  void setCurrentRow(const std::vector<VariableValue>& values) { m_formula.current = values; }
  void setRefused(bool isRefused);
  void setHistoryKey(const QString& key);
  void setValuesShown(bool isShown) { m_values->setVisible(isShown); }
  void addBesideVerdict(QWidget* control);
  void change(const QuickFix& fix);

 private:
  bool isLine() const { return m_form == Form::line; }
  void layOut();
  void connectEditor();
  Formula currentFormula() const;
  void textChanged();
  void ask();
  void take(const FormulaAnswer& answer);
  // The answer is about the text as it is.
  bool isAnswered() const;
  void finishEditing();
  void showPasteRefused(qsizetype size);
  void fix();
  void apply(const QuickFix& fix);
  void followTyping(const QString& text);
  void showCallTip();
  void followCallTip();
  void separateWindows();
  void closeWindows();

  ExpressionField& m_field;
  const Form m_form;
  FormulaService* m_service;
  ExpressionEditor* m_editor;
  ExpressionVerdict* m_verdict;
  IconButton* m_historyButton;
  ValueStrip* m_values;
  QHBoxLayout* m_below = nullptr;  // of the verdict; null in a field of one line
  CallTipWindow* m_callTip;
  ExpressionCompletion* m_completion;
  HistoryKeys* m_history;
  PartValueTip* m_tip;
  QTimer m_rest;
  Formula m_formula;
  FormulaAnswer m_answer;
  QString m_answeredExpression;
  quint64 m_askedVersion = 0;  // 0: the text has changed since the latest question
  bool m_isFixWanted = false;  // as soon as the answer is there
  bool m_isRefused = false;
};

ExpressionField::Parts::Parts(ExpressionField& field, Form form)
    : m_field(field),
      m_form(form),
      m_service(new FormulaService(&field)),
      m_editor(new ExpressionEditor(&field)),
      m_verdict(new ExpressionVerdict(&field)),
      m_historyButton(new IconButton(IconName::history,
                                     ExpressionField::tr("Earlier expressions (Alt+Up, Alt+Down)"),
                                     &field)),
      m_values(new ValueStrip(&field)),
      m_callTip(new CallTipWindow(&field)),
      m_completion(new ExpressionCompletion(*m_editor, &field)),
      m_history(new HistoryKeys(*m_editor, *m_historyButton)) {
  m_rest.setSingleShot(true);
  m_editor->setStyleSheet(QLatin1String(kNormalStyle));
  m_editor->installEventFilter(this);
  layOut();
  connectEditor();
  connect(&m_rest, &QTimer::timeout, this, &Parts::ask);
  connect(m_service, &FormulaService::answered, this, &Parts::take);
  m_tip = new PartValueTip(*m_editor, *m_service, [this] { return currentFormula(); }, &field);
}

void ExpressionField::Parts::layOut() {
  auto* layout = new QVBoxLayout(&m_field);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  layout->addWidget(m_editor, 1);
  m_field.setFocusProxy(m_editor);
  if (isLine()) {
    m_field.setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_editor->useOneLine();
    m_verdict->showFaultsOnly();
    m_historyButton->hide();
    m_values->hide();
    layout->addWidget(m_verdict);
    return;
  }
  m_below = new QHBoxLayout;
  m_verdict->setContentsMargins(0, 4, 0, 0);  // its first line stands beside the button's icon
  m_below->setSpacing(8);
  m_below->addWidget(m_verdict, 1, Qt::AlignTop);
  m_below->addWidget(m_historyButton, 0, Qt::AlignTop);
  layout->addLayout(m_below);
  layout->addWidget(m_values);
}

void ExpressionField::Parts::addBesideVerdict(QWidget* control) {
  m_below->insertWidget(m_below->indexOf(m_historyButton), control, 0, Qt::AlignTop);
}

void ExpressionField::Parts::connectEditor() {
  connect(m_editor, &QPlainTextEdit::textChanged, this, &Parts::textChanged);
  connect(m_editor, &ExpressionEditor::typed, this, &Parts::followTyping);
  connect(m_editor, &ExpressionEditor::erased, this, [this] { m_completion->follow(false); });
  connect(m_editor, &ExpressionEditor::pasteRefused, this, &Parts::showPasteRefused);
  connect(m_editor, &ExpressionEditor::completionAsked, m_completion, &ExpressionCompletion::ask);
  connect(m_editor, &ExpressionEditor::callTipAsked, this, &Parts::showCallTip);
  connect(m_editor, &QPlainTextEdit::cursorPositionChanged, this, &Parts::followCallTip);
  connect(m_editor, &ExpressionEditor::fixAsked, this, &Parts::fix);
  connect(m_editor, &ExpressionEditor::helpAsked, this, [this] {
    const WordAt word = wordAt(m_editor->expression(), m_editor->textCursor().position());
    emit m_field.helpWanted(word.text);
  });
  connect(m_editor, &KPlainTextEdit::editingFinished, this, &Parts::finishEditing);
  connect(m_editor, &ExpressionEditor::variablesDropped, this, [this](const QStringList& names) {
    for (const QString& name : names) {
      m_field.insertVariable(name);
    }
  });
  connect(m_editor, &ExpressionEditor::returnPressed, this, [this] {
    finishEditing();
    emit m_field.returnPressed();
  });
  connect(m_completion, &ExpressionCompletion::columnWanted, &m_field,
          &ExpressionField::columnWanted);
  connect(m_completion, &ExpressionCompletion::callInserted, this, &Parts::showCallTip);
  connect(m_completion, &ExpressionCompletion::moved, this, &Parts::separateWindows);
  connect(m_verdict, &ExpressionVerdict::fixChosen, this, &Parts::apply);
}

bool ExpressionField::Parts::eventFilter(QObject* watched, QEvent* event) {
  if (watched != m_editor) {
    // The window moves, and what belongs to the cursor would stay behind.
    if (event->type() == QEvent::Move || event->type() == QEvent::Resize) {
      closeWindows();
    }
    return QObject::eventFilter(watched, event);
  }
  switch (event->type()) {
    case QEvent::Show:
      m_field.window()->installEventFilter(this);
      break;
    case QEvent::ShortcutOverride:
      // Esc closes the windows here before it closes the editor's own.
      if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape &&
          (m_completion->popup().isVisible() || m_callTip->isVisible())) {
        event->accept();
        return true;
      }
      break;
    case QEvent::KeyPress: {
      const auto* key = static_cast<QKeyEvent*>(event);
      const bool isPlain = (key->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
      if (isPlain && m_completion->takeKey(key->key())) {
        return true;
      }
      if (isPlain && key->key() == Qt::Key_Escape && m_callTip->isVisible()) {
        m_callTip->hide();
        return true;
      }
      break;
    }
    case QEvent::FocusOut:
    case QEvent::Hide:
    case QEvent::Wheel:
    case QEvent::MouseButtonPress:
      closeWindows();
      break;
    default:
      break;
  }
  return QObject::eventFilter(watched, event);
}

void ExpressionField::Parts::finishEditing() {
  if (isInMenuOf(m_field)) {
    return;
  }
  m_history->add(m_editor->expression());
  m_completion->setUses(m_history->history().nameCounts());
  emit m_field.editingFinished();
}

// Until the next answer.
void ExpressionField::Parts::showPasteRefused(qsizetype size) {
  const QLocale locale;
  m_verdict->setMessage(
      Severity::error,
      ExpressionField::tr("Nothing was pasted: the text has %1 characters, and at most %2 can be "
                          "pasted at a time.")
          .arg(locale.toString(size), locale.toString(ExpressionEditor::kLongestPaste)));
}

void ExpressionField::Parts::setHistoryKey(const QString& key) {
  m_history->setKey(key);
  m_completion->setUses(m_history->history().nameCounts());
}

void ExpressionField::Parts::setFormula(const Formula& formula) {
  m_formula = formula;
  m_editor->setNames(knownNamesOf(formula));
  m_completion->setFormula(formula);
  m_askedVersion = 0;
  m_rest.start(0);
}

void ExpressionField::Parts::setRefused(bool isRefused) {
  if (isRefused == m_isRefused) {
    return;
  }
  m_isRefused = isRefused;
  m_editor->setStyleSheet(QLatin1String(isRefused ? kRefusedStyle : kNormalStyle));
}

Formula ExpressionField::Parts::currentFormula() const {
  Formula formula = m_formula;
  formula.output.expression = m_editor->expression();
  return formula;
}

void ExpressionField::Parts::textChanged() {
  m_askedVersion = 0;
  m_rest.start(kRestMilliseconds);
}

void ExpressionField::Parts::ask() {
  m_askedVersion = m_service->ask(currentFormula());
}

bool ExpressionField::Parts::isAnswered() const {
  return m_answer.version != 0 && m_editor->expression() == m_answeredExpression;
}

void ExpressionField::Parts::take(const FormulaAnswer& answer) {
  // About a text that has changed since.
  if (answer.version != m_askedVersion) {
    return;
  }
  m_answer = answer;
  m_answeredExpression = m_editor->expression();
  const bool isUnused = isLine() && m_answeredExpression.trimmed().isEmpty();
  m_editor->setFault(isUnused ? -1 : answer.faultStart, answer.faultSize);
  if (isUnused) {
    m_verdict->clear();
  } else {
    m_verdict->setAnswer(answer);
  }
  m_values->setAnswer(currentFormula(), answer);
  emit m_field.answered(answer);
  if (std::exchange(m_isFixWanted, false)) {
    fix();
  }
}

void ExpressionField::Parts::fix() {
  if (!isAnswered()) {
    m_isFixWanted = true;
    if (m_askedVersion == 0) {
      m_rest.stop();
      ask();
    }
    return;
  }
  m_verdict->chooseFix(m_editor->characterOnScreen(m_editor->textCursor().position()).bottomLeft());
}

void ExpressionField::Parts::apply(const QuickFix& fix) {
  if (isAnswered()) {
    change(fix);
  }
}

void ExpressionField::Parts::change(const QuickFix& fix) {
  m_editor->setFocus(Qt::OtherFocusReason);
  m_editor->replace(fix.start, fix.size, fix.replacement, fix.start + fix.replacement.size());
  if (!fix.columnToBind.isEmpty()) {
    emit m_field.columnWanted(fix.columnToBind);
  }
}

void ExpressionField::Parts::followTyping(const QString& text) {
  m_completion->follow(true);
  if (text == u'(' || text == u',') {
    showCallTip();
  }
}

void ExpressionField::Parts::showCallTip() {
  const int position = m_editor->textCursor().position();
  const auto tip = callTipAt(m_editor->expression(), position);
  if (!tip) {
    m_callTip->hide();
    return;
  }
  m_callTip->showTip(*tip, m_editor->characterOnScreen(position));
  separateWindows();
}

void ExpressionField::Parts::followCallTip() {
  if (m_callTip->isVisible()) {
    showCallTip();
  }
}

// Near the end of the screen both may be on the same side of the line.
void ExpressionField::Parts::separateWindows() {
  const CompletionPopup& popup = m_completion->popup();
  if (!popup.isVisible() || !m_callTip->isVisible() ||
      !popup.geometry().intersects(m_callTip->geometry())) {
    return;
  }
  constexpr int kGap = 4;
  const QRect list = popup.geometry();
  const int above = list.top() - m_callTip->height() - kGap;
  m_callTip->move(m_callTip->x(), above >= 0 ? above : list.bottom() + kGap);
}

void ExpressionField::Parts::closeWindows() {
  m_completion->close();
  m_callTip->hide();
}

ExpressionField::ExpressionField(QWidget* parent, Form form)
    : QWidget(parent), m_parts(std::make_unique<Parts>(*this, form)) {}

ExpressionField::~ExpressionField() = default;

KPlainTextEdit* ExpressionField::editor() const {
  return &m_parts->editor();
}

QString ExpressionField::expression() const {
  return m_parts->editor().expression();
}

void ExpressionField::setExpression(const QString& expression) {
  if (expression != this->expression()) {
    m_parts->editor().setPlainText(expression);
  }
}

void ExpressionField::setFormula(const Formula& formula) {
  m_parts->setFormula(formula);
}

void ExpressionField::setCurrentRow(const std::vector<VariableValue>& values) {
  m_parts->setCurrentRow(values);
}

const FormulaAnswer& ExpressionField::answer() const {
  return m_parts->answer();
}

void ExpressionField::insertVariable(const QString& alias) {
  ExpressionEditor& editor = m_parts->editor();
  if (expression() == QLatin1String(kDefaultExpression)) {
    editor.replace(0, 1, alias, alias.size());
    return;
  }
  editor.setFocus();
  editor.insertPlainText(u' ' + alias + u' ');
}

void ExpressionField::replaceExpression(const QString& expression) {
  const qsizetype cursor = m_parts->editor().textCursor().position();
  m_parts->editor().replace(0, this->expression().size(), expression,
                            qMin(cursor, expression.size()));
}

void ExpressionField::insertText(const QString& text) {
  m_parts->editor().setFocus();
  m_parts->editor().insertPlainText(text);
}

void ExpressionField::apply(const QuickFix& fix) {
  m_parts->change(fix);
}

void ExpressionField::setRefused(bool isRefused) {
  m_parts->setRefused(isRefused);
}

void ExpressionField::showPart(qsizetype start, qsizetype size) {
  m_parts->editor().setFocus();
  selectPart(start, size);
}

void ExpressionField::selectPart(qsizetype start, qsizetype size) {
  ExpressionEditor& editor = m_parts->editor();
  const qsizetype length = expression().size();
  QTextCursor cursor = editor.textCursor();
  cursor.setPosition(static_cast<int>(qBound<qsizetype>(0, start, length)));
  cursor.setPosition(static_cast<int>(qBound<qsizetype>(0, start + size, length)),
                     QTextCursor::KeepAnchor);
  editor.setTextCursor(cursor);
  m_parts->tip().passOverSelection();
  editor.ensureCursorVisible();
}

QWidget* ExpressionField::verdict() const {
  return &m_parts->verdict();
}

void ExpressionField::addBesideVerdict(QWidget* control) {
  m_parts->addBesideVerdict(control);
}

void ExpressionField::setValuesShown(bool isShown) {
  m_parts->setValuesShown(isShown);
}

void ExpressionField::setHistoryKey(const QString& key) {
  m_parts->setHistoryKey(key);
}

}  // namespace kelvarin
