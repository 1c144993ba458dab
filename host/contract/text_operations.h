// Small operations on texts and lists that actions and editors use.
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include "base/export.h"

class ActionItem;
class OneRow;

// Without the blanks (any white space) at both ends, the left one, the right one. A null text stays
// null.
KELVARIN_CORE QString myTrim(const QString& text);
KELVARIN_CORE QString myTrimLeft(const QString& text);
KELVARIN_CORE QString myTrimRight(const QString& text);

// "a, b, c"; beyond `maximum` texts "a, b, ... (7 in all)". 0 or less: all of them.
KELVARIN_CORE QString stringFromStringList(QStringList texts, int maximum);

// The bytes that a text takes as a value of a row: its byte count and its UTF-8 bytes.
KELVARIN_CORE int totalLengthField(QString text);

// A text that shares its characters with no other, for another thread to keep.
KELVARIN_CORE QString detach(const QString& text);

// The address under which rich text shows a file or a resource of this program.
KELVARIN_CORE QString copyForWeb(QString path);

// Sorts keys[first..last] ascending, last included, and moves values[] along; equal keys keep their
// order.
KELVARIN_CORE void sortIntInt(int* keys, int* values, int first, int last);

// Whether a column that `action` is about to create has the name of one that `row` has already;
// `replaced` lists the columns that do not count. A collision is logged, as an error or else as a
// warning.
KELVARIN_CORE bool doCheckNameCollision(const OneRow* row, bool isError, ActionItem* action,
                                        QVector<int> replaced, QString name);
