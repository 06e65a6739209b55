// A driver output file as a stream, over the generator's checked output files: written under a
// temporary name and renamed over its own by Close, every write checked.
#pragma once

#include <ext/stdio_sync_filebuf.h>

#include <cstdio>
#include <functional>
#include <memory>
#include <ostream>
#include <string>

class OutFile : public std::ostream {
  public:
    // With blnInPlace (the run's temporary files) the file is written under its own name. A file
    // that can't be opened takes no output and is no error, as for any driver file.
    explicit OutFile(const std::string& strPath, bool blnInPlace = false);
    // A file that was not closed is left unfinished: its temporary name is removed.
    ~OutFile() override;
    OutFile(const OutFile&) = delete;
    OutFile& operator=(const OutFile&) = delete;

    // Ends the run the generator's way when a write to the file has failed so far.
    void Check();
    // Flushes, closes and renames the finished file; a failure ends the run as Check does.
    void Close();
    FILE* File() const { return m_fp; }

  private:
    FILE* m_fp;
    std::unique_ptr<__gnu_cxx::stdio_sync_filebuf<char>> m_buf;
};

// Puts the finished file `strFrom` in the place of `strTo` at once: a rename, or where the two are
// on different filesystems a checked copy beside `strTo`, renamed there.
void ReplaceFile(const std::string& strFrom, const std::string& strTo);

// Writes one whole file through `write` as a checked output file, renamed over `strPath` when
// complete; a failure ends the run as OutFile::Close does.
void WriteCheckedFile(const std::string& strPath, const std::function<void(std::ostream&)>& write);
