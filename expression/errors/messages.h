// Every text about a wrong expression that a user can read, once.
#pragma once

namespace kelvarin::messages {

// Run time. Between opening and row line stands the library's message.
inline constexpr char kCalculatorOpening[] = "Math Parser Error in expression named '%1':\n ";
inline constexpr char kVectorizedOpening[] = "Math Parser Error in expression '%1':\n ";
inline constexpr char kFilterOpening[] = "MathParser Error in FilterRows:\n";
inline constexpr char kRowLine[] =
    "\n On Data Row %1 at position %2: Please click the \"? (F7)\" check button inside the "
    "property "
    "window of the '%3' action to test & fix the expression.";
// kept: two blanks before "inside" in the String back-end.
inline constexpr char kRowLineOfString[] =
    "\n On Data Row %1 at position %2: Please click the \"? (F7)\" check button  inside the "
    "property window of the '%3' action to test & fix the expression.";
inline constexpr char kPositionLine[] = "\nAt position %1.";
inline constexpr char kKeyOutOfRange[] =
    "Out of range: variable '%1' cannot be converted to key on row %2 (value=%3).";

// Check.
inline constexpr char kTokenLine[] = "\n  Error Token:";
inline constexpr char kCheckPositionLine[] = "\n  Error at position:%1";
inline constexpr char kNumberForString[] =
    "The expression evaluated to a Number and a String was expected";
inline constexpr char kStringForNumber[] =
    "The expression evaluated to a String and a Number was expected";
inline constexpr char kFormatUnknown[] = "Math parser error:\n  Date format is unknown";
inline constexpr char kReferenceUnparsable[] =
    "Cannot parse Reference time. We will use 1970-01-01T00:00:00.000 as reference time.";

// Phrases of messages that have an explanation picture.
inline constexpr char kUndefinedTokenPhrase[] = "Undefined token";
inline constexpr char kConversionPhrase[] = "There is no implicit conversion to type";

// Behind the text of an error, to lead to its cause.
inline constexpr char kHere[] = "Here:";
inline constexpr char kExpression[] = "The expression:";
inline constexpr char kCut[] = "...";
inline constexpr char kValuesOfRow[] = "On data row %1 (counted from 0): %2";
inline constexpr char kSampleValues[] = "Checked with the sample values %1.";
inline constexpr char kTry[] = "Try it: %1";
inline constexpr char kNumberBecomesText[] =
    "A run writes the number as its shortest text. Write meta='F' for a column of numbers, or make "
    "the text yourself, for instance with ftoa.";
inline constexpr char kSampleMayDiffer[] =
    "A row that fails so stops the run. Where it depends on the values, give the input variables "
    "sample values (attribute 'value') like those of your rows.";
inline constexpr char kFailedRowsGoOn[] =
    "The run goes on behind such rows, as abortWhenError='0' asks for.";
inline constexpr char kKeyCastAdvice[] =
    "Keys are whole numbers from 0 to 4294967293. Let castToKey1 (out of range) or castToKey2 "
    "(fractions) be 0 (the key 0, or cut off) or 1 (missing) to go on with such rows.";

// What a back-end refuses before its library sees it.
inline constexpr char kTooLong[] =
    "The expression is too long: it has %1 characters, and at most 10000 are possible (19999 where "
    "every value is a number). Split it into several expressions.";
inline constexpr char kTooManyResults[] =
    "The expression gives several values, separated by commas; one was expected.";
inline constexpr char kNulCharacter[] = "The expression holds a NUL character. Remove it.";
inline constexpr char kControlCharacter[] =
    "The expression holds a control character. Remove it.";
inline constexpr char kControlCharacterInName[] =
    "The resulting name has a control character (code %1) at position %2. Names of columns and "
    "files have none; replace() takes it out.";
inline constexpr char kUnknownEscape[] =
    "A text has an unknown escape. Known are \\n, \\r, \\t, \\\" and \\\\.";
inline constexpr char kTooDeep[] = "Brackets are nested more than %1 deep. Split the expression.";
inline constexpr char kOperandMissing[] = "Unexpected operator \"%1\" found at position %2.";
inline constexpr char kUnparsable[] = "The expression cannot be understood. Check its operators.";
inline constexpr char kMixedBitOperators[] =
    "The %1 takes bit operators of one kind only, and none beside comparisons. Use the String "
    "Parser.";
inline constexpr char kNotLatin1[] =
    "The %1 takes no character beyond Latin-1. Use the String Parser.";
inline constexpr char kArrayResult[] =
    "The expression evaluated to an array and a single value was expected";
inline constexpr char kTooManyElements[] = "An array of more than %1 elements was asked for.";
inline constexpr char kTooManyElementsInAll[] =
    "The arrays of this expression have more than %1 elements together.";
inline constexpr char kArrayAssigned[] = "An array cannot be assigned to a variable.";
inline constexpr char kTextTooLong[] = "A text of more than %1 bytes would arise.";
inline constexpr char kTextsTooLong[] =
    "The texts of this expression, those on the way to its result included, take more than %1 "
    "bytes together.";
inline constexpr char kOutOfMemory[] = "The memory does not suffice for this expression.";

}  // namespace kelvarin::messages
