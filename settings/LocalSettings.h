#pragma once

#include <string>
#include <vector>

/// The settings for code that has byte strings. All texts are UTF-8 (RFC 3629), up to their first
/// NUL; value first, name second. What is read, written and logged, and when, stands with
/// LocalSettings_Mac.
///
/// A value that the file holds as anything but a string is read as "". A name or vault that is not
/// UTF-8 names nothing; a value that is not UTF-8 counts as none, so storing it removes the
/// setting.
class LocalSettings {
  public:
    /// A setting of the machine.
    /// @return "" when there is none
    static std::string GetSettingValueForName(const std::string& name);

    /// Several settings of the machine, in the order of their names, from one reading of the file.
    static std::vector<std::string> GetSettingValuesForNames(const std::vector<std::string>& names);

    /// Stores a setting of the machine.
    static void SetSettingValueWithName(const std::string& value, const std::string& name);

    /// Removes a setting of the machine.
    static void RemoveSettingForName(const std::string& name);

    /// Stores a setting of a vault.
    static void SetSettingValueWithNameAndVault(const std::string& value, const std::string& name,
                                                const std::string& vault);

    /// A setting of a vault.
    /// @return "" when there is none
    static std::string GetSettingValueForNameAndVault(const std::string& name,
                                                      const std::string& vault);
};
