// Expressions through the interface: the rows and errors of the actions, for streams of any shape.
#include <atomic>
#include <bit>
#include <chrono>
#include <cmath>
#include <numeric>
#include <thread>

#include "arrow/array/array_primitive.h"
#include "arrow/array/util.h"
#include "arrow/buffer.h"
#include "library/tests/arrow_streams.h"

namespace kelvarin {
namespace {

using testing::Call;
using testing::Pulled;
using testing::TypedColumn;

// Compiled for the columns of a table.
class Expressions {
 public:
  Expressions(const std::vector<TypedColumn>& columns,
              const std::vector<kelvarin_output_option>& outputs, const char* condition = nullptr,
              const std::vector<kelvarin_setting>& settings = {}) {
    ArrowArrayStream stream = testing::streamOf(columns);
    ArrowSchema schema;
    EXPECT_EQ(stream.get_schema(&stream, &schema), 0);
    kelvarin_expression_options options = KELVARIN_EXPRESSION_OPTIONS_INIT;
    options.outputs = outputs.data();
    options.output_count = static_cast<std::int32_t>(outputs.size());
    options.condition = condition;
    options.settings = settings.data();
    options.setting_count = static_cast<std::int32_t>(settings.size());
    m_status = kelvarin_expressions_compile(&options, &schema, &m_handle, &m_error);
    schema.release(&schema);
    stream.release(&stream);
  }
  ~Expressions() {
    if (m_handle.id != 0) {
      EXPECT_EQ(kelvarin_expressions_close(m_handle), KELVARIN_OK);
    }
  }

  kelvarin_status status() const { return m_status; }
  const Call& error() const { return m_error; }
  kelvarin_expressions handle() const { return m_handle; }

  ArrowArrayStream apply(ArrowArrayStream input, const kelvarin_apply_options& options) const {
    ArrowArrayStream out{};
    Call error;
    EXPECT_EQ(kelvarin_expressions_apply(m_handle, &input, &options, &out, &error), KELVARIN_OK)
        << error.message();
    EXPECT_EQ(input.release, nullptr);
    return out;
  }
  Pulled pull(ArrowArrayStream input, int threads = 1, std::int64_t firstRow = 0) const {
    kelvarin_apply_options options = KELVARIN_APPLY_OPTIONS_INIT;
    options.threads = threads;
    options.first_row = firstRow;
    ArrowArrayStream out = apply(input, options);
    return testing::pulled(out);
  }
  kelvarin_expression_info info(int index) const {
    kelvarin_expression_info info{};
    info.size = sizeof info;
    EXPECT_EQ(kelvarin_expressions_get_info(m_handle, index, &info, nullptr), KELVARIN_OK);
    return info;
  }

