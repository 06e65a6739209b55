// Diagnostics, the summary and their text and JSON forms; the nearest keyword of a misspelling.
#include "CheckReport.h"

#include <algorithm>
#include <cstdio>

#include <nlohmann/json.hpp>

namespace Dorva {

void CheckResult::Add(const std::string& strFile, int intLine, bool blnError,
                      const std::string& strText) {
    vecDiagnostics.push_back({strFile, intLine, blnError, strText});
}

int CheckResult::Count(bool blnErrors) const {
    return static_cast<int>(
        std::count_if(vecDiagnostics.begin(), vecDiagnostics.end(),
                      [blnErrors](const CheckDiagnostic& d) { return d.blnError == blnErrors; }));
}

void WriteDiagnostics(const CheckResult& result, std::ostream& os) {
    for (const CheckDiagnostic& d : result.vecDiagnostics) {
        os << d.strFile << ':';
        if (d.intLine > 0) os << d.intLine << ':';
        os << (d.blnError ? " error: " : " warning: ") << d.strText << '\n';
    }
}

static std::string Bytes(long long intBytes) {
    char buffer[64];
    if (intBytes >= 10LL << 20)
        std::snprintf(buffer, sizeof buffer, "%lld bytes (%.0f MiB)", intBytes,
                      intBytes / 1048576.0);
    else
        std::snprintf(buffer, sizeof buffer, "%lld bytes", intBytes);
    return buffer;
}

void WriteSummary(const CheckSummary& s, std::ostream& os) {
    if (!s.blnGenerated) {
        os << "No summary: the errors above keep the grid from being made.\n";
        return;
    }
    char line[200];
    for (int a = 0; a < 3; ++a) {
        const CheckAxisSummary& x = s.axes[a];
        std::snprintf(line, sizeof line,
                      "%c: %d points, cell widths %.6g to %.6g, largest neighbour ratio %.3f\n",
                      "XYZ"[a], x.intPoints, x.dblMinWidth, x.dblMaxWidth, x.dblMaxRatio);
        os << line;
    }
    os << "Cells: " << s.intCells;
    if (s.blnSizesExact) os << " (" << s.intGeneratorBodyCells << " blocked)";
    os << '\n';
    const char* strMore = s.blnSizesExact
                              ? ""
                              : " as the line generator writes it; the run then rewrites "
                                "it with the cells that the surfaces block";
    os << "KX3.grid.dat: " << Bytes(s.intGridFileBytes) << strMore << '\n';
    os << s.strSolverFile << ": " << Bytes(s.intSolverFileBytes) << strMore << '\n';
    os << "Peak memory of the run, estimated: " << Bytes(s.intPeakMemoryBytes) << '\n';
    if (s.intFreeBytes >= 0) os << "Free in the run directory: " << Bytes(s.intFreeBytes) << '\n';
}

void WriteJson(const CheckResult& result, std::ostream& os) {
    nlohmann::json doc;
    doc["diagnostics"] = nlohmann::json::array();
    for (const CheckDiagnostic& d : result.vecDiagnostics)
        doc["diagnostics"].push_back({{"file", d.strFile},
                                      {"line", d.intLine},
                                      {"severity", d.blnError ? "error" : "warning"},
                                      {"message", d.strText}});
    doc["errors"] = result.Count(true);
    doc["warnings"] = result.Count(false);
    const CheckSummary& s = result.summary;
    if (s.blnGenerated) {
        nlohmann::json axes = nlohmann::json::array();
        for (const CheckAxisSummary& x : s.axes)
            axes.push_back({{"points", x.intPoints},
                            {"min_width", x.dblMinWidth},
                            {"max_width", x.dblMaxWidth},
                            {"max_ratio", x.dblMaxRatio}});
        doc["summary"] = {{"axes", axes},
                          {"cells", s.intCells},
                          {"generator_body_cells", s.intGeneratorBodyCells},
                          {"grid_file_bytes", s.intGridFileBytes},
                          {"solver_file", s.strSolverFile},
                          {"solver_file_bytes", s.intSolverFileBytes},
                          {"sizes_exact", s.blnSizesExact},
                          {"peak_memory_bytes", s.intPeakMemoryBytes}};
        if (s.intFreeBytes >= 0) doc["summary"]["free_bytes"] = s.intFreeBytes;
    } else {
        doc["summary"] = nullptr;
    }
    os << doc.dump(2) << '\n';
}

static std::size_t EditDistance(const std::string& a, const std::string& b) {
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t above = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, diagonal + (a[i - 1] != b[j - 1])});
            diagonal = above;
        }
    }
    return row[b.size()];
}

std::string NearestKeyword(const std::string& text, const std::vector<std::string>& vecCandidates) {
    std::string strBest;
    std::size_t intBest = std::string::npos;
    for (const std::string& c : vecCandidates) {
        const std::size_t d = EditDistance(text, c);
        if (d < intBest) {
            intBest = d;
            strBest = c;
        }
    }
    // A misspelling changes a few letters; beyond a third of the word it is another word.
    const std::size_t intAllowed = std::max<std::size_t>(2, strBest.size() / 3);
    return intBest <= intAllowed ? strBest : std::string();
}

}  // namespace Dorva
