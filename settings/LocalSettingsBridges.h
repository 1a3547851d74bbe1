#pragma once

#include <string>
#include <vector>

// LocalSettings' way to LocalSettings_Mac: each converts its strings from and to UTF-8 and calls
// the class operation of its name; the values of several names are taken from one dictionary.

std::string GetSettingValueForNameBridge(const std::string& name);
std::vector<std::string> GetSettingValuesForNamesBridge(const std::vector<std::string>& names);
void SetSettingValueWithNameBridge(const std::string& value, const std::string& name);
void RemoveSettingForNameBridge(const std::string& name);
void SetSettingValueWithNameAndVaultBridge(const std::string& value, const std::string& name,
                                           const std::string& vault);
std::string GetSettingValueForNameAndVaultBridge(const std::string& name, const std::string& vault);
