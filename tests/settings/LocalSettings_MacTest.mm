#include "settings/LocalSettings_Mac.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "tests/support/Files.h"
#include "tests/support/LogFile.h"
#include "tests/support/SettingsFiles.h"

namespace fs = std::filesystem;

namespace {

bool Equal(id value, id expected) {
    return [value isEqual:expected];
}

NSString* Text(const std::string& utf8) {
    return [NSString stringWithUTF8String:utf8.c_str()];
}

class LocalSettings_MacTest : public SettingsFiles {
  protected:
    NSString* const nothing = nil;
};

TEST_F(LocalSettings_MacTest, TheMachinesSettingsAreOneFile) {
    EXPECT_TRUE(
        Equal([LocalSettings_Mac GetPlistPath], @"/Users/Shared/Keystrel/KSSettings.plist"));
}

TEST_F(LocalSettings_MacTest, EachVaultHasAFileOfItsName) {
    EXPECT_TRUE(Equal([LocalSettings_Mac GetPlistCurUserPath:@"Work"],
                      @"/Users/Shared/Keystrel/Vaults/Work"));
    EXPECT_TRUE(Equal([LocalSettings_Mac GetPlistCurUserPath:@"My Vault.1"],
                      @"/Users/Shared/Keystrel/Vaults/My Vault.1"));
}

TEST_F(LocalSettings_MacTest, AVaultsNameIsNotChecked) {
    EXPECT_TRUE(Equal([LocalSettings_Mac GetPlistCurUserPath:@"a/b"],
                      @"/Users/Shared/Keystrel/Vaults/a/b"));
    EXPECT_TRUE(Equal([LocalSettings_Mac GetPlistCurUserPath:@"../Other"],
                      @"/Users/Shared/Keystrel/Vaults/../Other"));
    EXPECT_TRUE(
        Equal([LocalSettings_Mac GetPlistCurUserPath:@""], @"/Users/Shared/Keystrel/Vaults"));
    EXPECT_EQ([LocalSettings_Mac GetPlistCurUserPath:nothing], nil);

    [LocalSettings_Mac SetSettingValue:@"v" withName:@"k" AndVault:@"../Other"];
    EXPECT_TRUE(Holds(folder + "/Other", "{'k': 'v'}"));
    // What another system takes for a separator is a letter here.
    for (const char* name : {"a\\b", "..\\Other", "C:\\x"}) {
        [LocalSettings_Mac SetSettingValue:@"v" withName:@"k" AndVault:Text(name)];
        EXPECT_TRUE(Holds(folder + "/Vaults/" + name, "{'k': 'v'}")) << name;
    }
    NSString* marked = [NSString stringWithFormat:@"%CWork", static_cast<unichar>(0xFEFF)];
    [LocalSettings_Mac SetSettingValue:@"v" withName:@"k" AndVault:marked];
    EXPECT_TRUE(Holds(folder + "/Vaults/\uFEFFWork", "{'k': 'v'}"));
}

TEST_F(LocalSettings_MacTest, AnAbsentValueIsEmptyAndAnAbsentArrayIsNothing) {
    WriteXml(file, "{'other': 'value'}");
    WriteXml(vaultFile, "{'other': 'value'}");
    EXPECT_TRUE(Equal([LocalSettings_Mac GetSettingValueForName:@"absent"], @""));
    EXPECT_TRUE(Equal([LocalSettings_Mac GetSettingValueForName:@"absent" AndVault:@"Work"], @""));
    EXPECT_EQ([LocalSettings_Mac GetSettingsArrayForName:@"absent"], nil);
}

TEST_F(LocalSettings_MacTest, WithoutAFileThereIsAnEmptyDictionary) {
    EXPECT_TRUE(Equal([LocalSettings_Mac GetPlistDictionary], [NSDictionary dictionary]));
    EXPECT_TRUE(
        Equal([LocalSettings_Mac GetPlistDictionaryForUser:@"Work"], [NSDictionary dictionary]));
    EXPECT_TRUE(Equal([LocalSettings_Mac GetSettingValueForName:@"k"], @""));
    EXPECT_FALSE(fs::exists(file));
}

TEST_F(LocalSettings_MacTest, AValueThatIsSetIsReadBackAtOnce) {
    [LocalSettings_Mac SetSettingValue:@"1" withName:@"k"];
    EXPECT_TRUE(Equal([LocalSettings_Mac GetSettingValueForName:@"k"], @"1"));
    [LocalSettings_Mac SetSettingValue:@"2" withName:@"k"];
    EXPECT_TRUE(Equal([LocalSettings_Mac GetSettingValueForName:@"k"], @"2"));
    EXPECT_TRUE(Holds(file, "{'k': '2'}"));
}

TEST_F(LocalSettings_MacTest, NothingIsKeptBetweenCalls) {
    [LocalSettings_Mac SetSettingValue:@"ours" withName:@"k"];
    WriteXml(file, "{'k': 'theirs', 'l': 'x'}");
    EXPECT_TRUE(Equal([LocalSettings_Mac GetSettingValueForName:@"k"], @"theirs"));
    [LocalSettings_Mac SetSettingValue:@"ours" withName:@"k"];
    EXPECT_TRUE(Holds(file, "{'k': 'ours', 'l': 'x'}"));
    fs::remove(file);
    EXPECT_TRUE(Equal([LocalSettings_Mac GetSettingValueForName:@"k"], @""));
}

TEST_F(LocalSettings_MacTest, VaultsAndTheMachineKeepTheirValuesApart) {
    [LocalSettings_Mac SetSettingValue:@"machine" withName:@"k"];
    [LocalSettings_Mac SetSettingValue:@"work" withName:@"k" AndVault:@"Work"];
    [LocalSettings_Mac SetSettingValue:@"home" withName:@"k" AndVault:@"Home"];
    EXPECT_TRUE(Equal([LocalSettings_Mac GetSettingValueForName:@"k"], @"machine"));
    EXPECT_TRUE(Equal([LocalSettings_Mac GetSettingValueForName:@"k" AndVault:@"Work"], @"work"));
    EXPECT_TRUE(Equal([LocalSettings_Mac GetSettingValueForName:@"k" AndVault:@"Home"], @"home"));
    EXPECT_TRUE(Holds(vaultFile, "{'k': 'work'}"));
}

TEST_F(LocalSettings_MacTest, EverythingElseInTheFileSurvivesASetter) {
    const std::string everything =
        "'text': 'a', 'number': 9223372036854775807, 'real': -2.5, 'yes': True, 'no': False,"
        "'data': b'\\0\\1\\xff', 'date': datetime.datetime(2024, 3, 5, 9, 7, 2),"
        "'list': ['a', ['b'], {}], 'dictionary': {'inner': {'k': [1, 2]}}, '': ''";
    WriteXml(file, "{" + everything + "}");
    [LocalSettings_Mac SetSettingValue:@"new" withName:@"k"];
    EXPECT_TRUE(Holds(file, "{'k': 'new', " + everything + "}"));
    [LocalSettings_Mac RemoveSettingForName:@"k"];
    EXPECT_TRUE(Holds(file, "{" + everything + "}"));
}

TEST_F(LocalSettings_MacTest, ABinaryFileIsReadAndWrittenBackAsXml) {
    WriteBinary(file, "{'a': 'Zürich', 'list': ['x', 'y']}");
    EXPECT_TRUE(Equal([LocalSettings_Mac GetSettingValueForName:@"a"], Text("Zürich")));
    EXPECT_EQ([[LocalSettings_Mac GetSettingsArrayForName:@"list"] count], 2U);
    [LocalSettings_Mac SetSettingValue:@"b" withName:@"b"];
    EXPECT_TRUE(Holds(file, "{'a': 'Zürich', 'list': ['x', 'y'], 'b': 'b'}"));
    EXPECT_EQ(ReadFile(file).substr(0, 5), "<?xml");
}

TEST_F(LocalSettings_MacTest, TextsOfEveryKindSurvive) {
    for (const std::string& text :
         {std::string(), std::string(" "), std::string("\n\t leading and trailing \t\n"),
          std::string("<key>&amp;\"'</key>]]>"), std::string("Zürich 東京 😀 \U0010FFFD"),
          std::string("%@ %s %n"), std::string(100000, 'x')}) {
        [LocalSettings_Mac SetSettingValue:Text(text) withName:@"k"];
        EXPECT_TRUE(Equal([LocalSettings_Mac GetSettingValueForName:@"k"], Text(text))) << text;
        EXPECT_TRUE(Holds(file, "{'k': '''" + text + "'''}")) << text;
    }
}

TEST_F(LocalSettings_MacTest, NoNameIsSpecial) {
    for (const char* name : {"", " ", ".", "a.b", "@", "@count", "@\"x\"", "a/b", "%@", "Zürich 😀",
                             "self", "<k>&", "allKeys"}) {
        [LocalSettings_Mac SetSettingValue:@"v" withName:Text(name)];
        EXPECT_TRUE(Equal([LocalSettings_Mac GetSettingValueForName:Text(name)], @"v")) << name;
        EXPECT_TRUE(Holds(file, "{'" + std::string(name) + "': 'v'}")) << name;
        [LocalSettings_Mac RemoveSettingForName:Text(name)];
        EXPECT_TRUE(Equal([LocalSettings_Mac GetSettingValueForName:Text(name)], @"")) << name;
        EXPECT_TRUE(Holds(file, "{}")) << name;
    }
}

TEST_F(LocalSettings_MacTest, StoringNothingRemovesTheName) {
    WriteXml(file, "{'k': 'v', 'list': ['x'], 'l': 'w'}");
    [LocalSettings_Mac SetSettingValue:nil withName:@"k"];
    EXPECT_TRUE(Holds(file, "{'list': ['x'], 'l': 'w'}"));
    [LocalSettings_Mac SetSettingsArrayForName:nil withName:@"list"];
    EXPECT_TRUE(Holds(file, "{'l': 'w'}"));
    WriteXml(vaultFile, "{'k': 'v'}");
    [LocalSettings_Mac SetSettingValue:nil withName:@"k" AndVault:@"Work"];
    EXPECT_TRUE(Holds(vaultFile, "{}"));
}

TEST_F(LocalSettings_MacTest, RemovingAnAbsentNameWritesTheFileAllTheSame) {
    WriteBinary(file, "{'k': 'v'}");
    [LocalSettings_Mac RemoveSettingForName:@"absent"];
    EXPECT_TRUE(Holds(file, "{'k': 'v'}"));  // XML now, so it was written
}

TEST_F(LocalSettings_MacTest, ArraysAreStoredAndRead) {
    NSArray* array = [NSArray arrayWithObjects:@"a", [NSArray arrayWithObject:@"b"], nil];
    [LocalSettings_Mac SetSettingsArrayForName:array withName:@"list"];
    EXPECT_TRUE(Equal([LocalSettings_Mac GetSettingsArrayForName:@"list"], array));
    EXPECT_TRUE(Holds(file, "{'list': ['a', ['b']]}"));
}

TEST_F(LocalSettings_MacTest, WhatIsNoArrayIsNotReadAsOne) {
    WriteXml(file, "{'text': 'a', 'number': 1, 'dictionary': {}}");
    EXPECT_EQ([LocalSettings_Mac GetSettingsArrayForName:@"text"], nil);
    EXPECT_EQ([LocalSettings_Mac GetSettingsArrayForName:@"number"], nil);
    EXPECT_EQ([LocalSettings_Mac GetSettingsArrayForName:@"dictionary"], nil);
}

TEST_F(LocalSettings_MacTest, WholeDictionariesAreWrittenAndRead) {
    NSDictionary* settings = [NSDictionary dictionaryWithObject:@"v" forKey:@"k"];
    [LocalSettings_Mac SetPlistDictionary:settings];
    EXPECT_TRUE(Equal([LocalSettings_Mac GetPlistDictionary], settings));
    EXPECT_TRUE(Holds(file, "{'k': 'v'}"));
    [LocalSettings_Mac SetPlistDictionary:[NSDictionary dictionary] AndVault:@"Work"];
    EXPECT_TRUE(
        Equal([LocalSettings_Mac GetPlistDictionaryForUser:@"Work"], [NSDictionary dictionary]));
    EXPECT_TRUE(Holds(vaultFile, "{}"));
}

TEST_F(LocalSettings_MacTest, ANilNameReadsAndChangesNothing) {
    WriteXml(file, "{'k': 'v'}");
    const std::string before = ReadFile(file);
    EXPECT_TRUE(Equal([LocalSettings_Mac GetSettingValueForName:nothing], @""));
    EXPECT_EQ([LocalSettings_Mac GetSettingsArrayForName:nothing], nil);
    [LocalSettings_Mac SetSettingValue:@"v" withName:nothing];
    [LocalSettings_Mac RemoveSettingForName:nothing];
    EXPECT_EQ(ReadFile(file), before);
}

TEST_F(LocalSettings_MacTest, ANilVaultHasNoFile) {
    EXPECT_TRUE(Equal([LocalSettings_Mac GetSettingValueForName:@"k" AndVault:nothing], @""));
    [LocalSettings_Mac SetSettingValue:@"v" withName:@"k" AndVault:nothing];
    EXPECT_TRUE(fs::is_empty(vaults));
    EXPECT_TRUE(fs::is_directory(vaults));
}

// Files that hold no dictionary.

class BadFile : public LocalSettings_MacTest {
  protected:
    void ExpectNothingIsRead() {
        EXPECT_EQ([LocalSettings_Mac GetPlistDictionary], nil);
        EXPECT_TRUE(Equal([LocalSettings_Mac GetSettingValueForName:@"k"], @""));
        EXPECT_EQ([LocalSettings_Mac GetSettingsArrayForName:@"k"], nil);
    }
};

TEST_F(BadFile, CountsAsEmptyStaysAsItIsByReadingAndIsReplacedByASetter) {
    const std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n";
    const std::string whole = xml + "<dict><key>k</key><string>v</string></dict></plist>\n";
    std::string binary;
    {
        WriteBinary(file, "{'k': 'v'}");
        binary = ReadFile(file);
    }
    for (const std::string& bytes : {
             std::string(),
             std::string("\0", 1),
             std::string(1000, '\xff'),
             xml,
             whole.substr(0, whole.size() - 12),
             whole.substr(0, whole.size() / 2),
             binary.substr(0, binary.size() - 1),
             binary.substr(0, binary.size() / 2),
             std::string("bplist00"),
             xml + "<array><string>k</string></array></plist>",
             xml + "<string>k</string></plist>",
             xml + "<dict><key>k</key></dict></plist>",
             xml + "<dict><string>k</string><string>v</string></dict></plist>",
         }) {
        WriteFile(file, bytes);
        ExpectNothingIsRead();
        EXPECT_EQ(ReadFile(file), bytes);
        [LocalSettings_Mac SetSettingValue:@"new" withName:@"l"];
        EXPECT_TRUE(Holds(file, "{'l': 'new'}")) << bytes;
    }
}

TEST_F(BadFile, ThatCannotBeReadCountsAsEmptyAndStays) {
    WriteXml(file, "{'k': 'v'}");
    const std::string bytes = ReadFile(file);
    ASSERT_EQ(chmod(file.c_str(), 0), 0);
    ExpectNothingIsRead();
    [LocalSettings_Mac SetSettingValue:@"w" withName:@"k"];
    [LocalSettings_Mac RemoveSettingForName:@"k"];
    [LocalSettings_Mac SetPlistDictionary:[NSDictionary dictionary]];
    ASSERT_EQ(chmod(file.c_str(), 0644), 0);
    EXPECT_EQ(ReadFile(file), bytes) << "no setter replaces what nobody could read";
}

TEST_F(BadFile, ThatIsAFolderStaysOne) {
    fs::create_directories(file + "/inside");
    ExpectNothingIsRead();
    [LocalSettings_Mac SetSettingValue:@"v" withName:@"k"];
    EXPECT_TRUE(fs::is_directory(file + "/inside"));
    ExpectNothingIsRead();
}

// Writing.

TEST_F(LocalSettings_MacTest, AReaderThatHasTheFileOpenKeepsTheWholeOldOne) {
    [LocalSettings_Mac SetSettingValue:@"old" withName:@"k"];
    const std::string old = ReadFile(file);
    FILE* reader = fopen(file.c_str(), "r");
    ASSERT_NE(reader, nullptr);
    [LocalSettings_Mac SetSettingValue:@"a value of quite another length" withName:@"k"];
    std::string read(old.size() + 100, '\0');
    read.resize(fread(&read[0], 1, read.size(), reader));
    fclose(reader);
    EXPECT_EQ(read, old);
    EXPECT_NE(ReadFile(file), old);
}

TEST_F(LocalSettings_MacTest, AWriteLeavesNoOtherFileBehind) {
    [LocalSettings_Mac SetSettingValue:@"v" withName:@"k"];
    [LocalSettings_Mac SetSettingValue:@"w" withName:@"k" AndVault:@"Work"];
    size_t count = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
        count += entry.is_regular_file() ? 1 : 0;
    }
    EXPECT_EQ(count, 2U);
}

