// The driver's output files: bounding-box cut files, the blanked grid file and the cell dump.
#include "driver/Write.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <sstream>
#include <thread>

#include "FEL_axis_aligned_mesh.h"
#include "FEL_cell.h"
#include "FEL_curvilinear_mesh.h"
#include "driver/OutFile.h"
#include "generator/gdoutfile.h"
#include "generator/gridwriter.h"
#include "intersector/Intersector.h"
#include "intersector/Parallel.h"
#include "readers/FEL_plot3d_text_axes.h"
#include "readers/FEL_reader.h"

void WriteOutBoundingBoxes(std::vector<_BodyStruct>& bodies) {
    for (const _BodyStruct& body : bodies) {
        if (body.eBodyType <= BODY_ZCUT) continue;
        OutFile out(body.strCutFile);
        if (!out) continue;
        FEL_vector3<float> low, high;
        body.pMesh->get_bounding_box(&low, &high);
        const double ym = (low.y + high.y) * 0.5f, zm = (low.z + high.z) * 0.5f;
        auto centre = [&](float x) {
            out << x << '\n';
            for (int p = 0; p < 5; ++p) out << ym << "  " << zm << '\n';
        };
        auto rectangle = [&](float x) {
            out << x << '\n';
            const float ring[5][2] = {
                {low.y, low.z}, {low.y, high.z}, {high.y, high.z}, {high.y, low.z}, {low.y, low.z}};
            for (const auto& p : ring) out << p[0] << "  " << p[1] << '\n';
        };
        out << "4  5\n";
        centre(low.x);
        rectangle(low.x);
        rectangle(high.x);
        centre(high.x);
        out.Close();
    }
}

namespace {

// Compared as integers: a call of memcmp for each of a grid's hundreds of millions of values would
// cost more than the copying.
bool SameBits(float a, float b) {
    std::uint32_t x, y;
    std::memcpy(&x, &a, sizeof x);
    std::memcpy(&y, &b, sizeof y);
    return x == y;
}

// The coordinates of one axis, (i, j, k) -> component, written in the file's order. The grid is
// Cartesian as a rule, so every value is compared bit for bit with the value on its axis line
// through the origin and then copied as text; any other value is formatted on its own.
template <class At>
void WriteCoordinates(byte_sink& sink, const int n[3], int axis, At at) {
    std::vector<double> line(n[axis]);
    for (int c = 0; c < n[axis]; ++c) {
        int ijk[3] = {0, 0, 0};
        ijk[axis] = c;
        line[c] = at(ijk[0], ijk[1], ijk[2]);
    }
    const formatted_values text(line.data(), n[axis], " %.5f");
    std::string odd;
    for (int k = 0; k < n[2]; ++k)
        for (int j = 0; j < n[1]; ++j) {
            const int across = axis == 1 ? j : k;  // the line value for Y and Z rows
            bool plain = true;
            for (int i = 0; i < n[0] && plain; ++i)
                plain = SameBits(at(i, j, k), float(line[axis == 0 ? i : across]));
            if (plain) {
                if (axis == 0)
                    sink.put(text.pool);
                else
                    sink.put_repeated(text.text(across), text.size(across), n[0]);
                continue;
            }
            for (int i = 0; i < n[0]; ++i) {
                odd.clear();
                append_formatted(odd, " %.5f", at(i, j, k));
                sink.put(odd);
            }
        }
}

// Node n of the grid, in the file's order (i fastest).
long long NodeIndex(const int n[3], int i, int j, int k) {
    return i + n[0] * (j + static_cast<long long>(n[1]) * k);
}

}  // namespace

FEL_pointer<FEL_mesh> GridAsAxes(FEL_pointer<FEL_mesh> grid) {
    const auto* nodes = dynamic_cast<const FEL_curvilinear_mesh_xyz_layout*>(grid.get());
    int n[3] = {0, 0, 0};
    if (!nodes || plain_grid_text) return grid;
    grid->get_structured_dimensions(n);
    std::unique_ptr<float[]> axes[3];
    for (int a = 0; a < 3; ++a) {
        if (n[a] < 1) return grid;
        axes[a].reset(new float[n[a]]);
        for (int c = 0; c < n[a]; ++c) {
            const int at[3] = {a == 0 ? c : 0, a == 1 ? c : 0, a == 2 ? c : 0};
            axes[a][c] = nodes->node(int(NodeIndex(n, at[0], at[1], at[2])))[a];
        }
    }
    for (int k = 0; k < n[2]; ++k)
        for (int j = 0; j < n[1]; ++j)
            for (int i = 0; i < n[0]; ++i) {
                const FEL_vector3<float>& p = nodes->node(int(NodeIndex(n, i, j, k)));
                if (!SameBits(p.x, axes[0][i]) || !SameBits(p.y, axes[1][j]) ||
                    !SameBits(p.z, axes[2][k]))
                    return grid;
            }
    return FEL_pointer<FEL_mesh>(
        new FEL_axis_aligned_mesh(new FEL_irregular_axis(n[0], axes[0].release()),
                                  new FEL_irregular_axis(n[1], axes[1].release()),
                                  new FEL_irregular_axis(n[2], axes[2].release()), "grid_axes"));
}

