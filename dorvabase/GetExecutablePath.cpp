// Finding a program on disk the way a shell would.
#include "GetExecutablePath.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

namespace Dorva {

static bool IsExecutableFile(const std::string& path) {
    struct stat info;
    return stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode) &&
           access(path.c_str(), X_OK) == 0;
}

FilePath GetExecutablePath(const std::string& name) {
    if (name.empty()) return FilePath();
    if (name.find('/') != std::string::npos) {
        return IsExecutableFile(name) ? FilePath(name) : FilePath();
    }
    const char* pathVariable = std::getenv("PATH");
    if (pathVariable == nullptr) return FilePath();
    const std::string strPath = pathVariable;
    std::string::size_type start = 0;
    while (true) {
        const std::string::size_type end = strPath.find(':', start);
        const std::string directory = strPath.substr(start, end - start);
        const std::string candidate =
            (directory.empty() ? std::string(".") : directory) + "/" + name;
        if (IsExecutableFile(candidate)) return FilePath(candidate);
        if (end == std::string::npos) return FilePath();
        start = end + 1;
    }
}

}  // namespace Dorva
