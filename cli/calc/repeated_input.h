// Standard input that can be read from its start a second time.
//
// A file is set back. Of a pipe, what the first reader was given is kept and given to the second
// one, followed by the rest as it comes; so a look at the first rows costs neither a copy of the
// whole nor its streaming. While this object lives, descriptor 0 of the process reads from it.
// Used by: calc_command.cpp.
// Threads: one at a time; it has one of its own while a pipe is passed on.
// Errors: where the system refuses a pipe, standard input stays what it is, and is read once.
#pragma once

#include <string>
#include <thread>

namespace kelvarin {

class RepeatedInput {
 public:
  RepeatedInput();
  ~RepeatedInput();
  RepeatedInput(const RepeatedInput&) = delete;
  RepeatedInput& operator=(const RepeatedInput&) = delete;

  // The first reader has closed it, and the second one may open it.
  void startAgain();
  // Nothing is passed on any more. The error of a read that failed, 0 where none did: the second
  // reader has taken it for the end.
  int end();

 private:
  void passOn(bool isKept);
  void forward(int to, bool isKept);
  bool write(int to, const char* bytes, std::size_t size) const;
  void stop();

  long long m_start = -1;  // the position in a file; -1: not a file
  int m_source = -1;       // what standard input was
  int m_stop = -1;         // a descriptor that can be read when the thread has to end
  std::string m_kept;      // that the first reader was given
  bool m_isAtEnd = false;  // of the source
  int m_error = 0;         // of reading it
  std::thread m_thread;
};

}  // namespace kelvarin
