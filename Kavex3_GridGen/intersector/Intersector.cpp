// The intersection stage: search grids per body zone, the walk from the grid's corners through
// empty cells, the outer-layer copy, and the debug dumps.
#include "intersector/Intersector.h"

#include <algorithm>
#include <fstream>
#include <iostream>

#include "FilePath.h"
#include "intersector/CellWalk.h"
#include "intersector/Parallel.h"
#include "intersector/Witness.h"
#include "intersector/convert.h"

std::size_t IntersectBytesPerCell() {
    // The last term covers the walks' bit rows.
    return sizeof(GridCell) + 4 * sizeof(std::uint32_t) + 1;
}

namespace {
const FEL_vector3<int> kSearchDims(10, 10, 10);

void PushCorners(CellWalk& walk) {
    int X = walk.Count(0) - 1, Y = walk.Count(1) - 1, Z = walk.Count(2) - 1;
    const int seeds[8][3] = {{X, Y, Z}, {0, Y, Z}, {X, 0, Z}, {X, Y, 0},
                             {0, 0, Z}, {X, 0, 0}, {0, Y, 0}, {0, 0, 0}};
    // The last pushed is the first visited.
    for (int n = 7; n >= 0; --n) walk.Seed(seeds[n][0], seeds[n][1], seeds[n][2]);
}

// Every cell gets its witnesses, then the walk keeps those of the cells it reaches.
void WalkFast(IntersectContext& run, const std::vector<SearchGrid>& grids) {
    GridCellArray& cells = run.m_gridCells;
    const int threads = run.Threads();
    // Brings the cells' pages in on all threads while every cell is still all zero bytes, so
    // that the witness lists land in memory already there.
    char* bytes = reinterpret_cast<char*>(cells.Data());
    const std::size_t size = cells.Size() * sizeof(GridCell), pieces = 16 * std::size_t(threads);
    RunPieces(int(pieces), threads, [&](int piece) {
        for (std::size_t b = size * piece / pieces; b < size * (piece + 1) / pieces; b += 4096)
            bytes[b] = 0;
    });
    FindAllWitnesses(cells, grids, threads);
    CellWalk walk(cells);
    walk.OpenAll();
    for (std::uint32_t handle = 1; handle <= cells.ListCount(); ++handle)
        walk.Close(cells.ListCell(handle));
    PushCorners(walk);
    walk.Run();
    const std::uint16_t mark = run.NewVisitMark();
    GridCell* data = cells.Data();
    walk.EachVisited(threads, [data, mark](std::size_t id, bool open) {
        data[id].m_ushtCounter = mark;
        if (!open) data[id].m_eState = CELL_INTERSECTED;
    });
    std::vector<std::uint32_t> ids, starts;
    std::vector<Triangle*> entries;
    // The lists run in ascending cell order.
    for (std::uint32_t handle = 1; handle <= cells.ListCount(); ++handle) {
        std::size_t id = cells.ListCell(handle);
        if (data[id].m_ushtCounter != mark) continue;
        TriangleSpan s = cells.Triangles(data[id]);
        ids.push_back(std::uint32_t(id));
        starts.push_back(std::uint32_t(entries.size()));
        entries.insert(entries.end(), s.begin(), s.end());
    }
    cells.SetLists(ids, starts, std::move(entries));
}

// Intersected states move from the second layer to the outermost on each side: k, then j, then i.
// An axis of one cell has no second layer and is left alone.
void CopyOuterLayers(GridCellArray& cells) {
    int n[3] = {cells.Count(0), cells.Count(1), cells.Count(2)};
    for (int axis = 2; axis >= 0; --axis) {
        if (n[axis] < 2) continue;
        int u = axis == 0 ? 1 : 0, v = axis == 2 ? 1 : 2;
        for (int p = 0; p < n[u]; ++p)
            for (int q = 0; q < n[v]; ++q) {
                int idx[3];
                idx[u] = p;
                idx[v] = q;
                const int pairs[2][2] = {{1, 0}, {n[axis] - 2, n[axis] - 1}};
                for (const auto& pr : pairs) {
                    idx[axis] = pr[0];
                    bool hit = cells(idx[0], idx[1], idx[2]).m_eState == CELL_INTERSECTED;
                    idx[axis] = pr[1];
                    if (hit) cells(idx[0], idx[1], idx[2]).m_eState = CELL_INTERSECTED;
                }
            }
    }
}

void WriteZone(std::ostream& out, const std::vector<Triangle*>& tris) {
    std::size_t n = tris.size();
    out << "TITLE = \"FEL Intersected Cells\"" << std::endl;
    out << "VARIABLES = \"X\" \"Y\" \"Z\"" << std::endl;
    out << "ZONE N=" << 3 * n << ", E =" << n << ", F=FEPOINT, ET=TRIANGLE" << std::endl;
    for (const Triangle* t : tris) {
        const double* v = t->m_adblVertices;
        out << v[0] << " " << v[1] << " " << v[2] << "   " << v[3] << " " << v[4] << " " << v[5]
            << "   " << v[6] << " " << v[7] << " " << v[8] << std::endl;
    }
    for (std::size_t c = 1; c <= 3 * n; ++c) out << c << std::endl;
}

void WriteDump(IntersectContext& run, const std::string& path,
               const std::function<void(std::ostream&)>& write) {
    if (run.m_fnWriteDump) {
        run.m_fnWriteDump(path, write);
        return;
    }
    std::ofstream out(path, std::ios::out | std::ios::trunc);
    write(out);
}
}  // namespace

