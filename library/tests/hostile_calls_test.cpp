// Wrong callers: handles that are null, closed, of another kind or in use elsewhere, null pointers,
// options of other versions, streams that break their rules, reads that end early.
#include <atomic>
#include <functional>
#include <random>
#include <thread>

#include <malloc.h>

#include "host/tables/files/tests/table_folder.h"
#include "library/tests/arrow_streams.h"

namespace kelvarin {
namespace {

using testing::Call;

class HostileCallsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string numbers;
    std::string texts;
    for (int i = 0; i < 4000; ++i) {
      numbers += (i == 0 ? "" : ",") + std::to_string(i);
      texts += std::string(i == 0 ? "" : ",") + "\"the text of row " + std::to_string(i) + "\"";
    }
    ArrowArrayStream stream = testing::streamOf(
        {{"n", arrow::float64(), "[" + numbers + "]"}, {"t", arrow::utf8(), "[" + texts + "]"}});
    kelvarin_write_options options = KELVARIN_WRITE_OPTIONS_INIT;
    options.rows_in_block = 200;
    ASSERT_EQ(kelvarin_write(m_path.c_str(), &stream, &options, nullptr, nullptr), KELVARIN_OK);
    ASSERT_EQ(kelvarin_table_open(m_path.c_str(), nullptr, &m_table, nullptr), KELVARIN_OK);
    ASSERT_EQ(kelvarin_stop_new(&m_stop), KELVARIN_OK);
    ASSERT_EQ(compile(&m_expressions), KELVARIN_OK);
    ASSERT_EQ(openRun(&m_run), KELVARIN_OK);
  }
  void TearDown() override {
    EXPECT_EQ(kelvarin_table_close(m_table), KELVARIN_OK);
    EXPECT_EQ(kelvarin_stop_close(m_stop), KELVARIN_OK);
    EXPECT_EQ(kelvarin_expressions_close(m_expressions), KELVARIN_OK);
    EXPECT_EQ(kelvarin_run_close(m_run), KELVARIN_OK);
  }

  static kelvarin_status compile(kelvarin_expressions* out) {
    const kelvarin_output_option outputs[] = {{"m", "n * 2", 0}};
    kelvarin_expression_options options = KELVARIN_EXPRESSION_OPTIONS_INIT;
    options.outputs = outputs;
    options.output_count = 1;
    ArrowSchema schema;
    EXPECT_TRUE(
        arrow::ExportSchema(*arrow::schema({arrow::field("n", arrow::float64())}), &schema).ok());
    const kelvarin_status status = kelvarin_expressions_compile(&options, &schema, out, nullptr);
    schema.release(&schema);
    return status;
  }
  static kelvarin_status openRun(kelvarin_run* out) {
    const std::string graph =
        "<KelvarinGraph version='1.0'><Actions><InlineTable name='in'><Column name='a'/>"
        "</InlineTable><Discard name='out'/></Actions><Links><Link from='in' to='out'/></Links>"
        "</KelvarinGraph>";
    return kelvarin_run_open_document(graph.c_str(), static_cast<std::int64_t>(graph.size()), "g",
                                      nullptr, out, nullptr);
  }
  static ArrowArrayStream numbers() {
    return testing::streamOf({{"n", arrow::float64(), "[1, 2]"}});
  }

  testing::TableFolder m_folder;
  const std::string m_path = m_folder.path("t.cgel_kelvarin");
  kelvarin_table m_table{};
  kelvarin_stop m_stop{};
  kelvarin_expressions m_expressions{};
  kelvarin_run m_run{};
};

// A structure that is large enough for every version of any.
template <typename Info>
Info sized() {
  Info info{};
  info.size = sizeof info;
  return info;
}

// Every function that takes a handle of a kind, with a handle of it or not.
using HandleCall = std::function<kelvarin_status(std::uint64_t, kelvarin_error**)>;

