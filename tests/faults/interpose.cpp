// One row for each function of the C library that the library, its modules and those behind them
// call and that can fail.
#include "faults/interpose.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <iconv.h>
#include <link.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <new>
#include <utility>

namespace veltgeneral::faults {
namespace {

constexpr std::time_t kNow = 1'709'210'096;  // 29 February 2024

thread_local struct {
  Fault fault;
  Listener listener;
  int seen = 0;
  bool counting = false;
} state;

// 0, or how this call has to fail.
int errorFor(const Call& call) noexcept {
  const bool counts = state.counting && state.fault.call == &call;
  return counts && ++state.seen == state.fault.turn ? state.fault.error : 0;
}

void tell(const Call& call) {
  if (!state.counting || !state.listener) return;
  const int error = errno;
  state.counting = false;
  state.listener(call);
  state.counting = true;
  errno = error;
}

void halve(std::size_t& size) { size = (size + 1) / 2; }
void halve(auto&) {}

// Streams remember that they failed.
void mark(std::FILE* file) { file->_flags |= _IO_ERR_SEEN; }
void mark(auto) {}

template <class R>
R failureOf(Failing how) {
  if constexpr (std::is_pointer_v<R>)
    return how == Failing::withAllOnes ? reinterpret_cast<R>(-1) : nullptr;
  else
    return std::is_unsigned_v<R> ? R{0} : static_cast<R>(-1);
}

template <std::size_t N>
struct Name {
  constexpr Name(const char (&from)[N]) { std::copy_n(from, N, text); }
  char text[N]{};
};

template <Name kName, class R, class... A>
R interposed(A... given) {
  static const Call& call = *std::ranges::find(calls(), kName.text, &Call::name);
  const auto original = reinterpret_cast<R (*)(A...)>(call.original);
  const int error = errorFor(call);
  if (error == kPart) (halve(given), ...);
  R result{};
  if (error <= 0 || call.how == Failing::afterItsWork) result = original(given...);
  if (error > 0) {
    if (call.how != Failing::afterItsWork) (mark(given), ...);
    result = failureOf<R>(call.how);
    errno = error;
  }
  tell(call);
  return result;
}

template <Name kName, class R, class... A>
Call row(R (*)(A...), std::vector<int> errors, Failing how = Failing::instead) {
  return {kName.text, reinterpret_cast<void*>(&interposed<kName, R, A...>), std::move(errors), how};
}

constexpr int (*kOpen)(const char*, int, mode_t) = nullptr;  // the mode may be left out

std::time_t stillTime(std::time_t* to) {
  using std::chrono::system_clock;
  const std::time_t now = state.counting ? kNow : system_clock::to_time_t(system_clock::now());
  if (to != nullptr) *to = now;
  return now;
}

void redirectAll();

void* openLibrary(const char* path, int flags) {
  void* const library = interposed<"dlopen", void*, const char*, int>(path, flags);
  redirectAll();
  return library;
}

std::vector<Call> makeCalls() {
  std::vector<Call> all{
      {kAllocation, nullptr, {ENOMEM}},
      {"time", reinterpret_cast<void*>(&stillTime), {}},
      {"dlopen", reinterpret_cast<void*>(&openLibrary), {ENOMEM}},
      row<"open">(kOpen, {EACCES, EIO, EMFILE, EINTR}),
      row<"close">(::close, {EIO, EINTR}, Failing::afterItsWork),
      row<"read">(::read, {EIO, EINTR, kPart}),
      row<"pread">(::pread, {EIO, EINTR, kPart}),
      row<"write">(::write, {ENOSPC, EIO, EINTR, kPart}),
      row<"lseek">(::lseek, {EIO}),
      row<"ftruncate">(::ftruncate, {EIO, EINTR}),
      row<"fallocate">(::fallocate, {ENOSPC, EINTR, EOPNOTSUPP}),
      row<"flock">(::flock, {ENOLCK, EINTR}),
      row<"stat">(::stat, {EACCES, EIO}),
      row<"lstat">(::lstat, {EACCES, EIO}),
      row<"fstat">(::fstat, {EIO}),
      row<"fstatat">(::fstatat, {EIO}),
      row<"access">(::access, {EACCES, EIO}),
      row<"rename">(::rename, {EACCES, ENOSPC, EIO}),
      row<"renameat2">(::renameat2, {EACCES, ENOSPC, EINVAL, EIO}),
      row<"linkat">(::linkat, {ENOENT, ENOSPC, EIO}),
      row<"unlink">(::unlink, {EACCES, EIO}),
      row<"mkdir">(::mkdir, {EACCES, ENOSPC}),
      row<"readlink">(::readlink, {EACCES, EIO}),
      row<"realpath">(::realpath, {EACCES, EIO, ENOMEM}),
      row<"chmod">(::chmod, {EPERM, EIO}),
      row<"fchmod">(::fchmod, {EPERM, EIO}),
      row<"fchown">(::fchown, {EPERM, EIO}),
      row<"futimens">(::futimens, {EPERM, EIO}),
      row<"getxattr">(::getxattr, {EIO, ENOMEM}),
      row<"fgetxattr">(::fgetxattr, {EIO, ENOMEM, ERANGE}),
      row<"flistxattr">(::flistxattr, {EIO, ENOMEM}),
      row<"setxattr">(::setxattr, {ENOSPC, EIO}),
      row<"fsetxattr">(::fsetxattr, {ENOSPC, EIO}),
      row<"removexattr">(::removexattr, {EIO}),
      row<"opendir">(::opendir, {EACCES, EMFILE, ENOMEM}),
      row<"readdir">(::readdir, {EIO}),
      row<"fopen">(::fopen, {EACCES, EMFILE, EIO}),
      row<"fdopen">(::fdopen, {ENOMEM}),
      row<"fread">(::fread, {EIO}),
      row<"fwrite">(::fwrite, {ENOSPC}),
      row<"__getdelim">(::__getdelim, {EIO}),
      row<"fseek">(::fseek, {EIO}),
      row<"fclose">(::fclose, {ENOSPC, EIO}, Failing::afterItsWork),
      row<"mmap">(::mmap, {ENOMEM}, Failing::withAllOnes),
      row<"iconv_open">(::iconv_open, {EMFILE, ENOMEM}, Failing::withAllOnes),
      row<"socket">(::socket, {EMFILE, EACCES}),
      row<"socketpair">(::socketpair, {EMFILE}),
      row<"connect">(::connect, {ECONNREFUSED, ENETUNREACH, EACCES}),
      row<"getsockopt">(::getsockopt, {ENOBUFS}),
      row<"setsockopt">(::setsockopt, {ENOBUFS}),
      row<"getsockname">(::getsockname, {ENOBUFS}),
      row<"getpeername">(::getpeername, {ENOTCONN}),
      row<"send">(::send, {EPIPE, EAGAIN, kPart}),
      row<"recv">(::recv, {ECONNRESET, EAGAIN, kPart}),
      row<"poll">(::poll, {EINTR, ENOMEM}),
  };
  for (Call& call : all) call.original = ::dlsym(RTLD_DEFAULT, call.name.data());
  return all;
}

// Replaces the addresses of the C library's functions that a loaded library keeps, as the dynamic
// section of its file describes them (System V ABI, chapter 5).
int redirect(dl_phdr_info* library, std::size_t, void*) {
  const std::span parts(library->dlpi_phdr, library->dlpi_phnum);
  const auto dynamic = std::ranges::find(parts, PT_DYNAMIC, &ElfW(Phdr)::p_type);
  if (dynamic == parts.end()) return 0;
  std::map<ElfW(Sxword), ElfW(Addr)> values;
  const auto* entry = reinterpret_cast<const ElfW(Dyn)*>(library->dlpi_addr + dynamic->p_vaddr);
  for (; entry->d_tag != DT_NULL; ++entry) values[entry->d_tag] = entry->d_un.d_ptr;
  const auto* symbols = reinterpret_cast<const ElfW(Sym)*>(values[DT_SYMTAB]);
  const auto* names = reinterpret_cast<const char*>(values[DT_STRTAB]);
  const auto pageSize = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
  for (const auto& [table, size] : {std::pair(DT_RELA, DT_RELASZ), {DT_JMPREL, DT_PLTRELSZ}}) {
    const auto* first = reinterpret_cast<const ElfW(Rela)*>(values[table]);
    for (const ElfW(Rela) & place : std::span(first, values[size] / sizeof *first)) {
      const ElfW(Sym)& symbol = symbols[ELF64_R_SYM(place.r_info)];
      const auto call = std::ranges::find(calls(), names + symbol.st_name, &Call::name);
      if (symbol.st_shndx != SHN_UNDEF || call == calls().end() || !call->replacement) continue;
      const std::uintptr_t at = library->dlpi_addr + place.r_offset;
      void* const page = reinterpret_cast<void*>(at & ~(pageSize - 1));
      if (::mprotect(page, pageSize, PROT_READ | PROT_WRITE) != 0) std::abort();
      *reinterpret_cast<void**>(at) = call->replacement;
    }
  }
  return 0;
}

void redirectAll() { ::dl_iterate_phdr(redirect, nullptr); }

// Once for all processes that come from this one.
const struct Redirected {
  Redirected() { redirectAll(); }
} kRedirected;

}  // namespace

std::span<const Call> calls() {
  static const auto* const kCalls = new std::vector(makeCalls());  // for calls at the very end too
  return *kCalls;
}

Disturbance::Disturbance(const Fault& fault, Listener listener) {
  state = {fault, std::move(listener), 0, true};
}

Disturbance::~Disturbance() { state.counting = false; }

bool faultCame() noexcept { return state.seen >= state.fault.turn; }

}  // namespace veltgeneral::faults

void* operator new(std::size_t size) {
  using namespace veltgeneral::faults;
  if (state.counting && errorFor(calls().front()) != 0) throw std::bad_alloc();
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  if (state.counting) tell(calls().front());
  return memory;
}
