// Test helpers: a fresh temporary directory removed with everything in it, and whole-file I/O.
#pragma once

#include <stdlib.h>

#include <boost/filesystem/operations.hpp>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>

class ScratchDir {
  public:
    ScratchDir() {
        char pattern[] = "/tmp/kavex_test_XXXXXX";
        if (mkdtemp(pattern) == nullptr) throw std::runtime_error("mkdtemp failed");
        m_path = pattern;
    }
    ~ScratchDir() {
        boost::system::error_code ec;
        boost::filesystem::remove_all(m_path, ec);
    }
    ScratchDir(const ScratchDir&) = delete;
    ScratchDir& operator=(const ScratchDir&) = delete;

    const std::string& Path() const { return m_path; }
    std::string operator/(const std::string& name) const { return m_path + "/" + name; }

  private:
    std::string m_path;
};

inline std::string ReadWholeFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline void WriteWholeFile(const std::string& path, const std::string& text) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << text;
}

// Every file in a directory by name, with its bytes.
inline std::map<std::string, std::string> ReadFolder(const std::string& dir) {
    std::map<std::string, std::string> files;
    for (const auto& entry : boost::filesystem::directory_iterator(dir))
        files[entry.path().filename().string()] = ReadWholeFile(entry.path().string());
    return files;
}

inline bool PathExists(const std::string& path) {
    boost::system::error_code ec;
    return boost::filesystem::exists(path, ec);
}
