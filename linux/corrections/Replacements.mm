#include "linux/corrections/Replacements.h"

#include <objc/runtime.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <string>
#include <utility>

namespace {

const Replacement kReplacements[] = {
    // Strings
    {"NSString", "-initWithCharacters:length:"},
    {"NSString", "-initWithCharactersNoCopy:length:freeWhenDone:"},
    {"GSMutableString", "-initWithCharactersNoCopy:length:freeWhenDone:"},
    {"GSMutableString", "-mutableCopy"},
    {"GSMutableString", "-mutableCopyWithZone:"},
    {"GSUnicodeString", "-mutableCopy"},
    {"GSUnicodeString", "-mutableCopyWithZone:"},
    {"NSString", "-stringByReplacingOccurrencesOfString:withString:options:range:"},
    // Files
    {"NSString", "-initWithContentsOfFile:"},
    {"NSString", "-initWithContentsOfFile:encoding:error:"},
    {"NSString", "-initWithContentsOfFile:usedEncoding:error:"},
    {"NSString", "-writeToFile:atomically:"},
    {"NSString", "-writeToFile:atomically:encoding:error:"},
    {"NSData", "-initWithContentsOfFile:"},
    {"NSData", "-writeToFile:atomically:"},
    {"NSData", "-writeToFile:options:error:"},
    {"NSFileManager", "-attributesOfItemAtPath:error:"},
    {"NSFileManager", "-contentsOfDirectoryAtPath:error:"},
    {"NSFileManager", "-copyItemAtPath:toPath:error:"},
    {"NSFileManager", "-createDirectoryAtPath:withIntermediateDirectories:attributes:error:"},
    {"NSFileManager", "-fileExistsAtPath:isDirectory:"},
    {"NSFileManager", "-moveItemAtPath:toPath:error:"},
    {"NSFileManager", "-removeItemAtPath:error:"},
    {"NSError", "-description"},
    {"NSError", "-localizedDescription"},
    // Process
    {"NSBundle", "-bundlePath"},
    {"NSBundle", "-executablePath"},
    {"NSBundle", "-infoDictionary"},
    {"NSBundle", "-resourcePath"},
    {"NSDistributedNotificationCenter", "+defaultCenter"},
    {"NSProcessInfo", "+initialize"},
    {"NSProcessInfo", "-operatingSystemVersionString"},
    {"NSTask", "+launchedTaskWithLaunchPath:arguments:"},
    {"NSURLConnection", "+sendSynchronousRequest:returningResponse:error:"},
    {"NSWorkspace", "-init"},
    // Windows
    {"NSApplication", "+sharedApplication"},
    {"NSApplication", "-_openFiles"},
    {"NSApplication", "-runModalForWindow:"},
    {"NSApplication", "-stopModalWithCode:"},
    {"GSDisplayServer", "-getEventMatchingMask:beforeDate:inMode:dequeue:"},
    {"GSTheme", "-drawFocusFrame:view:"},
    {"GSXibLoader", "-loadModelData:externalNameTable:withZone:"},
    {"NSButton", "-performKeyEquivalent:"},
    {"NSButtonCell", "-setKeyEquivalent:"},
    {"NSFont", "-initWithCoder:"},
    {"NSScroller", "+scrollerWidth"},
    {"NSScroller", "-drawRect:"},
    {"NSScrollView", "-drawRect:"},
    {"NSScrollView", "-setVerticalScroller:"},
    {"NSTextView", "-initWithCoder:"},
    {"NSWindowController", "-loadWindow"},
};

// The beginning of the runtime's own records, of which its functions tell only a part.
struct ClassRecord {
    Class meta;
    Class parent;
    const char* name;
    long version;
    unsigned long flags;
};
struct MethodRecord {
    SEL selector;
    const char* types;
    IMP function;
};
constexpr unsigned long kInitialized = 1UL << 2;

// Looked up in the list: the runtime's own look-up would send messages for what is missing.
Method OwnMethod(Class owner, const std::string& selector) {
    unsigned count = 0;
    const std::unique_ptr<Method, decltype(&std::free)> methods(
        owner == nullptr ? nullptr : class_copyMethodList(owner, &count), &std::free);
    Method* const end = methods.get() + count;
    Method* const found = std::find_if(methods.get(), end, [&](Method method) {
        return selector == sel_getName(method_getName(method));
    });
    return found == end ? nullptr : *found;
}

// The runtime's exchange works for initialised classes only: for others it writes into a table that
// all of them share, so that every one of them would answer, and without being initialised.
void Exchange(Class owner, Method first, Method second) {
    if ((reinterpret_cast<const ClassRecord*>(owner)->flags & kInitialized) != 0) {
        method_exchangeImplementations(first, second);
    } else {
        std::swap(reinterpret_cast<MethodRecord*>(first)->function,
                  reinterpret_cast<MethodRecord*>(second)->function);
    }
}

bool Install(const Replacement& replacement) {
    const std::string selector = replacement.method + 1;
    Class owner = objc_getClass(replacement.className);
    if (owner != nullptr && replacement.method[0] == '+') {
        owner = object_getClass(owner);
    }
    const std::string macSelector = "mac_" + selector;
    const Method original = OwnMethod(owner, selector);
    const Method mac = OwnMethod(owner, macSelector);
    if (original != nullptr && mac != nullptr) {
        Exchange(owner, original, mac);
        return true;
    }
    std::fprintf(stderr, "libmacos-standins: %c[%s %s] is missing\n", replacement.method[0],
                 replacement.className, (original == nullptr ? selector : macSelector).c_str());
    return false;
}

// The last file of the library: every category of it is known by now, no object of the program is
// made yet. Nothing here sends a message.
__attribute__((constructor)) void InstallAll() {
    InstallReplacements(kReplacements, std::size(kReplacements));
}

}  // namespace

void InstallReplacements(const Replacement* replacements, size_t count) {
    bool isComplete = true;
    for (size_t i = 0; i < count; ++i) {
        isComplete = Install(replacements[i]) && isComplete;
    }
    if (!isComplete) {
        std::abort();
    }
}
