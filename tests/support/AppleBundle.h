#pragma once

#include <string>

#include "tests/support/TemporaryFolder.h"

/// Writes the Info.plist of a bundle with these keys, each line such as
/// "<key>K</key><string>V</string>".
inline void WriteInfo(const TemporaryFolder& folder, const std::string& bundle,
                      const std::string& keys) {
    folder.Write(bundle + "/Contents/Info.plist",
                 "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                 "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                 "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                 "<plist version=\"1.0\"><dict>" +
                     keys + "</dict></plist>\n");
}

inline std::string Entry(const std::string& key, const std::string& value) {
    return "<key>" + key + "</key><string>" + value + "</string>";
}

/// Makes a bundle in Apple's layout, with its folder for programs, and these keys in its
/// Info.plist.
inline void MakeBundle(const TemporaryFolder& folder, const std::string& bundle,
                       const std::string& keys) {
    folder.MakeFolder(bundle);
    folder.MakeFolder(bundle + "/Contents");
    folder.MakeFolder(bundle + "/Contents/MacOS");
    WriteInfo(folder, bundle, keys);
}
