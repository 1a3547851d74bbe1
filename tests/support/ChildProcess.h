#pragma once

#include <sys/types.h>

#include <array>
#include <string>
#include <vector>

#include "linux/corrections/Descriptor.h"

/// A pipe through which a child process says one line, such as the port that it listens on.
class Announcement {
  public:
    Announcement();

    /// The number of the child's end, which every child inherits until Read.
    std::string ChildEnd() const { return std::to_string(writing_.get()); }

    /// Waits for the line. Throws when the child ends without a word.
    std::string Read();

  private:
    explicit Announcement(const std::array<int, 2>& ends);

    Descriptor reading_;
    Descriptor writing_;
};

/// A program that a test starts, and ends at the latest when it goes away.
class ChildProcess {
  public:
    /// Starts `program`; its first argument is the name that it sees for itself. Throws when it
    /// cannot be started.
    /// @param folder  where it works; empty: where the test does
    ChildProcess(const std::string& program, const std::vector<std::string>& arguments,
                 const std::string& folder = "");
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    pid_t identifier() const { return process_; }

    /// Waits for its end.
    /// @return the signal that ended it, or 0
    int Wait();

  private:
    pid_t process_ = 0;
};
