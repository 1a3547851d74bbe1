#include "settings/LocalSettings.h"

#include "settings/LocalSettingsBridges.h"

std::string LocalSettings::GetSettingValueForName(const std::string& name) {
    return GetSettingValueForNameBridge(name);
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
