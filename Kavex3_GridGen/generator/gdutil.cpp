// Small text, number and failure utilities of the line generator.
#include "generator/gdutil.h"

#include <cstdarg>
#include <cstdlib>
#include <cstring>

void (*gd_exit_hook)(int status) = nullptr;

[[noreturn]] static void end_run(int status) {
    if (gd_exit_hook) gd_exit_hook(status);
    std::exit(status);
}

void printfErrNexit(const char* format, ...) {
    std::fflush(stdout);
    std::fputs("\nError: ", stderr);
    va_list args;
    va_start(args, format);
    std::vfprintf(stderr, format, args);
    va_end(args);
    std::fputc('\n', stderr);
    end_run(1);
}

void perrorNexit(const char* text) {
    std::fflush(stdout);
    std::perror(text);
    end_run(1);
}

FILE* skpcmt(FILE* stream) {
    int c;
    while ((c = std::fgetc(stream)) != EOF) {
        if (c == '#') {
            while ((c = std::fgetc(stream)) != EOF && c != '\n') {
            }
            if (c == EOF) break;
        } else if (!std::strchr(" \t\n\r\v\f", c)) {
            std::ungetc(c, stream);
            break;
        }
    }
    return stream;
}

char* read_file_str(FILE* stream) {
    char line[262];
    skpcmt(stream);
    if (!std::fgets(line, sizeof line, stream)) perrorNexit("fgets");
    if (std::strcmp(line, "\\0\n") == 0) return nullptr;
    const char* token = std::strtok(line, " \t\n\r\v\f");
    return token ? strdup(token) : nullptr;
}

int qscmp_double(const void* a, const void* b) {
    const double x = *static_cast<const double*>(a);
    const double y = *static_cast<const double*>(b);
    return x < y ? -1 : (x > y ? 1 : 0);
}

double graded_weights(double* w, int n, double first, double r) {
    double sum = 0.0;
    for (int k = 0; k < n; ++k) {
        w[k] = k == 0 ? first : w[k - 1] * r;
        sum += w[k];
    }
    return sum;
}