std::vector<HandleCall> tableCalls() {
  return {
      [](std::uint64_t id, kelvarin_error** error) {
        auto info = sized<kelvarin_table_info>();
        return kelvarin_table_get_info({id}, &info, error);
      },
      [](std::uint64_t id, kelvarin_error** error) {
        auto info = sized<kelvarin_column_info>();
        return kelvarin_table_get_column({id}, 0, &info, error);
      },
      [](std::uint64_t id, kelvarin_error** error) {
        auto info = sized<kelvarin_block_info>();
        return kelvarin_table_get_block({id}, 0, &info, error);
      },
      [](std::uint64_t id, kelvarin_error** error) {
        auto info = sized<kelvarin_statistics>();
        return kelvarin_table_get_statistics({id}, 0, 1, &info, error);
      },
      [](std::uint64_t id, kelvarin_error** error) {
        ArrowArrayStream out{};
        const kelvarin_status status = kelvarin_table_scan({id}, nullptr, &out, error);
        if (status == KELVARIN_OK) {
          ArrowArray batch;
          EXPECT_EQ(out.get_next(&out, &batch), 0);
          batch.release(&batch);
          out.release(&out);
        }
        return status;
      },
  };
}

std::vector<HandleCall> expressionCalls() {
  return {
      [](std::uint64_t id, kelvarin_error** error) {
        ArrowSchema schema{};
        const auto status = kelvarin_expressions_get_schema({id}, 0, &schema, error);
        if (status == KELVARIN_OK) {
          schema.release(&schema);
        }
        return status;
      },
      [](std::uint64_t id, kelvarin_error** error) {
        auto info = sized<kelvarin_expression_info>();
        return kelvarin_expressions_get_info({id}, 0, &info, error);
      },
      [](std::uint64_t id, kelvarin_error** error) {
        ArrowArrayStream input = testing::streamOf({{"n", arrow::float64(), "[1, 2]"}});
        ArrowArrayStream out{};
        const auto status = kelvarin_expressions_apply({id}, &input, nullptr, &out, error);
        EXPECT_EQ(input.release, nullptr);
        if (status == KELVARIN_OK) {
          EXPECT_EQ(testing::pulled(out).text(), "n=[1,2] m=[2,4]");
        }
        return status;
      },
  };
}

std::vector<HandleCall> runCalls() {
  return {
      [](std::uint64_t id, kelvarin_error** error) {
        auto info = sized<kelvarin_action_info>();
        return kelvarin_run_get_action({id}, 0, &info, error);
      },
      [](std::uint64_t id, kelvarin_error** error) {
        ArrowArrayStream input = testing::streamOf({{"n", arrow::float64(), "[1, 2]"}});
        const auto status = kelvarin_run_bind_input({id}, "in", &input, nullptr, error);
        EXPECT_EQ(input.release, nullptr);
        return status;
      },
      [](std::uint64_t id, kelvarin_error** error) {
        ArrowArrayStream out{};
        const auto status = kelvarin_run_bind_output({id}, "out", nullptr, &out, error);
        if (status == KELVARIN_OK) {
          out.release(&out);
        }
        return status;
      },
      [](std::uint64_t id, kelvarin_error** error) {
        char* json = nullptr;
        const auto status = kelvarin_run_progress({id}, &json, error);
        kelvarin_free(json);
        return status;
      },
      [](std::uint64_t id, kelvarin_error** error) { return kelvarin_run_start({id}, error); },
      [](std::uint64_t id, kelvarin_error** error) { return kelvarin_run_wait({id}, -1, error); },
      [](std::uint64_t id, kelvarin_error** error) {
        char* json = nullptr;
        const auto status = kelvarin_run_result({id}, &json, error);
        kelvarin_free(json);
        return status;
      },
      [](std::uint64_t id, kelvarin_error**) { return kelvarin_run_stop({id}); },
  };
}

