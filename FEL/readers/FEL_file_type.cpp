// First-bytes detection of mesh files, byte order, and the reading primitives shared by the
// readers.
#include "readers/FEL_file_type.h"

#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstring>

#include "FEL_exception.h"

bool FEL_reader_verbose = false;

namespace {
float file_read_progress = 0.0f;

bool has_letter(const std::string& line) {
    return std::any_of(line.begin(), line.end(),
                       [](char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; });
}
}  // namespace

void FEL_set_file_read_progress(float fraction) {
    file_read_progress = fraction;
}
float FEL_get_file_read_progress() {
    return file_read_progress;
}

bool FEL_little_endian_hardware() {
    const std::uint32_t one = 1;
    unsigned char first;
    std::memcpy(&first, &one, 1);
    return first == 1;
}

bool FEL_is_file_binary(const std::string& path) {
    FILE* f = std::fopen(path.c_str(), "rb");
    if (!f) return false;
    unsigned char bytes[400];
    std::size_t n = std::fread(bytes, 1, sizeof bytes, f);
    std::fclose(f);
    for (std::size_t i = 0; i < n; ++i) {
        int c = static_cast<signed char>(bytes[i]);
        bool harmless = c == 10 || c == 34 || c == 92 || c == 13 || c == 9 ||
                        (c >= 0 && (std::isprint(c) || std::isalpha(c)));
        if (!harmless) return true;
    }
    return false;
}

int FEL_ascii_file_type(std::ifstream& in) {
    std::string line;
    std::getline(in, line);
    in.clear();
    in.seekg(0);
    auto has = [&line](const char* word) { return line.find(word) != std::string::npos; };
    if (has("Layout")) return FEL_FILE_LAYOUT;
    if (has("FLOWVIZ")) return FEL_FILE_FLOWVIZ;
    if (has("solid")) return FEL_FILE_STL;
    if (has("TITLE") || has("VARIABLES") || has("ZONE")) return FEL_FILE_TECPLOT;
    if (line.find_first_not_of("1234567890 ") == std::string::npos) return FEL_FILE_DIGITS;
    return FEL_FILE_UNKNOWN;
}

int FEL_binary_file_type(const std::string& path, std::ifstream& in) {
    char head[8] = {};
    in.read(head, 8);
    in.clear();
    in.seekg(0);
    if (std::memcmp(head, "#!TDV", 5) == 0) return FEL_FILE_TECPLOT;
    const char swapped[8] = {head[3], head[2], head[1], head[0],
                             head[7], head[6], head[5], head[4]};
    if (std::memcmp(swapped, "#!TDV", 5) == 0) return FEL_FILE_TECPLOT;

    char header[80];
    std::int32_t count = 0;
    in.read(header, 80);
    in.read(reinterpret_cast<char*>(&count), 4);
    bool complete = static_cast<bool>(in);
    in.clear();
    in.seekg(0);
    struct stat st;
    if (!complete || stat(path.c_str(), &st) != 0) return FEL_FILE_UNKNOWN;
    return 84 + 50 * static_cast<std::int64_t>(count) == st.st_size ? FEL_FILE_STL
                                                                    : FEL_FILE_UNKNOWN;
}

unsigned FEL_flowviz_format_get_info(std::ifstream& in, bool binary) {
    if (binary) return 0;
    std::string line;
    while (std::getline(in, line)) {
        if (line.find("FLOWVIZ") != std::string::npos) {
            unsigned info = FEL_FLOWVIZ_MESH | FEL_FLOWVIZ_ASCII;
            if (line.find("HEXAHEDRAL") != std::string::npos) info |= FEL_FLOWVIZ_HEXAHEDRAL;
            if (line.find("CARTESIAN") != std::string::npos)
                info |= FEL_FLOWVIZ_CARTESIAN;
            else if (line.find("CYLINDRICAL") != std::string::npos)
                info |= FEL_FLOWVIZ_CYLINDRICAL;
            return info;
        }
        if (!has_letter(line)) return 0;
    }
    return 0;
}

// Bit 0 marks a text file; the Tecplot reader learns everything else from the file itself.
unsigned FEL_tecplot_format_get_info(std::ifstream&, bool binary) {
    return binary ? 0 : 1;
}

int FEL_flowviz_deduce_file_type(const std::string& path, unsigned& info) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw FEL_type_detection_error(path, 0, __FILE__, __LINE__);
    std::streampos start = in.tellg();
    bool binary = FEL_is_file_binary(path);
    int kind;
    if (binary) {
        kind = FEL_binary_file_type(path, in);
    } else {
        in.seekg(start);
        kind = FEL_ascii_file_type(in);
    }
    switch (kind) {
        case 0:
        case 1:
            break;
        case 2:
            info = FEL_flowviz_format_get_info(in, binary);
            break;
        case 3:
            info = FEL_tecplot_format_get_info(in, binary);
            break;
        case 4:
            info = binary ? 1 : 0;
            break;
        case 5:
        case 7:
        case 8:
        case 9:
            kind = 0;
            break;
        default:
            throw FEL_exception(__FILE__, __LINE__);
    }
    return kind;
}

std::size_t FEL_fread(void* buffer, std::size_t size, std::size_t count, FILE* file,
                      FEL_byte_reordering_enum order) {
    std::size_t n = std::fread(buffer, size, count, file);
    if (std::ferror(file)) throw FEL_read_error(__FILE__, __LINE__);
    if (order == FEL_BYTE_ORDER_SWAPPED && size > 1) {
        auto* bytes = static_cast<unsigned char*>(buffer);
        for (std::size_t i = 0; i < n; ++i) std::reverse(bytes + i * size, bytes + (i + 1) * size);
    }
    return n;
}

int FEL_check_byte_reordering(const std::string& path) {
    FILE* f = std::fopen(path.c_str(), "rb");
    if (!f) return 0;
    std::uint32_t word = 0;
    std::size_t n = std::fread(&word, 4, 1, f);
    std::fclose(f);
    if (n != 1) return 0;
    std::uint32_t swapped = __builtin_bswap32(word);
    auto magnitude = [](std::uint32_t w) {
        std::int64_t v = static_cast<std::int32_t>(w);
        return v < 0 ? -v : v;
    };
    return magnitude(word) >= magnitude(swapped) ? 1 : 0;
}
