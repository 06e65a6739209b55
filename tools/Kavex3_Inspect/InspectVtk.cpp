// VTK XML writers of the inspector: rectilinear grid, unstructured cells and surfaces, multiblock.
#include "InspectVtk.h"

#include <charconv>
#include <filesystem>
#include <fstream>

namespace {

// One output file, written through a text buffer; numbers in their shortest exact form.
class VtkFile {
  public:
    explicit VtkFile(const std::string& strPath) : m_strPath(strPath), m_ofs(strPath) {
        if (!m_ofs) throw InspectError(strPath + ": cannot write");
    }
    VtkFile& operator<<(const std::string& str) {
        m_strBuf += str;
        return Spill();
    }
    VtkFile& operator<<(const char* sz) {
        m_strBuf += sz;
        return Spill();
    }
    template <class T>
    VtkFile& Number(T value) {
        char buf[32];
        const auto result = std::to_chars(buf, buf + sizeof buf, value);
        m_strBuf.append(buf, result.ptr);
        return Spill();
    }
    // Values as one DataArray's text, 12 to a line.
    template <class It>
    void Values(It first, It last) {
        int n = 0;
        for (; first != last; ++first) {
            Number(*first);
            m_strBuf += ++n % 12 == 0 ? '\n' : ' ';
        }
        m_strBuf += '\n';
    }
    void Close() {
        m_ofs << m_strBuf;
        m_strBuf.clear();
        m_ofs.close();
        if (!m_ofs) throw InspectError(m_strPath + ": cannot write");
    }

  private:
    VtkFile& Spill() {
        if (m_strBuf.size() > (1u << 20)) {
            m_ofs << m_strBuf;
            m_strBuf.clear();
        }
        return *this;
    }
    std::string m_strPath;
    std::ofstream m_ofs;
    std::string m_strBuf;
};

// Text for an XML attribute.
std::string Escaped(const std::string& str) {
    std::string strOut;
    for (char c : str) {
        switch (c) {
            case '&':
                strOut += "&amp;";
                break;
            case '<':
                strOut += "&lt;";
                break;
            case '>':
                strOut += "&gt;";
                break;
            case '"':
                strOut += "&quot;";
                break;
            default:
                strOut += c;
        }
    }
    return strOut;
}

const char* const s_szHeader = "<?xml version=\"1.0\"?>\n";

std::string DataArray(const char* szType, const std::string& strName, int intComponents) {
    return std::string("<DataArray type=\"") + szType + "\" Name=\"" + strName +
           "\" NumberOfComponents=\"" + std::to_string(intComponents) + "\" format=\"ascii\">\n";
}

void WriteGrid(const InspectRun& run, const std::string& strPath) {
    const std::array<int, 3> v3iCells = {run.Cells(0), run.Cells(1), run.Cells(2)};
    std::vector<unsigned char> vecBlocked(static_cast<size_t>(v3iCells[0]) * v3iCells[1] *
                                          v3iCells[2]);
    for (const FEL_vector3<int>& v3i : run.vecBlocked)
        vecBlocked[((static_cast<size_t>(v3i.z) - 1) * v3iCells[1] + (v3i.y - 1)) * v3iCells[0] +
                   (v3i.x - 1)] = 1;
    const std::string strExtent = "0 " + std::to_string(v3iCells[0]) + " 0 " +
                                  std::to_string(v3iCells[1]) + " 0 " + std::to_string(v3iCells[2]);
    VtkFile file(strPath);
    file << s_szHeader
         << "<VTKFile type=\"RectilinearGrid\" version=\"1.0\" byte_order=\"LittleEndian\">\n"
         << "<RectilinearGrid WholeExtent=\"" << strExtent << "\">\n<Piece Extent=\"" << strExtent
         << "\">\n<CellData Scalars=\"blocked\">\n"
         << DataArray("UInt8", "blocked", 1);
    file.Values(vecBlocked.begin(), vecBlocked.end());
    file << "</DataArray>\n</CellData>\n<Coordinates>\n";
    for (int a = 0; a < 3; ++a) {
        file << DataArray("Float32", std::string(1, "xyz"[a]), 1);
        file.Values(run.vecAxes[a].begin(), run.vecAxes[a].end());
        file << "</DataArray>\n";
    }
    file << "</Coordinates>\n</Piece>\n</RectilinearGrid>\n</VTKFile>\n";
    file.Close();
}

// An unstructured grid of cells of one VTK type, each with its own run of points.
void WriteCells(const std::string& strPath, const std::vector<float>& vecPoints,
                const std::vector<int>& vecConnectivity, int intCorners, int intVtkType,
                const std::vector<std::pair<std::string, std::vector<int>>>& vecFields) {
    const size_t nCells = vecConnectivity.size() / intCorners;
    VtkFile file(strPath);
    file << s_szHeader
         << "<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" byte_order=\"LittleEndian\">\n"
         << "<UnstructuredGrid>\n<Piece NumberOfPoints=\"" << std::to_string(vecPoints.size() / 3)
         << "\" NumberOfCells=\"" << std::to_string(nCells) << "\">\n<Points>\n"
         << DataArray("Float32", "Points", 3);
    file.Values(vecPoints.begin(), vecPoints.end());
    file << "</DataArray>\n</Points>\n<Cells>\n" << DataArray("Int32", "connectivity", 1);
    file.Values(vecConnectivity.begin(), vecConnectivity.end());
    file << "</DataArray>\n" << DataArray("Int32", "offsets", 1);
    std::vector<long> vecOffsets(nCells);
    for (size_t n = 0; n < nCells; ++n) vecOffsets[n] = static_cast<long>(n + 1) * intCorners;
    file.Values(vecOffsets.begin(), vecOffsets.end());
    file << "</DataArray>\n" << DataArray("UInt8", "types", 1);
    const std::vector<int> vecTypes(nCells, intVtkType);
    file.Values(vecTypes.begin(), vecTypes.end());
    file << "</DataArray>\n</Cells>\n";
    if (!vecFields.empty()) {
        file << "<CellData>\n";
        for (const auto& field : vecFields) {
            file << DataArray("Int32", field.first, 1);
            file.Values(field.second.begin(), field.second.end());
            file << "</DataArray>\n";
        }
        file << "</CellData>\n";
    }
    file << "</Piece>\n</UnstructuredGrid>\n</VTKFile>\n";
    file.Close();
}

void WriteBlocked(const InspectRun& run, const std::string& strPath) {
    std::vector<float> vecPoints;
    std::vector<int> vecConnectivity, vecOne, vecI, vecJ, vecK;
    for (const FEL_vector3<int>& v3i : run.vecBlocked) {
        const int intFirst = static_cast<int>(vecPoints.size() / 3);
        // VTK's hexahedron: the lower face counter-clockwise, then the upper face likewise.
        static const int s_corner[8][3] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0},
                                           {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};
        for (const auto& corner : s_corner) {
            vecPoints.push_back(run.vecAxes[0][v3i.x - 1 + corner[0]]);
            vecPoints.push_back(run.vecAxes[1][v3i.y - 1 + corner[1]]);
            vecPoints.push_back(run.vecAxes[2][v3i.z - 1 + corner[2]]);
            vecConnectivity.push_back(intFirst + static_cast<int>(&corner - s_corner));
        }
        vecOne.push_back(1);
        vecI.push_back(v3i.x);
        vecJ.push_back(v3i.y);
        vecK.push_back(v3i.z);
    }
    WriteCells(strPath, vecPoints, vecConnectivity, 8, 12,
               {{"blocked", vecOne}, {"I", vecI}, {"J", vecJ}, {"K", vecK}});
}

