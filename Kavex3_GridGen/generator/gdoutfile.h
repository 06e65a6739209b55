// Output files of a run: every write, the flush and the close checked, and a file written under a
// temporary name beside its final one, renamed over it only when complete.
#pragma once

#include <cstdio>

// Opens `path` for writing as fopen(path, "w") would, but under the temporary name path + ".part"
// in the same folder. With inPlace (the run's own temporary files, which are read under their
// names while the run goes on) the file is written under its name. Null, with errno, when the
// file can't be opened.
FILE* gd_try_open_output(const char* path, bool inPlace = false);

// gd_try_open_output, ending the run with perrorNexit("fopen") when the file can't be opened.
FILE* gd_open_output(const char* path);

// Ends the run when a write to `stream` has failed: "writing '<path>': <reason>" through
// printfErrNexit, after the temporary files of all unfinished outputs are removed. A stream that
// wasn't opened here is not looked at.
void gd_check_output(FILE* stream);

// Flushes and closes `stream` and renames it over its final name. False, with the temporary
// removed, the final name untouched and errno set, when a write, the flush, the close or the
// rename failed.
bool gd_finish_output(FILE* stream);

// gd_finish_output, ending the run as gd_check_output does when it fails.
void gd_close_output(FILE* stream);

// Closes one unfinished output and removes its temporary name.
void gd_abandon_output(FILE* stream);

// Closes every unfinished output and removes its temporary name; the final names keep what they
// held. Called when the run ends on a failure.
void gd_abandon_outputs();
