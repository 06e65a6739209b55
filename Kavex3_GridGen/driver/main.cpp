// Entry of the grid generator's worker process.
#include "driver/GridGenRun.h"

int main(int argc, char** argv) {
    return GridGenMain(argc, argv);
}
