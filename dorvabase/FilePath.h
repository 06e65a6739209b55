// A file system path held in the normalised text form that the whole program compares and prints.
#pragma once

#include <boost/filesystem/path.hpp>
#include <string>

namespace Dorva {

// A default-constructed FilePath is "not initialised": it stands for "no path" (for example a
// program that could not be found). Building one from text initialises it, even from empty text.
class FilePath {
  public:
    FilePath() = default;
    explicit FilePath(const std::string& text);

    // The normalised text.
    std::string Get() const { return m_path.string(); }
    bool IsInitialized() const { return m_blnInitialized; }
    // True when the path names something on disk; false for an uninitialised path.
    bool Exists() const;
    const boost::filesystem::path& GetBoostPath() const { return m_path; }

    // Normalising: drops a leading "./"; turns "\" into "/" unless a blank, "(", ")" or "&"
    // follows it (those are shell escapes); collapses "//" and "/./" to "/" until none is left;
    // replaces the first "~" by $HOME when HOME is set.
    static std::string Normalize(const std::string& text);

  private:
    boost::filesystem::path m_path;
    bool m_blnInitialized = false;
};

}  // namespace Dorva
