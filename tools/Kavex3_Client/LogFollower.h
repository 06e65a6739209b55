// Following a log file that another process writes: complete new lines as they appear.
#pragma once

#include <string>
#include <vector>

// Reads from where the last call stopped. A file that shrank was started afresh (the worker
// truncates its logs at start): reading goes back to its beginning. A missing file has no lines.
class LogFollower {
  public:
    explicit LogFollower(const std::string& strPath) : m_strPath(strPath) {}

    // The lines completed since the last call, without their line ends.
    std::vector<std::string> ReadNewLines();
    // As ReadNewLines, and then a last line without a line end, if the file ends in one.
    std::vector<std::string> ReadRest();

  private:
    std::string m_strPath;
    long long m_intOffset = 0;
    std::string m_strPartial;
};
