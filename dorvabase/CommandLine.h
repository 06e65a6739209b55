// The process's command line, parsed once and asked by parameter name from anywhere.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "FilePath.h"

namespace Dorva {

// Parameters are "-name value", "--name value" or "-name=value". Words after a parameter join
// its value, separated by one blank; words before the first parameter, and every word after "--",
// are files. The first occurrence of a name wins. After "-a=b", bare words collect in a value
// without a name, which the next parameter written without "=" takes over as the start of its own
// value: -a=b c -d e gives d the value "c e".
class CommandLine {
  public:
    CommandLine() = default;
    // Not copyable: both report the misuse on stderr and abort.
    CommandLine(const CommandLine&);
    CommandLine& operator=(const CommandLine&);

    // Replaces whatever an earlier call stored.
    static void SetParameters(int argc, char** argv);
    static bool Initialized() { return s_blnInitialized; }
    static const FilePath& GetProgramPath() { return s_fpProgramPath; }
    static void GetFileList(std::vector<FilePath>& files) { files = s_vecFiles; }

    // Whether the name was given at all, with or without a value.
    static bool GetArgument(const std::string& name);

    // True when value was set. A missing name or an empty value gives false and a diagnostic
    // at debug level 1 (none for "debug" itself). Numbers: true when at least one character
    // was converted; value is set even when none was (then 0). int takes "0x" and "0" prefixes.
    // bool: "true", "t", "yes", "y" / "false", "f", "no", "n", or a number (true unless 0);
    // any other text gives false and leaves value alone. vector: the words, appended.
    static bool GetArgument(const std::string& name, int& value);
    static bool GetArgument(const std::string& name, float& value);
    static bool GetArgument(const std::string& name, double& value);
    static bool GetArgument(const std::string& name, std::string& value);
    static bool GetArgument(const std::string& name, bool& value);
    static bool GetArgument(const std::string& name, std::vector<std::string>& value);

  private:
    // The value of name, or null (after the diagnostic) when it is missing or empty.
    static const std::string* FindValue(const std::string& name);

    static bool s_blnInitialized;
    static FilePath s_fpProgramPath;
    static std::vector<FilePath> s_vecFiles;
    static std::map<std::string, std::string> s_mapArguments;
};

}  // namespace Dorva
