// Test support for the generator's input: resets the module-level records, writes and reads files.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <functional>
#include <string>

#include "bodies.h"
#include "readFileC.h"

// Puts options, grid lines, the spec collection, the section flags and the body table back to
// the state before a run (the old storage is left behind, as the generator never frees it).
inline void reset_generator_records() {
    init_options2();
    init_all_grid_lines2();
    reset_newBdyGdspc_parms2();
    pref_options = GdOptions{};
    allBdys = nullptr;
    numBdys = maxBdys = numOrigBdys = 0;
    OptionsDefnDone = BodyDefnsDone = XgdSpecDone = YgdSpecDone = ZgdSpecDone = 0;
}

// Writes text to a file named after the process and name in the test temp folder.
inline std::string write_temp_file(const std::string& name, const std::string& text) {
    const std::string path =
        ::testing::TempDir() + "geninput_" + std::to_string(getpid()) + "_" + name;
    FILE* f = std::fopen(path.c_str(), "w");
    EXPECT_NE(f, nullptr) << path;
    if (f) {
        std::fputs(text.c_str(), f);
        std::fclose(f);
    }
    return path;
}

// Everything that write puts on a fresh stream.
inline std::string stream_text(const std::function<void(FILE*)>& write) {
    FILE* f = std::tmpfile();
    write(f);
    std::rewind(f);
    std::string text;
    char buf[4096];
    size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, f)) > 0) text.append(buf, n);
    std::fclose(f);
    return text;
}

class GenInputTest : public ::testing::Test {
  protected:
    void SetUp() override { reset_generator_records(); }
};
