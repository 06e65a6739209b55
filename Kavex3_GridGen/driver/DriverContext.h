// The driver's run context: what the stages of one run share, made by the run and handed down.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "driver/OutFile.h"
#include "intersector/IntersectContext.h"

struct DriverContext {
    // The intersector's debug dumps go through the run's checked output files.
    explicit DriverContext(std::string strRunDir) : m_strTempDir(std::move(strRunDir)) {
        m_intersect.m_fnWriteDump = WriteCheckedFile;
    }
    DriverContext(const DriverContext&) = delete;
    DriverContext& operator=(const DriverContext&) = delete;

    // The run directory, the "pth" parameter (what the worker's stages know as g_strTempDir):
    // the cut files, the translation file and the solver file's work copy live there.
    std::string m_strTempDir;
    // Temporary files, in the order they were made (the worker's g_vecstrTempFiles). Nothing
    // reads them back: clean-up goes by explicit paths.
    std::vector<std::string> m_vecstrTempFiles;
    // The intersector's context: the cells (g_gridCells), their dimensions (g_v3iGridDimensions)
    // and the debug switch, m_intersect.m_blnDebug, which is the worker's g_blnDebug: false at
    // start, set by ReadGridFile from the project's "Debug Level" line, and read from here alone.
    IntersectContext m_intersect;
};
