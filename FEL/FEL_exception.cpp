// Message texts of the exception family.
#include "FEL_exception.h"

#include <sstream>

namespace {

std::string unknown_error_text(const std::string& file, unsigned line) {
    std::ostringstream text;
    text << "An unknown error occurred in " << file << " on line " << line << ".";
    return text.str();
}

}  // namespace

FEL_exception::FEL_exception(const std::string& file, unsigned line)
    : message(unknown_error_text(file, line)), file(file), line(line) {}

FEL_type_detection_error::FEL_type_detection_error(const std::string& data_file, unsigned,
                                                   const std::string& file, unsigned line)
    : FEL_exception(file, line) {
    std::ostringstream text;
    text << "Could not determine the filetype of " << data_file << ". Failed in " << file
         << " on line " << line << ".";
    message = text.str();
}

FEL_bad_alloc_error::FEL_bad_alloc_error(const std::string& type_name, std::int64_t count,
                                         const std::string& file, unsigned line)
    : FEL_exception(file, line) {
    std::ostringstream text;
    text << "Could not allocate " << count << " of type " << type_name << ". " << file << " line "
         << line << ".";
    message = text.str();
}

FEL_read_error::FEL_read_error()
    : FEL_exception(prebuilt_message(), "Error reading file.", "", 0) {}
