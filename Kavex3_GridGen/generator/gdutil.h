// Small text, number and failure utilities of the line generator.
#pragma once

#include <cstdio>

// When set, printfErrNexit and perrorNexit call it with the status instead of ending the process;
// a harness that runs the generator many times in one process (a fuzzer) makes it throw.
extern void (*gd_exit_hook)(int status);

// Writes "\nError: ", the formatted message and a newline to stderr, then exits with status 1.
[[noreturn]] void printfErrNexit(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Reports the system error with perror(text), then exits with status 1.
[[noreturn]] void perrorNexit(const char* text);

// Skips white space and '#' comments (to the end of their lines); pushes the next character back.
FILE* skpcmt(FILE* stream);

// skpcmt, then reads one line of at most 261 bytes. Returns a malloc'ed copy of its first token,
// or null for no token or for the line "\0" (backslash, zero). A read failure exits via
// perrorNexit.
char* read_file_str(FILE* stream);

// qsort comparison for ascending doubles: -1, 0 or 1.
int qscmp_double(const void* a, const void* b);

// Graded widths w[k] = first * r^k, each made from the one before by one multiplication (so they
// are the same in line grids and layers); returns their sum, added in order.
double graded_weights(double* w, int n, double first, double r);
