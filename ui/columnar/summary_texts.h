// What is in a columnar file, in the words that the editor of the reading action shows.
//
// Threads: any.
#pragma once

#include <QStringList>

#include "columnar/actions/block_filter_trial.h"
#include "columnar/actions/table_summary.h"
#include "columnar/reader/table_recovery.h"
#include "columnar/reader/verification.h"
#include "host/widgets/theme.h"

namespace kelvarin {

// With the severity that it is shown with.
struct ShownText {
  Severity severity = Severity::information;
  QString text;
};

// "19,811", "1.4 MB"
QString countText(std::uint64_t count);
QString sizeText(std::uint64_t bytes);
QString typeText(GelType type);

// One line: rows, columns, blocks and size.
QString contentsText(const TableSummary& summary);
// The order of the rows; empty where they have none.
QString orderText(const TableSummary& summary);
// Whether the table is complete, and damage that is seen without reading the values.
ShownText stateText(const TableSummary& summary);

ShownText trialText(const BlockFilterTrial& trial);

ShownText verificationText(const GelVerification& verification, bool isComplete);
ShownText salvageText(const RecoveryOutcome& outcome, const QString& newFile);

}  // namespace kelvarin
