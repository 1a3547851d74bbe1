#include "tools/IntegrationChecks.h"

#include <Foundation/Foundation.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "crypto/CocoaStrings.h"
#include "tools/JsonFile.h"

const char kAllowedOrigins[] = "allowed_origins";
const char kAllowedExtensions[] = "allowed_extensions";

namespace {

constexpr char kOriginStart[] = "chrome-extension://";
constexpr size_t kIdentifierLength = 32;
constexpr mode_t kOthersWrite = S_IWGRP | S_IWOTH;

NSString* const kUpdateURL = @"external_update_url";

NSString* TextUnder(NSString* key, NSDictionary* object) {
    id value = [object objectForKey:key];
    return [value isKindOfClass:[NSString class]] ? value : nil;
}

// The object that the file holds; nil, with a fault, when there is none.
NSDictionary* ReadObject(FileStatus* file) {
    struct stat info = {};
    if (stat(file->path.c_str(), &info) != 0) {
        if (lstat(file->path.c_str(), &info) == 0) {
            file->isThere = true;
            file->faults.push_back("it is a link that leads nowhere");
        }
        return nil;
    }
    file->isThere = true;
    if (!S_ISREG(info.st_mode)) {
        file->faults.push_back("it is no file");
        return nil;
    }
    NSData* data = [NSData dataWithContentsOfFile:CocoaStringFromUtf8(file->path)];
    if (data == nil) {
        file->faults.push_back("this user may not read it");
        return nil;
    }
    NSDictionary* object = ReadJsonObject(data);
    if (object == nil) {
        file->faults.push_back("it holds no JSON object");
    }
    return object;
}

void CheckWriters(const std::string& path, const std::string& whose, FileStatus* file) {
    struct stat info = {};
    if (stat(path.c_str(), &info) == 0 && (info.st_mode & kOthersWrite) != 0) {
        file->faults.push_back(whose + " can be written by other users");
    }
}

void CheckProgram(NSString* program, FileStatus* file) {
    if (![program hasPrefix:@"/"]) {
        file->faults.push_back("\"path\" is no absolute path");
        return;
    }
    const std::string path = Utf8Bytes(program);
    struct stat info = {};
    if (stat(path.c_str(), &info) != 0) {
        file->faults.push_back("the program is not there: " + path);
    } else if (!S_ISREG(info.st_mode) || access(path.c_str(), X_OK) != 0) {
        file->faults.push_back("this user may not execute the program: " + path);
    }
    CheckWriters(path, "the program", file);
}

bool IsOrigin(const std::string& origin) {
    const std::string start = kOriginStart;
    return origin.size() == start.size() + kIdentifierLength + 1 &&
           origin.compare(0, start.size(), start) == 0 && origin.back() == '/' &&
           std::all_of(origin.begin() + static_cast<std::ptrdiff_t>(start.size()), origin.end() - 1,
                       [](char each) { return each >= 'a' && each <= 'p'; });
}

void CheckList(NSArray* list, const std::string& key, const std::string& extension,
               FileStatus* file) {
    if (![list isKindOfClass:[NSArray class]]) {
        file->faults.push_back("\"" + key + "\" is no list");
        return;
    }
    bool isNamed = false;
    for (id each in list) {
        const std::string name = [each isKindOfClass:[NSString class]] ? Utf8Bytes(each) : "";
        isNamed = isNamed || name == extension;
        if (name.empty() || (key == kAllowedOrigins && !IsOrigin(name))) {
            file->faults.push_back("an entry of \"" + key + "\" is malformed: " + name);
        }
    }
    if (!isNamed) {
        file->faults.push_back("\"" + key + "\" does not name the extension " + extension);
    }
}

}  // namespace

std::string OriginOf(const std::string& identifier) {
    return kOriginStart + identifier + '/';
}

FileStatus CheckHostManifest(const std::string& path, const std::string& list,
                             const std::string& extension) {
    FileStatus file;
    file.role = "host manifest";
    file.path = path;
    NSDictionary* manifest = ReadObject(&file);
    if (manifest == nil) {
        return file;
    }
    NSString* name = [[CocoaStringFromUtf8(path) lastPathComponent] stringByDeletingPathExtension];
    if (![TextUnder(@"name", manifest) isEqual:name]) {
        file.faults.push_back("\"name\" is not the file's");
    }
    if (TextUnder(@"description", manifest) == nil) {
        file.faults.push_back("\"description\" is no text");
    }
    if (![TextUnder(@"type", manifest) isEqual:@"stdio"]) {
        file.faults.push_back("\"type\" is not \"stdio\"");
    }
    CheckProgram(TextUnder(@"path", manifest), &file);
    CheckList([manifest objectForKey:CocoaStringFromUtf8(list)], list, extension, &file);
    CheckWriters(path, "the file", &file);
    return file;
}

// Its mode is not looked at: an installation opens it to everybody.
FileStatus CheckDescriptor(const std::string& path) {
    FileStatus file;
    file.role = "descriptor";
    file.path = path;
    NSDictionary* descriptor = ReadObject(&file);
    if (descriptor == nil) {
        return file;
    }
    if ([descriptor count] != 1) {
        file.faults.push_back("it has other keys than \"external_update_url\"");
    }
    if (![TextUnder(kUpdateURL, descriptor) hasPrefix:@"https://"]) {
        file.faults.push_back("\"external_update_url\" is no https address");
    }
    return file;
}
