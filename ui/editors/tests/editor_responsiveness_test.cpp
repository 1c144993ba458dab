// How long the editor's thread is kept from answering: while an expression of 10,000 characters
// over 1,000 columns is typed, with a debug run that stands or goes on; and by hostile expressions.
#include <algorithm>
#include <chrono>

#include <sys/stat.h>

#include <QClipboard>
#include <QPushButton>
#include <QTemporaryDir>

#include "host/widget_testing/key_times.h"
#include "host/widgets/info_line.h"
#include "ui/debugger/tests/debugged_branch.h"
#include "ui/editors/interface_action_filter_rows.h"
#include "ui/editors/tests/editor_fixture.h"

namespace kelvarin::testing {

namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int kColumns = 1000;
constexpr int kCharacters = 10'000;  // as many as the String Parser takes
constexpr int kKeys = 1000;
// The test asserts four times of what users are promised, since other programs run beside it.
constexpr double kLongestBlock = 4 * 20.0;
constexpr double kLongestVerdict = 4 * 300.0;
constexpr double kLongestHostileVerdict = 4 * 1000.0;

QString columnName(int column) {
  return QStringLiteral("column_%1").arg(column % kColumns);
}

QByteArray wideFilter() {
  QString expression;
  for (int i = 0; expression.size() < kCharacters - 30; ++i) {
    expression += columnName(i) + QStringLiteral(" * 2.5 + ");
  }
  QString xml = QStringLiteral("<FilterRows name='f'><Expression>%1 1</Expression><InputVars>")
                    .arg(expression);
  for (int i = 0; i < kColumns; ++i) {
    xml += QStringLiteral("<InputVar column='%1'/>").arg(columnName(i));
  }
  return (xml + QStringLiteral("</InputVars></FilterRows>")).toUtf8();
}

std::string wideColumns() {
  QStringList columns;
  for (int i = 0; i < kColumns; ++i) {
    columns += columnName(i) + QStringLiteral(":F");
  }
  return columns.join(u' ').toStdString();
}

// The editor of a filter that reads a thousand columns of a million rows.
class WideEditor : public ::testing::Test {
 protected:
  WideEditor() {
    branch.rows = [](FakeInputPin& pin) { pin.push(Values(kColumns, 1.5), 1'000'000); };
    editor.resize(1000, 900);
    editor.show();
    editor.activateWindow();
    settle();
    field.editor()->setFocus();
    QTextCursor cursor = field.editor()->textCursor();
    cursor.setPosition(kCharacters / 2);
    field.editor()->setTextCursor(cursor);
  }
  void settle() {
    EXPECT_TRUE(QTest::qWaitFor([&] { return !editor.isBusy(); }, 20'000));
    EXPECT_TRUE(QTest::qWaitFor([&] { return field.answer().check.isCompiled(); }, 20'000));
  }

  // Types, and says how long a key and all that follows it takes of the thread.
  void expectQuickKeys(const char* what) {
    const KeyTimes times =
        timeOfKeys(*field.editor(), QStringLiteral(" colu nvl(12.5,\"a\")"), kKeys);
    const auto last = std::chrono::steady_clock::now();
    bool isAnswered = false;
    QObject::connect(&field, &ExpressionField::answered, &editor, [&] { isAnswered = true; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return isAnswered; }, 20'000));
    const double verdict = Milliseconds(std::chrono::steady_clock::now() - last).count();
    std::printf(
        "%s: a key takes %.1f ms, 99.9th percentile %.1f ms; the verdict comes after %.0f ms\n",
        what, times.median, times.percentile999, verdict);
    EXPECT_LT(times.percentile999, kLongestBlock);
    EXPECT_LT(verdict, kLongestVerdict);
  }

  DebuggedBranch branch{makeAction<FilterRows>(wideFilter()), wideColumns()};
  Interface_actionFilterRows editor{nullptr, static_cast<FilterRows&>(branch.action())};
  ExpressionField& field = *editor.findChild<ExpressionField*>(QStringLiteral("expression"));
};

TEST_F(WideEditor, AnswersKeysWithoutARun) {
  expectQuickKeys("without a run");
}

TEST_F(WideEditor, AnswersKeysWhileARunStandsAtARow) {
  editor.on_pbStartStop_clicked();
  const auto isValueShown = [&] {
    const auto& variables = *editor.findChild<VariablesModel*>();
    return variables.index(0, VariablesModel::kDebugValue).data().toString() == u"1.5";
  };
  ASSERT_TRUE(QTest::qWaitFor(isValueShown, 20'000)) << ::testing::PrintToString(branch.log());
  expectQuickKeys("stopped at a row");
}

TEST_F(WideEditor, AnswersKeysWhileARunGoesOn) {
  QTest::keyClick(&editor, Qt::Key_F5);
  QTest::keyClick(&editor, Qt::Key_F5);  // to a breakpoint that is none
  ASSERT_EQ(editor.findChild<QPushButton*>(QStringLiteral("pbStartStop"))->text(), "STOP");
  expectQuickKeys("running");
  EXPECT_EQ(editor.findChild<QPushButton*>(QStringLiteral("pbStartStop"))->text(), "STOP");
}

using HostileTest = EditorTest<Interface_actionFilterRows, FilterRows>;

// Each is pasted and then checked by F7; meanwhile the editor's thread answers.
TEST_F(HostileTest, ExpressionsAreRefusedInTimeAndLeaveTheEditorAlive) {
  QTemporaryDir folder;
  const QString pipe = folder.filePath(QStringLiteral("pipe"));
  ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
  m_rowsOfPin[0] = textRows({QStringLiteral("x")}, {{QStringLiteral("1")}});
  const std::pair<const char*, QString> hostile[] = {
      {"10,000 brackets", QString(10'000, u'(') + u'x' + QString(10'000, u')')},
      {"large matrices", u'{' + QStringLiteral("eye(1000),").repeated(900) + QStringLiteral("1}")},
      {"a pipe", QStringLiteral("load(\"%1\") == \"a\"").arg(pipe)},
      {"a device", QStringLiteral("load(\"/dev/zero\") == \"a\"")}};
  for (const auto& [what, expression] : hostile) {
    open(
        "<FilterRows name='f'><Expression>1</Expression><InputVars><InputVar column='x'/>"
        "</InputVars></FilterRows>");
    QPlainTextEdit& editor = *field().editor();
    editor.setFocus();
    editor.selectAll();
    QApplication::clipboard()->setText(expression);
    bool isAnswered = false;
    QObject::connect(&field(), &ExpressionField::answered, m_editor.get(),
                     [&] { isAnswered = true; });
    const auto begin = std::chrono::steady_clock::now();
    editor.paste();
    EXPECT_TRUE(QTest::qWaitFor([&] { return isAnswered; }, 20'000)) << what;
    const double typed = Milliseconds(std::chrono::steady_clock::now() - begin).count();
    EXPECT_FALSE(field().answer().message.isEmpty()) << what;
    const auto key = std::chrono::steady_clock::now();
    QTest::keyClick(&editor, Qt::Key_F7);
    settle();
    const double checked = Milliseconds(std::chrono::steady_clock::now() - key).count();
    std::printf("%s: the verdict comes after %.0f ms, that of F7 after %.0f ms\n", what, typed,
                checked);
    EXPECT_LT(typed, kLongestHostileVerdict) << what;
    EXPECT_LT(checked, kLongestHostileVerdict) << what;
    write(QStringLiteral("x + 1"));
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return field().answer().check.kind == ExpressionCheck::Kind::fine; }, 20'000))
        << what;
  }
}

TEST_F(HostileTest, ATextOf16MiBIsNotPasted) {
  open("<FilterRows name='f'><Expression>1</Expression></FilterRows>");
  QApplication::clipboard()->setText(QStringLiteral("x + ").repeated(4 << 20));
  const auto begin = std::chrono::steady_clock::now();
  field().editor()->paste();
  EXPECT_LT(Milliseconds(std::chrono::steady_clock::now() - begin).count(), 4 * 1000.0);
  EXPECT_EQ(field().expression(), "1");
  EXPECT_TRUE(std::ranges::any_of(m_editor->findChildren<InfoLine*>(), [](const InfoLine* line) {
    return line->text().contains("16,777,216 characters");
  }));
}

}  // namespace

}  // namespace kelvarin::testing
