// Lists of texts in one text, with a sign between them, such as "NA|n/a".
//
// A backslash before the sign makes it a part of a text, and so before another backslash. An empty
// list has no text.
#pragma once

#include <QStringList>

namespace kelvarin {

QStringList textsOfList(const QString& list, QChar sign);
QString listOfTexts(const QStringList& texts, QChar sign);

}  // namespace kelvarin
