#include "ui/widgets/expression_completion.h"

#include "ui/widgets/completion_popup.h"
#include "ui/widgets/expression_editor.h"

namespace kelvarin {

namespace {

QString kindInWords(const Candidate& candidate) {
  using Kind = Candidate::Kind;
  switch (candidate.kind) {
    case Kind::variable:
      return ExpressionCompletion::tr("variable");
    case Kind::column:
      return ExpressionCompletion::tr("column, becomes a variable");
    case Kind::function:
      return ExpressionCompletion::tr("function");
    case Kind::constant:
      return ExpressionCompletion::tr("constant");
    case Kind::parameter:
      return ExpressionCompletion::tr("graph parameter");
    case Kind::word:
      break;
  }
  return {};
}

CompletionLine lineOf(const Candidate& candidate) {
  CompletionLine line;
  const bool isFunction = candidate.kind == Candidate::Kind::function;
  line.name = isFunction && !candidate.signature.isEmpty() ? candidate.signature : candidate.name;
  line.kind = kindInWords(candidate);
  if (!candidate.type.isEmpty()) {
    line.kind += line.kind.isEmpty() ? candidate.type : QStringLiteral(", ") + candidate.type;
  }
  line.comment = candidate.comment;
  if (!candidate.foreignName.isEmpty()) {
    line.kind = ExpressionCompletion::tr("for %1").arg(candidate.foreignName);
  }
  return line;
}

}  // namespace

ExpressionCompletion::ExpressionCompletion(ExpressionEditor& editor, QWidget* owner)
    : QObject(owner), m_editor(editor), m_popup(new CompletionPopup(owner)) {
  connect(m_popup, &CompletionPopup::accepted, this, &ExpressionCompletion::accept);
}

void ExpressionCompletion::setFormula(const Formula& formula) {
  m_completion = Completion(formula);
  m_completion.setUses(m_uses);
}

void ExpressionCompletion::setUses(const QHash<QString, int>& uses) {
  m_uses = uses;
  m_completion.setUses(uses);
}

void ExpressionCompletion::ask() {
  m_refusedStart = -1;
  offer(m_completion.at(m_editor.expression(), m_editor.textCursor().position(), true));
}

void ExpressionCompletion::follow(bool isTyped) {
  const bool wasOpen = m_popup->isVisible();
  if (!wasOpen && !isTyped) {
    return;
  }
  CompletionList list =
      m_completion.at(m_editor.expression(), m_editor.textCursor().position(), false);
  if (list.start != m_refusedStart) {
    m_refusedStart = -1;
  }
  if (m_refusedStart >= 0 || list.size == 0 || isCompleted(list)) {
    close();
    return;
  }
  offer(std::move(list));
}

bool ExpressionCompletion::takeKey(int key) {
  if (!m_popup->takeKey(key)) {
    return false;
  }
  if (key == Qt::Key_Escape) {
    m_refusedStart = m_list.start;
  }
  return true;
}

void ExpressionCompletion::close() {
  m_popup->hide();
}

void ExpressionCompletion::offer(CompletionList list) {
  m_list = std::move(list);
  std::vector<CompletionLine> lines;
  lines.reserve(m_list.candidates.size());
  for (const Candidate& candidate : m_list.candidates) {
    lines.push_back(lineOf(candidate));
  }
  m_popup->offer(lines, m_editor.characterOnScreen(m_list.start));
  emit moved();
}

void ExpressionCompletion::accept(int line) {
  close();
  if (line < 0 || line >= static_cast<int>(m_list.candidates.size())) {
    return;
  }
  const Candidate candidate = m_list.candidates[static_cast<std::size_t>(line)];
  const QString text = m_editor.expression();
  const qsizetype end = m_list.start + m_list.size;
  QString insertion = candidate.insertion;
  // The brackets may stand there already.
  if (insertion.endsWith(u"()") && end < text.size() && text[end] == u'(') {
    insertion.chop(2);
    m_editor.replace(m_list.start, m_list.size, insertion, m_list.start + insertion.size() + 1);
  } else {
    m_editor.replace(m_list.start, m_list.size, insertion, m_list.start + candidate.cursor);
  }
  if (!candidate.columnToBind.isEmpty()) {
    emit columnWanted(candidate.columnToBind);
  }
  if (candidate.kind == Candidate::Kind::function) {
    emit callInserted();
  }
}

// A list of nothing but what stands there would be in the way of Enter.
bool ExpressionCompletion::isCompleted(const CompletionList& list) const {
  return !list.candidates.empty() && list.candidates.front().insertion == list.word &&
         list.candidates.front().columnToBind.isEmpty();
}

}  // namespace kelvarin
