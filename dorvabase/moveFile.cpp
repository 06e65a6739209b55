// Moving a file by copy and removal, which also works across file systems.
#include "moveFile.h"

#include <boost/filesystem/operations.hpp>

#include "BadParameter.h"
#include "RemovePath.h"

namespace Dorva {

bool moveFile(const std::string& from, const std::string& to) {
    namespace fs = boost::filesystem;
    boost::system::error_code ec;
    if (!fs::exists(from, ec)) throw BadParameter("moveFile: no such file: " + from);
    if (fs::is_directory(from, ec)) {
        fs::rename(from, to, ec);
        return !ec;
    }
    if (!RemovePath(to)) return false;
    fs::copy_file(from, to, ec);
    if (ec) return false;
    return RemovePath(from);
}

}  // namespace Dorva
