// Performance: starts a program from a process that is small itself, so that what the kernel says
// of the program's memory is the program's: before exec() it counts the one that was forked.
//   bench_launch RESULT PROGRAM ARGUMENT…
// Writes "status nanoseconds KiB" to RESULT: the wait status, the wall time from before fork() to
// the end, the largest resident set. LABELCUT_BENCH_PRELOAD becomes the program's LD_PRELOAD.
#include <stdio.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

static long long nanoseconds(void) {
    struct timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * 1000000000LL + now.tv_nsec;
}

int main(int argc, char** argv) {
    if (argc < 3)
        return 2;
    const long long before = nanoseconds();
    const pid_t child = fork();
    if (child == 0) {
        const char* preload = getenv("LABELCUT_BENCH_PRELOAD");
        if (preload)
            setenv("LD_PRELOAD", preload, 1);
        execv(argv[2], argv + 2);
        _exit(127);
    }
    int status = 0;
    struct rusage usage;
    if (child < 0 || wait4(child, &status, 0, &usage) != child)
        return 1;
    const long long after = nanoseconds();
    FILE* result = fopen(argv[1], "w");
    if (!result)
        return 1;
    fprintf(result, "%d %lld %ld\n", status, after - before, usage.ru_maxrss);
    return fclose(result) != 0;
}