 private:
  kelvarin_expressions m_handle{};
  kelvarin_status m_status = KELVARIN_OK;
  Call m_error;
};

const std::vector<TypedColumn> kSales = {{"price", arrow::float64(), "[2, 10, null, 4]"},
                                         {"quantity", arrow::int32(), "[30, 2, 5, 10]"},
                                         {"who", arrow::utf8(), "[\"Ada\", \"Ben\", null, \"\"]"}};

std::string statusesOf(const std::string& json) {
  return json.substr(0, json.find(",\"log\""));
}

TEST(ExpressionCallsTest, OutputsAndAConditionAreComputed) {
  const Expressions sales(
      kSales,
      {{"total", "price * quantity", 0}, {"who", "who // \"!\"", 0}, {"row", "_n", KELVARIN_KEY}},
      "total >= 40");
  ASSERT_EQ(sales.status(), KELVARIN_OK) << sales.error().message();
  for (const int threads : {1, 2}) {
    EXPECT_EQ(sales.pull(testing::streamOf(kSales), threads, 100).text(),
              "price=[2,4] quantity=[30,10] who=[\"Ada!\",\"!\"] total=[60,40] row=[100,103]");
  }
  ArrowSchema schema;
  ASSERT_EQ(kelvarin_expressions_get_schema(sales.handle(), KELVARIN_TEXT_UTF8, &schema, nullptr),
            KELVARIN_OK);
  EXPECT_EQ((*arrow::ImportSchema(&schema))->ToString(),
            "price: double\nquantity: double\nwho: string\ntotal: double\nrow: uint32");
}

TEST(ExpressionCallsTest, WhatAnExpressionNeedsIsKnown) {
  const Expressions all(kSales,
                        {{"a", "price + 1", 0},
                         {"b", "rand(price)", 0},
                         {"c", "x = price", 0},
                         {"d", "price * _n", 0},
                         {"e", "upper(who)", 0}},
                        "price > 1", {{"truncate", "1"}, {"seed", "7"}});
  ASSERT_EQ(all.status(), KELVARIN_WRONG_EXPRESSION);  // nobody defines x
  const Expressions sales(kSales,
                          {{"a", "price + 1", 0},
                           {"b", "1 + rand(price)", 0},
                           {"c", "price = 3", 0},
                           {"d", "price * _n", 0},
                           {"e", "toupper(who)", 0}},
                          "price > 1", {{"truncate", "1"}, {"seed", "7"}});
  ASSERT_EQ(sales.status(), KELVARIN_OK) << sales.error().message();
  std::string infos;
  for (int i = 0; i < 6; ++i) {
    const kelvarin_expression_info info = sales.info(i);
    infos += std::string(info.name) + " " + std::to_string(info.type) + " " +
             std::to_string(info.dependence) + info.dependence_token + "@" +
             std::to_string(info.dependence_position) + "; ";
  }
  EXPECT_EQ(infos,
            "a 70 0@-1; b 70 1rand@4; c 70 2=@6; d 70 4_n@8; e 85 0@-1; "
            "condition 0 2truncate@-1; ");
  EXPECT_EQ(std::string(sales.info(0).engine), "Fastest Parser");
}

TEST(ExpressionCallsTest, ErrorsSayWhereAndWhy) {
  const Expressions wrong(kSales, {{"a", "price +* 2", 0}});
  EXPECT_EQ(wrong.status(), KELVARIN_WRONG_EXPRESSION);
  EXPECT_EQ(std::string(kelvarin_error_expression(wrong.error().get())), "price +* 2");
  EXPECT_GE(kelvarin_error_position(wrong.error().get()), 0);
  const Expressions unknown(kSales, {{"a", "prise", 0}});
  EXPECT_EQ(std::string(kelvarin_error_token(unknown.error().get())), "prise");
  EXPECT_NE(unknown.error().message().find("price"), std::string::npos);
  const Expressions none(kSales, {});
  EXPECT_EQ(none.status(), KELVARIN_WRONG_ARGUMENT);

  const Expressions key(kSales, {{"k", "price * 1.5", KELVARIN_KEY}});
  for (const int threads : {1, 2}) {
    kelvarin_apply_options options = KELVARIN_APPLY_OPTIONS_INIT;
    options.first_row = 1000;
    options.threads = threads;
    ArrowArrayStream out =
        key.apply(testing::streamOf({{"price", arrow::float64(), "[2, 4, 3]"},
                                     {"quantity", arrow::int32(), "[1, 1, 1]"},
                                     {"who", arrow::utf8(), "[null, null, null]"}}),
                  options);
    int status = 0;
    std::int64_t rows = 0;
    for (ArrowArray batch{}; status == 0;) {
      status = out.get_next(&out, &batch);
      if (status != 0 || batch.release == nullptr) {
        break;
      }
      rows += batch.length;
      batch.release(&batch);
    }
    EXPECT_EQ(rows, 2);
    EXPECT_EQ(status, EIO);
    Call error;
    EXPECT_EQ(kelvarin_stream_error(&out, &error), KELVARIN_FAILED);
    EXPECT_EQ(statusesOf(error.json()).substr(0, 20), "{\"status\":3,\"message");
    EXPECT_EQ(kelvarin_error_row(error.get()), 1002);
    EXPECT_EQ(std::string(kelvarin_error_output(error.get())), "k");
    EXPECT_EQ(std::string(kelvarin_error_expression(error.get())), "price * 1.5");
    EXPECT_NE(error.json().find("\"values\":{\"price\":\"3\"}"), std::string::npos) << error.json();
    out.release(&out);
  }
}

TEST(ExpressionCallsTest, ErrorsOfTheInputSayColumnAndRow) {
  const std::vector<TypedColumn> columns = {{"a", arrow::float64(), "[1, 2, 3]"},
                                            {"i", arrow::int64(), "[1, 2, 9007199254740993]"}};
  const Expressions batches(columns, {{"y", "a", 0}});
  const Expressions rows(columns, {{"y", "a + 0 * rand(1)", 0}});
  const Expressions next(
      {{"a", arrow::float64(), "[]"}, {"i", arrow::float64(), "[]"}, {"y", arrow::float64(), "[]"}},
      {{"z", "y", 0}});
  for (const Expressions* expressions : {&batches, &rows}) {
    for (const int threads : {1, 2}) {
      kelvarin_apply_options options = KELVARIN_APPLY_OPTIONS_INIT;
      options.first_row = 1000;
      options.threads = threads;
      ArrowArrayStream out = expressions->apply(testing::streamOf(columns), options);
      // What reads on from a stream that fails knows the location, too.
      out = next.apply(out, options);
      Call error;
      testing::pullToFailure(out, &error);
      EXPECT_EQ(testing::columnAndRowOf(error), "i 1002") << error.json();
      out.release(&out);
    }
  }
  const Expressions refused({{"a", arrow::float64(), "[1]"}, {"l", arrow::null(), "[null]"}},
                            {{"y", "a", 0}});
  EXPECT_EQ(testing::columnAndRowOf(refused.error()), "l -1");
}

TEST(ExpressionCallsTest, ErrorsOfAConditionSayThatItIsOne) {
  const auto outputOf = [](const Call& error) {
    return std::string(kelvarin_error_output(error.get()));
  };
  const Expressions wrong(kSales, {{"total", "price * quantity", 0}}, "total >* 3");
  EXPECT_EQ(wrong.status(), KELVARIN_WRONG_EXPRESSION);
  EXPECT_EQ(outputOf(wrong.error()), "condition");
  const Expressions unknown(kSales, {}, "prise > 3");
  EXPECT_EQ(outputOf(unknown.error()), "condition");
  EXPECT_EQ(std::string(kelvarin_error_token(unknown.error().get())), "prise");
}

TEST(ExpressionCallsTest, ColumnsAreThoseThatWereCompiledFor) {
  const Expressions sales(kSales, {{"total", "price * quantity", 0}});
  EXPECT_EQ(sales.pull(testing::streamOf({{"price", arrow::float64(), "[1]"}})).failure,
            "The stream has other columns than those that were compiled for: price (F) instead of "
            "price (F), quantity (F), who (U).");
  const Expressions numbered({{"_n", arrow::float64(), "[7]"}}, {{"next", "_n + 1", 0}});
  EXPECT_EQ(numbered.pull(testing::streamOf({{"_n", arrow::float64(), "[7, 9]"}})).text(),
            "_n=[7,9] next=[8,10]");
  EXPECT_EQ(numbered.info(0).dependence, 0);
}

arrow::RecordBatchVector manyBatches(int batches, int rowsInBatch) {
  arrow::RecordBatchVector made;
  int number = 0;
  for (int i = 0; i < batches; ++i) {
    std::string numbers;
    std::string texts;
    for (int row = 0; row < rowsInBatch; ++row, ++number) {
      const std::string comma = row == 0 ? "" : ",";
      numbers += comma + (number % 11 == 0 ? "null" : std::to_string(number));
      texts += comma + "\"text of the row " + std::to_string(number % 1000) + "\"";
    }
    made.push_back(testing::batchOf(
        {{"x", arrow::float64(), "[" + numbers + "]"}, {"t", arrow::utf8(), "[" + texts + "]"}}));
  }
  return made;
}

// A stream that fails after some batches.
ArrowArrayStream failing(arrow::RecordBatchVector batches) {
  struct Source {
    arrow::RecordBatchVector batches;
    std::size_t next = 0;
  };
  ArrowArrayStream stream{};
  stream.private_data = new Source{std::move(batches)};
  stream.get_schema = [](ArrowArrayStream* self, ArrowSchema* out) {
    const auto& source = *static_cast<Source*>(self->private_data);
    return arrow::ExportSchema(*source.batches.front()->schema(), out).ok() ? 0 : EIO;
  };
  stream.get_next = [](ArrowArrayStream* self, ArrowArray* out) {
    auto& source = *static_cast<Source*>(self->private_data);
    if (source.next == source.batches.size()) {
      return EIO;
    }
    return arrow::ExportRecordBatch(*source.batches[source.next++], out).ok() ? 0 : EIO;
  };
  stream.get_last_error = [](ArrowArrayStream*) { return "the cable is out"; };
  stream.release = [](ArrowArrayStream* self) {
    delete static_cast<Source*>(self->private_data);
    self->release = nullptr;
  };
  return stream;
}

TEST(ExpressionCallsTest, AFailingStreamHasItsRowsBeforeAndItsReason) {
  const Expressions sales(kSales, {{"total", "price * quantity", 0}});
  for (const int batches : {1, 100}) {
    for (const int threads : {1, 2}) {
      const Pulled pulled =
          sales.pull(failing(arrow::RecordBatchVector(static_cast<std::size_t>(batches),
                                                      testing::batchOf(kSales))),
                     threads);
      EXPECT_EQ(pulled.failure, "The stream cannot be read: the cable is out.");
      EXPECT_EQ(pulled.table->num_rows(), 4 * batches);
    }
  }
}

TEST(ExpressionCallsTest, RowsThatFailAreNullWhereTheSettingsSaySo) {
  const std::vector<TypedColumn> columns = {{"t", arrow::utf8(), "[\"7\", \"x\", \"[\", \"9\"]"}};
  const Expressions tolerant(columns, {{"found", "t == \"[\" ? t * 2 : 1", KELVARIN_NUMBER}},
                             nullptr, {{"abortWhenError", "0"}});
  const Expressions strict(columns, {{"found", "t == \"[\" ? t * 2 : 1", KELVARIN_NUMBER}});
  ASSERT_EQ(tolerant.status(), KELVARIN_OK) << tolerant.error().message();
  const auto many = arrow::RecordBatchVector(50, testing::batchOf(columns));
  for (const int threads : {1, 2}) {
    EXPECT_EQ(tolerant.pull(testing::streamOf(columns), threads).text(),
              "t=[\"7\",\"x\",\"[\",\"9\"] found=[1,1,null,1]");
    const Pulled all = tolerant.pull(testing::streamOf(many), threads);
    EXPECT_EQ(all.table->num_rows(), 200);
    EXPECT_EQ(all.table->column(1)->null_count(), 50);
    const Pulled stopped = strict.pull(testing::streamOf(many), threads);
    EXPECT_EQ(stopped.table->num_rows(), 2);
    EXPECT_NE(stopped.failure.find("On Data Row 2"), std::string::npos) << stopped.failure;
  }
}

TEST(ExpressionCallsTest, SettingsAreThoseOfTheActions) {
  const Expressions unknown(kSales, {{"a", "price", 0}}, nullptr, {{"colour", "red"}});
  EXPECT_EQ(unknown.status(), KELVARIN_WRONG_ARGUMENT);
  EXPECT_NE(unknown.error().message().find("'colour'"), std::string::npos);
  const std::vector<TypedColumn> numbers = {{"x", arrow::float64(), "[1, 2.5, -3, null]"}};
  const Expressions cast(numbers, {{"k", "x", KELVARIN_KEY}}, nullptr,
                         {{"castToKey1", "1"}, {"castToKey2", "0"}});
  EXPECT_EQ(cast.pull(testing::streamOf(numbers)).text(), "x=[1,2.5,-3,null] k=[1,2,null,null]");
  const Expressions first(numbers, {}, "_n < 2", {{"truncate", "1"}});
  EXPECT_EQ(first.pull(testing::streamOf(numbers)).text(), "x=[1,2.5]");
  const Expressions seeded(numbers, {{"r", "rand(100)", 0}}, nullptr, {{"seed", "5"}});
  EXPECT_EQ(seeded.pull(testing::streamOf(numbers)).text(),
            seeded.pull(testing::streamOf(numbers), 2).text());
}

TEST(ExpressionCallsTest, AnApplicationIsStopped) {
  const Expressions sales(kSales, {{"total", "price * quantity", 0}});
  kelvarin_apply_options options = KELVARIN_APPLY_OPTIONS_INIT;
  ASSERT_EQ(kelvarin_stop_new(&options.stop), KELVARIN_OK);
  for (const int threads : {1, 2}) {
    options.threads = threads;
    ArrowArrayStream out = sales.apply(
        testing::streamOf(arrow::RecordBatchVector(10, testing::batchOf(kSales))), options);
    ASSERT_EQ(kelvarin_stop_request(options.stop), KELVARIN_OK);
    EXPECT_EQ(testing::pulled(out).failure, "The work was stopped.");
  }
  EXPECT_EQ(kelvarin_stop_close(options.stop), KELVARIN_OK);
}

// The way through the stages, that through a run, and that with tasks have the same rows.
TEST(ExpressionCallsTest, RowsAreTheSameForAnyThreadsAndBatches) {
  const std::vector<TypedColumn> columns = {{"x", arrow::float64(), "[]"},
                                            {"t", arrow::utf8(), "[]"}};
  const Expressions byBatch(columns, {{"y", "nvl(x, -1) * 2 + _n", 0}, {"u", "t // \"?\"", 0}},
                            "y % 3 != 1");
  const Expressions byRow(columns, {{"y", "nvl(x, -1) * 2 + _n", 0}, {"u", "t // \"?\"", 0}},
                          "y % 3 != 1", {{"useJIT", "0"}});
  ASSERT_EQ(byBatch.status(), KELVARIN_OK) << byBatch.error().message();
  const auto few = manyBatches(200, 1000);
  const auto one = manyBatches(1, 200000);
  const Pulled expected = byBatch.pull(testing::streamOf(few), 1, 5);
  ASSERT_EQ(expected.failure, "");
  EXPECT_GT(expected.table->num_rows(), 100000);
  for (const Expressions* expressions : {&byBatch, &byRow}) {
    for (const int threads : {1, 2, 4}) {
      EXPECT_TRUE(
          expressions->pull(testing::streamOf(few), threads, 5).table->Equals(*expected.table));
      EXPECT_TRUE(
          expressions->pull(testing::streamOf(one), threads, 5).table->Equals(*expected.table));
    }
  }
}

// Numbers behind an offset, with NaN of any bits, those of our null among them, and with anything
// where they are null.
std::shared_ptr<arrow::Array> oddNumbers(std::int64_t rows, bool hasNulls) {
  constexpr std::int64_t kOffset = 3;
  std::vector<std::uint64_t> bits(static_cast<std::size_t>(rows + kOffset));
  std::string valid(bits.size() / 8 + 1, '\xFF');
  for (std::size_t i = kOffset; i < bits.size(); ++i) {
    const std::size_t row = i - kOffset;
    bits[i] = row % 5 == 0    ? ~std::uint64_t{0}
              : row % 11 == 0 ? 0x7FF8000000000000u
                              : std::bit_cast<std::uint64_t>(static_cast<double>(row) + 0.5);
    if (hasNulls && row % 7 == 0) {
      valid[i / 8] = static_cast<char>(valid[i / 8] & ~(1 << i % 8));
    }
  }
  return arrow::MakeArray(arrow::ArrayData::Make(
      arrow::float64(), rows,
      {hasNulls ? arrow::Buffer::FromString(valid) : nullptr, arrow::Buffer::FromVector(bits)},
      arrow::kUnknownNullCount, kOffset));
}

void expectOddNumbers(const arrow::Array& array, const arrow::Array& rowNumbers, bool hasNulls) {
  const auto& numbers = static_cast<const arrow::DoubleArray&>(array);
  const auto& rows = static_cast<const arrow::DoubleArray&>(rowNumbers);
  for (std::int64_t i = 0; i < array.length(); ++i) {
    const auto row = static_cast<std::int64_t>(rows.Value(i));
    const bool isNaN = row % 5 == 0 || row % 11 == 0;
    ASSERT_EQ(numbers.IsNull(i), hasNulls && row % 7 == 0) << row;
    if (numbers.IsValid(i)) {
      ASSERT_EQ(std::isnan(numbers.Value(i)), isNaN) << row;
      ASSERT_TRUE(isNaN || numbers.Value(i) == static_cast<double>(row) + 0.5) << row;
    }
  }
}

// By stages, with tasks and row by row, with all rows and with some of them.
TEST(ExpressionCallsTest, ColumnsThatNobodyReadsLeaveAsTheyCame) {
  constexpr std::int64_t kRows = 100'003;
  std::vector<double> rowNumbers(kRows);
  std::iota(rowNumbers.begin(), rowNumbers.end(), 0.0);
  const auto rows =
      std::make_shared<arrow::DoubleArray>(kRows, arrow::Buffer::FromVector(rowNumbers));
  const auto all = arrow::RecordBatch::Make(
      arrow::schema({arrow::field("row", arrow::float64()), arrow::field("odd", arrow::float64()),
                     arrow::field("nan", arrow::float64())}),
      kRows, {rows, oddNumbers(kRows, true), oddNumbers(kRows, false)});
  const std::vector<TypedColumn> columns = {{"row", arrow::float64(), "[]"},
                                            {"odd", arrow::float64(), "[]"},
                                            {"nan", arrow::float64(), "[]"}};
  const auto* const first = all->column_data(1)->GetValues<double>(1);
  for (const char* expression : {"row * 2", "row + row * rand(1) * 0 + row"}) {
    for (const char* condition : {"", "row % 3 != 1"}) {
      const Expressions expressions(columns, {{"y", expression, 0}},
                                    *condition == '\0' ? nullptr : condition);
      ASSERT_EQ(expressions.status(), KELVARIN_OK) << expressions.error().message();
      const bool isByBatch = expressions.info(0).is_by_batch != 0;
      for (const int threads : {1, 2}) {
        kelvarin_apply_options options = KELVARIN_APPLY_OPTIONS_INIT;
        options.threads = threads;
        ArrowArrayStream out = expressions.apply(
            testing::streamOf({all->Slice(0, 70'001), all->Slice(70'001)}), options);
        const auto reader = *arrow::ImportRecordBatchReader(&out);
        std::int64_t seen = 0;
        std::int64_t rowsShared = 0;
        for (auto batch = *reader->Next(); batch != nullptr; batch = *reader->Next()) {
          ASSERT_TRUE(batch->ValidateFull().ok());
          expectOddNumbers(*batch->column(1), *batch->column(0), true);
          expectOddNumbers(*batch->column(2), *batch->column(0), false);
          rowsShared +=
              batch->column_data(1)->GetValues<double>(1) == first + seen ? batch->num_rows() : 0;
          seen += batch->num_rows();
        }
        EXPECT_EQ(seen, *condition == '\0' ? kRows : kRows - kRows / 3);
        if (isByBatch && *condition == '\0') {
          EXPECT_GT(rowsShared, kRows / 2);  // all but a unit whose first row goes alone
        }
      }
    }
  }
}

TEST(ExpressionCallsTest, OneHandleServesManyThreads) {
  const Expressions sales(kSales, {{"total", "price * quantity", 0}}, "total >= 40");
  std::atomic<int> right = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int times = 0; times < 50; ++times) {
        right += sales.pull(testing::streamOf(kSales)).table->num_rows() == 2 ? 1 : 0;
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(right, 200);
}

// Little work is done for each application, so that small batches are worth it.
TEST(ExpressionCallsTest, ApplyingAgainIsCheap) {
  const Expressions sales(kSales, {{"total", "price * quantity", 0}}, "total >= 40");
  const auto batch = testing::batchOf(kSales);
  const auto once = [&] {
    kelvarin_apply_options options = KELVARIN_APPLY_OPTIONS_INIT;
    options.threads = 1;
    ArrowArrayStream out = sales.apply(testing::streamOf({batch}), options);
    ArrowArray result;
    EXPECT_EQ(out.get_next(&out, &result), 0);
    EXPECT_EQ(result.length, 2);
    result.release(&result);
    out.release(&out);
  };
  once();
  constexpr int kTimes = 1000;
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < kTimes; ++i) {
    once();
  }
  const std::chrono::duration<double, std::micro> time = std::chrono::steady_clock::now() - start;
  RecordProperty("microseconds", static_cast<int>(time.count() / kTimes));
  std::printf("%.1f microseconds\n", time.count() / kTimes);
  EXPECT_LT(time.count() / kTimes, 1000);
}

}  // namespace
}  // namespace kelvarin