TEST_F(HostileCallsTest, OnlyOpenHandlesOfTheKindAreTaken) {
  kelvarin_table closed{};
  ASSERT_EQ(kelvarin_table_open(m_path.c_str(), nullptr, &closed, nullptr), KELVARIN_OK);
  ASSERT_EQ(kelvarin_table_close(closed), KELVARIN_OK);
  EXPECT_EQ(kelvarin_table_close(closed), KELVARIN_WRONG_HANDLE);
  const struct {
    std::uint64_t right;
    std::vector<HandleCall> calls;
  } kinds[] = {
      {m_table.id, tableCalls()}, {m_expressions.id, expressionCalls()}, {m_run.id, runCalls()}};
  for (const auto& kind : kinds) {
    for (const HandleCall& call : kind.calls) {
      Call error;
      EXPECT_EQ(call(kind.right, &error), KELVARIN_OK) << error.message();
      for (const std::uint64_t wrong :
           {std::uint64_t{0}, closed.id, m_table.id, m_stop.id, m_expressions.id, m_run.id,
            ~std::uint64_t{0}, m_table.id + 1000}) {
        if (wrong != kind.right) {
          EXPECT_EQ(call(wrong, &error), KELVARIN_WRONG_HANDLE);
          EXPECT_EQ(call(wrong, nullptr), KELVARIN_WRONG_HANDLE);
        }
      }
    }
  }
  EXPECT_EQ(kelvarin_stop_request({m_table.id}), KELVARIN_WRONG_HANDLE);
  EXPECT_EQ(kelvarin_stop_close({0}), KELVARIN_WRONG_HANDLE);
  EXPECT_EQ(kelvarin_expressions_close({m_run.id}), KELVARIN_WRONG_HANDLE);
  EXPECT_EQ(kelvarin_run_close({m_expressions.id}), KELVARIN_WRONG_HANDLE);
  kelvarin_scan_options scan = KELVARIN_SCAN_OPTIONS_INIT;
  scan.stop = {m_table.id};
  ArrowArrayStream out;
  EXPECT_EQ(kelvarin_table_scan(m_table, &scan, &out, nullptr), KELVARIN_WRONG_HANDLE);
}

TEST_F(HostileCallsTest, NullPointersAreWrongArguments) {
  constexpr auto kWrong = KELVARIN_WRONG_ARGUMENT;
  kelvarin_table table;
  kelvarin_run run;
  kelvarin_expressions expressions;
  ArrowArrayStream stream{};
  EXPECT_EQ(kelvarin_stop_new(nullptr), kWrong);
  EXPECT_EQ(kelvarin_table_open(nullptr, nullptr, &table, nullptr), kWrong);
  EXPECT_EQ(kelvarin_table_open("t", nullptr, nullptr, nullptr), kWrong);
  EXPECT_EQ(kelvarin_table_get_info(m_table, nullptr, nullptr), kWrong);
  EXPECT_EQ(kelvarin_table_get_column(m_table, 0, nullptr, nullptr), kWrong);
  EXPECT_EQ(kelvarin_table_get_block(m_table, 0, nullptr, nullptr), kWrong);
  EXPECT_EQ(kelvarin_table_get_statistics(m_table, 0, 0, nullptr, nullptr), kWrong);
  EXPECT_EQ(kelvarin_table_scan(m_table, nullptr, nullptr, nullptr), kWrong);
  EXPECT_EQ(kelvarin_write("t", nullptr, nullptr, nullptr, nullptr), kWrong);
  stream = numbers();
  EXPECT_EQ(kelvarin_write(nullptr, &stream, nullptr, nullptr, nullptr), kWrong);
  EXPECT_EQ(stream.release, nullptr);
  EXPECT_EQ(kelvarin_write(m_path.c_str(), &stream, nullptr, nullptr, nullptr), KELVARIN_FAILED);
  EXPECT_EQ(kelvarin_expressions_compile(nullptr, nullptr, &expressions, nullptr), kWrong);
  EXPECT_EQ(kelvarin_expressions_get_schema(m_expressions, 0, nullptr, nullptr), kWrong);
  EXPECT_EQ(kelvarin_expressions_get_info(m_expressions, 0, nullptr, nullptr), kWrong);
  EXPECT_EQ(kelvarin_expressions_apply(m_expressions, nullptr, nullptr, &stream, nullptr), kWrong);
  stream = numbers();
  EXPECT_EQ(kelvarin_expressions_apply(m_expressions, &stream, nullptr, nullptr, nullptr), kWrong);
  EXPECT_EQ(kelvarin_run_open(nullptr, nullptr, &run, nullptr), kWrong);
  EXPECT_EQ(kelvarin_run_open_document(nullptr, 0, "g", nullptr, &run, nullptr), kWrong);
  EXPECT_EQ(kelvarin_run_get_action(m_run, 0, nullptr, nullptr), kWrong);
  EXPECT_EQ(kelvarin_run_bind_input(m_run, "in", nullptr, nullptr, nullptr), kWrong);
  stream = numbers();
  EXPECT_EQ(kelvarin_run_bind_input(m_run, nullptr, &stream, nullptr, nullptr), kWrong);
  EXPECT_EQ(kelvarin_run_bind_output(m_run, nullptr, nullptr, &stream, nullptr), kWrong);
  EXPECT_EQ(kelvarin_run_result(m_run, nullptr, nullptr), kWrong);
  EXPECT_EQ(kelvarin_run_progress(m_run, nullptr, nullptr), kWrong);
  EXPECT_EQ(kelvarin_stream_error(nullptr, nullptr), kWrong);
  kelvarin_free(nullptr);
  kelvarin_error_free(nullptr);
  EXPECT_EQ(kelvarin_error_status(nullptr), KELVARIN_OK);
  EXPECT_STREQ(kelvarin_error_message(nullptr), "");
  EXPECT_EQ(kelvarin_error_row(nullptr), -1);
}

