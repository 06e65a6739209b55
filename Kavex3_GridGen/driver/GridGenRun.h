// The worker's run: command line, logs, project rewrite, grid generation and clean-up.
#pragma once

#include <string>

// The whole run of the program; the result is the exit status: 0, or -1 on a start-up failure.
// An exception out of a stage ends the process through the runtime (status 134), its text on the
// error log.
// Command line: -Grid project -SlvrRot rotorFile -pth runDirectory [-linkid n].
int GridGenMain(int argc, char** argv);

// Copies the rotor file byte by byte, testing the streams before each read, so that the read
// that meets the end still writes: the copy is one byte longer than the source, its last byte
// doubled. The solver's reader expects that byte. An unreadable source leaves an empty copy.
void CopyRotorFile(const std::string& from, const std::string& to);
