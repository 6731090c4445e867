// One line for each call of the C library that the library, its modules and those behind them make
// and that can fail, with the ways in which it does.
#include "faults/interpose.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <glob.h>
#include <iconv.h>
#include <poll.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <clocale>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <new>
#include <tuple>
#include <utility>

namespace veltgeneral::faults {
namespace {

struct State {
  Fault fault;
  std::function<void(const Call&)> made;
  int seen = 0;  // of the fault's name
  bool came = false;
};

constexpr time_t kNow = 1'709'210'096;  // 29 February 2024

thread_local State state;
thread_local bool counting = false;
thread_local std::FILE* broken = nullptr;  // the stream whose last call was made to fail

// 0, or how this call has to fail.
int errorFor(const Call& call) noexcept {
  if (!counting || call.name != state.fault.name || ++state.seen != state.fault.turn) return 0;
  state.came = true;
  return state.fault.error;
}

void tell(const Call& call) {
  if (!counting || !state.made) return;
  counting = false;
  const int error = errno;
  state.made(call);
  errno = error;
  counting = true;
}

template <std::size_t N>
struct Name {
  constexpr Name(const char (&from)[N]) { std::copy_n(from, N, text); }
  char text[N]{};
};

template <Name kName, int... kErrors>
struct Interposed {
  static constexpr std::array<int, sizeof...(kErrors)> kHow{kErrors...};
  static constexpr Call kCall{kName.text, kHow};

  // The C library's own call, or `failed` in its place.
  template <class R, class... A>
  static R call(R failed, A... arguments) {
    static const auto kNext = reinterpret_cast<R (*)(A...)>(::dlsym(RTLD_NEXT, kName.text));
    const int error = errorFor(kCall);
    R result = failed;
    if (error > 0) {
      errno = error;
    } else {
      std::tuple<A...> given(arguments...);
      if constexpr (sizeof...(A) > 2) {
        if (error == kPart) {
          auto& size = std::get<2>(given);
          if constexpr (std::is_same_v<decltype(size), std::size_t&>) size = (size + 1) / 2;
        }
      }
      result = std::apply(kNext, given);
    }
    tell(kCall);
    return result;
  }

  // For calls that have done their work even where they report a failure.
  template <class R, class... A>
  static R afterwards(R failed, A... arguments) {
    static const auto kNext = reinterpret_cast<R (*)(A...)>(::dlsym(RTLD_NEXT, kName.text));
    R result = kNext(arguments...);
    if (const int error = errorFor(kCall); error > 0) {
      errno = error;
      result = failed;
    }
    tell(kCall);
    return result;
  }

  // For streams, which remember that they failed.
  template <class R, class... A>
  static R stream(std::FILE* file, R failed, A... arguments) {
    const bool before = state.came;
    const R result = call(failed, arguments...);
    if (state.came != before) broken = file;
    return result;
  }
};

}  // namespace

void begin(const Fault& fault, std::function<void(const Call&)> made) {
  state = {.fault = fault, .made = std::move(made)};
  broken = nullptr;
  counting = true;
}

bool end() noexcept {
  counting = false;
  return state.came;
}

}  // namespace veltgeneral::faults

using namespace veltgeneral::faults;

void* operator new(std::size_t size) {
  static constexpr std::array kHow{ENOMEM};
  static constexpr Call kCall{"new", kHow};
  if (errorFor(kCall) != 0) throw std::bad_alloc();
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  tell(kCall);
  return memory;
}

