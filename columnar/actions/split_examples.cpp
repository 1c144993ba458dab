#include "columnar/actions/split_examples.h"

#include "columnar/actions/messages.h"
#include "columnar/actions/split_names.h"
#include "host/files/split_values.h"

namespace kelvarin {

namespace {

constexpr int kSegments = 3;

QStringList namesBySize(const QString& file) {
  QStringList names;
  for (int segment = 0; segment < kSegments; ++segment) {
    names += insertedBeforeExtension(file, segmentText(segment));
  }
  return names;
}

QStringList textsForNames(const QStringList& values) {
  QStringList texts;
  for (const QString& value : values) {
    texts += value.isNull() ? kNullSplitValue : cleanedForFileName(value);
  }
  return texts;
}

Result<QStringList, QString> namesByExpression(const WriteColumnarGel& action,
                                               const QStringList& texts) {
  const auto failure = [&action](const NamingExpressions::Error& error) {
    return Failure{
        columnar_messages::namingFailed(action.settings().file, error.expression, error.reason)};
  };
  NamingExpressions naming;
  if (const auto compiled = naming.compile(action.settings().file, action); !compiled) {
    return failure(compiled.error());
  }
  QStringList names;
  for (const QString& text : texts) {
    const auto name = naming.name(text);
    if (!name) {
      return failure(name.error());
    }
    names += *name;
  }
  return names;
}

}  // namespace

Result<QStringList, QString> exampleNames(const WriteColumnarGel& action,
                                          const QStringList& values) {
  using Split = WriteColumnarSettings::Split;
  const WriteColumnarSettings& settings = action.settings();
  const QString file = action.expandString(settings.file);
  if (file.isEmpty()) {
    return Failure{columnar_messages::noFileChosen()};
  }
  if (settings.splitKind() == Split::none) {
    return QStringList{file};
  }
  if (settings.splitKind() == Split::bySize) {
    return namesBySize(file);
  }
  const QStringList texts = textsForNames(values);
  if (settings.advancedNaming) {
    return namesByExpression(action, texts);
  }
  QStringList names;
  for (const QString& text : texts) {
    names += insertedBeforeExtension(file, text);
  }
  return names;
}

}  // namespace kelvarin
