// The exception family of the mesh library: thrown by value, carrying the throw site.
#pragma once

#include <cstdint>
#include <string>

class FEL_exception {
  public:
    // "An unknown error occurred in <file> on line <line>."
    FEL_exception(const std::string& file, unsigned line);

    std::string what() const { return message; }
    const std::string& get_file() const { return file; }
    unsigned get_line() const { return line; }

  protected:
    struct prebuilt_message {};
    FEL_exception(prebuilt_message, const std::string& message, const std::string& file,
                  unsigned line)
        : message(message), file(file), line(line) {}

    std::string message;
    std::string file;
    unsigned line;
};

class FEL_type_detection_error : public FEL_exception {
  public:
    // flags take no part in the message.
    FEL_type_detection_error(const std::string& data_file, unsigned flags, const std::string& file,
                             unsigned line);
};

// The message is that of FEL_exception; catchers go by the type.
class FEL_unexpected_eof_error : public FEL_exception {
  public:
    FEL_unexpected_eof_error(const std::string& file, unsigned line) : FEL_exception(file, line) {}
};

class FEL_bad_alloc_error : public FEL_exception {
  public:
    FEL_bad_alloc_error(const std::string& type_name, std::int64_t count, const std::string& file,
                        unsigned line);
};

class FEL_read_error : public FEL_exception {
  public:
    // "Error reading file.", no file, line 0.
    FEL_read_error();
    FEL_read_error(const std::string& file, unsigned line) : FEL_exception(file, line) {}
    // The given message stands in place of the built text.
    FEL_read_error(const std::string& message, const std::string& file, unsigned line)
        : FEL_exception(prebuilt_message(), message, file, line) {}
};

// Outside the family: thrown by pointer.
class FEL_bounding_box_error {};
