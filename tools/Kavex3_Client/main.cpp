// Entry of Kavex3_Client, the front end's side of the worker's link.
#include "ClientRun.h"

int main(int argc, char** argv) {
    return ClientMain(argc, argv);
}
