// The client's run: link up, start the worker, follow its log, stop it on request, report.
#pragma once

#include <string>

// Exit statuses of the client.
enum ClientStatus {
    CLIENT_SUCCESS = 0,     // the worker exited with 0 and reported successful completion
    CLIENT_RUN_FAILED = 1,  // the worker ended otherwise
    CLIENT_CANNOT_RUN = 2,  // bad arguments, no link, or no worker to start
};

struct ClientOptions {
    std::string strGridFile;
    std::string strRotorFile;
    std::string strRunDir;
    std::string strWorker;           // the worker's path
    double stopAfterSeconds = -1.0;  // negative: no timed stop
    std::string strChecker;          // Kavex3_Check's path; empty: no check before the run
    bool blnForce = false;           // start the worker even when the check found errors
};

// Runs Kavex3_Check on the project, its output going to the terminal; false when it found errors
// (or could not be run) and the worker is not to be started.
bool CheckFirst(const ClientOptions& options);

// The whole program: -help, or the options, then the run. Returns a ClientStatus.
int ClientMain(int argc, char** argv);

// Runs the worker on the options through a fresh control link and reports how it ended.
int RunClient(const ClientOptions& options);
