// The texts about variables, columns and results of expressions, once each.
#pragma once

namespace kelvarin::messages {

inline constexpr char kColumnNotFound[] = "Error: Column '%1' not found";
inline constexpr char kColumnTypesDiffer[] = "Error: Column '%1' and '%2' must have the same type";

// About an expression that does what its author hardly means.
inline constexpr char kAssigns[] = "Expression '%1': '=' assigns; did you mean '=='?";
inline constexpr char kEqualsNull[] =
    "Expression '%1': '== _null' is never true; did you mean 'isNull(%2)'?";
inline constexpr char kDiffersFromNull[] =
    "Expression '%1': '!= _null' is always true; did you mean 'not(isNull(%2))'?";

// At the end of a run.
inline constexpr char kNotANumber[] =
    "Column '%1' is a text column used as a number: %2 value(s) were no numbers and counted as "
    "missing, the first one on data row %3.";
inline constexpr char kMoreNotNumbers[] =
    "%1 more column(s) of the variable '%2' are text columns used as numbers: %3 value(s) were no "
    "numbers and counted as missing.";
inline constexpr char kNotADate[] =
    "Column '%1' holds dates in the format '%2': %3 value(s) could not be read and count as %4, "
    "the first one '%5' on data row %6 (counted from 0).";
inline constexpr char kMoreNotDates[] =
    "%1 more column(s) of the variable '%2' hold dates: %3 value(s) could not be read and count as "
    "%4.";
inline constexpr char kMissing[] = "missing";
inline constexpr char kZero[] = "0";
inline constexpr char kFailedEvaluations[] =
    "%1 evaluation(s) failed and gave no value. The first was expression '%2' on data row %3: %4";

}  // namespace kelvarin::messages