void OutputTriangles(std::vector<std::vector<Triangle*>>& lists, std::ostream& out) {
    for (const auto& l : lists) WriteZone(out, l);
}

void OutputTriangles(GridCellArray& cells, FEL_vector3<int> dims, std::ostream& out) {
    std::vector<Triangle*> all;
    for (int i = 0; i < dims[0] - 1; ++i)
        for (int j = 0; j < dims[1] - 1; ++j)
            for (int k = 0; k < dims[2] - 1; ++k) {
                TriangleSpan s = cells.Triangles(cells(i, j, k));
                all.insert(all.end(), s.begin(), s.end());
            }
    WriteZone(out, all);
}

void IntersectZones(IntersectContext& run, std::vector<SurfaceZone>& zones,
                    const std::string& folder) {
    GridCellArray& cells = run.m_gridCells;
    const ReferenceProcedure* reference = run.m_options.m_pReference;
    std::vector<std::vector<Triangle*>> lists;
    std::vector<FEL_vector3<float>> mins, maxs;
    std::vector<SearchGrid> grids;
    for (SurfaceZone& z : zones) {
        cells.Own(z.m_vecTriangles);
        if (run.m_blnDebug)
            std::cout << "Number of triangles: " << z.m_vecTriangles.size() << std::endl;
        lists.push_back(z.m_vecTriangles);
        FEL_vector3<float> box[2] = {z.m_v3fMin - FEL_vector3<float>(1.0f, 1.0f, 1.0f),
                                     z.m_v3fMax + FEL_vector3<float>(1.0f, 1.0f, 1.0f)};
        mins.push_back(box[0]);
        maxs.push_back(box[1]);
        grids.emplace_back();
        if (run.m_blnDebug)
            std::cout << "start discrete  " << box[0] << "  " << box[1] << std::endl;
        if (reference) {
            SizeSearchGrid(grids.back(), box, kSearchDims);
            reference->m_pfnDiscretize(grids.back(), lists, mins, maxs);
        } else {
            DiscretizeSpace(grids.back(), box, kSearchDims, lists, mins, maxs);
        }
        if (run.m_blnDebug) std::cout << "end discrete" << std::endl;
    }
    if (run.m_blnDebug)
        WriteDump(run, Dorva::FilePath(folder + "//completeTris.dat").Get(),
                  [&](std::ostream& out) { OutputTriangles(lists, out); });
    if (cells.Size() > 0) {
        if (reference)
            reference->m_pfnWalk(run, grids);
        else
            WalkFast(run, grids);
        CopyOuterLayers(cells);
    }
    if (run.m_blnDebug)
        WriteDump(run, Dorva::FilePath(folder + "//trisglobal.dat").Get(),
                  [&](std::ostream& out) { OutputTriangles(cells, run.GridDimensions(), out); });
}

void IntersectGrid(IntersectContext& run, FEL_pointer<FEL_mesh> grid,
                   std::vector<_BodyStruct> bodies, std::string folder) {
    CreateGrid(run.m_gridCells, grid);
    if (run.m_blnDebug) {
        int d[3];
        grid->get_structured_dimensions(d);
        std::cout << d[0] << "x" << d[1] << "x" << d[2] << std::endl;
    }
    std::vector<SurfaceZone> zones;
    for (const _BodyStruct& body : bodies) {
        if (!body.blnUsedInSolver) continue;
        for (int z = 0; z < body.pMesh->get_n_zones(); ++z) {
            FEL_pointer<FEL_mesh> zone = body.pMesh->get_zone(z);
            zones.emplace_back();
            ConvertTriangles(zone, zones.back().m_vecTriangles);
            zone->get_bounding_box(&zones.back().m_v3fMin, &zones.back().m_v3fMax);
        }
    }
    IntersectZones(run, zones, folder);
}
