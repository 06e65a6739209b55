// What a check found: diagnostics in the compiler form, and the summary of the grid the run makes.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace Dorva {

struct CheckDiagnostic {
    std::string strFile;
    int intLine = 0;  // 1-based; 0 when the diagnostic is about the file as a whole
    bool blnError = true;
    std::string strText;
};

struct CheckAxisSummary {
    int intPoints = 0;
    double dblMinWidth = 0.0;  // of the cells with a width; the zero-width end cells don't count
    double dblMaxWidth = 0.0;
    double dblMaxRatio = 1.0;  // largest ratio of neighbouring widths
};

struct CheckSummary {
    bool blnGenerated = false;  // false: an error stopped the check before the grid was made
    CheckAxisSummary axes[3];
    long long intCells = 0;
    long long intGeneratorBodyCells = 0;
    std::string strSolverFile;
    long long intGridFileBytes = 0;
    long long intSolverFileBytes = 0;
    // With surface bodies these are the sizes of the files as the line generator writes them; the
    // run rewrites both with the cells that the intersection blocks, which only the run finds.
    bool blnSizesExact = true;
    long long intPeakMemoryBytes = 0;
    long long intFreeBytes = -1;  // in the run directory; -1 without one
};

struct CheckResult {
    std::vector<CheckDiagnostic> vecDiagnostics;
    CheckSummary summary;

    void Add(const std::string& strFile, int intLine, bool blnError, const std::string& strText);
    int Count(bool blnErrors) const;
};

// The diagnostics as "FILE:LINE: error: TEXT" (no LINE for a whole file), one a line.
void WriteDiagnostics(const CheckResult& result, std::ostream& os);
// The summary, for a person at a terminal.
void WriteSummary(const CheckSummary& summary, std::ostream& os);
// Everything as one JSON document.
void WriteJson(const CheckResult& result, std::ostream& os);

// The candidate closest to text by edit distance, if close enough to be a misspelling; else "".
std::string NearestKeyword(const std::string& text, const std::vector<std::string>& vecCandidates);

}  // namespace Dorva
