/* Loaded before a program, makes one of its calls fail: the FAIL_AT-th call of FAIL_CALL (malloc,
 * open, read, write, close or one of those at the end), counted from the start of main, with the
 * error FAIL_ERRNO; with FAIL_LASTS all calls behind it fail as well. How many calls there were goes to the file FAIL_COUNT. A write with the error 0
 * takes one byte only. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <sched.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/xattr.h>
#include <time.h>
#include <unistd.h>

typedef int (*MainFunction)(int, char**, char**);

static const char* failingCall = "";
static long failAt, failErrno, failLasts, calls;
static MainFunction programMain;

/* Whether this call is the one, or one behind it. */
static int fails(const char* call) {
  if (strcmp(call, failingCall) != 0) return 0;
  ++calls;
  if (calls != failAt && !(failLasts && failAt > 0 && calls > failAt)) return 0;
  errno = (int)failErrno;
  return 1;
}

static void writeCount(void) {
  const char* path = getenv("FAIL_COUNT");
  const long count = calls;
  failingCall = "";
  FILE* file = path ? fopen(path, "w") : NULL;
  if (!file) return;
  fprintf(file, "%ld\n", count);
  fclose(file);
}

static long number(const char* name) {
  const char* text = getenv(name);
  return text ? atol(text) : 0;
}

static int countedMain(int count, char** arguments, char** environment) {
  atexit(writeCount);
  failAt = number("FAIL_AT");
  failErrno = number("FAIL_ERRNO");
  failLasts = number("FAIL_LASTS");
  if (getenv("FAIL_CALL")) failingCall = getenv("FAIL_CALL");
  return programMain(count, arguments, environment);
}

#define NEXT(name) ((__typeof__(&name))next(#name))
static void* next(const char* name) { return dlsym(RTLD_NEXT, name); }

int __libc_start_main(MainFunction program, int count, char** arguments, void (*init)(void),
                      void (*fini)(void), void (*loaderFini)(void), void* stackEnd) {
  programMain = program;
  int (*start)(MainFunction, int, char**, void (*)(void), void (*)(void), void (*)(void), void*) =
      (__typeof__(start))next("__libc_start_main");
  return start(countedMain, count, arguments, init, fini, loaderFini, stackEnd);
}

/* The allocator cannot be looked up by what allocates: it has names of its own. */
extern void* __libc_malloc(size_t);
extern void* __libc_calloc(size_t, size_t);
extern void* __libc_realloc(void*, size_t);
extern void* __libc_memalign(size_t, size_t);
void* malloc(size_t size) { return fails("malloc") ? NULL : __libc_malloc(size); }
void* calloc(size_t count, size_t size) {
  return fails("malloc") ? NULL : __libc_calloc(count, size);
}
void* realloc(void* old, size_t size) { return fails("malloc") ? NULL : __libc_realloc(old, size); }
void* aligned_alloc(size_t alignment, size_t size) {
  return fails("malloc") ? NULL : __libc_memalign(alignment, size);
}
int posix_memalign(void** result, size_t alignment, size_t size) {
  if (fails("malloc")) return ENOMEM;
  *result = __libc_memalign(alignment, size);
  return *result ? 0 : ENOMEM;
}

int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = va_arg(arguments, mode_t);
  va_end(arguments);
  return fails("open") ? -1 : NEXT(open)(path, flags, mode);
}
ssize_t read(int fd, void* bytes, size_t size) {
  return fails("read") ? -1 : NEXT(read)(fd, bytes, size);
}
ssize_t write(int fd, const void* bytes, size_t size) {
  if (!fails("write")) return NEXT(write)(fd, bytes, size);
  return failErrno ? -1 : NEXT(write)(fd, bytes, size ? 1 : 0);
}
/* A close that fails has closed all the same. */
int close(int fd) {
  const int failing = fails("close");
  const int error = errno, result = NEXT(close)(fd);
  if (!failing) return result;
  errno = error;
  return -1;
}

#define MAY_FAIL(type, name, parameters, arguments) \
  type name parameters { return fails(#name) ? -1 : NEXT(name) arguments; }
MAY_FAIL(int, fsync, (int fd), (fd))
MAY_FAIL(int, rename, (const char* from, const char* to), (from, to))
MAY_FAIL(int, stat, (const char* path, struct stat* status), (path, status))
MAY_FAIL(int, fstat, (int fd, struct stat* status), (fd, status))
MAY_FAIL(int, flock, (int fd, int operation), (fd, operation))
MAY_FAIL(int, fchown, (int fd, uid_t user, gid_t group), (fd, user, group))
MAY_FAIL(int, fchmod, (int fd, mode_t mode), (fd, mode))
MAY_FAIL(ssize_t, flistxattr, (int fd, char* list, size_t size), (fd, list, size))
MAY_FAIL(ssize_t, fgetxattr, (int fd, const char* name, void* value, size_t size),
         (fd, name, value, size))
MAY_FAIL(int, fsetxattr, (int fd, const char* name, const void* value, size_t size, int flags),
         (fd, name, value, size, flags))
MAY_FAIL(int, nanosleep, (const struct timespec* time, struct timespec* rest), (time, rest))
MAY_FAIL(int, setns, (int fd, int kind), (fd, kind))
MAY_FAIL(int, socket, (int domain, int type, int protocol), (domain, type, protocol))
MAY_FAIL(int, bind, (int fd, __CONST_SOCKADDR_ARG address, socklen_t length), (fd, address, length))
MAY_FAIL(int, setsockopt,
         (int fd, int level, int option, const void* value, socklen_t length),
         (fd, level, option, value, length))
MAY_FAIL(ssize_t, sendto,
         (int fd, const void* bytes, size_t size, int flags, __CONST_SOCKADDR_ARG to,
          socklen_t length),
         (fd, bytes, size, flags, to, length))
MAY_FAIL(ssize_t, recvmsg, (int fd, struct msghdr* message, int flags), (fd, message, flags))
MAY_FAIL(ssize_t, recvfrom,
         (int fd, void* bytes, size_t size, int flags, __SOCKADDR_ARG from, socklen_t* length),
         (fd, bytes, size, flags, from, length))
