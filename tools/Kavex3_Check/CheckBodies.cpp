// Body files read as the run reads them, and the shape of each surface.
#include "CheckBodies.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <unordered_map>

#include "FEL_cell.h"
#include "FEL_exception.h"
#include "driver/ReadGridFile.h"

namespace Dorva {

namespace {

struct VertexKey {
    std::uint32_t bits[3];
    bool operator==(const VertexKey& o) const {
        return bits[0] == o.bits[0] && bits[1] == o.bits[1] && bits[2] == o.bits[2];
    }
};

struct VertexHash {
    std::size_t operator()(const VertexKey& k) const {
        return (std::size_t(k.bits[0]) * 73856093u) ^ (std::size_t(k.bits[1]) * 19349663u) ^
               (std::size_t(k.bits[2]) * 83492791u);
    }
};

VertexKey KeyOf(const FEL_vector3<float>& v) {
    VertexKey k;
    const float xyz[3] = {v.x, v.y, v.z};
    std::memcpy(k.bits, xyz, sizeof k.bits);
    return k;
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
    std::unordered_map<VertexKey, std::uint32_t, VertexHash> ids;
    ids.reserve(vecVertices.size() / 2);
    std::vector<std::uint64_t> edges;
    edges.reserve(vecVertices.size());
    std::uint32_t corner[3];
    for (std::size_t i = 0; i < vecVertices.size(); ++i) {
        corner[i % 3] = ids.emplace(KeyOf(vecVertices[i]), std::uint32_t(ids.size())).first->second;
        if (i % 3 != 2) continue;
        for (int e = 0; e < 3; ++e) {
            const std::uint64_t a = corner[e], b = corner[(e + 1) % 3];
            edges.push_back(std::min(a, b) << 32 | std::max(a, b));
        }
    }
    std::sort(edges.begin(), edges.end());
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
