// Expressions: the functions of the interface.
#include "library/calls.h"
#include "library/expressions/applied_stream.h"
#include "library/input_settings.h"

using kelvarin::CompiledExpressions;
using kelvarin::Done;
using kelvarin::ExpressionSettings;
using kelvarin::HandleKind;
using kelvarin::Handles;
using kelvarin::Outcome;

namespace texts = kelvarin::library_messages;

namespace {

// Calls work(expressions), which are a shared pointer.
template <typename Work>
kelvarin_status withExpressions(kelvarin_expressions handle, kelvarin_error** error,
                                Work work) noexcept {
  return kelvarin::withObject<CompiledExpressions>(HandleKind::expressions, handle.id, error, work);
}

Outcome<Done> addOutput(const kelvarin_output_option& output, ExpressionSettings& settings) {
  for (const auto& checked :
       {kelvarin::needed(output.name, "outputs"), kelvarin::needed(output.expression, "outputs")}) {
    if (!checked) {
      return checked;
    }
  }
  if (output.type != 0 && !kelvarin::isColumnType(output.type)) {
    return kelvarin::wrongArgument(texts::outOfRange(QStringLiteral("type"), output.type));
  }
  std::optional<MetaTypeColumn> type;
  if (output.type != 0) {
    type = static_cast<MetaTypeColumn>(output.type);
  }
  settings.outputs.push_back(
      {QString::fromUtf8(output.name), QString::fromUtf8(output.expression), type});
  return Done{};
}

Outcome<ExpressionSettings> settingsOf(const kelvarin_expression_options& options) {
  if (options.output_count > 0 && options.outputs == nullptr) {
    return kelvarin::wrongArgument(texts::nullPointer(QStringLiteral("outputs")));
  }
  ExpressionSettings settings;
  for (std::int32_t i = 0; i < options.output_count; ++i) {
    if (const auto added = addOutput(options.outputs[i], settings); !added) {
      return kelvarin::Failure{added.error()};
    }
  }
  settings.condition = QString::fromUtf8(options.condition).trimmed();
  auto named = kelvarin::namedValuesOf<ExpressionSettings::Setting>(
      options.settings, options.setting_count, "settings");
  auto input = kelvarin::inputSettingsOf(options.input);
  if (!named || !input) {
    return kelvarin::Failure{named ? input.error() : named.error()};
  }
  settings.settings = std::move(*named);
  settings.input = std::move(*input);
  return settings;
}

Outcome<kelvarin::ApplySettings> settingsOf(const kelvarin_apply_options& options) {
  auto form = kelvarin::batchFormOf(options.text_format, options.batch_rows);
  auto work = kelvarin::workSettingsOf(options.threads, options.stop, options.log);
  if (!form || !work) {
    return kelvarin::Failure{form ? work.error() : form.error()};
  }
  if (options.first_row < 0) {
    return kelvarin::wrongArgument(
        texts::outOfRange(QStringLiteral("first_row"), options.first_row));
  }
  return kelvarin::ApplySettings{options.first_row, *form, std::move(*work)};
}

}  // namespace

kelvarin_status kelvarin_expressions_compile(const kelvarin_expression_options* options,
                                             const struct ArrowSchema* schema,
                                             kelvarin_expressions* out, kelvarin_error** error) {
  return kelvarin::answered(error, [&]() -> Outcome<Done> {
    for (const auto& checked : {kelvarin::needed(options, "options"),
                                kelvarin::needed(schema, "schema"), kelvarin::needed(out, "out")}) {
      if (!checked) {
        return checked;
      }
    }
    const auto given =
        kelvarin::optionsOf(options, kelvarin_expression_options(KELVARIN_EXPRESSION_OPTIONS_INIT));
    if (!given) {
      return kelvarin::Failure{given.error()};
    }
    if (!kelvarin::isTable(*schema)) {
      return kelvarin::wrongArgument(texts::noTableSchema());
    }
    auto settings = settingsOf(*given);
    if (!settings) {
      return kelvarin::Failure{settings.error()};
    }
    auto compiled = CompiledExpressions::compile(std::move(*settings), *schema);
    if (!compiled) {
      return kelvarin::Failure{compiled.error()};
    }
    out->id = Handles::instance().add(HandleKind::expressions, std::move(*compiled));
    return Done{};
  });
}

kelvarin_status kelvarin_expressions_close(kelvarin_expressions expressions) {
  return kelvarin::closed(HandleKind::expressions, expressions.id);
}

kelvarin_status kelvarin_expressions_get_schema(kelvarin_expressions expressions,
                                                int32_t text_format, struct ArrowSchema* out,
                                                kelvarin_error** error) {
  return withExpressions(expressions, error, [&](const auto& found) -> Outcome<Done> {
    if (auto checked = kelvarin::needed(out, "out"); !checked) {
      return checked;
    }
    const auto form = kelvarin::batchFormOf(text_format, 0);
    if (!form) {
      return kelvarin::Failure{form.error()};
    }
    kelvarin::exportSchema(found->outputColumns(), form->texts, *out);
    return Done{};
  });
}

kelvarin_status kelvarin_expressions_get_info(kelvarin_expressions expressions, int32_t index,
                                              kelvarin_expression_info* out,
                                              kelvarin_error** error) {
  return withExpressions(expressions, error, [&](const auto& found) -> Outcome<Done> {
    if (index < 0 || static_cast<std::size_t>(index) >= found->infos().size()) {
      return kelvarin::wrongArgument(texts::outOfRange(QStringLiteral("index"), index));
    }
    const kelvarin::ExpressionInfo& info = found->infos()[static_cast<std::size_t>(index)];
    return kelvarin::store(
        kelvarin_expression_info{.size = 0,
                                 .name = info.texts.name.c_str(),
                                 .engine = info.texts.engine.c_str(),
                                 .slowed_by = info.texts.slowedBy.c_str(),
                                 .reason = info.texts.reason.c_str(),
                                 .is_by_batch = info.report.isByBatch ? 1 : 0,
                                 .batch_refusal = info.texts.batchRefusal.c_str(),
                                 .type = info.type,
                                 .dependence = info.dependence.reasons,
                                 .dependence_token = info.texts.dependenceToken.c_str(),
                                 .dependence_position = info.dependence.position},
        out);
  });
}

kelvarin_status kelvarin_expressions_apply(kelvarin_expressions expressions,
                                           struct ArrowArrayStream* input,
                                           const kelvarin_apply_options* options,
                                           struct ArrowArrayStream* out, kelvarin_error** error) {
  return kelvarin::answered(error, [&]() -> Outcome<Done> {
    if (auto checked = kelvarin::needed(input, "input"); !checked) {
      return checked;
    }
    kelvarin::InputStream stream(*input);
    auto found =
        Handles::instance().find<CompiledExpressions>(HandleKind::expressions, expressions.id);
    if (found == nullptr) {
      return kelvarin::wrongHandle(HandleKind::expressions);
    }
    if (auto checked = kelvarin::needed(out, "out"); !checked) {
      return checked;
    }
    const auto given =
        kelvarin::optionsOf(options, kelvarin_apply_options(KELVARIN_APPLY_OPTIONS_INIT));
    if (!given) {
      return kelvarin::Failure{given.error()};
    }
    auto settings = settingsOf(*given);
    if (!settings) {
      return kelvarin::Failure{settings.error()};
    }
    const kelvarin::TextFormat format = settings->form.texts;
    kelvarin::exportStream(std::make_unique<kelvarin::AppliedStream>(
                               std::move(found), std::move(stream), std::move(*settings)),
                           format, *out);
    return Done{};
  });
}
