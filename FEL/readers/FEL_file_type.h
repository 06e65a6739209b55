// What the readers share: the detection flags, first-bytes file-type detection, byte-order
// handling and the read progress.
#pragma once

#include <cstddef>
#include <cstdio>
#include <fstream>
#include <string>

// The detection word: which reader and which form of its format.
enum : unsigned {
    FEL_PLOT3D_UNSPECIFIED = 0,
    FEL_PLOT3D_IBLANK = 0x1,
    FEL_PLOT3D_MULTIZONE = 0x2,
    FEL_PLOT3D_UNSTRUCTURED = 0x4,
    FEL_PLOT3D_FORTRAN_UNFORMATTED = 0x8,
    FEL_PLOT3D_FORTRAN_FORMATTED = 0x20,
    FEL_PLOT3D_LITTLE_ENDIAN = 0x40,
    FEL_PLOT3D = 0x100,
    FEL_PLOT3D_PAGED = 0x200,
    FEL_FITS = 0x800,
    FEL_PLOT3D_VARIANT_A = 0x1000,
    FEL_PLOT3D_TECPLOT = 0x2000,
};

// The info bits of a FLOWVIZ file.
enum : unsigned {
    FEL_FLOWVIZ_ASCII = 0x1,
    FEL_FLOWVIZ_CARTESIAN = 0x10,
    FEL_FLOWVIZ_CYLINDRICAL = 0x20,
    FEL_FLOWVIZ_HEXAHEDRAL = 0x40,
    FEL_FLOWVIZ_MESH = 0x100,
};

// File kinds of the first-bytes test. FEL_ascii_file_type also answers 5, a first line of digits
// and blanks only, which the front end treats as unknown.
enum FEL_file_kind_enum {
    FEL_FILE_UNKNOWN = 0,
    FEL_FILE_LAYOUT = 1,
    FEL_FILE_FLOWVIZ = 2,
    FEL_FILE_TECPLOT = 3,
    FEL_FILE_STL = 4,
    FEL_FILE_DIGITS = 5,
};

enum FEL_byte_reordering_enum { FEL_BYTE_ORDER_NATIVE = 0, FEL_BYTE_ORDER_SWAPPED = 1 };

// When set, the deducers and the STL reader report what they found on the error stream.
extern bool FEL_reader_verbose;

// First-bytes detection.
bool FEL_is_file_binary(const std::string& path);
int FEL_ascii_file_type(std::ifstream& in);
int FEL_binary_file_type(const std::string& path, std::ifstream& in);
int FEL_flowviz_deduce_file_type(const std::string& path, unsigned& info);
unsigned FEL_flowviz_format_get_info(std::ifstream& in, bool binary);
unsigned FEL_tecplot_format_get_info(std::ifstream& in, bool binary);

// fread, then each element byte-swapped if asked; returns the count read. A stream error throws
// FEL_read_error.
std::size_t FEL_fread(void* buffer, std::size_t size, std::size_t count, FILE* file,
                      FEL_byte_reordering_enum order);
// 1 if the file's first 32-bit word reads larger as it stands than byte-swapped (a big-endian file
// on this hardware), else 0; 0 if the file will not open.
int FEL_check_byte_reordering(const std::string& path);
bool FEL_little_endian_hardware();

// Progress of the current read, from 0 to 1.
void FEL_set_file_read_progress(float fraction);
float FEL_get_file_read_progress();
