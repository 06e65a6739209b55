// Removing a file, or a directory with everything in it.
#pragma once

#include <string>

namespace Dorva {

// A file is unlinked; a directory loses its contents first, then itself. A path that doesn't
// exist is no error. Returns true when the path is gone afterwards.
bool RemovePath(const std::string& path);

}  // namespace Dorva