TEST_F(LocalSettings_MacTest, ANewFileIsForEverybodyToReadAndAnOldOneKeepsItsMode) {
    [LocalSettings_Mac SetSettingValue:@"v" withName:@"k"];
    EXPECT_EQ(ModeOf(file), 0644U);
    ASSERT_EQ(chmod(file.c_str(), 0666), 0);
    [LocalSettings_Mac SetSettingValue:@"w" withName:@"k"];
    EXPECT_EQ(ModeOf(file), 0666U);
}

TEST_F(LocalSettings_MacTest, ALinkIsReplacedAndItsTargetStays) {
    WriteXml(folder + "/target", "{'k': 'v'}");
    fs::create_symlink(folder + "/target", file);
    EXPECT_TRUE(Equal([LocalSettings_Mac GetSettingValueForName:@"k"], @"v"));
    [LocalSettings_Mac SetSettingValue:@"w" withName:@"k"];
    EXPECT_FALSE(fs::is_symlink(file));
    EXPECT_TRUE(Holds(file, "{'k': 'w'}"));
    EXPECT_TRUE(Holds(folder + "/target", "{'k': 'v'}"));
}

TEST_F(LocalSettings_MacTest, AMegabyteOfSettingsIsWorkable) {
    WriteXml(file, "{**{'key %d' % i: 'x' * 1000 for i in range(1000)}, 'k': 'v'}");
    ASSERT_GT(fs::file_size(file), 1000000U);
    EXPECT_TRUE(Equal([LocalSettings_Mac GetSettingValueForName:@"k"], @"v"));
    [LocalSettings_Mac SetSettingValue:@"w" withName:@"k"];
    EXPECT_TRUE(Holds(file, "{**{'key %d' % i: 'x' * 1000 for i in range(1000)}, 'k': 'w'}"));
}