BackgroundRemoval::BackgroundRemoval(const std::string& path)
    : m_thread([path] { std::remove(path.c_str()); }) {}

void BackgroundRemoval::Wait() {
    if (m_thread.joinable()) m_thread.join();
}

FEL_pointer<FEL_mesh> ReadGridAsAxes(const std::string& path, int threads) {
    if (!plain_grid_text) {
        FEL_pointer<FEL_mesh> axes =
            FEL_plot3d_read_text_axes(path, threads > 0 ? threads : AvailableCores());
        if (!axes.null()) return axes;
    }
    unsigned flags = 0;
    return GridAsAxes(FEL_read_mesh(path, flags, -1));
}

void OutputIBlankedGrid(std::string fileName, FEL_pointer<FEL_mesh> mesh,
                        std::vector<FEL_vector3<int>>& cells, bool writeBodyCells,
                        bool writeOffsets, double offsetX, double offsetY, double offsetZ) {
    // The blanking values of the vertices are never written, so they are not computed.
    FILE* file = gd_try_open_output(fileName.c_str());
    if (!file) return;
    int n[3] = {0, 0, 0};
    mesh->get_structured_dimensions(n);
    std::ostringstream head;
    if (writeOffsets) head << "# " << offsetX << ' ' << offsetY << ' ' << offsetZ;
    head << '\n' << n[0] << ' ' << n[1] << ' ' << n[2] << '\n';
    if (plain_grid_text) {
        std::fputs(head.str().c_str(), file);
        FEL_vector3<float> v;
        for (int axis = 0; axis < 3; ++axis)
            for (int k = 0; k < n[2]; ++k)
                for (int j = 0; j < n[1]; ++j)
                    for (int i = 0; i < n[0]; ++i) {
                        mesh->coordinates_at_vertex_cell(FEL_vertex_cell(i, j, k), &v);
                        std::fprintf(file, " %.5f", v[axis]);
                    }
    } else {
        byte_sink sink(file);
        sink.put(head.str());
        const auto* curvilinear = dynamic_cast<const FEL_curvilinear_mesh*>(mesh.get());
        std::vector<float> lines[3];
        if (dynamic_cast<const FEL_axis_aligned_mesh*>(mesh.get()))
            for (int a = 0; a < 3; ++a)
                for (int c = 0; c < n[a]; ++c) {
                    FEL_vector3<float> v;
                    mesh->coordinates_at_vertex_cell(
                        FEL_vertex_cell(a == 0 ? c : 0, a == 1 ? c : 0, a == 2 ? c : 0), &v);
                    lines[a].push_back(v[a]);
                }
        for (int axis = 0; axis < 3; ++axis) {
            if (!lines[axis].empty()) {
                const int a = axis;
                WriteCoordinates(sink, n, axis, [&](int i, int j, int k) {
                    return lines[a][a == 0 ? i : a == 1 ? j : k];
                });
            } else if (curvilinear) {
                WriteCoordinates(sink, n, axis, [&](int i, int j, int k) {
                    return curvilinear->node(i + n[0] * (j + n[1] * k))[axis];
                });
            } else {
                WriteCoordinates(sink, n, axis, [&](int i, int j, int k) {
                    FEL_vector3<float> v;
                    mesh->coordinates_at_vertex_cell(FEL_vertex_cell(i, j, k), &v);
                    return v[axis];
                });
            }
        }
    }
    if (writeBodyCells) {
        std::ostringstream tail;
        tail << "\n# Num. of Body Cells: \n"
             << cells.size() << "\n# Body Cells ({I-index, J-index, K-index} of the cells)\n";
        for (auto cell = cells.rbegin(); cell != cells.rend(); ++cell)
            tail << cell->x << ", " << cell->y << ", " << cell->z << '\n';
        std::fputs(tail.str().c_str(), file);
    }
    gd_close_output(file);
}

void OutputBodyCells(FEL_pointer<FEL_mesh> mesh, std::stack<FEL_vector3<int>> cells,
                     std::string fileName) {
    OutFile out(fileName);
    const std::size_t count = cells.size();
    out << "TITLE = \"FEL Intersected Cells\"\n"
        << "VARIABLES = \"X\" \"Y\" \"Z\"\n"
        << "ZONE N=" << 8 * count << ", E=" << count << ", F=FEPOINT, ET=BRICK\n";
    // The mesh numbers a hexahedron's corners by bits of i, j, k; a brick wants them as two rings.
    static const int ring[8] = {0, 2, 3, 1, 4, 6, 7, 5};
    for (; !cells.empty(); cells.pop()) {
        const FEL_vector3<int>& c = cells.top();
        FEL_vector3<float> corners[8];
        mesh->coordinates_at_cell(FEL_cell(FEL_CELL_HEXAHEDRON, c.x - 1, c.y - 1, c.z - 1),
                                  corners);
        for (int corner : ring)
            out << corners[corner].x << ' ' << corners[corner].y << ' ' << corners[corner].z
                << '\n';
    }
    for (std::size_t v = 1; v <= 8 * count; ++v) out << v << '\n';
    out.Close();
}
