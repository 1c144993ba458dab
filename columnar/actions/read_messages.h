// The texts that the action reading columnar files logs.
#pragma once

#include <QString>

namespace kelvarin::messages {

// Where the names come from.
inline constexpr char kNoColumnOnPin[] = "ERROR: No column to read on input pin 1??";
inline constexpr char kUnreadableName[] =
    "ERROR: Cannot read the name of the Columnar Kelvarin CGel file on input pin??";
inline constexpr char kUnreadableNameSkipped[] =
    "Warning: Cannot read the name of the Columnar Kelvarin CGel file on input pin??";
inline constexpr char kNoFileName[] =
    "There is no name of a columnar file to read. Set the attribute 'fileName', or take the "
    "names from the input pin with 'fileNameFromPin'.";
inline constexpr char kNamesPinNotLinked[] =
    "Nothing is linked to input pin %1, which gives the names of the %2 to read. Link a "
    "table to it.";
inline constexpr char kUnreadableColumnName[] =
    "The table on input pin 1 has no column name on its row %1 (counted from 0). Each row names one column "
    "to read.";
inline constexpr char kNoColumnListed[] =
    "The list of columns to read is empty. Name at least one column, or read all columns.";

inline constexpr char kListOff[] =
    "The columns listed in ColumnsToRead have no effect without columnSelection='1' or "
    "readAllColumns='0': all columns are read.";

// Missing files and files that cannot be opened.
inline constexpr char kWaitingForFile[] =
    "Warning: cannot read Columnar file '%1': Waiting for the file...";
inline constexpr char kMissingFileSkipped[] = "Warning: The Columnar file '%1' does not exists";
inline constexpr char kMissingFile[] = "Error: The Columnar file '%1' does not exists";
inline constexpr char kCannotOpenFile[] =
    "Warning: cannot open Columnar file '%1' for read\n";  // kept: the next one follows
inline constexpr char kCannotOpen[] = "ERROR: Can't open file '%1' for read.";
inline constexpr char kCannotOpenSideFile[] = "ERROR: Cannot open Column-Set file '%1'.";
inline constexpr char kUnreadable[] = "ERROR: Can't read file '%1': File is corrupted.";
inline constexpr char kJournalDamaged[] =
    "ERROR: Can't read file '%1': a new table was taking its place, and the list of what is left to "
    "do, '%2', is damaged. Write the table anew.";
inline constexpr char kIncompleteRefused[] =
    "ERROR: Can't read file '%1' because it seems incomplete.";
inline constexpr char kIncomplete[] = "WARNING: File '%1' is incomplete.";

// Columns.
inline constexpr char kColumnNotInFile[] = "The column '%1' is not in the file '%2'.";
inline constexpr char kFilterColumnMissing[] = "ERROR: column '%1' in expression is missing.";
inline constexpr char kFilterColumnIsText[] =
    "The column '%1' in the block filter holds texts. Give its CInputVar isNumber='0', or meta='D' "
    "when they are dates.";

// Damage: the file, the rows of the damaged block.
inline constexpr char kCorruptedSkipped[] =
    "Warning: file '%1' is corrupted - skipping rows %2 to %3";
inline constexpr char kMoreCorruptions[] =
    "Warning: file '%1' is corrupted - some more corruptions are not reported";
inline constexpr char kCorrupted[] =
    "Error: file '%1' is corrupted in data-block starting at row %2";
inline constexpr char kTruncatedSkipped[] =
    "Warning: file '%1' is truncated in data-block starting at row %2";
inline constexpr char kTruncated[] =
    "Error: file '%1' is truncated in data-block starting at row %2";

// What follows one of them, once a file.
inline constexpr char kDamageAdvice[] =
    "'kelvarin gel verify' names each damaged place of '%1'. What is whole in its column-set files "
    "can be written to a new table: kelvarin gel recover '%1' recovered.cgel_kelvarin";
inline constexpr char kForeignSideFile[] =
    "The values in a column-set file of '%1' are sound, but not those that the main file describes: "
    "the file of another table may have taken its place, or the main file is an older one. "
    "'kelvarin gel verify' names the columns.";
inline constexpr char kBeyondLimits[] =
    "A part of '%1' says that it needs far more memory than the files justify, so it was not read. "
    "'kelvarin gel verify' names the place.";
inline constexpr char kIncompleteAdvice[] =
    "The writer of '%1' is at work or was stopped. With readIncompleteFile its finished rows are "
    "read; after a stop, more of them come with: kelvarin gel recover '%1' recovered.cgel_kelvarin";
inline constexpr char kStoppedWriterAdvice[] =
    "The writer of '%1' was stopped. Rows that no descriptor describes yet may be whole in its "
    "column-set files: kelvarin gel recover '%1' recovered.cgel_kelvarin";
inline constexpr char kStillWritten[] =
    "The file '%1' is still being written. The rows that its writer has finished were read.";

inline constexpr char kNoMemory[] =
    "The memory does not suffice to read file '%1', with blocks of up to %2 rows in %3 "
    "columns. Read fewer columns, or lower nBlockForward.";

// The block filter.
inline constexpr char kFilterOff[] =
    "CFilterRows has an expression, but filterRows='1' is not set: every block is read.";
inline constexpr char kFilterEmpty[] =
    "filterRows='1' is set, but there is no expression in CFilterRows: every block is read.";
inline constexpr char kFilterFailed[] = "Columnar Reader Error in the block filter: %1";
inline constexpr char kDateFormatUnknown[] = "Columnar Reader Error: Date format is unknown";
inline constexpr char kFilterReferenceUnparsable[] =
    "Cannot parse Reference time. We will use 1970-01-01T00:00:00.000 as reference time.";

}  // namespace kelvarin::messages