class SilentOrLogged : public LocalSettings_MacTest {
  protected:
    SilentOrLogged() {
        EXPECT_TRUE(
            CLogger::m_Logger.InitLogger(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo));
    }

    void ExpectOneFailureLine() {
        const std::string text = WithoutTime(log.Bytes());
        const std::string start = "\nHH:MM:SS - FAILURE : Coudn't save local data with error: ";
        EXPECT_EQ(text.substr(0, start.size()), start);
        EXPECT_GT(text.size(), start.size() + 1);
        EXPECT_EQ(text.back(), '!');
        EXPECT_EQ(text.find("\nHH:MM:SS", 1), std::string::npos);
    }

    LogFile log;
};

TEST_F(SilentOrLogged, WithoutTheFolderNothingHappens) {
    fs::remove_all(folder);
    [LocalSettings_Mac SetSettingValue:@"v" withName:@"k"];
    [LocalSettings_Mac SetSettingsArrayForName:[NSArray array] withName:@"k"];
    [LocalSettings_Mac RemoveSettingForName:@"k"];
    [LocalSettings_Mac SetSettingValue:@"v" withName:@"k" AndVault:@"Work"];
    EXPECT_TRUE(Equal([LocalSettings_Mac GetSettingValueForName:@"k"], @""));
    EXPECT_TRUE(Equal([LocalSettings_Mac GetSettingValueForName:@"k" AndVault:@"Work"], @""));
    EXPECT_FALSE(fs::exists(folder));
    EXPECT_EQ(log.Bytes(), "");
}

