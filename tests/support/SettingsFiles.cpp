#include "tests/support/SettingsFiles.h"

#include <filesystem>

#include "tests/support/Command.h"

namespace fs = std::filesystem;

namespace {

const std::string kImports = "import datetime, plistlib, sys\n";

void Write(const std::string& path, const std::string& expression, const std::string& format) {
    Python(kImports + "with open(sys.argv[1], 'wb') as file:\n    plistlib.dump(" + expression +
               ", file, fmt=plistlib." + format + ")",
           {path});
}

}  // namespace

SettingsFiles::SettingsFiles() {
    RemoveEverything();
    fs::create_directories(vaults);
}

SettingsFiles::~SettingsFiles() {
    RemoveEverything();
}

void SettingsFiles::WriteXml(const std::string& path, const std::string& expression) {
    Write(path, expression, "FMT_XML");
}

void SettingsFiles::WriteBinary(const std::string& path, const std::string& expression) {
    Write(path, expression, "FMT_BINARY");
}

bool SettingsFiles::Holds(const std::string& path, const std::string& expression) {
    return Python(kImports +
                      "with open(sys.argv[1], 'rb') as file:\n"
                      "    read = plistlib.load(file, fmt=plistlib.FMT_XML)\n"
                      "print(read == " +
                      expression + ")",
                  {path}) == "True\n";
}

// What a test made unreadable is removed all the same.
void SettingsFiles::RemoveEverything() const {
    std::error_code ignored;
    for (const std::string& path : {folder, vaults}) {
        fs::permissions(path, fs::perms::owner_all, ignored);
    }
    fs::remove_all(folder);
}