// NOLINTBEGIN: the C library's names and types
// clang-format off
extern "C" {
int close(int fd) { return Interposed<"close", EIO, EINTR>::afterwards(-1, fd); }
ssize_t read(int fd, void* to, size_t size) { return Interposed<"read", EIO, EINTR, kPart>::call(ssize_t{-1}, fd, to, size); }
ssize_t pread(int fd, void* to, size_t size, off_t at) { return Interposed<"pread", EIO, EINTR, kPart>::call(ssize_t{-1}, fd, to, size, at); }
ssize_t write(int fd, const void* from, size_t size) { return Interposed<"write", ENOSPC, EIO, EINTR, kPart>::call(ssize_t{-1}, fd, from, size); }
off_t lseek(int fd, off_t to, int from) noexcept { return Interposed<"lseek", EIO>::call(off_t{-1}, fd, to, from); }
int ftruncate(int fd, off_t size) noexcept { return Interposed<"ftruncate", EIO, EINTR>::call(-1, fd, size); }
int fallocate(int fd, int mode, off_t from, off_t size) { return Interposed<"fallocate", ENOSPC, EINTR, EOPNOTSUPP>::call(-1, fd, mode, from, size); }
int stat(const char* path, struct stat* to) noexcept { return Interposed<"stat", EACCES, EIO>::call(-1, path, to); }
int lstat(const char* path, struct stat* to) noexcept { return Interposed<"lstat", EACCES, EIO>::call(-1, path, to); }
int fstat(int fd, struct stat* to) noexcept { return Interposed<"fstat", EIO>::call(-1, fd, to); }
int fstatat(int folder, const char* path, struct stat* to, int flags) noexcept { return Interposed<"fstatat", EIO>::call(-1, folder, path, to, flags); }
int access(const char* path, int how) noexcept { return Interposed<"access", EACCES, EIO>::call(-1, path, how); }
int rename(const char* from, const char* to) noexcept { return Interposed<"rename", EACCES, ENOSPC, EIO>::call(-1, from, to); }
int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) noexcept { return Interposed<"renameat2", EACCES, ENOSPC, EINVAL, EIO>::call(-1, fromFolder, from, toFolder, to, flags); }
int link(const char* from, const char* to) noexcept { return Interposed<"link", EPERM, ENOSPC, EIO>::call(-1, from, to); }
int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) noexcept { return Interposed<"linkat", ENOENT, ENOSPC, EIO>::call(-1, fromFolder, from, toFolder, to, flags); }
int unlink(const char* path) noexcept { return Interposed<"unlink", EACCES, EIO>::call(-1, path); }
int mkdir(const char* path, mode_t mode) noexcept { return Interposed<"mkdir", EACCES, ENOSPC>::call(-1, path, mode); }
ssize_t readlink(const char* path, char* to, size_t size) noexcept { return Interposed<"readlink", EACCES, EIO>::call(ssize_t{-1}, path, to, size); }
char* realpath(const char* path, char* to) noexcept { return Interposed<"realpath", EACCES, EIO, ENOMEM>::call(static_cast<char*>(nullptr), path, to); }
int chmod(const char* path, mode_t mode) noexcept { return Interposed<"chmod", EPERM, EIO>::call(-1, path, mode); }
int fchmod(int fd, mode_t mode) noexcept { return Interposed<"fchmod", EPERM, EIO>::call(-1, fd, mode); }
int fchown(int fd, uid_t user, gid_t group) noexcept { return Interposed<"fchown", EPERM, EIO>::call(-1, fd, user, group); }
int futimens(int fd, const timespec times[2]) noexcept { return Interposed<"futimens", EPERM, EIO>::call(-1, fd, times); }
ssize_t getxattr(const char* path, const char* name, void* to, size_t size) noexcept { return Interposed<"getxattr", EIO, ENOMEM>::call(ssize_t{-1}, path, name, to, size); }
ssize_t fgetxattr(int fd, const char* name, void* to, size_t size) noexcept { return Interposed<"fgetxattr", EIO, ENOMEM, ERANGE>::call(ssize_t{-1}, fd, name, to, size); }
ssize_t flistxattr(int fd, char* to, size_t size) noexcept { return Interposed<"flistxattr", EIO, ENOMEM>::call(ssize_t{-1}, fd, to, size); }
int setxattr(const char* path, const char* name, const void* from, size_t size, int flags) noexcept { return Interposed<"setxattr", ENOSPC, EIO>::call(-1, path, name, from, size, flags); }
int fsetxattr(int fd, const char* name, const void* from, size_t size, int flags) noexcept { return Interposed<"fsetxattr", ENOSPC, EIO>::call(-1, fd, name, from, size, flags); }
int removexattr(const char* path, const char* name) noexcept { return Interposed<"removexattr", EIO>::call(-1, path, name); }
DIR* opendir(const char* path) { return Interposed<"opendir", EACCES, EMFILE, ENOMEM>::call(static_cast<DIR*>(nullptr), path); }
dirent* readdir(DIR* folder) { return Interposed<"readdir", EIO>::call(static_cast<dirent*>(nullptr), folder); }
int glob(const char* pattern, int flags, int (*failed)(const char*, int), glob_t* to) { return Interposed<"glob", EIO>::call(GLOB_ABORTED, pattern, flags, failed, to); }
FILE* fopen(const char* path, const char* mode) { return Interposed<"fopen", EACCES, EMFILE, EIO>::call(static_cast<FILE*>(nullptr), path, mode); }
FILE* fdopen(int fd, const char* mode) noexcept { return Interposed<"fdopen", ENOMEM>::call(static_cast<FILE*>(nullptr), fd, mode); }
size_t fread(void* to, size_t size, size_t count, FILE* file) { return Interposed<"fread", EIO>::stream(file, size_t{0}, to, size, count, file); }
size_t fwrite(const void* from, size_t size, size_t count, FILE* file) { return Interposed<"fwrite", ENOSPC>::stream(file, size_t{0}, from, size, count, file); }
ssize_t __getdelim(char** line, size_t* size, int end, FILE* file) { return Interposed<"__getdelim", EIO>::stream(file, ssize_t{-1}, line, size, end, file); }
int fseek(FILE* file, long to, int from) { return Interposed<"fseek", EIO>::call(-1, file, to, from); }
int ferror(FILE* file) noexcept { return file == broken ? 1 : Interposed<"ferror">::call(0, file); }
int fclose(FILE* file) { return Interposed<"fclose", ENOSPC, EIO>::afterwards(EOF, file); }
void* dlopen(const char* path, int flags) noexcept { return Interposed<"dlopen", ENOMEM>::call(static_cast<void*>(nullptr), path, flags); }
void* mmap(void* at, size_t size, int rights, int flags, int fd, off_t from) noexcept { return Interposed<"mmap", ENOMEM>::call(MAP_FAILED, at, size, rights, flags, fd, from); }
int madvise(void* at, size_t size, int how) noexcept { return Interposed<"madvise", ENOMEM>::call(-1, at, size, how); }
iconv_t iconv_open(const char* to, const char* from) { return Interposed<"iconv_open", EMFILE, ENOMEM>::call(reinterpret_cast<iconv_t>(-1), to, from); }
locale_t newlocale(int mask, const char* name, locale_t base) noexcept { return Interposed<"newlocale", ENOMEM>::call(locale_t{nullptr}, mask, name, base); }
int socket(int domain, int type, int protocol) noexcept { return Interposed<"socket", EMFILE, EACCES>::call(-1, domain, type, protocol); }
int socketpair(int domain, int type, int protocol, int ends[2]) noexcept { return Interposed<"socketpair", EMFILE>::call(-1, domain, type, protocol, ends); }
int connect(int fd, const sockaddr* to, socklen_t size) { return Interposed<"connect", ECONNREFUSED, ENETUNREACH, EACCES>::call(-1, fd, to, size); }
int getsockopt(int fd, int level, int name, void* to, socklen_t* size) noexcept { return Interposed<"getsockopt", ENOBUFS>::call(-1, fd, level, name, to, size); }
int setsockopt(int fd, int level, int name, const void* from, socklen_t size) noexcept { return Interposed<"setsockopt", ENOBUFS>::call(-1, fd, level, name, from, size); }
int getsockname(int fd, sockaddr* to, socklen_t* size) noexcept { return Interposed<"getsockname", ENOBUFS>::call(-1, fd, to, size); }
int getpeername(int fd, sockaddr* to, socklen_t* size) noexcept { return Interposed<"getpeername", ENOTCONN>::call(-1, fd, to, size); }
ssize_t send(int fd, const void* from, size_t size, int flags) { return Interposed<"send", EPIPE, EAGAIN, kPart>::call(ssize_t{-1}, fd, from, size, flags); }
ssize_t recv(int fd, void* to, size_t size, int flags) { return Interposed<"recv", ECONNRESET, EAGAIN, kPart>::call(ssize_t{-1}, fd, to, size, flags); }
int poll(pollfd* those, nfds_t count, int milliseconds) { return Interposed<"poll", EINTR, ENOMEM>::call(-1, those, count, milliseconds); }
// clang-format on
int open(const char* path, int flags, ...) {
  std::va_list more;
  va_start(more, flags);
  const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(more, mode_t) : 0;
  va_end(more);
  return Interposed<"open", EACCES, EIO, EMFILE, EINTR>::call(-1, path, flags, mode);
}
int flock(int fd, int how) noexcept {
  if ((how & LOCK_UN) != 0) return Interposed<"flock">::call(-1, fd, how);  // cannot fail
  return Interposed<"flock", ENOLCK, EINTR>::call(-1, fd, how);
}
int clock_gettime(clockid_t clock, timespec* to) noexcept {
  const int done = Interposed<"clock_gettime">::call(-1, clock, to);
  if (counting && clock == CLOCK_REALTIME) *to = {.tv_sec = kNow, .tv_nsec = 0};
  return done;
}
time_t time(time_t* to) noexcept {
  const time_t now = counting ? kNow : Interposed<"time">::call(time_t{-1}, to);
  if (to != nullptr) *to = now;
  return now;
}
}
// NOLINTEND