TEST_F(SilentOrLogged, AFolderThatCannotBeWrittenKeepsItsFile) {
    WriteXml(file, "{'k': 'v'}");
    const std::string before = ReadFile(file);
    ASSERT_EQ(chmod(folder.c_str(), 0555), 0);
    [LocalSettings_Mac SetSettingValue:@"w" withName:@"k"];
    EXPECT_EQ(ReadFile(file), before);
    EXPECT_EQ(log.Bytes(), "");
}

TEST_F(SilentOrLogged, ABadFileIsReadWithoutALine) {
    WriteFile(file, "no property list");
    EXPECT_TRUE(Equal([LocalSettings_Mac GetSettingValueForName:@"k"], @""));
    EXPECT_EQ(log.Bytes(), "");
}

TEST_F(SilentOrLogged, AValueThatNoPropertyListHoldsIsLoggedAndTheFileStays) {
    WriteXml(file, "{'k': 'v'}");
    const std::string before = ReadFile(file);
    [LocalSettings_Mac SetSettingValue:[[[NSObject alloc] init] autorelease] withName:@"k"];
    EXPECT_EQ(ReadFile(file), before);
    ExpectOneFailureLine();
}

TEST_F(SilentOrLogged, ANullObjectInAnArrayIsLoggedAndTheFileStays) {
    WriteXml(file, "{'k': 'v'}");
    const std::string before = ReadFile(file);
    [LocalSettings_Mac SetSettingsArrayForName:[NSArray arrayWithObject:[NSNull null]]
                                      withName:@"k"];
    EXPECT_EQ(ReadFile(file), before);
    ExpectOneFailureLine();
}

