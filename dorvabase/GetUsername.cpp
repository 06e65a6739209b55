// The name of the user this process runs as.
#include "GetUsername.h"

#include <pwd.h>
#include <unistd.h>

#include <vector>

namespace Dorva {

std::string GetUsername() {
    const uid_t uid = geteuid();
    long bufferSize = sysconf(_SC_GETPW_R_SIZE_MAX);
    std::vector<char> buffer(bufferSize > 0 ? static_cast<size_t>(bufferSize) : 16384);
    passwd entry;
    passwd* found = nullptr;
    if (getpwuid_r(uid, &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr &&
        found->pw_name != nullptr && found->pw_name[0] != '\0') {
        return found->pw_name;
    }
    return std::to_string(uid);
}

}  // namespace Dorva
