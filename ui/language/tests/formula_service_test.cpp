#include "ui/language/formula_service.h"

#include <atomic>
#include <future>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QDir>
#include <QFile>

#include "ui/language/tests/formula_fixture.h"
#include "ui/language/tests/wait_for.h"

namespace kelvarin {
namespace {

using std::chrono::milliseconds;

TEST(FormulaService, AnswersTheNewestQuestionOfAKind) {
  FormulaService service;
  std::vector<FormulaAnswer> answers;
  int partCount = 0;
  quint64 versionOfParts = 0;
  QObject::connect(&service, &FormulaService::answered,
                   [&](const FormulaAnswer& answer) { answers.push_back(answer); });
  QObject::connect(&service, &FormulaService::partAnswered, [&] { ++partCount; });
  QObject::connect(&service, &FormulaService::partsAnswered,
                   [&](const PartValues& values) { versionOfParts = values.version; });
  quint64 last = 0;
  for (int i = 0; i < 200; ++i) {
    last = service.ask(formulaOf(QStringLiteral("x + ") + QString::number(i)));
  }
  (void)service.askPart(formulaOf(QStringLiteral("x + 1")), 0, 0);
  const quint64 parts = service.askParts(formulaOf(QStringLiteral("x + 1")));
  ASSERT_TRUE(waitFor([&] { return !answers.empty() && partCount > 0 && versionOfParts > 0; }));
  ASSERT_EQ(answers.size(), 1U);
  EXPECT_EQ(answers.front().version, last);
  EXPECT_EQ(answers.front().values.front().value.number, 200.0);
  EXPECT_EQ(versionOfParts, parts);
}

TEST(FormulaService, OutlivesHostileQuestionsAndGoesOn) {
  const QString pipe = QDir::temp().filePath(QStringLiteral("kelvarin_formula_pipe"));
  QFile::remove(pipe);
  ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
  FormulaService service;
  std::vector<FormulaAnswer> answers;
  PartValues parts;
  QObject::connect(&service, &FormulaService::answered,
                   [&](const FormulaAnswer& answer) { answers.push_back(answer); });
  QObject::connect(&service, &FormulaService::partsAnswered,
                   [&](const PartValues& values) { parts = values; });
  const QStringList hostile = {
      QString(10'000, u'(') + u'x' + QString(10'000, u')'),
      u'{' + QStringLiteral("eye(1000),").repeated(900) + QStringLiteral("1}"),
      QStringLiteral("load(\"%1\")").arg(pipe),
      QStringLiteral("x!").repeated(4'000),
  };
  for (const QString& expression : hostile) {
    answers.clear();
    const auto start = std::chrono::steady_clock::now();
    (void)service.ask(formulaOf(expression, 'U'));
    const quint64 version = service.askParts(formulaOf(expression, 'U'));
    ASSERT_TRUE(waitFor([&] { return !answers.empty() && parts.version == version; }));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
    EXPECT_FALSE(answers.front().message.isEmpty());
  }
  QFile::remove(pipe);
  answers.clear();
  (void)service.ask(formulaOf(QStringLiteral("x + 1")));
  ASSERT_TRUE(waitFor([&] { return !answers.empty(); }));
  EXPECT_EQ(answers.front().values.size(), 3U);
}

// Jobs that end when the test says so.
class BoundedWorkerTest : public testing::Test {
 protected:
  ~BoundedWorkerTest() override {
    m_gate.set_value();
    EXPECT_TRUE(waitFor([] { return !BoundedWorker::isOneLeftBehind(); }));
  }

  BoundedWorker::Job stuckJob() {
    return {[this, gate = m_open](bool) -> std::function<void()> {
              m_isStuck = true;
              gate.wait();
              return [] { FAIL() << "a job that was given up is shown"; };
            },
            [this] { ++m_givenUp; }};
  }
  BoundedWorker::Job quickJob() {
    return {[this](bool isCareful) -> std::function<void()> {
              return [this, isCareful] { isCareful ? ++m_careful : ++m_done; };
            },
            [this] { ++m_givenUp; }};
  }

  std::promise<void> m_gate;
  std::shared_future<void> m_open = m_gate.get_future().share();
  std::atomic<bool> m_isStuck = false;
  int m_givenUp = 0;
  int m_done = 0;
  int m_careful = 0;
};

TEST_F(BoundedWorkerTest, LeavesAStuckJobBehindAndGoesOn) {
  BoundedWorker worker(milliseconds(100));
  worker.run(0, stuckJob());
  worker.run(1, quickJob());
  ASSERT_TRUE(waitFor([&] { return m_givenUp == 1 && m_careful == 1; }));
  EXPECT_TRUE(BoundedWorker::isOneLeftBehind());

  // A second one is not left behind: it is waited for, and everything else is given up.
  worker.run(0, stuckJob());
  ASSERT_TRUE(waitFor([&] { return m_givenUp == 2; }));
  worker.run(1, quickJob());
  ASSERT_TRUE(waitFor([&] { return m_givenUp == 3; }));
  EXPECT_EQ(m_done, 0);
}

TEST_F(BoundedWorkerTest, GoesWithoutWaitingForAStuckJob) {
  auto worker = std::make_unique<BoundedWorker>(milliseconds(100));
  worker->run(0, stuckJob());
  ASSERT_TRUE(waitFor([&] { return m_isStuck.load(); }));
  const auto start = std::chrono::steady_clock::now();
  worker.reset();
  EXPECT_LT(std::chrono::steady_clock::now() - start, milliseconds(500));
}

}  // namespace
}  // namespace kelvarin
