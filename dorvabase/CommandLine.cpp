// The process's command line, parsed once and asked by parameter name from anywhere.
#include "CommandLine.h"

#include <cstdlib>
#include <iostream>

#include "DebugPrint.h"
#include "GetExecutablePath.h"

namespace Dorva {

bool CommandLine::s_blnInitialized = false;
FilePath CommandLine::s_fpProgramPath;
std::vector<FilePath> CommandLine::s_vecFiles;
std::map<std::string, std::string> CommandLine::s_mapArguments;

static void FailMisuse(const char* message) {
    std::cerr << "*** Error: " << message << " Failed condition: ( false )" << std::endl;
    std::abort();
}

CommandLine::CommandLine(const CommandLine&) {
    FailMisuse("CommandLine copy constructor is unimplemented and was called.");
}

CommandLine& CommandLine::operator=(const CommandLine&) {
    FailMisuse("CommandLine operator= is unimplemented and was called.");
    return *this;
}

void CommandLine::SetParameters(int argc, char** argv) {
    s_vecFiles.clear();
    s_mapArguments.clear();
    s_fpProgramPath = FilePath(argc > 0 ? argv[0] : "");
    if (argc > 0 && !s_fpProgramPath.Exists()) s_fpProgramPath = GetExecutablePath(argv[0]);

    std::string strName;
    std::string strValue;
    bool blnParameterSeen = false;
    // A pending value without a name is neither stored nor cleared: that is the "=" quirk.
    auto storePending = [&]() {
        if (strName.empty()) return;
        s_mapArguments.insert({strName, strValue});
        strName.clear();
        strValue.clear();
    };
    for (int i = 1; i < argc; ++i) {
        const std::string strArg = argv[i];
        const bool blnDashed = !strArg.empty() && strArg[0] == '-';
        if (!blnParameterSeen && !blnDashed) {
            s_vecFiles.emplace_back(strArg);
        } else if (strArg == "--") {
            storePending();
            for (++i; i < argc; ++i) s_vecFiles.emplace_back(argv[i]);
        } else if (blnDashed) {
            storePending();
            const std::string::size_type nameStart = strArg.find_first_not_of('-');
            const std::string strRest =
                nameStart == std::string::npos ? std::string() : strArg.substr(nameStart);
            const std::string::size_type equals = strRest.find('=');
            if (equals == std::string::npos) {
                strName = strRest;
            } else {
                s_mapArguments.insert({strRest.substr(0, equals), strRest.substr(equals + 1)});
            }
            blnParameterSeen = true;
        } else {
            strValue += strValue.empty() ? strArg : " " + strArg;
        }
    }
    storePending();
    s_blnInitialized = true;
    int intPrintLevel = 0;
    GetArgument("debug", intPrintLevel);  // reports nothing when "debug" is missing or empty
    SetDebugPrintLevel(intPrintLevel);
}

bool CommandLine::GetArgument(const std::string& name) {
    return s_mapArguments.count(name) != 0;
}

const std::string* CommandLine::FindValue(const std::string& name) {
    const auto found = s_mapArguments.find(name);
    if (found == s_mapArguments.end()) {
        if (name != "debug") PrintErrorDebugHelper(1, "Unable to find parameter for: " + name);
        return nullptr;
    }
    if (found->second.empty()) {
        if (name != "debug") PrintErrorDebugHelper(1, "No argument given for parameter: " + name);
        return nullptr;
    }
    return &found->second;
}

bool CommandLine::GetArgument(const std::string& name, int& value) {
    const std::string* text = FindValue(name);
    if (text == nullptr) return false;
    char* end = nullptr;
    value = static_cast<int>(std::strtol(text->c_str(), &end, 0));
    return end != text->c_str();
}

bool CommandLine::GetArgument(const std::string& name, float& value) {
    const std::string* text = FindValue(name);
    if (text == nullptr) return false;
    char* end = nullptr;
    value = static_cast<float>(std::strtod(text->c_str(), &end));
    return end != text->c_str();
}

bool CommandLine::GetArgument(const std::string& name, double& value) {
    const std::string* text = FindValue(name);
    if (text == nullptr) return false;
    char* end = nullptr;
    value = std::strtod(text->c_str(), &end);
    return end != text->c_str();
}

bool CommandLine::GetArgument(const std::string& name, std::string& value) {
    const std::string* text = FindValue(name);
    if (text == nullptr) return false;
    value = *text;
    return true;
}

bool CommandLine::GetArgument(const std::string& name, bool& value) {
    const std::string* text = FindValue(name);
    if (text == nullptr) return false;
    const std::string& s = *text;
    if (s == "true" || s == "t" || s == "yes" || s == "y") {
        value = true;
    } else if (s == "false" || s == "f" || s == "no" || s == "n") {
        value = false;
    } else if (s.find_first_not_of("+-.0123456789") == std::string::npos) {
        value = std::strtod(s.c_str(), nullptr) != 0.0;
    } else {
        return false;
    }
    return true;
}

bool CommandLine::GetArgument(const std::string& name, std::vector<std::string>& value) {
    const std::string* text = FindValue(name);
    if (text == nullptr) return false;
    std::string::size_type start = text->find_first_not_of(' ');
    while (start != std::string::npos) {
        const std::string::size_type end = text->find(' ', start);
        value.push_back(text->substr(start, end - start));
        start = text->find_first_not_of(' ', end);
    }
    return true;
}

}  // namespace Dorva
