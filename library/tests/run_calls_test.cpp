// Graphs through the interface: streams at their sources and sinks, stops, results.
#include <thread>

#include <nlohmann/json.hpp>

#include "host/tables/files/tests/table_folder.h"
#include "library/tests/arrow_streams.h"

namespace kelvarin {
namespace {

using testing::Call;
using testing::Pulled;

// Reads `sales`, adds `total`, and writes the rows from `least` on to `large`, the others to
// `small`.
constexpr char kGraph[] =
    "<KelvarinGraph version='1.0'><Parameters><Parameter name='least' value='40'/></Parameters>"
    "<Actions><ReadCSV name='sales' file='sales.csv'/>"
    "<Calculator name='totals'><InputVars><InputVar column='price'/><InputVar column='count'/>"
    "</InputVars><OutputVars><OutputVar name='total'>price * count</OutputVar></OutputVars>"
    "</Calculator>"
    "<FilterRows name='split'><Expression>total &gt;= least</Expression><InputVars>"
    "<InputVar column='total'/></InputVars></FilterRows>"
    "<WriteCSV name='large' file='large.csv'/><WriteCSV name='small' file='small.csv'/>"
    "</Actions><Links><Link from='sales' to='totals'/><Link from='totals' to='split'/>"
    "<Link from='split' to='large'/><Link from='split' fromPin='1' to='small'/></Links>"
    "</KelvarinGraph>";

class RunCallsTest : public ::testing::Test {
 protected:
  kelvarin_run open(const kelvarin_run_options* options = nullptr) {
    Call error;
    kelvarin_run run{};
    EXPECT_EQ(
        kelvarin_run_open_document(kGraph, sizeof kGraph - 1, m_folder.path("g.kelvarin").c_str(),
                                   options, &run, &error),
        KELVARIN_OK)
        << error.message();
    return run;
  }
  static void bind(kelvarin_run run, ArrowArrayStream input) {
    Call error;
    EXPECT_EQ(kelvarin_run_bind_input(run, "sales", &input, nullptr, &error), KELVARIN_OK)
        << error.message();
    EXPECT_EQ(input.release, nullptr);
  }
  static ArrowArrayStream output(kelvarin_run run, const char* action) {
    ArrowArrayStream out{};
    Call error;
    EXPECT_EQ(kelvarin_run_bind_output(run, action, nullptr, &out, &error), KELVARIN_OK)
        << error.message();
    return out;
  }
  static nlohmann::json resultOf(kelvarin_run run) {
    char* text = nullptr;
    EXPECT_EQ(kelvarin_run_result(run, &text, nullptr), KELVARIN_OK);
    nlohmann::json result = nlohmann::json::parse(text);
    kelvarin_free(text);
    return result;
  }

