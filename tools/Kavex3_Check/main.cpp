// Kavex3_Check's entry.
#include "CheckRun.h"

int main(int argc, char** argv) {
    return Dorva::CheckMain(argc, argv);
}
