// Performance: what reading a PPD costs at least.
//   ppd_open PPD            ppdOpenFile, ppdMarkDefaults
//   ppd_open PPD DATA OUT   the same, then writes DATA's bytes to OUT
#include <cups/ppd.h>
#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

static int copy(const char* from, const char* to) {
    static char bytes[65536];
    const int in = open(from, O_RDONLY);
    const int out = open(to, O_WRONLY | O_CREAT | O_TRUNC, 0644);
    ssize_t length = 0;
    while ((length = read(in, bytes, sizeof bytes)) > 0) {
        if (write(out, bytes, (size_t)length) != length)
            return 1;
    }
    return length != 0 || close(out) != 0;
}

int main(int argc, char** argv) {
    if (argc != 2 && argc != 4)
        return 2;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
    ppd_file_t* ppd = ppdOpenFile(argv[1]);
    if (!ppd)
        return 1;
    ppdMarkDefaults(ppd);
#pragma GCC diagnostic pop
    const int status = argc == 4 ? copy(argv[2], argv[3]) : 0;
    fflush(NULL);
    _exit(status);
}
