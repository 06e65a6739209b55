// Body files read as the run reads them, and the shape of each surface.
#include "CheckBodies.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "FEL_cell.h"
#include "FEL_exception.h"
#include "driver/ReadGridFile.h"

namespace Dorva {

namespace {

// Splitmix64's finaliser over a vertex's three coordinate bit patterns.
std::uint64_t HashOf(const FEL_vector3<float>& v) {
    std::uint32_t bits[3];
    const float xyz[3] = {v.x, v.y, v.z};
    std::memcpy(bits, xyz, sizeof bits);
    std::uint64_t h = (std::uint64_t(bits[0]) << 32 | bits[1]) ^ (std::uint64_t(bits[2]) << 17);
    h = (h ^ (h >> 30)) * 0xbf58476d1ce4e5b9ull;
    h = (h ^ (h >> 27)) * 0x94d049bb133111ebull;
    return h ^ (h >> 31);
}

bool SameBits(const FEL_vector3<float>& a, const FEL_vector3<float>& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// One number per distinct vertex (bit-equal coordinates, as the STL reader merges them), in an
// open-addressing table: the body's vertices are millions.
std::vector<std::uint32_t> VertexIds(const std::vector<FEL_vector3<float>>& v) {
    std::size_t size = 16;
    while (size < 2 * v.size()) size *= 2;
    std::vector<std::uint32_t> first(size, 0);  // 1 + the first vertex with the slot's key
    std::vector<std::uint32_t> ids(v.size());
    std::uint32_t next = 0;
    for (std::size_t i = 0; i < v.size(); ++i) {
        std::size_t slot = HashOf(v[i]) & (size - 1);
        while (first[slot] != 0 && !SameBits(v[first[slot] - 1], v[i]))
            slot = (slot + 1) & (size - 1);
        if (first[slot] == 0) {
            first[slot] = std::uint32_t(i + 1);
            ids[i] = next++;
        } else {
            ids[i] = ids[first[slot] - 1];
        }
    }
    return ids;
}

// Least significant digit first, 16 bits a pass, as many passes as the largest key needs.
void RadixSort(std::vector<std::uint64_t>& keys) {
    std::uint64_t largest = 0;
    for (std::uint64_t k : keys) largest = std::max(largest, k);
    std::vector<std::uint64_t> other(keys.size());
    for (int shift = 0; shift < 64 && (largest >> shift) != 0; shift += 16) {
        std::vector<std::size_t> start(65537, 0);
        for (std::uint64_t k : keys) ++start[((k >> shift) & 0xffff) + 1];
        for (std::size_t d = 1; d < start.size(); ++d) start[d] += start[d - 1];
        for (std::uint64_t k : keys) other[start[(k >> shift) & 0xffff]++] = k;
        keys.swap(other);
    }
}

std::string WorkingDirectory() {
    char buffer[4096];
    return getcwd(buffer, sizeof buffer) ? std::string(buffer) : std::string("?");
}

// The reader's own words, without the place in the reader's source that it adds.
std::string ReasonOf(const std::string& strWhat) {
    const std::string::size_type at = strWhat.find(" Failed in ");
    return at == std::string::npos ? strWhat : strWhat.substr(0, at);
}

struct BodyCheck {
    const _BodyStruct& body;
    int intNumber;
    std::string strFile;  // the project
    int intLine;
    CheckResult& result;

    std::string Name() const {
        return "body " + std::to_string(intNumber) + " ('" + body.strPointsFile + "')";
    }
    void Say(bool blnError, const std::string& text) {
        result.Add(strFile, intLine, blnError, Name() + ": " + text);
    }

    bool Opens(const std::string& path, const std::string& what) {
        FILE* f = std::fopen(path.c_str(), "r");
        if (f) {
            std::fclose(f);
            return true;
        }
        const std::string from =
            !path.empty() && path[0] == '/' ? "" : " (relative to " + WorkingDirectory() + ")";
        Say(true, "cannot open " + what + " '" + path + "'" + from + ": " + std::strerror(errno));
        return false;
    }

    // False when the surface can't shape a grid: a vertex not finite, no vertex, or no extent
    // on an axis. Whether it is closed is told in the grid's frame, where the run sees it.
    bool Shape() {
        float lo[3] = {HUGE_VALF, HUGE_VALF, HUGE_VALF},
              hi[3] = {-HUGE_VALF, -HUGE_VALF, -HUGE_VALF};
        long vertices = 0;
        for (int z = 0; z < body.pMesh->get_n_zones(); ++z) {
            FEL_pointer<FEL_mesh> zone = body.pMesh->get_zone(z);
            FEL_vertex_cell_iter it;
            FEL_vector3<float> v;
            for (zone->begin(&it); !it.done; ++it, ++vertices) {
                zone->coordinates_at_vertex_cell(it.cell, &v);
                if (!std::isfinite(v.x) || !std::isfinite(v.y) || !std::isfinite(v.z)) {
                    char text[160];
                    std::snprintf(text, sizeof text, "vertex %ld is not finite (%g, %g, %g)",
                                  vertices + 1, v.x, v.y, v.z);
                    Say(true, text);
                    return false;
                }
                for (int a = 0; a < 3; ++a) {
                    lo[a] = std::min(lo[a], v[a]);
                    hi[a] = std::max(hi[a], v[a]);
                }
            }
        }
        if (vertices == 0) {
            Say(true, "the surface holds no triangles");
            return false;
        }
        bool blnExtent = true;
        for (int a = 0; a < 3; ++a) {
            if (lo[a] != hi[a]) continue;
            blnExtent = false;
            Say(true, std::string("the surface has no extent along ") + "XYZ"[a] +
                          " (all its vertices at " + std::to_string(lo[a]) +
                          "): its box gives the " + "XYZ"[a] +
                          " grid line a single distinct point");
        }
        return blnExtent;
    }
};

}  // namespace

long OpenEdgeCount(const std::vector<FEL_vector3<float>>& vecVertices) {
    const std::vector<std::uint32_t> ids = VertexIds(vecVertices);
    int bits = 1;  // of the largest vertex number, so that an edge's key is as short as it can be
    for (std::uint32_t id : ids) bits = std::max(bits, 32 - __builtin_clz(id | 1));
    std::vector<std::uint64_t> edges;
    edges.reserve(vecVertices.size());
    for (std::size_t i = 0; i + 2 < ids.size(); i += 3)
        for (int e = 0; e < 3; ++e) {
            const std::uint64_t a = ids[i + e], b = ids[i + (e + 1) % 3];
            edges.push_back(std::min(a, b) << bits | std::max(a, b));
        }
    RadixSort(edges);
    long open = 0;
    for (std::size_t i = 0; i < edges.size();) {
        std::size_t j = i;
        while (j < edges.size() && edges[j] == edges[i]) ++j;
        if (j - i == 1) ++open;
        i = j;
    }
    return open;
}

bool CheckBodyFiles(std::vector<_BodyStruct>& vecBodies, const std::vector<int>& vecPointsLines,
                    const std::string& strProject, const std::string& strRunDir,
                    std::vector<std::string>& vecCutSources, CheckResult& result) {
    bool blnAllRead = true;
    vecCutSources.assign(vecBodies.size(), std::string());
    for (std::size_t i = 0; i < vecBodies.size(); ++i) {
        _BodyStruct& body = vecBodies[i];
        const int line = i < vecPointsLines.size() ? vecPointsLines[i] : 0;
        BodyCheck check{body, int(i) + 1, strProject, line, result};
        if (body.eBodyType <= BODY_ZCUT) {
            // The front end places the cut planes in the run directory as N-x.cut.
            vecCutSources[i] = strRunDir.empty()
                                   ? body.strPointsFile
                                   : strRunDir + "/" + std::to_string(i + 1) + "-x.cut";
            blnAllRead &= check.Opens(vecCutSources[i], "its cut planes");
            continue;
        }
        if (!check.Opens(body.strPointsFile, "its surface")) {
            blnAllRead = false;
            continue;
        }
        std::vector<_BodyStruct> one(1, body);
        try {
            ReadBodies(one);
        } catch (const FEL_exception& e) {
            check.Say(true, "the file reads as no known mesh: " + ReasonOf(e.what()));
            blnAllRead = false;
            continue;
        } catch (const std::exception& e) {
            check.Say(true, std::string("the file can't be read: ") + e.what());
            blnAllRead = false;
            continue;
        }
        body.pMesh = one[0].pMesh;
        blnAllRead &= check.Shape();
    }
    return blnAllRead;
}

}  // namespace Dorva
