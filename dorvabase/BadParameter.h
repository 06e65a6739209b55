// The exception raised by base-library calls given an argument they can't work with.
#pragma once

#include <stdexcept>
#include <string>

namespace Dorva {

class BadParameter : public std::invalid_argument {
  public:
    explicit BadParameter(const std::string& what) : std::invalid_argument(what) {}
};

}  // namespace Dorva
