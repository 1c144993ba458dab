// The texts that the action writing columnar files logs.
#pragma once

namespace kelvarin::messages {

inline constexpr char kNoFilename[] = "No filename?";
inline constexpr char kCannotOpenForWrite[] = "Cannot open file '%1' for write.";
inline constexpr char kCannotWriteFile[] = "Cannot write to file '%1'.";
inline constexpr char kSystemReason[] =
    "The system's reason for file '%1': %2. Check the folder, its permissions and the room on its "
    "disk.";
inline constexpr char kTooLarge[] =
    "columnarWrite ERROR: decrease number of columns or blocksize.\n";
inline constexpr char kNoColumnsToWrite[] =
    "Writing to Kelvarin CGel file '%1': no column of the table is in the column strategy. "
    "Add one, or set columnStrategy to 0.";
inline constexpr char kNoRowsInBlock[] =
    "Writing to Kelvarin CGel file '%1': nRowsInBlock is %2. Set it to 1 or more.";

// Settings that others turn off.
inline constexpr char kSplitOff[] =
    "splitVar has no effect without split='2': the table is not split by value.";
inline constexpr char kTestOff[] =
    "testCol has no effect without writeAllRows='0': every row is written.";
inline constexpr char kStrategyOff[] =
    "The columns listed in ColumnStrategy have no effect without columnStrategy='1'.";

// Rows that are tested.
inline constexpr char kTestColumnMissing[] =
    "\nERROR writing to CSV file '%1': cannot find column '%2' to test\n";  // kept: CSV

// Files that are split.
inline constexpr char kSplitColumnMissing[] =
    "\nERROR writing to Kelvarin CGel file '%1': cannot find column '%2' for split\n";
inline constexpr char kSplitNotSorted[] =
    "WARNING writing to Kelvarin CGel file: The table to split is not sorted on the split "
    "variable: The number of splits (i.e. the number of files) is limited to the maximum number "
    "of simultaneous opened file allowed by the OS.\n";
inline constexpr char kSplitValueReturns[] =
    "Writing to Kelvarin CGel file '%1': the value '%2' of the split column comes back, "
    "though the table is declared sorted on that column. Sort the table, or remove the "
    "declaration.";
inline constexpr char kSplitNamesMeet[] =
    "Writing to Kelvarin CGel file '%1': two values of the split column, '%2' and '%3', "
    "give this same file name. Rename one of them, or use advancedNaming.";
inline constexpr char kSplitSideFilesMeet[] =
    "Writing to Kelvarin CGel file '%1': two values of the split column, '%2' and '%3', "
    "give files that differ only after the last point and so have the same side files. Give the "
    "file an extension, or use advancedNaming.";
inline constexpr char kMissingValue[] = "(missing)";
inline constexpr char kNamingFailed[] =
    "Writing to Kelvarin CGel file '%1': the naming expression '%2' cannot be used: %3";

// What is there already.
inline constexpr char kForeignFile[] =
    "The file '%1' is no columnar file, and it is replaced by one. Is the name right?";
inline constexpr char kSideFilesOfAnother[] =
    "Writing to Kelvarin CGel file '%1': the columnar file '%2' has side files of the same "
    "names, which would be lost. Give this one another name before its last point, or remove the "
    "other with its side files.";
inline constexpr char kOldFileStays[] =
    "No row was written, so the file '%1' of an earlier run stays as it is. Set alwaysDelete to 1 "
    "to remove it then.";

// Files that take the place of others at the end.
inline constexpr char kJournalDamaged[] =
    "Writing to Kelvarin CGel file '%1': an earlier table was taking its place, and the list "
    "of what is left to do, '%2', is damaged. Look at the files, and remove the list when they can "
    "be replaced.";
inline constexpr char kExchangeUnfinished[] =
    "Writing to Kelvarin CGel file '%1': an earlier table is taking its place, and this "
    "cannot be finished: %2.";
inline constexpr char kNotExchanged[] =
    "Writing to Kelvarin CGel file '%1': the new table could not take its place: %2. The file "
    "is as it was.";
inline constexpr char kExchangeLeft[] =
    "Writing to Kelvarin CGel file '%1': the new table is whole, but not all of its files "
    "could take their names: %2. Whoever opens the file next goes on with it.";

// The previous file.
inline constexpr char kPreviousLocked[] =
    "Warning: File '%1' is locked. Waiting for the file to unlock...";
inline constexpr char kPreviousUnlocked[] = "File is unlocked!";
inline constexpr char kPreviousNotDeleted[] = "Error: Cannot delete previous file '%1'.";

}  // namespace kelvarin::messages
