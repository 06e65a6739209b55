// Sending a worker's standard output and standard error to log files.
#pragma once

#include <string>

namespace Dorva {

// Reopens stdout on outPath and stderr on errPath with freopen: appended to when the matching flag
// is true, truncated otherwise. Each file is first test-opened, so that a log that can't be created
// (missing directory, no permission) leaves the stream as it was instead of closing it. Returns
// false, with errno set, when either log couldn't be opened; stdout may then be redirected already.
bool Daemonize(const std::string& outPath, const std::string& errPath, bool appendOut,
               bool appendErr);

}  // namespace Dorva
