// The driver's calls around the line generator on the cut-file path, and cut bodies as meshes.
#include "driver/ConvertCuts.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>

#include "FilePath.h"
#include "GetExecutablePath.h"
#include "generator/gdrun.h"
#include "readers/FEL_reader.h"

bool all_bodies_are_cut_files(std::vector<_BodyStruct> bodies) {
    for (const _BodyStruct& body : bodies) {
        if (body.eBodyType > BODY_ZCUT) return false;
    }
    return true;
}

void all_cuts_grid_generation(char* programName, std::string specification, std::string directory,
                              bool writeTranslation, double* outX, double* outY, double* outZ) {
    std::string paths[] = {Dorva::FilePath(directory + "//FASTout.bdy").Get(),
                           Dorva::FilePath(directory + "//KX3.grid.dat").Get(),
                           Dorva::FilePath(directory + "//FAST_rotor.bdy").Get(),
                           Dorva::FilePath(directory + "//Lcl2Gbl.dat").Get()};
    char* arguments[] = {programName,     specification.data(), paths[0].data(),
                         paths[1].data(), paths[2].data(),      paths[3].data()};
    // The count is 2: the generator takes the specification text from the count and its output
    // paths from the entries behind it.
    CutsGridGenerator(2, arguments, writeTranslation, outX, outY, outZ);
}

void non_cuts_grid_generation() {}

FEL_pointer<FEL_mesh> ConvertTranslateCutFilesToPlot3D(std::vector<_BodyStruct>& bodies,
                                                       FEL_vector3<float> conversionFactor,
                                                       std::string outputFile) {
    FEL_pointer<FEL_mesh> result;
    const Dorva::FilePath executable = Dorva::GetExecutablePath("cuts2plot3d");
    if (!executable.IsInitialized()) {
        std::cerr << "Could not find cuts2plot3d executable." << std::endl;
        return result;
    }
    std::string command = executable.Get() + " -o " + outputFile;
    char factors[256];  // room for three of the largest floats in "%f"
    std::snprintf(factors, sizeof factors, " -X %f -Y %f -Z %f", conversionFactor.x,
                  conversionFactor.y, conversionFactor.z);
    command += factors;
    static const char* const options[] = {" -x ", " -y ", " -z "};
    bool blnAnyCut = false;
    for (const _BodyStruct& body : bodies) {
        if (body.eBodyType > BODY_ZCUT) continue;
        command += options[body.eBodyType] + body.strPointsFile;
        blnAnyCut = true;
    }
    if (!blnAnyCut) return result;

    // The program's status isn't examined: a failed run shows up as an unreadable output file.
    (void)std::system(command.c_str());
    unsigned flags = 0;
    result = FEL_read_mesh(outputFile, flags, -1);
    int zone = 0;
    for (_BodyStruct& body : bodies) {
        if (body.eBodyType <= BODY_ZCUT) body.pMesh = result->get_zone(zone++);
    }
    return result;
}
