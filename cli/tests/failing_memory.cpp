// A library to be preloaded that lets allocations of a program fail, so that tests can see what the
// program does then. The allocations of main() count, on all threads, from 1, but for those made
// while a library is opened: those of the system do not survive a start without memory. Neither do
// those for thread-local variables, by the dynamic loader and for their destructors: without them
// the C library ends the process itself, with a text of its own.
//
// Environment:
//   FAILING_MEMORY_AT=N       the N-th fails
//   FAILING_MEMORY_FROM=N     the N-th and all later ones fail
//   FAILING_MEMORY_ABOVE=B    all of more than B bytes fail
//   FAILING_MEMORY_TRACE=1    the first one that fails writes its calls to standard error
//   FAILING_MEMORY_LIST=FILE  at the end of main(), the numbers of the first allocations from
//                             different sites go to the file, one a line
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include <dlfcn.h>
#include <execinfo.h>
#include <link.h>
#include <sys/auxv.h>
#include <unistd.h>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
}

namespace {

using Main = int (*)(int, char**, char**);

constexpr long kNever = -1;

Main programMain = nullptr;
std::atomic<bool> isActive{false};
std::atomic<long> allocations{0};
std::atomic<bool> hasFailed{false};
long failingAt = kNever;
long failingFrom = kNever;
long failingAbove = kNever;
bool isTracing = false;
const char* listFile = nullptr;
// The allocations of one that looks at its calls do not count.
__attribute__((tls_model("initial-exec"))) thread_local bool isLooking = false;

struct CodeRange {
  std::uintptr_t begin = 0;
  std::uintptr_t end = 0;

  bool contains(std::uintptr_t address) const { return address >= begin && address < end; }
};
CodeRange loader;
CodeRange destructorRegistration;

constexpr int kCalls = 12;  // so many distinguish one site from another
constexpr int kCallsOfTrace = 60;
constexpr std::size_t kMaxSites = 1 << 18;
std::atomic<std::uint64_t> sites[kMaxSites];
std::atomic<long> firstOfSite[kMaxSites];

long numberFrom(const char* name) {
  const char* text = std::getenv(name);
  return text == nullptr ? kNever : std::atol(text);
}

void noteSite(long number) {
  void* calls[kCalls];
  const int count = backtrace(calls, kCalls);
  std::uint64_t hash = 14695981039346656037ULL;
  for (int i = 0; i < count; ++i) {
    hash = (hash ^ reinterpret_cast<std::uintptr_t>(calls[i])) * 1099511628211ULL;
  }
  for (std::size_t i = hash % kMaxSites;; i = (i + 1) % kMaxSites) {
    std::uint64_t known = 0;
    if (sites[i].compare_exchange_strong(known, hash)) {
      firstOfSite[i] = number;
      return;
    }
    if (known == hash) {
      return;
    }
  }
}

void trace() {
  void* calls[kCallsOfTrace];
  backtrace_symbols_fd(calls, backtrace(calls, kCallsOfTrace), STDERR_FILENO);
}

int findLoader(dl_phdr_info* object, std::size_t, void*) {
  if (object->dlpi_addr != getauxval(AT_BASE)) {
    return 0;
  }
  loader.begin = object->dlpi_addr;
  for (int i = 0; i < object->dlpi_phnum; ++i) {
    const ElfW(Phdr)& part = object->dlpi_phdr[i];
    if (part.p_type == PT_LOAD) {
      loader.end = std::max<std::uintptr_t>(loader.end, loader.begin + part.p_vaddr + part.p_memsz);
    }
  }
  return 1;
}

void findDestructorRegistration() {
  void* function = dlsym(RTLD_DEFAULT, "__cxa_thread_atexit_impl");
  Dl_info information;
  void* symbol = nullptr;
  if (dladdr1(function, &information, &symbol, RTLD_DL_SYMENT) != 0 && symbol != nullptr) {
    destructorRegistration.begin = reinterpret_cast<std::uintptr_t>(function);
    destructorRegistration.end =
        destructorRegistration.begin + static_cast<const ElfW(Sym)*>(symbol)->st_size;
  }
}

bool isForThreadLocals(const void* caller) {
  const auto address = reinterpret_cast<std::uintptr_t>(caller);
  return loader.contains(address) || destructorRegistration.contains(address);
}

bool mustFail(std::size_t size, const void* caller) {
  if (!isActive.load(std::memory_order_relaxed) || isLooking || isForThreadLocals(caller)) {
    return false;
  }
  const long number = ++allocations;
  isLooking = true;
  if (listFile != nullptr) {
    noteSite(number);
  }
  const bool fails = number == failingAt || (failingFrom != kNever && number >= failingFrom) ||
                     (failingAbove != kNever && size > static_cast<std::size_t>(failingAbove));
  if (fails && isTracing && !hasFailed.exchange(true)) {
    trace();
  }
  isLooking = false;
  return fails;
}

void* failed() {
  errno = ENOMEM;
  return nullptr;
}

void writeList() {
  std::FILE* file = std::fopen(listFile, "w");
  for (std::size_t i = 0; i < kMaxSites; ++i) {
    if (sites[i] != 0) {
      std::fprintf(file, "%ld\n", firstOfSite[i].load());
    }
  }
  std::fclose(file);
}

int countingMain(int argc, char** argv, char** environment) {
  failingAt = numberFrom("FAILING_MEMORY_AT");
  failingFrom = numberFrom("FAILING_MEMORY_FROM");
  failingAbove = numberFrom("FAILING_MEMORY_ABOVE");
  isTracing = numberFrom("FAILING_MEMORY_TRACE") == 1;
  listFile = std::getenv("FAILING_MEMORY_LIST");
  void* calls[1];
  backtrace(calls, 1);  // loads what it needs
  dl_iterate_phdr(findLoader, nullptr);
  findDestructorRegistration();
  isActive = true;
  const int status = programMain(argc, argv, environment);
  isActive = false;
  if (listFile != nullptr) {
    writeList();
  }
  return status;
}

}  // namespace

