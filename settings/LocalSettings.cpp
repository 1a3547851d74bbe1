#include "settings/LocalSettings.h"

#include "settings/LocalSettingsBridges.h"

std::string LocalSettings::GetSettingValueForName(const std::string& name) {
    return GetSettingValueForNameBridge(name);
}

std::vector<std::string> LocalSettings::GetSettingValuesForNames(
    const std::vector<std::string>& names) {
    return GetSettingValuesForNamesBridge(names);
}

void LocalSettings::SetSettingValueWithName(const std::string& value, const std::string& name) {
    SetSettingValueWithNameBridge(value, name);
}

void LocalSettings::RemoveSettingForName(const std::string& name) {
    RemoveSettingForNameBridge(name);
}

void LocalSettings::SetSettingValueWithNameAndVault(const std::string& value,
                                                    const std::string& name,
                                                    const std::string& vault) {
    SetSettingValueWithNameAndVaultBridge(value, name, vault);
}

std::string LocalSettings::GetSettingValueForNameAndVault(const std::string& name,
                                                          const std::string& vault) {
    return GetSettingValueForNameAndVaultBridge(name, vault);
}