// Of callers that were built against another header.
TEST_F(HostileCallsTest, StructuresOfAnySizeAreTaken) {
  struct {
    kelvarin_table_info known;
    char later[64];
  } larger{};
  larger.known.size = sizeof larger;
  larger.later[0] = 'x';
  EXPECT_EQ(kelvarin_table_get_info(m_table, &larger.known, nullptr), KELVARIN_OK);
  EXPECT_EQ(larger.known.rows, 4000);
  EXPECT_EQ(larger.known.size, sizeof larger);
  EXPECT_EQ(larger.later[0], 'x');
  kelvarin_table_info smaller{};
  smaller.size = offsetof(kelvarin_table_info, blocks);
  smaller.blocks = -7;
  EXPECT_EQ(kelvarin_table_get_info(m_table, &smaller, nullptr), KELVARIN_OK);
  EXPECT_EQ(smaller.rows, 4000);
  EXPECT_EQ(smaller.blocks, -7);
  kelvarin_scan_options none{};
  ArrowArrayStream out;
  EXPECT_EQ(kelvarin_table_scan(m_table, &none, &out, nullptr), KELVARIN_WRONG_ARGUMENT);
  kelvarin_scan_options options = KELVARIN_SCAN_OPTIONS_INIT;
  for (const auto& spoil : std::vector<std::function<void(kelvarin_scan_options&)>>{
           [](auto& wrong) { wrong.threads = -1; }, [](auto& wrong) { wrong.text_format = 3; },
           [](auto& wrong) { wrong.batch_rows = -1; }, [](auto& wrong) { wrong.first_row = -1; },
           [](auto& wrong) { wrong.end_block = -2; }}) {
    kelvarin_scan_options wrong = options;
    spoil(wrong);
    EXPECT_EQ(kelvarin_table_scan(m_table, &wrong, &out, nullptr), KELVARIN_WRONG_ARGUMENT);
  }
}

// A stream whose batch is spoilt by the test.
struct Spoilt {
  std::function<void(ArrowArray&)> spoil;
  bool isGiven = false;

  static ArrowArrayStream stream(Spoilt& spoilt) {
    ArrowArrayStream made{};
    made.private_data = &spoilt;
    made.get_schema = [](ArrowArrayStream*, ArrowSchema* out) {
      const auto schema =
          arrow::schema({arrow::field("n", arrow::float64()),
                         arrow::field("d", arrow::dictionary(arrow::int8(), arrow::utf8()))});
      return arrow::ExportSchema(*schema, out).ok() ? 0 : EIO;
    };
    made.get_next = [](ArrowArrayStream* self, ArrowArray* out) {
      auto& owner = *static_cast<Spoilt*>(self->private_data);
      *out = {};
      if (!owner.isGiven) {
        owner.isGiven = true;
        const auto batch = testing::batchOf(
            {{"n", arrow::float64(), "[1, 2]"},
             {"d", arrow::dictionary(arrow::int8(), arrow::utf8()), "[\"a\", \"b\"]"}});
        EXPECT_TRUE(arrow::ExportRecordBatch(*batch, out).ok());
        owner.spoil(*out);
      }
      return 0;
    };
    made.get_last_error = [](ArrowArrayStream*) -> const char* { return nullptr; };
    made.release = [](ArrowArrayStream* released) { released->release = nullptr; };
    return made;
  }
};