TEST_F(SilentOrLogged, NoNameIsSilentAndTheFileStays) {
    WriteXml(file, "{'k': 'v'}");
    const std::string before = ReadFile(file);
    [LocalSettings_Mac SetSettingValue:@"v" withName:nothing];
    EXPECT_EQ(ReadFile(file), before);
    EXPECT_EQ(log.Bytes(), "");
}

TEST_F(SilentOrLogged, ANameThatIsNoTextIsLoggedAndTheFileStays) {
    WriteXml(file, "{'k': 'v'}");
    const std::string before = ReadFile(file);
    [LocalSettings_Mac SetSettingValue:@"v" withName:(NSString*)[NSNumber numberWithInt:1]];
    EXPECT_EQ(ReadFile(file), before);
    ExpectOneFailureLine();
}

TEST_F(SilentOrLogged, ANameThatIsNoKeyAtAllIsLoggedAndTheFileStays) {
    const std::string before = "{ k = v; }";  // who writes it anew writes XML
    WriteFile(file, before);
    NSString* name = (NSString*)[[[NSObject alloc] init] autorelease];  // cannot be copied
    EXPECT_TRUE(Equal([LocalSettings_Mac GetSettingValueForName:name], @""));
    [LocalSettings_Mac SetSettingValue:@"v" withName:name];
    EXPECT_EQ(ReadFile(file), before);
    ExpectOneFailureLine();
}

TEST_F(SilentOrLogged, ANilDictionaryIsLoggedAndTheFileStays) {
    WriteXml(file, "{'k': 'v'}");
    const std::string before = ReadFile(file);
    [LocalSettings_Mac SetPlistDictionary:nil];
    EXPECT_EQ(ReadFile(file), before);
    ExpectOneFailureLine();
}

}  // namespace
