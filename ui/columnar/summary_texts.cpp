#include "ui/columnar/summary_texts.h"

#include <QCoreApplication>
#include <QLocale>

namespace kelvarin {

namespace {

// One of two texts, with the count.
QString words(const char* one, const char* several, std::uint64_t count) {
  return QCoreApplication::translate("kelvarin::ColumnarTexts", count == 1 ? one : several)
      .arg(countText(count));
}

QString text(const char* source) {
  return QCoreApplication::translate("kelvarin::ColumnarTexts", source);
}

QString rowsText(std::uint64_t count) {
  return words(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts", "%1 row"),
               QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts", "%1 rows"), count);
}

QString blocksText(std::uint64_t count) {
  return words(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts", "%1 block"),
               QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts", "%1 blocks"), count);
}

QString columnsText(std::uint64_t count) {
  return words(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts", "%1 column"),
               QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts", "%1 columns"), count);
}

QString setsText(std::uint64_t count) {
  return words(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts", "%1 column set"),
               QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts", "%1 column sets"), count);
}

ShownText damageOf(const TableSummary& summary) {
  if (!summary.missingSideFile.isEmpty()) {
    return {Severity::error,
            text(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts",
                                   "The column-set file '%1' cannot be opened. Put it beside the "
                                   "main file."))
                .arg(summary.missingSideFile)};
  }
  if (summary.isCut) {
    return {Severity::error,
            text(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts",
                                   "Damaged: the file is cut after %1. Salvage writes what is "
                                   "whole to a new table."))
                .arg(rowsText(summary.rows))};
  }
  return {Severity::error,
          text(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts",
                                 "Damaged: %1 cannot be read. Verify shows where; Salvage writes "
                                 "what is whole to a new table."))
              .arg(rowsText(summary.lostRows))};
}

}  // namespace

QString countText(std::uint64_t count) {
  return QLocale().toString(static_cast<qulonglong>(count));
}

QString sizeText(std::uint64_t bytes) {
  return QLocale().formattedDataSize(static_cast<qint64>(bytes), 1,
                                     QLocale::DataSizeTraditionalFormat);
}

QString typeText(GelType type) {
  switch (type) {
    case GelType::number:
      return text(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts", "Number"));
    case GelType::key:
      return text(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts", "Key"));
    case GelType::text:
      break;
  }
  return text(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts", "Text"));
}

QString contentsText(const TableSummary& summary) {
  QStringList parts{rowsText(summary.rows), columnsText(summary.columns.size()),
                    text(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts", "%1 of up to %2"))
                        .arg(blocksText(summary.blocks), rowsText(summary.rowsInBlock)),
                    setsText(static_cast<std::uint64_t>(summary.columnSets))};
  if (summary.missingSideFile.isEmpty()) {
    parts += sizeText(summary.storedBytes());
  }
  parts.replaceInStrings(QStringLiteral(" "), QStringLiteral("\u00a0"));  // lines break between
  return parts.join(QStringLiteral(" \u00b7 "));
}

QString orderText(const TableSummary& summary) {
  if (summary.order.isEmpty()) {
    return {};
  }
  const SortInfos& order = summary.order.first();
  const QString column = summary.columns[static_cast<std::size_t>(order.column())].name;
  const QString sentence =
      order.isDescending()
          ? text(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts", "Sorted on '%1', descending"))
          : text(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts", "Sorted on '%1', ascending"));
  return sentence.arg(column);
}

ShownText stateText(const TableSummary& summary) {
  if (summary.isBeingWritten) {
    return {Severity::information,
            text(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts",
                                   "Incomplete: its writer is at work. What is finished can be "
                                   "read already."))};
  }
  if (summary.isDamaged()) {
    return damageOf(summary);
  }
  if (!summary.isComplete) {
    return {Severity::warning,
            text(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts",
                                   "Incomplete: its writer was stopped. Salvage writes what is "
                                   "whole to a new table."))};
  }
  return {Severity::success, text(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts", "Complete"))};
}

ShownText trialText(const BlockFilterTrial& trial) {
  const QString sentence =
      text(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts", "skips %1 of %2 of this file"))
          .arg(countText(trial.skippedBlocks), blocksText(trial.blocks));
  if (trial.hasDamage) {
    return {Severity::warning,
            text(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts", "%1; damaged blocks are not counted"))
                .arg(sentence)};
  }
  if (trial.skippedBlocks == trial.blocks && trial.blocks > 0) {
    return {Severity::warning,
            text(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts", "%1: no row is left")).arg(sentence)};
  }
  return {Severity::information,
          text(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts", "%1, and reads %2"))
              .arg(sentence, rowsText(trial.rows - trial.skippedRows))};
}

ShownText verificationText(const GelVerification& verification, bool isComplete) {
  const QString read = text(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts", "%1 in %2 were checked"))
                           .arg(rowsText(verification.rows), blocksText(verification.blocks));
  if (verification.damages > 0) {
    const QString damage =
        words(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts", "%2: %1 damaged position."),
              QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts", "%2: %1 damaged positions."),
              verification.damages);
    return {Severity::error,
            damage.arg(read) + u' ' +
                text(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts",
                                       "Salvage writes what is whole to a new table."))};
  }
  if (!isComplete) {
    return {Severity::warning, text(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts",
                                                      "%1: no damage, but the file is incomplete."))
                                   .arg(read)};
  }
  return {Severity::success,
          text(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts", "%1: no damage.")).arg(read)};
}

ShownText salvageText(const RecoveryOutcome& outcome, const QString& newFile) {
  if (outcome.rows == 0) {
    return {Severity::error,
            text(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts",
                                   "There is no whole block of rows, so nothing was written."))};
  }
  QStringList sentences{
      text(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts", "%1 in %2 were written to '%3'."))
          .arg(rowsText(outcome.rows), blocksText(outcome.blocks), newFile)};
  if (outcome.foundBlocks > 0) {
    sentences += text(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts",
                                        "Of them, %1 had no sound descriptor and came from the "
                                        "column-set files alone."))
                     .arg(blocksText(outcome.foundBlocks));
  }
  if (outcome.lostBlocks > 0 || outcome.lostRows > 0) {
    sentences += text(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts", "%1 with %2 are lost."))
                     .arg(blocksText(outcome.lostBlocks), rowsText(outcome.lostRows));
  }
  if (outcome.hasUncountedLoss) {
    sentences += text(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts",
                                        "Some rows are lost where no descriptor counts them; those "
                                        "before and after them now follow one another."));
  }
  if (outcome.hasUnfinished) {
    sentences += text(QT_TRANSLATE_NOOP("kelvarin::ColumnarTexts",
                                        "A block that the writer had not finished was not taken."));
  }
  return {outcome.hasLoss() ? Severity::warning : Severity::success, sentences.join(u' ')};
}

}  // namespace kelvarin
