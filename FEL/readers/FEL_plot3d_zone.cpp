// The mesh classes of Plot3D zones: curvilinear with or without iblank, surface, and multi-zone.
#include "readers/FEL_plot3d_zone.h"

#include <memory>

#include "FEL_curvilinear_mesh.h"
#include "FEL_multi_mesh.h"

FEL_pointer<FEL_mesh> FEL_plot3d_make_zone(int ni, int nj, int nk, FEL_vector3<float>* xyz,
                                           int* iblanks) {
    std::unique_ptr<FEL_vector3<float>[]> coordinates(xyz);
    std::unique_ptr<int[]> blanks(iblanks);
    if (!blanks) {
        if (ni > 1 && nj > 1 && nk > 1)
            return FEL_pointer<FEL_mesh>(
                new FEL_curvilinear_mesh_xyz_layout(ni, nj, nk, coordinates.release()));
        return FEL_pointer<FEL_mesh>(
            new FEL_curvilinear_surface_mesh(ni, nj, nk, coordinates.release()));
    }
    const std::size_t n = std::size_t(ni) * nj * nk;
    auto* nodes = new FEL_vector3f_and_int[n];
    for (std::size_t i = 0; i < n; ++i) nodes[i] = {xyz[i], blanks[i]};
    if (ni > 1 && nj > 1 && nk > 1)
        return FEL_pointer<FEL_mesh>(new FEL_curvilinear_mesh_xyzi_layout(ni, nj, nk, nodes));
    return FEL_pointer<FEL_mesh>(new FEL_curvilinear_surface_mesh(ni, nj, nk, nodes));
}

FEL_pointer<FEL_mesh> FEL_plot3d_make_multi(const std::vector<FEL_pointer<FEL_mesh>>& zones) {
    auto* meshes = new FEL_pointer<FEL_mesh>[zones.size()];
    for (std::size_t z = 0; z < zones.size(); ++z) meshes[z] = zones[z];
    return FEL_pointer<FEL_mesh>(new FEL_plot3d_multi_mesh(static_cast<int>(zones.size()), meshes));
}
