#include "python/src/expressions.h"

#include <optional>
#include <tuple>

#include <nanobind/stl/optional.h>
#include <nanobind/stl/pair.h>
#include <nanobind/stl/string.h>
#include <nanobind/stl/tuple.h>
#include <nanobind/stl/unique_ptr.h>
#include <nanobind/stl/vector.h>

#include "python/src/forwarded_stream.h"
#include "python/src/input_options.h"
#include "python/src/stream.h"

namespace kelvarin_python {

namespace {

struct Compiled {
  SchemaOwner schema;
  kelvarin_expressions handle{};

  Compiled() = default;
  ~Compiled() { kelvarin_expressions_close(handle); }
  Compiled(const Compiled&) = delete;
  Compiled& operator=(const Compiled&) = delete;
};

// name, expression, type
using Output = std::tuple<std::string, std::string, int>;

class Expressions {
 public:
  Expressions(std::vector<Output> outputs, std::optional<std::string> condition, Pairs settings,
              NamedNumbers types, NamedNumbers sortedBy, bool takesBadValuesAsNull)
      : m_outputs(std::move(outputs)),
        m_condition(std::move(condition)),
        m_settings(std::move(settings)),
        m_input(std::move(types), std::move(sortedBy), takesBadValuesAsNull) {}

  std::shared_ptr<Compiled> compiledFor(StreamOwner& input) { return compiledFor(schemaOf(input)); }

  // For each output and the condition: name, engine, the token that slows it, the reason, whether
  // it goes by the batch, the token that forbids it, type, dependence, its token and position.
  nb::list info(nb::handle table) {
    StreamOwner input = streamOf(table);
    const auto compiled = compiledFor(input);
    nb::list found;
    const size_t count = m_outputs.size() + (m_condition ? 1 : 0);
    for (size_t index = 0; index < count; ++index) {
      kelvarin_expression_info info{};
      info.size = sizeof info;
      call(kelvarin_expressions_get_info, compiled->handle, static_cast<int32_t>(index), &info);
      found.append(nb::make_tuple(info.name, info.engine, info.slowed_by, info.reason,
                                  info.is_by_batch != 0, info.batch_refusal, info.type,
                                  info.dependence, info.dependence_token,
                                  info.dependence_position));
    }
    return found;
  }

 private:
  static SchemaOwner schemaOf(StreamOwner& input) {
    ArrowSchema schema{};
    int status = 0;
    {
      const nb::gil_scoped_release release;
      status = input.get()->get_schema(input.get(), &schema);
    }
    if (status != 0) {
      const char* reason = input.get()->get_last_error(input.get());
      throw nb::value_error(reason == nullptr ? "The table has no schema." : reason);
    }
    return SchemaOwner(schema);
  }

  // A program is mostly applied to tables of the same columns, so it keeps the last compilation.
  std::shared_ptr<Compiled> compiledFor(SchemaOwner schema) {
    Outcome outcome;
    std::shared_ptr<Compiled> compiled;
    {
      const nb::gil_scoped_release release;
      const std::lock_guard lock(m_mutex);
      if (m_last == nullptr || !areEqual(*m_last->schema.get(), *schema.get())) {
        compiled = std::make_shared<Compiled>();
        compile(*schema.get(), compiled->handle, outcome);
        if (outcome.isOk()) {
          compiled->schema = std::move(schema);
          m_last = compiled;
        }
      } else {
        compiled = m_last;
      }
    }
    outcome.check();
    return compiled;
  }

  void compile(const ArrowSchema& schema, kelvarin_expressions& handle, Outcome& outcome) const {
    std::vector<kelvarin_output_option> outputs;
    outputs.reserve(m_outputs.size());
    for (const auto& [name, expression, type] : m_outputs) {
      outputs.push_back({name.c_str(), expression.c_str(), type});
    }
    const auto settings = settingsOf(m_settings);
    kelvarin_expression_options options = KELVARIN_EXPRESSION_OPTIONS_INIT;
    options.outputs = outputs.data();
    options.output_count = static_cast<int32_t>(outputs.size());
    options.condition = m_condition ? m_condition->c_str() : nullptr;
    options.settings = settings.data();
    options.setting_count = static_cast<int32_t>(settings.size());
    options.input = m_input.get();
    outcome.set(kelvarin_expressions_compile(&options, &schema, &handle, outcome.error()));
  }

  const std::vector<Output> m_outputs;
  const std::optional<std::string> m_condition;
  const Pairs m_settings;
  const InputOptions m_input;

  std::mutex m_mutex;
  std::shared_ptr<Compiled> m_last;  // guarded by m_mutex
};

// Expressions bound to a table. The table's stream is taken once for its columns, and read by the
// first application; a table that can be read again is asked for another one after that.
class Application {
 public:
  Application(Expressions& expressions, nb::object table)
      : m_table(std::move(table)),
        m_input(streamOf(m_table)),
        m_compiled(expressions.compiledFor(m_input)) {}
  ~Application() {
    releaseWithoutLock([this] { StreamOwner(std::move(m_input)); });
  }
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;

  std::unique_ptr<Stream> apply(int64_t firstRow, int textFormat, int threads, int64_t batchRows) {
    auto state = std::make_shared<StreamState>();
    kelvarin_apply_options options = KELVARIN_APPLY_OPTIONS_INIT;
    options.first_row = firstRow;
    options.text_format = textFormat;
    options.threads = threads;
    options.batch_rows = batchRows;
    options.stop = state->stop.handle();
    options.log = state->log.receiver();
    ArrowArrayStream given = (m_input.isReleased() ? streamOf(m_table) : std::move(m_input)).take();
    ArrowArrayStream stream{};
    call(kelvarin_expressions_apply, m_compiled->handle, &given, &options, &stream);
    return std::make_unique<Stream>(StreamOwner(stream), std::move(state));
  }

  nb::capsule schema(int textFormat) const {
    ArrowSchema schema{};
    call(kelvarin_expressions_get_schema, m_compiled->handle, textFormat, &schema);
    return capsuleOf(SchemaOwner(schema));
  }

 private:
  nb::object m_table;
  StreamOwner m_input;
  std::shared_ptr<Compiled> m_compiled;
};

}  // namespace

void bindExpressions(nb::module_& module) {
  nb::class_<Expressions>(module, "Expressions")
      .def(nb::init<std::vector<Output>, std::optional<std::string>, Pairs, NamedNumbers,
                    NamedNumbers, bool>(),
           nb::kw_only(), nb::arg("outputs"), nb::arg("condition").none(), nb::arg("settings"),
           nb::arg("types"), nb::arg("sorted_by"), nb::arg("takes_bad_values_as_null"))
      .def("info", &Expressions::info, nb::arg("table"));
  nb::class_<Application>(module, "Application")
      .def(nb::init<Expressions&, nb::object>(), nb::arg("expressions"), nb::arg("table"))
      .def("apply", &Application::apply, nb::kw_only(), nb::arg("first_row"),
           nb::arg("text_format"), nb::arg("threads"), nb::arg("batch_rows"))
      .def("schema", &Application::schema, nb::arg("text_format"));
}

}  // namespace kelvarin_python
