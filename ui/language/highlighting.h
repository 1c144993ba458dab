// The tokens of an expression with what each one is for, so that an editor can colour them.
//
// Threads: any.
#pragma once

#include <vector>

#include <QSet>
#include <QString>

#include "host/contract/global_parameters.h"
#include "ui/language/formula.h"

namespace kelvarin {

struct HighlightedSpan {
  enum class Class {
    number,
    text,
    function,
    variable,
    constant,  // of the language, or a graph parameter
    operatorSign,
    bracket,
    separator,
    unit,
    unknownName,
    fault  // an unclosed text, an unknown escape, a bracket without partner, a stray character
  };
  Class kind = Class::fault;
  qsizetype start = 0;
  qsizetype size = 0;
};

// What names mean, apart from the language's own.
struct KnownNames {
  QSet<QString> variables;
  QSet<QString> columns;  // that are no variables yet
  QSet<QString> parameters;
  QSet<QString> notOffered;  // of the language, but left out by the settings
};
KnownNames knownNamesOf(const Formula& formula);

// In the order of the text; blanks have none.
std::vector<HighlightedSpan> highlightingOf(const QString& expression, const KnownNames& names);

// The positions of the bracket beside the cursor and of its partner, the one behind first; -1
// where there is none.
struct BracketPair {
  qsizetype first = -1;
  qsizetype second = -1;  // -1: it has no partner
};
BracketPair bracketsAt(const QString& expression, qsizetype cursor);

// The name that the cursor is in, or behind; empty where there is none.
struct WordAt {
  qsizetype start = 0;
  qsizetype size = 0;
  QString text;
};
WordAt wordAt(const QString& expression, qsizetype cursor);

}  // namespace kelvarin