void WriteSurface(const InspectSurface& surface, const std::string& strPath) {
    std::vector<float> vecPoints;
    vecPoints.reserve(surface.vecPoints.size() * 3);
    for (const FEL_vector3<float>& v3f : surface.vecPoints)
        vecPoints.insert(vecPoints.end(), {v3f.x, v3f.y, v3f.z});
    std::vector<int> vecConnectivity;
    vecConnectivity.reserve(surface.vecTriangles.size() * 3);
    for (const auto& tri : surface.vecTriangles)
        vecConnectivity.insert(vecConnectivity.end(), tri.begin(), tri.end());
    WriteCells(strPath, vecPoints, vecConnectivity, 3, 5, {});
}

}  // namespace

std::vector<std::string> WriteInspectVtk(const InspectRun& run, const std::string& strOutDir,
                                         const std::string& strName) {
    std::vector<std::string> vecNames = {"grid.vtr", "blocked.vtu"};
    WriteGrid(run, strOutDir + "/grid.vtr");
    WriteBlocked(run, strOutDir + "/blocked.vtu");
    for (size_t b = 0; b < run.vecBodies.size(); ++b) {
        const std::string strStem = std::filesystem::path(run.vecBodies[b].strFile).stem().string();
        vecNames.push_back("body" + std::to_string(b + 1) + "_" + strStem + ".vtu");
        WriteSurface(run.vecBodies[b].surface, strOutDir + "/" + vecNames.back());
    }
    VtkFile file(strOutDir + "/" + strName + ".vtm");
    file << s_szHeader
         << "<VTKFile type=\"vtkMultiBlockDataSet\" version=\"1.0\" byte_order=\"LittleEndian\">\n"
         << "<vtkMultiBlockDataSet>\n";
    for (size_t n = 0; n < vecNames.size(); ++n)
        file << "<DataSet index=\"" << std::to_string(n) << "\" name=\""
             << Escaped(std::filesystem::path(vecNames[n]).stem().string()) << "\" file=\""
             << Escaped(vecNames[n]) << "\"/>\n";
    file << "</vtkMultiBlockDataSet>\n</VTKFile>\n";
    file.Close();
    vecNames.push_back(strName + ".vtm");
    return vecNames;
}
