#include "linux/corrections/Replacements.h"

#include <objc/runtime.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <string>
#include <utility>

extern "C" const char* GSPathHandling(const char* mode);

namespace {

const Replacement kReplacements[] = {
    // Strings
    {"NSString", "+defaultCStringEncoding"},
    {"NSString", "-lowercaseString"},
    {"GSMutableString", "-lowercaseString", true},
    {"GSUnicodeString", "-lowercaseString", true},
    {"NSString", "-initWithCharacters:length:"},
    {"NSString", "-initWithCharactersNoCopy:length:freeWhenDone:"},
    {"GSMutableString", "-initWithCharactersNoCopy:length:freeWhenDone:", true},
    {"GSMutableString", "-mutableCopy", true},
    {"GSMutableString", "-mutableCopyWithZone:", true},
    {"GSUnicodeString", "-mutableCopy", true},
    {"GSUnicodeString", "-mutableCopyWithZone:", true},
    // Files
    {"NSString", "-initWithContentsOfFile:encoding:error:"},
    {"NSString", "-writeToFile:atomically:encoding:error:"},
    {"NSData", "-initWithContentsOfFile:"},
    {"NSData", "-writeToFile:atomically:"},
    {"NSData", "-writeToFile:options:error:"},
    {"NSFileManager", "-contentsOfDirectoryAtPath:error:"},
    {"NSFileManager", "-copyItemAtPath:toPath:error:"},
    {"NSFileManager", "-createDirectoryAtPath:withIntermediateDirectories:attributes:error:"},
    {"NSFileManager", "-fileExistsAtPath:isDirectory:"},
    {"NSFileManager", "-removeItemAtPath:error:"},
    {"NSDictionary", "-descriptionWithLocale:"},
    {"NSError", "-description"},
    {"NSError", "-localizedDescription"},
    // Property lists
    {"NSDictionary", "-initWithContentsOfFile:"},
    {"NSPropertyListSerialization", "+dataWithPropertyList:format:options:error:"},
    {"NSPropertyListSerialization", "+propertyListWithData:options:format:error:"},
    // Process
    {"NSBundle", "-bundlePath"},
    {"NSBundle", "-infoDictionary"},
    {"NSBundle", "-pathForResource:ofType:"},
    {"NSBundle", "-resourcePath"},
    {"NSDistributedNotificationCenter", "+defaultCenter"},
    {"NSProcessInfo", "+initialize"},
    {"NSProcessInfo", "-operatingSystemVersionString"},
    {"NSRunLoop", "-runMode:beforeDate:"},
    {"NSTask", "+launchedTaskWithLaunchPath:arguments:"},
    {"NSURLConnection", "+sendSynchronousRequest:returningResponse:error:"},
    {"NSWorkspace", "-init"},
    {"NSWorkspace", "-launchApplication:"},
    {"NSWorkspace", "-openURLs:withAppBundleIdentifier:options:additionalEventParamDescriptor:"
                    "launchIdentifiers:"},
    // Windows
    {"NSApplication", "+sharedApplication"},
    {"NSApplication", "-_openFiles"},
    {"NSApplication", "-beginModalSessionForWindow:"},
    {"NSApplication", "-deactivate"},
    {"NSApplication", "-stopModalWithCode:"},
    {"GSDisplayServer", "-getEventMatchingMask:beforeDate:inMode:dequeue:"},
    {"GSServicesManager", "-registerAsServiceProvider"},
    {"GSTheme", "-drawFocusFrame:view:"},
    {"GSXibKeyedUnarchiver", "+checkXib5:"},
    {"NSButton", "-performKeyEquivalent:"},
    {"NSButtonCell", "-setKeyEquivalent:"},
    {"NSCell", "-_drawAttributedText:inFrame:"},
    {"NSFont", "-initWithCoder:"},
    {"NSScroller", "+scrollerWidth"},
    {"NSScroller", "-drawRect:"},
    {"NSScrollView", "-drawRect:"},
    {"NSScrollView", "-setVerticalScroller:"},
    {"NSTextFieldCell", "-_drawAttributedString"},
    {"NSWindow", "-keyDown:"},
    {"NSWindow", "-performMiniaturize:"},
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

Class OwnerOf(const Replacement& replacement) {
    const Class owner = objc_getClass(replacement.className);
    return owner != nullptr && replacement.method[0] == '+' ? object_getClass(owner) : owner;
}

Method MethodOfParents(Class owner, const std::string& selector) {
    Method found = nullptr;
    while (found == nullptr && (owner = class_getSuperclass(owner)) != nullptr) {
        found = OwnMethod(owner, selector);
    }
    return found;
}

// The runtime's own exchange forgets the subclasses of a class that is in use. For another class it
// writes into a table that all of those share, so that every one of them would answer.
bool Exchange(const Replacement& replacement) {
    const std::string selector = replacement.method + 1;
    const std::string macSelector = (replacement.isInherited ? "" : "mac_") + selector;
    const Class owner = OwnerOf(replacement);
    const Method original = OwnMethod(owner, selector);
    const Method mac =
        replacement.isInherited ? MethodOfParents(owner, selector) : OwnMethod(owner, macSelector);
    if (original != nullptr && mac != nullptr) {
        IMP& replaced = reinterpret_cast<MethodRecord*>(original)->function;
        IMP& replacing = reinterpret_cast<MethodRecord*>(mac)->function;
        const IMP previous = std::exchange(replaced, replacing);
        replacing = replacement.isInherited ? replacing : previous;
        return true;
    }
    std::fprintf(stderr, "libmacos-standins: %c[%s %s] is missing\n", replacement.method[0],
                 replacement.className, (original == nullptr ? selector : macSelector).c_str());
    return false;
}

id Nothing(id, SEL) {
    return nil;
}

// A class in use looks its methods up again, with all its subclasses, when it gets a further one.
void Renew(Class owner) {
    if ((reinterpret_cast<const ClassRecord*>(owner)->flags & kInitialized) != 0) {
        class_addMethod(owner, sel_registerName("mac_isCorrected"), reinterpret_cast<IMP>(Nothing),
                        "@16@0:8");
    }
}

// The last file of the library: every category of it is known by now, no object of the program is
// made yet. Nothing here sends a message.
__attribute__((constructor)) void InstallAll() {
    // Else a backslash and a colon would be separators in paths.
    GSPathHandling("unix");
    unsetenv("GNUSTEP_STRING_ENCODING");
    InstallReplacements(kReplacements, std::size(kReplacements));
}

}  // namespace

void InstallReplacements(const Replacement* replacements, size_t count) {
    const Replacement* const end = replacements + count;
    if (std::count_if(replacements, end, Exchange) != static_cast<std::ptrdiff_t>(count)) {
        std::abort();
    }
    std::for_each(replacements, end, [](const Replacement& done) { Renew(OwnerOf(done)); });
}
