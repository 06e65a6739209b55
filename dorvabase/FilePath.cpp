// A file system path held in the normalised text form that the whole program compares and prints.
#include "FilePath.h"

#include <boost/filesystem/operations.hpp>
#include <cstdlib>

namespace Dorva {

FilePath::FilePath(const std::string& text) : m_path(Normalize(text)), m_blnInitialized(true) {}

bool FilePath::Exists() const {
    if (!m_blnInitialized) return false;
    boost::system::error_code ec;
    return boost::filesystem::exists(m_path, ec);
}

static void ReplaceAll(std::string& text, const std::string& from, const std::string& to) {
    for (std::string::size_type pos = text.find(from); pos != std::string::npos;
         pos = text.find(from, pos)) {
        text.replace(pos, from.size(), to);
    }
}

std::string FilePath::Normalize(const std::string& text) {
    std::string result = text.compare(0, 2, "./") == 0 ? text.substr(2) : text;

    for (std::string::size_type i = 0; i < result.size(); ++i) {
        if (result[i] != '\\') continue;
        const char next = i + 1 < result.size() ? result[i + 1] : '\0';
        if (next != ' ' && next != '(' && next != ')' && next != '&') result[i] = '/';
    }

    // One pass of each can leave new pairs behind ("///", "/././"), hence the outer loop.
    while (result.find("//") != std::string::npos || result.find("/./") != std::string::npos) {
        ReplaceAll(result, "//", "/");
        ReplaceAll(result, "/./", "/");
    }

    const std::string::size_type tilde = result.find('~');
    const char* home = std::getenv("HOME");
    if (tilde != std::string::npos && home != nullptr) result.replace(tilde, 1, home);
    return result;
}

}  // namespace Dorva
