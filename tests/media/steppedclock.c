/* Preloaded into a program: five seconds after its start, which a busy machine may take to begin,
 * the date steps back by an hour. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <sys/time.h>
#include <time.h>

static int (*real_clock_gettime)(clockid_t, struct timespec *);
static struct timespec started;

__attribute__((constructor)) static void begin(void)
{
    real_clock_gettime = dlsym(RTLD_NEXT, "clock_gettime");
    real_clock_gettime(CLOCK_MONOTONIC, &started);
}

int clock_gettime(clockid_t clock, struct timespec *now)
{
    struct timespec monotonic;
    int result;
    if (!real_clock_gettime)
        begin();
    result = real_clock_gettime(clock, now);
    if (result != 0 || clock != CLOCK_REALTIME)
        return result;
    real_clock_gettime(CLOCK_MONOTONIC, &monotonic);
    if (monotonic.tv_sec - started.tv_sec >= 5)
        now->tv_sec -= 3600;
    return 0;
}

int gettimeofday(struct timeval *now, void *zone)
{
    struct timespec precise;
    (void)zone;
    clock_gettime(CLOCK_REALTIME, &precise);
    now->tv_sec = precise.tv_sec;
    now->tv_usec = precise.tv_nsec / 1000;
    return 0;
}

time_t time(time_t *now)
{
    struct timespec precise;
    clock_gettime(CLOCK_REALTIME, &precise);
    if (now)
        *now = precise.tv_sec;
    return precise.tv_sec;
}
