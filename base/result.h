// A value, or the reason why there is none.
//
// For failures that are expected (a file that is missing, an expression that does not compile); a
// broken invariant of our own is an assert. The error type defaults to a text that a user can read.
#pragma once

#include <cassert>
#include <string>
#include <utility>
#include <variant>

namespace kelvarin {

template <typename E>
struct Failure {
  E error;
};

template <typename E>
Failure(E) -> Failure<E>;

template <typename T, typename E = std::string>
class [[nodiscard]] Result {
 public:
  Result(T value) : m_state(std::in_place_index<0>, std::move(value)) {}
  template <typename G>
  Result(Failure<G> failure) : m_state(std::in_place_index<1>, std::move(failure.error)) {}

  explicit operator bool() const { return m_state.index() == 0; }
  T& value() & { return get(); }
  T&& value() && { return std::move(get()); }
  const T& value() const& { return const_cast<Result*>(this)->get(); }
  T& operator*() { return get(); }
  const T& operator*() const { return value(); }
  T* operator->() { return &get(); }
  const T* operator->() const { return &value(); }
  const E& error() const {
    assert(m_state.index() == 1);
    return *std::get_if<1>(&m_state);
  }

 private:
  T& get() {
    assert(m_state.index() == 0);
    return *std::get_if<0>(&m_state);
  }

  std::variant<T, E> m_state;
};

// The result of an operation that returns no value.
struct Done {};

template <typename E = std::string>
using Status = Result<Done, E>;

}  // namespace kelvarin
