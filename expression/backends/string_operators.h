// The operators of the String back-end on numbers: the operations of the other back-ends, bit for
// bit, with their priorities.
//
// Texts and arrays keep the library's operators.
// Errors: throws the library's exceptions; string_backend.cpp catches them.
#pragma once

#include <mpParser.h>

#include <QString>

namespace kelvarin {

// The most elements of an array that an operator or a function makes.
inline constexpr mup::int_type kMaximumElements = 1000;

// Throws an error of our own wording in the library's form, placed at `callback`.
[[noreturn]] void refuse(const mup::ICallback& callback, const QString& message);

// Replaces the library's operators. Throws what the library throws.
void addOperators(mup::ParserX& parser);

}  // namespace kelvarin
