// Bodies in the grid's coordinates, and the writers of the FAST body file.
#include "driver/translate.h"

#include <array>
#include <iostream>
#include <limits>

#include "FEL_cell.h"
#include "FEL_matrix33.h"
#include "FEL_transformed_mesh.h"
#include "FilePath.h"
#include "driver/OutFile.h"
#include "generator/gdcheck.h"

std::string g_strBodyOutputDirectory;
bool g_blnBodyWritersVerbose = false;

void TranslateToGlobal(const DriverContext& run, std::vector<_BodyStruct>& bodies,
                       FEL_vector3<float> conversionFactor) {
    std::ifstream in(Dorva::FilePath(run.m_strTempDir + "//Lcl2Gbl.dat").Get().c_str());
    if (!in) return;
    FEL_vector3<float> t;
    float* const parts[3] = {&t.x, &t.y, &t.z};
    for (int a = 0; a < 3; ++a) {
        // A translation that doesn't read as a number is refused like one out of range.
        if (!(in >> *parts[a])) *parts[a] = std::numeric_limits<float>::quiet_NaN();
        ck_coord(*parts[a], "Lcl2Gbl.dat", "%c translation", "XYZ"[a]);
    }
    const FEL_matrix33<float> scale(FEL_vector3<float>(conversionFactor.x, 0, 0),
                                    FEL_vector3<float>(0, conversionFactor.y, 0),
                                    FEL_vector3<float>(0, 0, conversionFactor.z));
    for (_BodyStruct& body : bodies) {
        if (body.pMesh.null()) continue;
        FEL_pointer<FEL_mesh> rotated(new FEL_rotated_mesh(body.pMesh, scale, "rotated_mesh"));
        body.pMesh = FEL_pointer<FEL_mesh>(new FEL_translated_mesh(rotated, t, "translated_mesh"));
    }
}

void StripFilename(std::string& path) {
    const std::string::size_type slash = path.rfind('/');
    path.erase(slash == std::string::npos ? 0 : slash);
}

void WriteBodies(std::vector<_BodyStruct> bodies, std::string directory) {
    for (const _BodyStruct& body : bodies) {
        std::string name = body.strPointsFile;
        std::string::size_type dot = name.rfind('.');
        if (dot != std::string::npos) {
            name.insert(dot, "_global.p3d");
            name.erase(name.rfind('.'));
        }
        const std::string::size_type slash = name.rfind('/');
        if (slash != std::string::npos) name.erase(0, slash);
        name = g_strBodyOutputDirectory + name;
        if (!body.pMesh.null() && !body.pMesh->is_structured_mesh() && g_blnBodyWritersVerbose)
            std::cout << body.pMesh.get() << "   " << name << std::endl;
    }
    OutFile out(directory + "//FASTout.bdy");
    WriteStructuredBodies(bodies, out);
    out.Close();
}

void WriteStructuredBodies(std::vector<_BodyStruct>& bodies, std::ostream& stream) {
    std::vector<FEL_pointer<FEL_mesh>> blocks;
    for (const _BodyStruct& body : bodies) {
        if (body.pMesh.null()) continue;
        for (int z = 0; z < body.pMesh->get_n_zones(); ++z) {
            FEL_pointer<FEL_mesh> zone = body.pMesh->get_zone(z);
            if (!zone.null() && zone->is_structured_mesh()) blocks.push_back(zone);
        }
    }
    if (blocks.empty()) return;
    stream << blocks.size() << '\n';
    std::vector<std::array<int, 3>> dims(blocks.size());
    for (std::size_t b = 0; b < blocks.size(); ++b) {
        blocks[b]->get_structured_dimensions(dims[b].data());
        stream << dims[b][0] << ' ' << dims[b][1] << ' ' << dims[b][2] << '\n';
    }
    for (std::size_t b = 0; b < blocks.size(); ++b)
        for (int axis = 0; axis < 3; ++axis) {
            for (int k = 0; k < dims[b][2]; ++k)
                for (int j = 0; j < dims[b][1]; ++j)
                    for (int i = 0; i < dims[b][0]; ++i) {
                        FEL_vector3<float> v;
                        blocks[b]->coordinates_at_vertex_cell(FEL_vertex_cell(i, j, k), &v);
                        stream << double(v[axis]) << ' ';
                    }
            stream << '\n';
        }
}

void WriteUnstructuredBody(FEL_pointer<FEL_mesh> mesh, std::ostream& stream) {
    const int nodes = mesh->card(0), faces = mesh->card(2);
    stream << nodes << ' ' << faces << " 0\n";
    if (g_blnBodyWritersVerbose) {
        FEL_vector3<float> low, high;
        mesh->get_bounding_box(&low, &high);
        std::cout << "(" << low.x << ", " << low.y << ", " << low.z << ") -> (" << high.x << ", "
                  << high.y << ", " << high.z << ")" << std::endl;
    }
    std::vector<FEL_vector3<float>> xyz(nodes);
    for (int n = 0; n < nodes; ++n) {
        FEL_cell vertex;
        mesh->int_to_cell(0, n, &vertex);
        mesh->coordinates_at_vertex_cell(FEL_vertex_cell(vertex), &xyz[n]);
    }
    for (int axis = 0; axis < 3; ++axis)
        for (const FEL_vector3<float>& v : xyz) stream << v[axis] << '\n';
    for (int f = 0; f < faces; ++f) {
        FEL_cell face;
        int corner[8] = {0, 0, 0, 0, 0, 0, 0, 0};
        mesh->int_to_cell(2, f, &face);
        mesh->get_node_indices(face, corner);
        stream << corner[0] + 1 << ' ' << corner[1] + 1 << ' ' << corner[2] + 1 << '\n';
    }
    for (int f = 0; f < faces; ++f) stream << "1\n";
}
