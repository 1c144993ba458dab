// The texts of `kelvarin gel`. `%1` and so on are filled in by QString::arg.
#pragma once

namespace kelvarin::gel_messages {

inline constexpr char kCannotOpen[] = "Cannot read '%1': %2.";
inline constexpr char kNoSuchFile[] = "there is no such file";
inline constexpr char kIsFolder[] = "it is a folder";
inline constexpr char kIsNoOrdinaryFile[] = "it is a device or a pipe";
inline constexpr char kSideFileGiven[] =
    "'%1' holds columns of a table. Give the main file instead, which is '%2'.";
inline constexpr char kNotAGelFile[] =
    "Cannot read '%1': it is no columnar file, or its header or column list is damaged.";
inline constexpr char kJournalDamaged[] =
    "Cannot read '%1': a new table was taking its place, and the list of what is left to do, '%2', "
    "is damaged. Import the table anew.";
inline constexpr char kCannotOpenSide[] =
    "Cannot open the column-set file '%1'. It belongs beside the main file.";
inline constexpr char kIncomplete[] =
    "'%1' is incomplete: its writer has not finished, or was stopped.";
inline constexpr char kRowsLost[] = "'%1' is damaged: rows %2 to %3 cannot be read.";
inline constexpr char kFileCut[] = "'%1' is cut: nothing from row %2 on can be read.";
inline constexpr char kMoreLost[] = "'%1' is damaged at %2 more places, which are not listed.";
inline constexpr char kNoMemory[] = "'%1': the memory does not suffice for a block of rows.";

inline constexpr char kSameFile[] =
    "The file '%1' would be replaced by what is made of it. Give the other file another name.";
inline constexpr char kNameOfAnotherKind[] =
    "'%1' is a name for another kind of table. Columnar files end in .cgel_kelvarin.";
inline constexpr char kWritten[] = "%1 written to '%2'.";
inline constexpr char kNoRows[] =
    "'%1' has no rows, so nothing was written. A file '%2' that was there before is unchanged.";
inline constexpr char kUnknownExtension[] =
    "The kind of the file '%1' is told by its extension, which is one of: %2.";

// What a recovery has found.
inline constexpr char kRecoverName[] =
    "The extension of '%1' does not say what to make of the table. It is one of: cgel_kelvarin, "
    "%2.";
inline constexpr char kRecoverOntoItself[] =
    "'%1' and '%2' would share the file '%3'. Give the recovered table another name.";
inline constexpr char kRecovered[] = "%1 in %2 recovered to '%3'.";
inline constexpr char kFoundBlocks[] =
    "Of them, %1 had no sound descriptor and came from the column-set files alone.";
inline constexpr char kLost[] = "%1 with %2 of '%3' could not be recovered.";
inline constexpr char kLostUncounted[] =
    "'%1' is damaged where no descriptor counts the blocks: some rows could not be "
    "recovered, and those before and after them now follow one another.";
inline constexpr char kUnfinished[] =
    "The column-set files of '%1' end with a block that its writer had not finished. Its rows were "
    "not taken.";
inline constexpr char kNothingRecovered[] =
    "'%1' has no whole block of rows, so nothing was written. A file '%2' that was there before is "
    "unchanged.";
inline constexpr char kRecoverAdvice[] =
    "What is whole in the column-set files can be recovered with: kelvarin gel recover '%1' "
    "recovered.cgel_kelvarin";

// What a verification finds. The file, the place in it, the block and the rows.
inline constexpr char kPlace[] = "%1, byte %2: block %3 (rows %4 to %5)%6: %7";
inline constexpr char kColumn[] = ", column '%1'";
inline constexpr char kRecordChecksum[] = "the block descriptors do not agree with their checksum";
inline constexpr char kRecordContent[] = "the block descriptors make no sense";
inline constexpr char kRecordTooLarge[] =
    "the block descriptors would take far more memory than the files justify";
inline constexpr char kMainFileCut[] = "the file ends here, though more should follow";
inline constexpr char kBadRowCount[] = "the header's row count is not that of the blocks";
inline constexpr char kChunkChecksum[] = "the values do not agree with their checksum";
inline constexpr char kChunkContent[] = "the values make no sense, though their checksum is right";
inline constexpr char kChunkTooLarge[] =
    "the values would take far more memory than the file justifies";
inline constexpr char kUnknownLayout[] = "the values have the layout %1, which is unknown";
inline constexpr char kSideFileCut[] = "the file ends inside this column's values";
inline constexpr char kBadSummary[] =
    "the values are not those that the main file describes; the column-set file may belong to "
    "another table";
inline constexpr char kMoreDamage[] = "%1: %2 more damaged places are not listed\n";
inline constexpr char kSideFileMissing[] = "%1: the file cannot be opened";
inline constexpr char kVerified[] = "%1: %2 in %3, %4 read: %5\n";
inline constexpr char kNoDamage[] = "no damage";
inline constexpr char kIncompleteButSound[] = "no damage, but the file is incomplete";

}  // namespace kelvarin::gel_messages
