#include "settings/LocalSettings.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/Files.h"
#include "tests/support/SettingsFiles.h"

namespace {

using LocalSettingsTest = SettingsFiles;

TEST_F(LocalSettingsTest, ReachesTheMachinesSettings) {
    LocalSettings::SetSettingValueWithName("value", "name");
    EXPECT_TRUE(Holds(file, "{'name': 'value'}"));
    EXPECT_EQ(LocalSettings::GetSettingValueForName("name"), "value");
    LocalSettings::RemoveSettingForName("name");
    EXPECT_TRUE(Holds(file, "{}"));
    EXPECT_EQ(LocalSettings::GetSettingValueForName("name"), "");
}

TEST_F(LocalSettingsTest, SeveralValuesComeInTheOrderOfTheirNames) {
    WriteXml(file, "{'a': '1', 'b': '2', 'number': 3}");
    EXPECT_EQ(LocalSettings::GetSettingValuesForNames({"b", "missing", "number", "a"}),
              (std::vector<std::string>{"2", "", "", "1"}));
}

TEST_F(LocalSettingsTest, ReachesAVaultsSettings) {
    LocalSettings::SetSettingValueWithNameAndVault("value", "name", "Work");
    EXPECT_TRUE(Holds(vaultFile, "{'name': 'value'}"));
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_EQ(LocalSettings::GetSettingValueForNameAndVault("name", "Work"), "value");
    EXPECT_EQ(LocalSettings::GetSettingValueForNameAndVault("name", "Home"), "");
    EXPECT_EQ(LocalSettings::GetSettingValueForName("name"), "");
}

TEST_F(LocalSettingsTest, TextsAreUtf8BothWays) {
    const std::string text = "Zürich 東京 😀";
    LocalSettings::SetSettingValueWithName(text, text);
    LocalSettings::SetSettingValueWithNameAndVault(text, text, text);
    EXPECT_TRUE(Holds(file, "{'" + text + "': '" + text + "'}"));
    EXPECT_TRUE(Holds(vaults + "/" + text, "{'" + text + "': '" + text + "'}"));
    EXPECT_EQ(LocalSettings::GetSettingValueForName(text), text);
    EXPECT_EQ(LocalSettings::GetSettingValueForNameAndVault(text, text), text);
}

TEST_F(LocalSettingsTest, AnEmptyValueIsStored) {
    LocalSettings::SetSettingValueWithName("", "name");
    EXPECT_TRUE(Holds(file, "{'name': ''}"));
}

TEST_F(LocalSettingsTest, AValueThatIsNoTextCountsAsAbsent) {
    WriteXml(file,
             "{'number': 1, 'real': 1.5, 'yes': True, 'data': b'1', 'array': ['1'],"
             "'date': datetime.datetime(2024, 3, 5), 'dictionary': {'1': '1'}}");
    for (const char* name : {"number", "real", "yes", "data", "array", "date", "dictionary"}) {
        EXPECT_EQ(LocalSettings::GetSettingValueForName(name), "") << name;
    }
    const std::string before = ReadFile(file);
    WriteFile(vaultFile, before);
    EXPECT_EQ(LocalSettings::GetSettingValueForNameAndVault("number", "Work"), "");
    EXPECT_EQ(ReadFile(vaultFile), before);
}

TEST_F(LocalSettingsTest, WhatIsNotUtf8NamesNothing) {
    WriteXml(file, "{'name': 'value'}");
    const std::string before = ReadFile(file);
    const std::string bad = "\xff";
    EXPECT_EQ(LocalSettings::GetSettingValueForName(bad), "");
    EXPECT_EQ(LocalSettings::GetSettingValueForNameAndVault("name", bad), "");
    LocalSettings::SetSettingValueWithName("value", bad);
    LocalSettings::RemoveSettingForName(bad);
    LocalSettings::SetSettingValueWithNameAndVault("value", "name", bad);
    EXPECT_EQ(ReadFile(file), before);
    EXPECT_TRUE(std::filesystem::is_empty(vaults));
}

TEST_F(LocalSettingsTest, AValueThatIsNotUtf8RemovesTheSetting) {
    WriteXml(file, "{'name': 'value', 'other': 'x'}");
    LocalSettings::SetSettingValueWithName("\xff", "name");
    EXPECT_TRUE(Holds(file, "{'other': 'x'}"));
}

TEST_F(LocalSettingsTest, TextsEndAtTheirFirstNul) {
    LocalSettings::SetSettingValueWithName(std::string("va\0lue", 6), std::string("na\0me", 5));
    EXPECT_TRUE(Holds(file, "{'na': 'va'}"));
}

}  // namespace
