// Sending a worker's standard output and standard error to log files.
#include "Daemonize.h"

#include <cstdio>
#include <iostream>

namespace Dorva {

static bool Reopen(const std::string& path, bool append, FILE* stream) {
    const char* mode = append ? "a" : "w";
    FILE* probe = std::fopen(path.c_str(), mode);
    if (probe == nullptr) return false;
    std::fclose(probe);
    return std::freopen(path.c_str(), mode, stream) != nullptr;
}

bool Daemonize(const std::string& outPath, const std::string& errPath, bool appendOut,
               bool appendErr) {
    std::cout.flush();
    std::cerr.flush();
    std::fflush(stdout);
    std::fflush(stderr);
    return Reopen(outPath, appendOut, stdout) && Reopen(errPath, appendErr, stderr);
}

}  // namespace Dorva
