#include "tools/BrowserStatus.h"

#include <AppKit/AppKit.h>
#include <sys/stat.h>

#include "browsers/BrowserLookup.h"
#include "browsers/ChromePaths.h"
#include "browsers/EdgePaths.h"
#include "browsers/FFoxPaths.h"
#include "browsers/SafariPreferences.h"
#include "crypto/CocoaStrings.h"
#include "platform/PropertyLists.h"
#include "product/Applications.h"
#include "product/Extensions.h"
#include "tools/IntegrationChecks.h"
#include "tools/JsonFile.h"

namespace {

struct Channel {
    NSString* identifier;
    const char* name;
};

// A run asks for none of these.
const Channel kChromeChannels[] = {{@"com.google.Chrome.beta", "Google Chrome Beta"},
                                   {@"com.google.Chrome.dev", "Google Chrome Dev"},
                                   {@"com.google.Chrome.canary", "Google Chrome Canary"}};
const Channel kEdgeChannels[] = {{@"com.microsoft.edgemac.Beta", "Microsoft Edge Beta"},
                                 {@"com.microsoft.edgemac.Dev", "Microsoft Edge Dev"},
                                 {@"com.microsoft.edgemac.Canary", "Microsoft Edge Canary"}};
const Channel kFirefoxChannels[] = {
    {@"org.mozilla.firefoxdeveloperedition", "Firefox Developer Edition"},
    {@"org.mozilla.nightly", "Firefox Nightly"}};
const Channel kSafariChannels[] = {
    {@"com.apple.SafariTechnologyPreview", "Safari Technology Preview"}};

// nil for what is no file: reading a pipe would wait for ever.
NSData* Contents(NSString* path) {
    struct stat info = {};
    const bool isFile = stat([path fileSystemRepresentation], &info) == 0 && S_ISREG(info.st_mode);
    return isFile ? [NSData dataWithContentsOfFile:path] : nil;
}

bool Find(NSString* identifier, const char* name, ApplicationStatus* application) {
    NSURL* url = nil;
    if (FindBrowser(identifier, &url) != noErr) {
        return false;
    }
    NSString* info = [[url path] stringByAppendingPathComponent:@"Contents/Info.plist"];
    id root = ParsePropertyList(Contents(info), NSPropertyListImmutable, NULL);
    id version = [root isKindOfClass:[NSDictionary class]]
                     ? [root objectForKey:@"CFBundleShortVersionString"]
                     : nil;
    application->name = name;
    application->path = Utf8Bytes([url path]);
    application->version = [version isKindOfClass:[NSString class]] ? Utf8Bytes(version) : "";
    return true;
}

bool IsRunning(NSString* identifier) {
    for (NSRunningApplication* each in [[NSWorkspace sharedWorkspace] runningApplications]) {
        NSString* own = [each bundleIdentifier];
        if (own != nil && [own caseInsensitiveCompare:identifier] == NSOrderedSame) {
            return true;
        }
    }
    return false;
}

BrowserStatus Look(NSString* identifier, const char* name) {
    BrowserStatus browser;
    browser.name = name;
    browser.isInstalled = Find(identifier, name, &browser.application);
    browser.isRunning = IsRunning(identifier);
    return browser;
}

template <size_t Count>
void LookForChannels(const Channel (&channels)[Count], BrowserStatus* browser) {
    for (const Channel& each : channels) {
        ApplicationStatus found;
        if (Find(each.identifier, each.name, &found)) {
            browser->channels.push_back(found);
        }
    }
}

void Judge(BrowserStatus* browser) {
    bool isDead = false;
    browser->isIntegrated = true;
    for (const FileStatus& file : browser->files) {
        browser->isIntegrated = browser->isIntegrated && file.isThere;
        isDead = isDead || !file.faults.empty();
    }
    using Verdict = BrowserStatus::Verdict;
    if (!browser->isInstalled) {
        browser->verdict = Verdict::kNotInstalled;
    } else if (!browser->isIntegrated) {
        browser->verdict = Verdict::kNotIntegrated;
    } else {
        browser->verdict = isDead ? Verdict::kDead : Verdict::kWell;
    }
}

// The identifier that a descriptor's name begins with.
std::string IdentifierOf(NSString* descriptor) {
    return Utf8Bytes([descriptor stringByDeletingPathExtension]);
}

std::string SwitchUnder(NSString* key, NSDictionary* dictionary) {
    id value =
        [dictionary isKindOfClass:[NSDictionary class]] ? [dictionary objectForKey:key] : nil;
    if ([value isKindOfClass:[NSNumber class]] || [value isKindOfClass:[NSString class]]) {
        return [value boolValue] ? "on" : "off";
    }
    return "not set";
}

// Of today's switch, else of that of years ago, which a run edits.
std::string ChromePasswords() {
    NSData* data = Contents(ChromePreferences());
    if (data == nil) {
        return [[NSFileManager defaultManager] fileExistsAtPath:ChromePreferences()] ? "unreadable"
                                                                                     : "not set";
    }
    NSDictionary* root = ReadJsonObject(data);
    if (root == nil) {
        return "unreadable";
    }
    const std::string today = SwitchUnder(@"credentials_enable_service", root);
    return today != "not set"
               ? today
               : SwitchUnder(@"password_manager_enabled", [root objectForKey:@"profile"]);
}

std::string SafariPasswords() {
    NSString* path = SafariPreferencesPath();
    id root = ParsePropertyList(Contents(path), NSPropertyListImmutable, NULL);
    if (![root isKindOfClass:[NSDictionary class]]) {
        return [[NSFileManager defaultManager] fileExistsAtPath:path] ? "unreadable" : "not set";
    }
    return SwitchUnder(kSafariAutoFill, root);
}

// A run reaches the profile "Default" alone.
std::vector<std::string> ChromeProfiles() {
    NSFileManager* files = [NSFileManager defaultManager];
    NSString* own = [ChromePreferences() stringByDeletingLastPathComponent];
    NSString* folder = [own stringByDeletingLastPathComponent];
    std::vector<std::string> profiles;
    NSArray* names = [[files contentsOfDirectoryAtPath:folder error:NULL]
        sortedArrayUsingSelector:@selector(compare:)];
    for (NSString* name in names) {
        NSString* profile = [folder stringByAppendingPathComponent:name];
        if (![profile isEqual:own] &&
            [files fileExistsAtPath:[profile stringByAppendingPathComponent:@"Preferences"]]) {
            profiles.push_back(Utf8Bytes(profile));
        }
    }
    return profiles;
}

BrowserStatus LookAtSafari() {
    BrowserStatus browser = Look(@KS_SAFARI_IDENTIFIER, kSafari);
    browser.passwords = SafariPasswords();
    LookForChannels(kSafariChannels, &browser);
    Judge(&browser);
    return browser;
}

BrowserStatus LookAtFirefox() {
    BrowserStatus browser = Look(@KS_FIREFOX_IDENTIFIER, kFirefox);
    browser.files.push_back(CheckHostManifest(Utf8Bytes(FFoxInstalledHostManifest()),
                                              kAllowedExtensions, KS_FIREFOX_MAIN_IDENTIFIER));
    LookForChannels(kFirefoxChannels, &browser);
    Judge(&browser);
    return browser;
}

// The user's descriptor comes before the system's, as Chrome's installer has it.
BrowserStatus LookAtChrome() {
    BrowserStatus browser = Look(@KS_CHROME_IDENTIFIER, kChrome);
    browser.files.push_back(CheckHostManifest(Utf8Bytes(ChromeInstalledHostManifest()),
                                              kAllowedOrigins,
                                              OriginOf(IdentifierOf(kChromeDescriptor))));
    NSString* descriptor = ChromeUserExternal(kChromeDescriptor);
    if (![[NSFileManager defaultManager] fileExistsAtPath:descriptor]) {
        descriptor = ChromeSystemExternal(kChromeDescriptor);
    }
    browser.files.push_back(CheckDescriptor(Utf8Bytes(descriptor)));
    browser.passwords = ChromePasswords();
    browser.profiles = ChromeProfiles();
    LookForChannels(kChromeChannels, &browser);
    Judge(&browser);
    return browser;
}

BrowserStatus LookAtEdge() {
    BrowserStatus browser = Look(@KS_EDGE_IDENTIFIER, kEdge);
    browser.files.push_back(CheckHostManifest(Utf8Bytes(EdgeInstalledHostManifest()),
                                              kAllowedOrigins,
                                              OriginOf(IdentifierOf(@KS_EDGE_DESCRIPTOR))));
    browser.files.push_back(CheckDescriptor(Utf8Bytes(EdgeInstalledDescriptor())));
    LookForChannels(kEdgeChannels, &browser);
    Judge(&browser);
    return browser;
}

}  // namespace

std::vector<BrowserStatus> LookAtBrowsers() {
    @autoreleasepool {
        return {LookAtSafari(), LookAtFirefox(), LookAtChrome(), LookAtEdge()};
    }
}
