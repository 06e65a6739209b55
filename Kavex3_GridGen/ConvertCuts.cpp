// The driver's calls around the line generator on the cut-file path.
#include "ConvertCuts.h"

#include "FilePath.h"
#include "gdrun.h"

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
    // The count is 2: the generator takes the specification text from the count and its output paths
    // from the entries behind it.
    CutsGridGenerator(2, arguments, writeTranslation, outX, outY, outZ);
}

void non_cuts_grid_generation() {}
