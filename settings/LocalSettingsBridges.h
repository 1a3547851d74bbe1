#pragma once

#include <string>

// LocalSettings' way to LocalSettings_Mac: each converts its strings from and to UTF-8 and calls
// the class operation of its name.

std::string GetSettingValueForNameBridge(const std::string& name);
void SetSettingValueWithNameBridge(const std::string& value, const std::string& name);
void RemoveSettingForNameBridge(const std::string& name);
void SetSettingValueWithNameAndVaultBridge(const std::string& value, const std::string& name,
                                           const std::string& vault);
std::string GetSettingValueForNameAndVaultBridge(const std::string& name, const std::string& vault);