extern "C" {

#pragma GCC visibility push(default)

int __libc_start_main(Main main, int argc, char** argv, void (*init)(), void (*finish)(),
                      void (*finishLoader)(), void* stackEnd) {
  using Start = int (*)(Main, int, char**, void (*)(), void (*)(), void (*)(), void*);
  programMain = main;
  const auto start = reinterpret_cast<Start>(dlsym(RTLD_NEXT, "__libc_start_main"));
  return start(countingMain, argc, argv, init, finish, finishLoader, stackEnd);
}

void* dlopen(const char* file, int mode) {
  using Open = void* (*)(const char*, int);
  static const auto open = reinterpret_cast<Open>(dlsym(RTLD_NEXT, "dlopen"));
  const bool wasLooking = std::exchange(isLooking, true);
  void* library = open(file, mode);
  isLooking = wasLooking;
  return library;
}

void* malloc(std::size_t size) {
  return mustFail(size, __builtin_return_address(0)) ? failed() : __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) {
  return mustFail(count * size, __builtin_return_address(0)) ? failed()
                                                             : __libc_calloc(count, size);
}

void* realloc(void* memory, std::size_t size) {
  return mustFail(size, __builtin_return_address(0)) ? failed() : __libc_realloc(memory, size);
}

void* memalign(std::size_t alignment, std::size_t size) {
  return mustFail(size, __builtin_return_address(0)) ? failed() : __libc_memalign(alignment, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
  return memalign(alignment, size);
}

int posix_memalign(void** memory, std::size_t alignment, std::size_t size) {
  void* taken = memalign(alignment, size);
  if (taken == nullptr) {
    return ENOMEM;
  }
  *memory = taken;
  return 0;
}

#pragma GCC visibility pop
}
