// One line of the help: what a user types, what it does, and examples.
//
// Drawn by the help browser and by `kelvarin functions`. A test evaluates every example, on each
// back-end that has the function.
#pragma once

#include <span>
#include <vector>

namespace kelvarin {

enum class HelpKind { function, constant, sign, postfix };

struct HelpEntry {
  const char* signature;
  const char* comment;
  const char* nulls;    // what becomes of a missing value; null where nothing can be missing
  const char* example;  // with the settings of kExampleSettings
  const char* result;   // of the example, as a text
  // Shows what the first example does not: a missing value, a limit, another use. May be null.
  const char* secondExample = nullptr;
  const char* secondResult = nullptr;
  const char* note = nullptr;
  // Several are separated by blanks. Null: the signature up to its bracket.
  const char* names = nullptr;
};

struct HelpExample {
  const char* expression;
  const char* result;
};
// One or two.
std::vector<HelpExample> examplesOf(const HelpEntry& entry);

struct HelpGroup {
  const char* title;
  HelpKind kind;
  std::span<const HelpEntry> entries;
};

// What a missing value does in most functions.
namespace null_rules {

inline constexpr char kGivesNull[] = "A null in any argument gives null.";
inline constexpr char kGivesFalse[] = "A null in any argument gives 0.";
inline constexpr char kIsTested[] = "The missing value is what it looks for.";
inline constexpr char kFirstCounts[] =
    "With a null as the first argument the result is null; a later null is passed over.";
// Of functions that read date texts.
inline constexpr char kUnreadableIsNull[] = "With a null or an unreadable date the result is null.";
inline constexpr char kUnreadableIsFalse[] = "With a null or an unreadable date the result is 0.";
inline constexpr char kUnreadableMayBeZero[] =
    "With a null the result is null; with an empty or unreadable date it is null, or 0 with "
    "castToET2.";
inline constexpr char kComparesFalse[] =
    "A null number is never equal to anything, itself included; use isNull(x).";

}  // namespace null_rules

// The groups of the help browser, in their order. The texts are fixed, their slips included; where
// a comment is wrong, the note says what is true.
std::span<const HelpGroup> helpGroups();
// What the help browser's tree leaves out: functions that are Kelvarin's own, second names, and
// what needs no line of its own there. Titles and comments say which.
std::span<const HelpGroup> furtherGroups();

inline constexpr char kParametersRemark[] =
    "All Graph-Global-Parameters are also available to use.";

// The date settings of all examples, as options of `kelvarin eval`: elapsed times are days since
// 2000-01-01.
struct ExampleSettings {
  const char* dateFormat = "yyyy-MM-dd";
  const char* referenceTime = "20000101 00:00:00";
  int elapsedTimeUnit = 3;
};
inline constexpr ExampleSettings kExampleSettings;
// A file that examples read, in the working directory, and its text.
inline constexpr char kExampleFile[] = "greeting.txt";
inline constexpr char kExampleFileText[] = "Hello";

}  // namespace kelvarin
