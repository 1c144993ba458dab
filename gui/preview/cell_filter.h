// What a user types above a column to see some rows only.
//
//   text          contains it, in small or capital letters; for numbers: equals
//   = x, != x     equals, or differs
//   < x <= > >=   compares: numbers by their size, texts by their UTF-8 bytes
//   1..5          from the first to the last, both included
//   null, !null   is missing, or is there
//   nan, empty    is not a number; is the empty text
//   "text"        contains just what stands between the quotes
//
// Threads: any.
#pragma once

#include <memory>
#include <string>

#include <QString>

#include "base/result.h"
#include "host/contract/meta_info.h"

namespace kelvarin {

class CellFilter {
 public:
  // The error is for the user. A blank text is no filter, and its caller's business.
  static Result<CellFilter, QString> parse(const QString& text, MetaTypeColumn type);

  // `bytes` may be null.
  bool accepts(const unsigned char* bytes) const;

 private:
  enum class Test { contains, equal, differ, less, lessEqual, greater, greaterEqual, between };
  enum class State { any, missing, present, notANumber, emptyText };

  explicit CellFilter(MetaTypeColumn type) : m_type(type) {}
  bool acceptsNumber(double number) const;
  bool acceptsText(std::string_view text) const;
  bool acceptsState(const unsigned char* bytes) const;
  bool setOperand(QStringView text);

  MetaTypeColumn m_type;
  State m_state = State::any;
  Test m_test = Test::contains;
  double m_number = 0.0;
  double m_last = 0.0;
  QString m_text;
  std::string m_bytes;  // of the text
};

}  // namespace kelvarin
