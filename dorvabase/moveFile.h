// Moving a file by copy and removal, which also works across file systems.
#pragma once

#include <string>

namespace Dorva {

// Throws BadParameter when `from` doesn't exist. Otherwise removes `to` if it exists, copies `from`
// to `to` (contents and permissions) and removes `from` once the copy has worked. A directory is
// renamed instead. Returns true when `to` holds the data and `from` is gone; a failed copy leaves
// `from` in place.
bool moveFile(const std::string& from, const std::string& to);

}  // namespace Dorva
