// The name of the user this process runs as.
#pragma once

#include <string>

namespace Dorva {

// The login name of the effective user id, from the password database: it needs no login session
// and no environment. A user id that has no entry gives its number in decimal, so that the result
// is never empty and still tells users apart.
std::string GetUsername();

}  // namespace Dorva
