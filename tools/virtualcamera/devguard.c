/* Preloaded before libumockdev-preload.so.0: keeps every path under /dev but those of the USB bus
 * away from it. Its table of descriptors has 50 places and loses one with every failed open, after
 * which sound and media libraries abort; and it answers the ioctls of real devices with ENOTTY.
 * It also keeps the mocked bus from programs that do not use it.
 *
 * Any thread; no state but the addresses of the functions behind. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

/* The mocked bus announces a plugged camera to a socket that is named after the number of the
 * listener's descriptor. Another process that listens under the same number takes that name over,
 * and the camera's program never hears of it again. Helpers of the media library do listen, for
 * cameras of other kinds, so whoever is started without the USB library does not see the bus. */
__attribute__((constructor)) static void leave_bus_to_its_users(void)
{
    if (!dlopen("libusb-1.0.so.0", RTLD_LAZY | RTLD_NOLOAD))
        unsetenv("UMOCKDEV_DIR");
}

/* The functions behind those of the same name. */
static struct {
    int (*open)(const char *, int, ...);
    int (*open64)(const char *, int, ...);
    FILE *(*fopen)(const char *, const char *);
    FILE *(*fopen64)(const char *, const char *);
} next;

/* Looked up once, before there are threads: a lookup takes the dynamic linker's lock, and a
 * sanitizer that reports opens files while it holds another lock of the linker. */
__attribute__((constructor)) static void look_up_next(void)
{
    if (next.fopen64)
        return;
    next.open = dlsym(RTLD_NEXT, "open");
    next.open64 = dlsym(RTLD_NEXT, "open64");
    next.fopen = dlsym(RTLD_NEXT, "fopen");
    next.fopen64 = dlsym(RTLD_NEXT, "fopen64");

    /* The functions that the mocked bus has in their place look for those behind them at the first
     * call; a sanitizer that reports needs these. */
    struct stat status;
    char target[1];
    (void)lstat("/", &status);
    (void)stat("/", &status);
    if (readlink("/", target, sizeof target) < 0)
        errno = 0;
}

enum verdict { TO_UMOCKDEV, TO_KERNEL, REFUSED };

static int is_usb(const char *path)
{
    return path && !strncmp(path, "/dev/bus/usb/", 13);
}

static int is_other_device(const char *path)
{
    return path && !strncmp(path, "/dev/", 5) && !is_usb(path);
}

/* A node that is missing or of mode 000 is refused here, the latter for the superuser too: it
 * stands for a node that the user may not open. errno says which. */
static enum verdict judge(const char *path, int flags)
{
    struct stat status;
    char mocked[4096];
    const char *root = getenv("UMOCKDEV_DIR");
    int access = (flags & O_ACCMODE) == O_RDWR     ? R_OK | W_OK
                 : (flags & O_ACCMODE) == O_WRONLY ? W_OK
                                                   : R_OK;
    if (is_other_device(path))
        return TO_KERNEL;
    if (!is_usb(path) || !root)
        return TO_UMOCKDEV;
    if (snprintf(mocked, sizeof mocked, "%s%s", root, path) >= (int)sizeof mocked) {
        errno = ENAMETOOLONG;
        return REFUSED;
    }
    if (syscall(SYS_newfstatat, AT_FDCWD, mocked, &status, 0) != 0)
        return REFUSED;
    if (S_ISREG(status.st_mode) && !(status.st_mode & 0777)) {
        errno = EACCES;
        return REFUSED;
    }
    return syscall(SYS_faccessat2, AT_FDCWD, mocked, access, AT_EACCESS) ? REFUSED : TO_UMOCKDEV;
}

/* The node is a terminal, which must not become the program's controlling one. */
static int flags_for(const char *path, int flags)
{
    return is_usb(path) ? flags | O_NOCTTY : flags;
}

static mode_t mode_argument(int flags, va_list arguments)
{
    return flags & (O_CREAT | __O_TMPFILE) ? va_arg(arguments, mode_t) : 0;
}

static int guarded_open(int (*const *behind)(const char *, int, ...), const char *path, int flags,
                        mode_t mode)
{
    look_up_next();
    switch (judge(path, flags)) {
    case REFUSED:
        return -1;
    case TO_KERNEL:
        return (int)syscall(SYS_openat, AT_FDCWD, path, flags, mode);
    case TO_UMOCKDEV:
        break;
    }
    return (*behind)(path, flags_for(path, flags), mode);
}

static FILE *guarded_fopen(const char *name, FILE *(*const *behind)(const char *, const char *),
                           const char *path, const char *mode)
{
    look_up_next();
    void *libc = is_other_device(path) ? dlopen("libc.so.6", RTLD_LAZY | RTLD_NOLOAD) : NULL;
    FILE *(*function)(const char *, const char *) = libc ? dlsym(libc, name) : NULL;
    return (function ? function : *behind)(path, mode);
}

int open(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    mode_t mode = mode_argument(flags, arguments);
    va_end(arguments);
    return guarded_open(&next.open, path, flags, mode);
}

int open64(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    mode_t mode = mode_argument(flags, arguments);
    va_end(arguments);
    return guarded_open(&next.open64, path, flags, mode);
}

int __open_2(const char *path, int flags)
{
    return guarded_open(&next.open, path, flags, 0);
}

int __open64_2(const char *path, int flags)
{
    return guarded_open(&next.open64, path, flags, 0);
}

FILE *fopen(const char *path, const char *mode)
{
    return guarded_fopen("fopen", &next.fopen, path, mode);
}

FILE *fopen64(const char *path, const char *mode)
{
    return guarded_fopen("fopen64", &next.fopen64, path, mode);
}
