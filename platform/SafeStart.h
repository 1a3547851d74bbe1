#pragma once

/// What must hold before the process opens its first file. The one object of the process is built
/// before every other of the product.
class SafeStart {
  public:
    /// Opens /dev/null as each of the descriptors 0 to 2 that is closed: the next file that is
    /// opened would take its number, and a log in standard output's place would get what the
    /// console shows. What platform libraries opened earlier stays theirs.
    ///
    /// Catches SIGPIPE and SIGXFSZ and does nothing in them: a write to a reader that is gone, or
    /// beyond a limit on the size of files, fails and does not end the process. They are not
    /// ignored, which programs that the process starts would inherit.
    ///
    /// Nothing is logged.
    SafeStart();

  private:
    static SafeStart instance;
};