TEST_F(HostileCallsTest, StreamsThatBreakTheirRulesFail) {
  const std::pair<std::function<void(ArrowArray&)>, std::string> cases[] = {
      {[](ArrowArray& array) {
         array.release(&array);
         const auto narrow = testing::batchOf({{"n", arrow::float64(), "[1]"}});
         EXPECT_TRUE(arrow::ExportRecordBatch(*narrow, &array).ok());
       },
       "other columns than the schema"},
      {[](ArrowArray& array) { array.length = -1; }, "other columns than the schema"},
      {[](ArrowArray& array) { array.length = 3; }, "fewer rows than its batch"},
      {[](ArrowArray& array) { array.null_count = 1; }, "rows as a whole are null"},
      {[](ArrowArray& array) { array.children[0]->buffers[1] = nullptr; }, "no buffer of values"},
      {[](ArrowArray& array) { array.children[1]->dictionary->length = 1; },
       "beyond its dictionary"},
  };
  for (const auto& [spoil, fault] : cases) {
    Spoilt spoilt{spoil};
    ArrowArrayStream stream = Spoilt::stream(spoilt);
    Call error;
    EXPECT_EQ(kelvarin_write(m_folder.path("w").c_str(), &stream, nullptr, nullptr, &error),
              KELVARIN_FAILED);
    EXPECT_NE(error.message().find(fault), std::string::npos) << error.message();
  }
}

TEST_F(HostileCallsTest, HandlesAreClosedWhileOthersUseThem) {
  std::atomic<bool> isOver = false;
  std::atomic<std::uint64_t> shared = m_table.id;
  std::vector<std::thread> threads;
  for (int i = 0; i < 3; ++i) {
    threads.emplace_back([&] {
      while (!isOver) {
        for (const HandleCall& call : tableCalls()) {
          const kelvarin_status status = call(shared, nullptr);
          EXPECT_TRUE(status == KELVARIN_OK || status == KELVARIN_WRONG_HANDLE) << status;
        }
      }
    });
  }
  for (int i = 0; i < 50; ++i) {
    kelvarin_table table{};
    ASSERT_EQ(kelvarin_table_open(m_path.c_str(), nullptr, &table, nullptr), KELVARIN_OK);
    shared = table.id;
    std::this_thread::yield();
    EXPECT_EQ(kelvarin_table_close(table), KELVARIN_OK);
  }
  isOver = true;
  for (std::thread& thread : threads) {
    thread.join();
  }
}

TEST_F(HostileCallsTest, OneStreamIsPulledByManyThreads) {
  kelvarin_scan_options options = KELVARIN_SCAN_OPTIONS_INIT;
  options.batch_rows = 7;
  options.threads = 2;
  ArrowArrayStream stream;
  ASSERT_EQ(kelvarin_table_scan(m_table, &options, &stream, nullptr), KELVARIN_OK);
  std::atomic<std::int64_t> rows = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      ArrowArray batch;
      while (stream.get_next(&stream, &batch) == 0 && batch.release != nullptr) {
        rows += batch.length;
        batch.release(&batch);
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(rows, 4000);
  stream.release(&stream);
}

// Sanitizers have an allocator of their own, and find what is left.
std::size_t bytesInUse() {
#ifdef __SANITIZE_ADDRESS__
  return 0;
#else
  return ::mallinfo2().uordblks;
#endif
}

// Reads that are given up anywhere; ten thousand take seconds.
TEST_F(HostileCallsTest, InterruptedReadsLeaveNothing) {
  constexpr int kReads = 10'000;
  std::mt19937 random(7);
  std::size_t inUse = 0;
  for (int i = 0; i < kReads; ++i) {
    kelvarin_scan_options options = KELVARIN_SCAN_OPTIONS_INIT;
    options.threads = 1 + static_cast<int>(random() % 2);
    options.batch_rows = 100;
    kelvarin_stop stop{};
    const bool isStopped = random() % 2 == 0;
    if (isStopped) {
      ASSERT_EQ(kelvarin_stop_new(&stop), KELVARIN_OK);
      options.stop = stop;
    }
    ArrowArrayStream stream;
    ASSERT_EQ(kelvarin_table_scan(m_table, &options, &stream, nullptr), KELVARIN_OK);
    for (auto batches = random() % 4; batches > 0; --batches) {
      ArrowArray batch;
      ASSERT_EQ(stream.get_next(&stream, &batch), 0);
      batch.release(&batch);
    }
    if (isStopped) {
      EXPECT_EQ(kelvarin_stop_request(stop), KELVARIN_OK);
      EXPECT_EQ(kelvarin_stop_close(stop), KELVARIN_OK);
    }
    stream.release(&stream);
    if (i == kReads / 10) {
      inUse = bytesInUse();
    }
  }
  EXPECT_LE(bytesInUse(), inUse + (1 << 20));
}

}  // namespace
}  // namespace kelvarin
