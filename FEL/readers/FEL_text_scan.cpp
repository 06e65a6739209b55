// Number reading over a file held in memory, giving exactly what scanf or a formatted stream read
// gives.
#include "readers/FEL_text_scan.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <sstream>

FEL_mapped_file::FEL_mapped_file(const std::string& path) {
    int fd = open(path.c_str(), O_RDONLY);
    if (fd < 0) return;
    struct stat st;
    if (fstat(fd, &st) == 0 && S_ISREG(st.st_mode)) {
        opened = true;
        length = static_cast<std::size_t>(st.st_size);
        if (length > 0) {
            void* p = mmap(nullptr, length, PROT_READ, MAP_PRIVATE, fd, 0);
            if (p == MAP_FAILED) {
                opened = false;
                length = 0;
            } else {
                madvise(p, length, MADV_SEQUENTIAL);
                data = static_cast<const char*>(p);
                mapped = true;
            }
        }
    }
    close(fd);
}

void FEL_mapped_file::release_before(const char* p) {
    if (!mapped || p <= data) return;
    static const std::size_t page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t upto = std::min(static_cast<std::size_t>(p - data), length) / page * page;
    if (upto <= released) return;
    madvise(const_cast<char*>(data) + released, upto - released, MADV_DONTNEED);
    released = upto;
}

void FEL_mapped_file::release(const char* from, const char* to) const {
    if (!mapped || to <= from) return;
    static const std::size_t page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t low = (static_cast<std::size_t>(from - data) + page - 1) / page * page;
    const std::size_t high = std::min(static_cast<std::size_t>(to - data), length) / page * page;
    if (high > low) madvise(const_cast<char*>(data) + low, high - low, MADV_DONTNEED);
}

FEL_mapped_file::~FEL_mapped_file() {
    if (mapped) munmap(const_cast<char*>(data), length);
}

namespace {

const char* skip_space(const char* p, const char* end) {
    while (p != end && FEL_is_space(*p)) ++p;
    return p;
}

// The characters up to the next white space: no number conversion reads beyond them.
std::string token_at(const char* p, const char* end) {
    const char* q = p;
    while (q != end && !FEL_is_space(*q)) ++q;
    return std::string(p, q);
}

}  // namespace

bool FEL_scan_int(const char*& p, const char* end, int* value) {
    p = skip_space(p, end);
    const char* q = p;
    bool negative = false;
    if (q != end && (*q == '+' || *q == '-')) negative = *q++ == '-';
    if (q == end || *q < '0' || *q > '9') return false;
    // Collected as a long, saturating as strtol does, then narrowed to int as scanf stores it.
    unsigned long long magnitude = 0;
    const unsigned long long limit = negative ? 1ULL + LONG_MAX : LONG_MAX;
    for (; q != end && *q >= '0' && *q <= '9'; ++q) {
        const unsigned digit = static_cast<unsigned>(*q - '0');
        magnitude = magnitude > (limit - digit) / 10 ? limit : magnitude * 10 + digit;
    }
    long v = negative ? static_cast<long>(0ULL - magnitude) : static_cast<long>(magnitude);
    *value = static_cast<int>(v);
    p = q;
    return true;
}

bool FEL_scan_float(const char*& p, const char* end, float* value) {
    if (FEL_scan_plain_float(p, end, value)) return true;
    std::string token = token_at(p, end);
    if (token.empty()) return false;
    int used = 0;
    if (std::sscanf(token.c_str(), "%f%n", value, &used) != 1) return false;
    p += used;
    return true;
}

bool FEL_extract_float(const char*& p, const char* end, float* value) {
    if (FEL_scan_plain_float(p, end, value)) return true;
    std::string token = token_at(p, end);
    if (token.empty()) return false;
    std::istringstream in(token);
    float v;
    if (!(in >> v)) return false;
    *value = v;
    p += in.eof() ? token.size() : static_cast<std::size_t>(in.tellg());
    return true;
}
