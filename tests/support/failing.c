/* Makes one call of the system fail, in a program that this is loaded ahead of (LD_PRELOAD):
   FAILING_CALL names it ("malloc" stands for all that allocates), FAILING_AT says the how manieth
   of its kind, from 1. The file that FAILING_SEEN names is made once it has failed. */
#define _GNU_SOURCE
#include <errno.h>
#include <fcntl.h>
#include <stdlib.h>
#include <string.h>
#include <sys/syscall.h>
#include <unistd.h>

extern void* __libc_malloc(size_t);
extern void* __libc_calloc(size_t, size_t);
extern void* __libc_realloc(void*, size_t);
extern void* __libc_memalign(size_t, size_t);

/* Whether this call is the one to fail; then with that error. */
static int fails(const char* call, int error) {
  static const char* name;
  static long left;
  if (!name) {
    if (!environ || !(name = getenv("FAILING_CALL"))) return 0;
    left = atol(getenv("FAILING_AT"));
  }
  if (strcmp(name, call) != 0 || --left != 0) return 0;
  syscall(SYS_close, syscall(SYS_openat, AT_FDCWD, getenv("FAILING_SEEN"), O_CREAT | O_WRONLY, 0600));
  errno = error;
  return 1;
}

void* malloc(size_t size) { return fails("malloc", ENOMEM) ? NULL : __libc_malloc(size); }
void* calloc(size_t count, size_t size) {
  return fails("malloc", ENOMEM) ? NULL : __libc_calloc(count, size);
}
void* realloc(void* old, size_t size) {
  return fails("malloc", ENOMEM) ? NULL : __libc_realloc(old, size);
}
void* aligned_alloc(size_t alignment, size_t size) {
  return fails("malloc", ENOMEM) ? NULL : __libc_memalign(alignment, size);
}
int posix_memalign(void** out, size_t alignment, size_t size) {
  if (fails("malloc", ENOMEM)) return ENOMEM;
  *out = __libc_memalign(alignment, size);
  return *out ? 0 : ENOMEM;
}

ssize_t read(int fd, void* to, size_t size) {
  return fails("read", EIO) ? -1 : syscall(SYS_read, fd, to, size);
}
ssize_t write(int fd, const void* from, size_t size) {
  return fails("write", ENOSPC) ? -1 : syscall(SYS_write, fd, from, size);
}
int fsync(int fd) { return fails("fsync", EIO) ? -1 : (int)syscall(SYS_fsync, fd); }
int fchmod(int fd, mode_t mode) {
  return fails("fchmod", EPERM) ? -1 : (int)syscall(SYS_fchmod, fd, mode);
}
int flock(int fd, int what) {
  return fails("flock", ENOLCK) ? -1 : (int)syscall(SYS_flock, fd, what);
}
int rename(const char* from, const char* to) {
  return fails("rename", EIO) ? -1 : (int)syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0);
}
