// The memory that one evaluation of the String back-end may take, and why it failed.
//
// The library keeps every value on its stack until something else is put there, so what counts is
// all that an evaluation makes, be it used up or not.
// Errors: throws the library's exception, placed at the callback that asks for more.
#pragma once

#include <cstddef>
#include <optional>

#include <mpParser.h>

#include <QString>

namespace kelvarin {

// Throws an error of our own wording in the library's form, placed at `callback`.
[[noreturn]] void refuse(const mup::ICallback& callback, const QString& message);

class EvaluationLimits {
 public:
  // Of one array, of all arrays, of one joined text and of all texts.
  static constexpr long long kArrayElements = 1000;
  static constexpr long long kAllElements = 10'000;
  static constexpr std::size_t kTextBytes = std::size_t{64} << 20;
  static constexpr std::size_t kAllTextBytes = std::size_t{256} << 20;

  // Of all texts, the first one included; none: those above.
  void setBound(std::optional<std::size_t> textBytes) { m_boundOfTexts = textBytes; }

  // Before an evaluation.
  void restart() {
    m_elements = 0;
    m_textBytes = 0;
    m_fault.Errc = mup::ecUNDEFINED;
  }

  // Runs the computation of an operator or function. The library reports its errors as one kind and
  // in words, so the first report is kept.
  template <typename Compute>
  void keepingFault(Compute compute) {
    try {
      compute();
    } catch (mup::ParserError& error) {
      m_fault = error.GetContext();
      throw;
    }
  }
  const mup::ErrorContext& fault() const { return m_fault; }

  // Counts an array of so many elements, or the one that `value` is.
  void takeArray(const mup::ICallback& callback, double elements);
  void takeResult(const mup::ICallback& callback, const mup::IValue& value);
  // Counts a text that is about to be joined from two.
  void takeJoinedText(const mup::ICallback& callback, std::size_t bytes);
  // Counts a text that a function made. One alone may be as long as the text of a row can be.
  void takeText(const mup::ICallback& callback, std::size_t bytes);

 private:
  double m_elements = 0.0;
  std::size_t m_textBytes = 0;
  std::optional<std::size_t> m_boundOfTexts;
  mup::ErrorContext m_fault;
};

}  // namespace kelvarin
