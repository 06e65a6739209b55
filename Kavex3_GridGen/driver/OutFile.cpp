// A driver output file as a stream over the generator's checked output files.
#include "driver/OutFile.h"

#include <unistd.h>

#include <cstdio>
#include <fstream>

#include "RemovePath.h"
#include "generator/gdoutfile.h"
#include "moveFile.h"

OutFile::OutFile(const std::string& strPath, bool blnInPlace)
    : std::ostream(nullptr), m_fp(gd_try_open_output(strPath.c_str(), blnInPlace)) {
    if (m_fp == nullptr) {
        setstate(std::ios::badbit);
        return;
    }
    m_buf.reset(new __gnu_cxx::stdio_sync_filebuf<char>(m_fp));
    rdbuf(m_buf.get());
}

OutFile::~OutFile() {
    if (m_fp == nullptr) return;
    rdbuf(nullptr);
    m_buf.reset();
    gd_abandon_output(m_fp);
}

void OutFile::Check() {
    if (m_fp != nullptr) gd_check_output(m_fp);
}

void OutFile::Close() {
    if (m_fp == nullptr) return;
    rdbuf(nullptr);
    m_buf.reset();
    FILE* fp = m_fp;
    m_fp = nullptr;
    gd_close_output(fp);
}

void ReplaceFile(const std::string& strFrom, const std::string& strTo) {
    if (std::rename(strFrom.c_str(), strTo.c_str()) == 0) return;
    // A missing work file is reported as before; any other refusal falls back to the copy.
    if (::access(strFrom.c_str(), F_OK) != 0) Dorva::moveFile(strFrom, strTo);
    {
        std::ifstream in(strFrom.c_str(), std::ios::binary);
        OutFile out(strTo);
        if (!out.File()) return;
        for (char buffer[1 << 16]; in.read(buffer, sizeof buffer) || in.gcount() > 0;)
            out.write(buffer, in.gcount());
        out.Close();
    }
    Dorva::RemovePath(strFrom);
}

void WriteCheckedFile(const std::string& strPath, const std::function<void(std::ostream&)>& write) {
    OutFile out(strPath);
    write(out);
    out.Close();
}
