// Removing a file, or a directory with everything in it.
#include "RemovePath.h"

#include <boost/filesystem/operations.hpp>

namespace Dorva {

bool RemovePath(const std::string& path) {
    boost::system::error_code ec;
    const boost::filesystem::file_status status = boost::filesystem::symlink_status(path, ec);
    if (status.type() == boost::filesystem::file_not_found) return true;
    if (ec) return false;
    if (status.type() == boost::filesystem::directory_file) {
        boost::filesystem::remove_all(path, ec);
    } else {
        boost::filesystem::remove(path, ec);
    }
    return !ec;
}

}  // namespace Dorva
