#pragma once

#include <sys/resource.h>
#include <sys/types.h>

#include <csignal>

#include <string>

/// A folder of a test's own, open to every user, gone with all its contents at the end. Its
/// operations use plain system calls, so that they can judge the code under test; each throws when
/// it cannot do its work.
class TemporaryFolder {
  public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& path() const { return path_; }

    /// The path of an item below the folder.
    std::string operator/(const std::string& name) const { return path_ + '/' + name; }

    void Write(const std::string& name, const std::string& text, mode_t mode = 0644) const;
    void MakeFolder(const std::string& name, mode_t mode = 0755) const;
    void MakeLink(const std::string& name, const std::string& destination) const;

    std::string Read(const std::string& name) const;
    mode_t Mode(const std::string& name) const;
    std::string Destination(const std::string& link) const;
    bool Has(const std::string& name) const;

    /// Every item below the folder, relative to it, sorted and joined by blanks.
    std::string Everything() const;

  private:
    std::string path_;
};

/// While it lives, the process has the rights of an ordinary user, also when root runs the tests:
/// permissions then hold.
class OrdinaryUser {
  public:
    OrdinaryUser();
    ~OrdinaryUser();
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

  private:
    uid_t user_;
    gid_t group_;
};

/// While it lives, the process has another umask.
class Umask {
  public:
    explicit Umask(mode_t mask);
    ~Umask();
    Umask(const Umask&) = delete;
    Umask& operator=(const Umask&) = delete;

  private:
    mode_t previous_;
};

/// While it lives, the process cannot make a file grow beyond that many bytes: a write fails
/// half-way with EFBIG, as on a disk that fills up.
class LargestFile {
  public:
    explicit LargestFile(rlim_t bytes);
    ~LargestFile();
    LargestFile(const LargestFile&) = delete;
    LargestFile& operator=(const LargestFile&) = delete;

  private:
    rlimit previous_;
    void (*handler_)(int);
};
