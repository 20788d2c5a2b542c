// Thrown when the database refuses, or stays away: the loading ends, while a log that can't be read ends alone.
#pragma once

#include <stdexcept>

namespace vek::tool {

class databaseError_t : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace vek::tool
