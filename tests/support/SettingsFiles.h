#pragma once

#include <gtest/gtest.h>

#include <string>

/// Every test starts on a machine with the product's shared folders and no settings in them.
class SettingsFiles : public testing::Test {
  protected:
    SettingsFiles();
    ~SettingsFiles() override;

    /// Writes a file whose contents a Python expression gives, as an XML property list.
    static void WriteXml(const std::string& path, const std::string& expression);
    /// The same as a binary property list.
    static void WriteBinary(const std::string& path, const std::string& expression);
    /// Whether Python reads the file as an XML property list with the value of the expression.
    static bool Holds(const std::string& path, const std::string& expression);

    const std::string folder = "/Users/Shared/Keystrel";
    const std::string vaults = "/Users/Shared/Keystrel/Vaults";
    const std::string file = "/Users/Shared/Keystrel/KSSettings.plist";
    const std::string vaultFile = "/Users/Shared/Keystrel/Vaults/Work";

  private:
    void RemoveEverything() const;
};
