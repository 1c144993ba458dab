// The texts of the program itself. `%1` and so on are filled in by QString::arg.
#pragma once

namespace kelvarin::program_messages {

inline constexpr char kUsageHint[] = "Run '%1 --help' for the options and an example.";
inline constexpr char kNeedsNameAndValue[] = "%1 takes NAME=VALUE, not '%2'.";
inline constexpr char kNotANumber[] =
    "The value of %1 is '%2', which is not a number (nan, inf, -inf and null are allowed).";
inline constexpr char kVariableTwice[] = "The variable '%1' is given twice.";
inline constexpr char kVariableIsRowNumber[] =
    "The variable '_n' is the number of the row. Give it another name, or add --opt addN=0 to do "
    "without the number.";
inline constexpr char kUnknownExpressionOption[] =
    "There is no expression option '%1'. There are: %2.";
inline constexpr char kOptionTakesInteger[] =
    "The expression option '%1' takes a whole number, not '%2'.";
inline constexpr char kOptionTakesFlag[] = "The expression option '%1' takes 0 or 1, not '%2'.";

inline constexpr char kHere[] = "Here:\n  %1";
// Behind the hint at an unknown name.
inline constexpr char kGiveValue[] =
    "Give a variable its value: --var %1=1 for a number, --text %1=abc for a text.";
inline constexpr char kGiveDateFormat[] =
    "The expression reads or prints dates. Say how these are written: --opt dateFormat=yyyy-MM-dd";

inline constexpr char kUnknownFunction[] = "There is no function, constant or operator '%1'.";
inline constexpr char kListHint[] = "'kelvarin functions' lists all there are.";
inline constexpr char kMoreHint[] = "'kelvarin functions NAME' tells more about one of them.";
inline constexpr char kCalledHere[] = "'%1' is not called so here; this does it:";
inline constexpr char kNothingLikeIt[] = "Nothing is called '%1' here. %2";
inline constexpr char kDidYouMean[] = "Did you mean %1?";

inline constexpr char kDiskFull[] =
    "The disk is full: %2 more bytes are needed for the file '%1'. Free some space on its disk.";
inline constexpr char kDiskFullQuestion[] = "Retry or stop? [r/s] ";
inline constexpr char kDiskFullWaiting[] = "Trying again for %1 seconds, then the run stops.";
inline constexpr char kDiskStillFull[] =
    "The disk was still full after %1 seconds; the run stops. File: '%2'.";

inline constexpr char kRowsBesideJson[] =
    "The action '%1' writes its rows to standard output, where --json puts its object. Let it write "
    "to a file, or run without --json.";

// Behind a place in the graph file.
inline constexpr char kInAction[] = "in the action '%1' (%2)";
inline constexpr char kInOutput[] = "in the output '%1' of the action '%2' (%3)";

inline constexpr char kUnknownCommand[] = "There is no command '%1'.";
inline constexpr char kUnknownOption[] = "There is no option '%1'.";
// Behind it, where an expression is missing.
inline constexpr char kMinusFirst[] =
    " An expression that begins with a minus stands behind --: kelvarin eval -- '%1'";
inline constexpr char kOutputLost[] = "Standard output cannot be written: %1.";
inline constexpr char kInterrupted[] =
    "Interrupted. Files that were being written are removed, but for columnar files, which say "
    "that they are incomplete.";
// Followed by what the exception says.
inline constexpr char kInternalError[] = "Internal error, please report it: ";
inline constexpr char kUnknownException[] = "an unknown exception";
inline constexpr char kCrashed[] =
    "The program has crashed. Files that were being written are removed, but for columnar files, "
    "which say that they are incomplete. Was there enough memory? If so, please report it.";
inline constexpr char kOutOfMemory[] =
    "Not enough memory. Nothing that was being written replaces a file. Free some memory, or work "
    "on fewer columns or smaller values at a time.";

// As the program writes it when it ends at once.
inline constexpr char kInterruptedLate[] =
    "warning: Interrupted. The run was waiting or computing and did not end within a second, so it "
    "was cut off. Files that were being written are removed, but for columnar files, which say "
    "that they are incomplete.\n";
inline constexpr char kCheckFoundNothing[] = "%1: no problem found";
inline constexpr char kCheckFoundNoError[] = "%1: no error found";
inline constexpr char kCheckRestsOnSamples[] =
    "Nothing was run: column types that a CSV file does not declare were inferred from its first "
    "10000 rows, and expressions were tried with sample values.";
inline constexpr char kFlowTitle[] =
    "columns behind each action (F number, K key, U text; + new, ~ of another type):\n";
inline constexpr char kFlowOfAction[] = "  %1 (%2): %3 columns";
inline constexpr char kFlowUnchanged[] = ", those of its input";
inline constexpr char kMoreColumns[] = ", ... and %1 more, which --json lists";

}  // namespace kelvarin::program_messages
