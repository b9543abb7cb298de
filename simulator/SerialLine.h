#pragma once

#include <string>

#include "simulator/FileDescriptor.h"

namespace sim {

/// A pseudo-terminal in raw mode whose other end is linked at a path; the link goes with the object.
class SerialLine {
  public:
    /// Replaces a link that is there already, but nothing else. Throws std::system_error.
    explicit SerialLine(std::string path);
    SerialLine(const SerialLine&) = delete;
    SerialLine& operator=(const SerialLine&) = delete;
    ~SerialLine();

    int Descriptor() const { return instrument_.Get(); }

  private:
    std::string path_, device_;
    FileDescriptor instrument_;
    FileDescriptor host_;  // kept open so that the line stays up, in raw mode, between two users
};

}  // namespace sim
