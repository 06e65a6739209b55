// Following a log file that another process writes: complete new lines as they appear.
#include "LogFollower.h"

#include <sys/stat.h>

#include <fstream>

std::vector<std::string> LogFollower::ReadNewLines() {
    std::vector<std::string> vecLines;
    struct stat status;
    if (stat(m_strPath.c_str(), &status) != 0) return vecLines;
    if (status.st_size < m_intOffset) {
        m_intOffset = 0;
        m_strPartial.clear();
    }
    if (status.st_size == m_intOffset) return vecLines;
    std::ifstream log(m_strPath.c_str(), std::ios::binary);
    log.seekg(m_intOffset);
    std::string strChunk(static_cast<size_t>(status.st_size - m_intOffset), '\0');
    log.read(&strChunk[0], static_cast<std::streamsize>(strChunk.size()));
    strChunk.resize(static_cast<size_t>(log.gcount()));
    m_intOffset += static_cast<long long>(strChunk.size());

    m_strPartial += strChunk;
    size_t start = 0;
    for (size_t end; (end = m_strPartial.find('\n', start)) != std::string::npos; start = end + 1) {
        vecLines.push_back(m_strPartial.substr(start, end - start));
    }
    m_strPartial.erase(0, start);
    return vecLines;
}

std::vector<std::string> LogFollower::ReadRest() {
    std::vector<std::string> vecLines = ReadNewLines();
    if (!m_strPartial.empty()) vecLines.push_back(m_strPartial);
    m_strPartial.clear();
    return vecLines;
}