  testing::TableFolder m_folder;
};

ArrowArrayStream sales() {
  return testing::streamOf(
      {{"price", arrow::float64(), "[2, 10, 4]"}, {"count", arrow::int64(), "[30, 2, 10]"}});
}

TEST_F(RunCallsTest, StreamsReplaceFiles) {
  const kelvarin_run run = open();
  std::string actions;
  kelvarin_action_info action{};
  action.size = sizeof action;
  for (int i = 0; kelvarin_run_get_action(run, i, &action, nullptr) == KELVARIN_OK; ++i) {
    actions += std::string(action.name) + ":" + action.type + " ";
  }
  EXPECT_EQ(actions,
            "sales:ReadCSV totals:Calculator split:FilterRows large:WriteCSV "
            "small:WriteCSV ");
  bind(run, sales());
  ArrowArrayStream large = output(run, "large");
  ArrowArray array;
  EXPECT_EQ(large.get_next(&large, &array), EINVAL);  // not started
  large.release(&large);
  large = output(run, "large");
  EXPECT_EQ(kelvarin_run_wait(run, 0, nullptr), KELVARIN_WRONG_ARGUMENT);
  ASSERT_EQ(kelvarin_run_start(run, nullptr), KELVARIN_OK);
  EXPECT_EQ(kelvarin_run_start(run, nullptr), KELVARIN_WRONG_ARGUMENT);
  EXPECT_EQ(testing::pulled(large).text(), "price=[2,4] count=[30,10] total=[60,40]");
  EXPECT_EQ(kelvarin_run_wait(run, -1, nullptr), KELVARIN_OK);
  EXPECT_EQ(m_folder.read("small.csv"), "price,count,total\n10,2,20\n");
  const nlohmann::json result = resultOf(run);
  EXPECT_EQ(result["status"], "ok");
  EXPECT_EQ(result["actions"][3]["rowsIn"][0], 2);
  char* text = nullptr;
  ASSERT_EQ(kelvarin_run_progress(run, &text, nullptr), KELVARIN_OK);
  const nlohmann::json progress = nlohmann::json::parse(text);
  kelvarin_free(text);
  EXPECT_EQ(progress["rowsRead"], 3);
  EXPECT_EQ(progress["fraction"], 1.0);
  EXPECT_EQ(progress["actions"][2]["phase"], "finished");
  EXPECT_EQ(progress["actions"][2]["rowsOut"], nlohmann::json({2, 1}));
  EXPECT_EQ(kelvarin_run_close(run), KELVARIN_OK);
}

TEST_F(RunCallsTest, ParametersAreThoseOfTheCall) {
  const kelvarin_setting least[] = {{"least", "50"}};
  kelvarin_run_options options = KELVARIN_RUN_OPTIONS_INIT;
  options.parameters = least;
  options.parameter_count = 1;
  m_folder.write("sales.csv", "price,count\n2,30\n10,2\n4,10\n");
  const kelvarin_run run = open(&options);
  ArrowArrayStream small = output(run, "small");
  ASSERT_EQ(kelvarin_run_start(run, nullptr), KELVARIN_OK);
  EXPECT_EQ(testing::pulled(small).text(), "price=[10,4] count=[2,10] total=[20,40]");
  EXPECT_EQ(kelvarin_run_wait(run, -1, nullptr), KELVARIN_OK);
  EXPECT_EQ(kelvarin_run_close(run), KELVARIN_OK);
}

TEST_F(RunCallsTest, FailuresReachTheRunAndItsStreams) {
  kelvarin_run run = open();
  bind(run, testing::streamOf({{"price", arrow::float64(), "[1]"}}));
  ArrowArrayStream large = output(run, "large");
  ASSERT_EQ(kelvarin_run_start(run, nullptr), KELVARIN_OK);
  const Pulled pulled = testing::pulled(large);
  EXPECT_NE(pulled.failure.find("'count'"), std::string::npos) << pulled.failure;
  Call error;
  EXPECT_EQ(kelvarin_run_wait(run, -1, &error), KELVARIN_FAILED);
  EXPECT_EQ(std::string(kelvarin_error_action(error.get())), "totals");
  EXPECT_EQ(resultOf(run)["status"], "failed");
  EXPECT_EQ(m_folder.listing(), "");
  EXPECT_EQ(kelvarin_run_close(run), KELVARIN_OK);

  run = open();
  ArrowArrayStream stream = sales();
  EXPECT_EQ(kelvarin_run_bind_input(run, "split", &stream, nullptr, &error),
            KELVARIN_WRONG_ARGUMENT);
  stream = sales();
  EXPECT_EQ(kelvarin_run_bind_input(run, "sale", &stream, nullptr, &error),
            KELVARIN_WRONG_ARGUMENT);
  EXPECT_NE(error.message().find("sales"), std::string::npos) << error.message();
  EXPECT_EQ(kelvarin_run_bind_output(run, "sales", nullptr, &stream, &error),
            KELVARIN_WRONG_ARGUMENT);
  EXPECT_EQ(kelvarin_run_close(run), KELVARIN_OK);
  EXPECT_EQ(kelvarin_run_open_document("<a/>", 4, "g", nullptr, &run, &error), KELVARIN_FAILED);
}

// Rows without an end.
int nextOfEndless(ArrowArrayStream*, ArrowArray* out) {
  const auto batch = testing::batchOf(
      {{"price", arrow::float64(), "[2, 10, 4]"}, {"count", arrow::int64(), "[30, 2, 10]"}});
  return arrow::ExportRecordBatch(*batch, out).ok() ? 0 : EIO;
}

ArrowArrayStream endless() {
  ArrowArrayStream stream{};
  stream.get_schema = [](ArrowArrayStream*, ArrowSchema* out) {
    const auto schema = arrow::schema(
        {arrow::field("price", arrow::float64()), arrow::field("count", arrow::int64())});
    return arrow::ExportSchema(*schema, out).ok() ? 0 : EIO;
  };
  stream.get_next = &nextOfEndless;
  stream.get_last_error = [](ArrowArrayStream*) -> const char* { return nullptr; };
  stream.release = [](ArrowArrayStream* released) { released->release = nullptr; };
  return stream;
}

TEST_F(RunCallsTest, ARunIsStoppedWhateverItWaitsFor) {
  for (const bool closes : {false, true}) {
    const kelvarin_run run = open();
    bind(run, endless());
    ArrowArrayStream large = output(run, "large");
    ArrowArrayStream small = output(run, "small");
    ASSERT_EQ(kelvarin_run_start(run, nullptr), KELVARIN_OK);
    ArrowArray array;
    ASSERT_EQ(large.get_next(&large, &array), 0);
    array.release(&array);
    Call error;
    EXPECT_EQ(kelvarin_run_wait(run, 20, &error), KELVARIN_NOT_FINISHED);
    char* progress = nullptr;
    EXPECT_EQ(kelvarin_run_progress(run, &progress, nullptr), KELVARIN_OK);
    kelvarin_free(progress);
    if (!closes) {
      EXPECT_EQ(kelvarin_run_stop(run), KELVARIN_OK);
      EXPECT_EQ(kelvarin_run_wait(run, -1, &error), KELVARIN_STOPPED);
    }
    EXPECT_EQ(kelvarin_run_close(run), KELVARIN_OK);
    EXPECT_EQ(testing::pulled(small).failure, "The work was stopped.");
    large.release(&large);
  }
  EXPECT_EQ(m_folder.listing(), "");
}

TEST_F(RunCallsTest, AReleasedStreamLetsTheRunGoOn) {
  const kelvarin_run run = open();
  arrow::RecordBatchVector batches(300,
                                   testing::batchOf({{"price", arrow::float64(), "[2, 10, 4]"},
                                                     {"count", arrow::int64(), "[30, 2, 10]"}}));
  bind(run, testing::streamOf(batches));
  ArrowArrayStream large = output(run, "large");
  ASSERT_EQ(kelvarin_run_start(run, nullptr), KELVARIN_OK);
  large.release(&large);
  EXPECT_EQ(kelvarin_run_wait(run, -1, nullptr), KELVARIN_OK);
  EXPECT_EQ(resultOf(run)["actions"][4]["rowsIn"][0], 300);
  EXPECT_EQ(kelvarin_run_close(run), KELVARIN_OK);
}

}  // namespace
}  // namespace kelvarin
