#include "tools/RunPlan.h"

#include <Foundation/Foundation.h>

#include "browsers/BrowserLookup.h"
#include "browsers/ChromePaths.h"
#include "browsers/ChromePreferences.h"
#include "browsers/ChromeScripts.h"
#include "browsers/EdgePaths.h"
#include "browsers/FFoxPaths.h"
#include "browsers/SafariExtensions.h"
#include "browsers/SafariPreferences.h"
#include "crypto/Utf8.h"
#include "platform/PropertyLists.h"
#include "product/Addresses.h"
#include "product/Applications.h"
#include "product/Extensions.h"
#include "product/Places.h"
#include "tools/ShellScript.h"

const char kSafari[] = KS_SAFARI_NAME;
const char kChrome[] = KS_CHROME_NAME;
const char kEdge[] = KS_EDGE_NAME;
const char kFirefox[] = KS_FIREFOX_NAME;
const char kProduct[] = KS_PRODUCT_NAME;

namespace {

constexpr char kScriptFolder[] = "/var/tmp";
constexpr mode_t kLogFolderMode = 0777;  // the umask cuts it

std::string Path(NSString* path) {
    const char* bytes = [path fileSystemRepresentation];
    return bytes != NULL ? bytes : "";
}

bool IsRegistered(NSString* identifier) {
    NSURL* url = nil;
    return FindBrowser(identifier, &url) == noErr;
}

NSData* Data(const std::string& bytes) {
    return [NSData dataWithBytes:bytes.data() length:bytes.size()];
}

std::string Bytes(NSData* data) {
    return std::string(static_cast<const char*>([data bytes]), [data length]);
}

bool NamesOurs(const std::string& registry) {
    return registry.find(KS_FIREFOX_BUTTON_IDENTIFIER) != std::string::npos ||
           registry.find(KS_FIREFOX_SHORT_IDENTIFIER) != std::string::npos ||
           registry.find(KS_FIREFOX_MAIN_IDENTIFIER) != std::string::npos;
}

// The steps of the run, in its order, on a shadow of the disk.
class DryRun {
  public:
    explicit DryRun(bool isAllowed) : allowed(isAllowed) {}

    RunPlan Plan();

  private:
    void Start();
    void UninstallChrome();
    void InstallChrome();
    void UninstallFirefox();
    void InstallFirefox();
    void UninstallSafari();
    void UninstallEdge();
    void InstallEdge();

    bool RunAsAdministrator(NSString* script);
    void RemoveChromeOfUser();
    void InstallChromeOfUser();
    void SwitchPasswordManager(BOOL on);
    void CleanProfile(NSString* profile);
    void CleanSafariCache(NSString* archive);
    bool RemoveFromRegistry(NSString* archive);
    void SetAutoFill();
    void RemoveFromToolbar();

    bool RemoveExisting(NSString* path);
    void Remove(NSString* path) { tree.Remove(Path(path), ShadowTree::User::kSelf); }
    bool WriteDescriptor(NSString* path, const char* url);
    id ReadList(NSString* path, bool* isReadable);
    void WriteList(id root, NSString* path);

    ShadowTree tree;
    RunPlan plan;
    bool allowed;
};

RunPlan DryRun::Plan() {
    Start();
    UninstallChrome();
    UninstallFirefox();
    UninstallSafari();
    UninstallEdge();

    UninstallSafari();
    SetAutoFill();
    if (IsRegistered(@KS_FIREFOX_IDENTIFIER)) {
        InstallFirefox();
    }
    if (IsRegistered(@KS_CHROME_IDENTIFIER)) {
        InstallChrome();
    }
    if (IsRegistered(@KS_EDGE_IDENTIFIER)) {
        InstallEdge();
    }
    plan.changes = tree.Changes();
    plan.hidden.assign(tree.Hidden().begin(), tree.Hidden().end());
    return plan;
}

// The process-wide objects make the product's folders.
void DryRun::Start() {
    tree.ActFor(kProduct);
    tree.MakeFolders(KS_DATA_FOLDER, kOpenToEverybody);
    tree.MakeFolders(KS_VAULTS_FOLDER, kOpenToEverybody);
    const mode_t mask = umask(0);
    umask(mask);
    tree.MakeFolder(KS_DATA_FOLDER "logs", kLogFolderMode & ~mask, ShadowTree::User::kSelf);
}

// Without the script file there is no question.
bool DryRun::RunAsAdministrator(NSString* script) {
    if (!tree.MayChange(kScriptFolder)) {
        return false;
    }
    ++plan.prompts;
    if (allowed) {
        RunScript([script UTF8String], Path(NSHomeDirectory()), &tree);
    }
    return allowed;
}

bool DryRun::RemoveExisting(NSString* path) {
    return tree.Exists(Path(path)) && tree.Remove(Path(path), ShadowTree::User::kSelf);
}

bool DryRun::WriteDescriptor(NSString* path, const char* url) {
    tree.Write(Path(path), std::string("{ \"external_update_url\": \"") + url + "\" }");
    return tree.SetMode(Path(path), kOpenToEverybody);
}

void DryRun::SwitchPasswordManager(BOOL on) {
    std::string text;
    if (tree.Read(Path(ChromePreferences()), &text) && IsUtf8(text)) {
        tree.Write(Path(ChromePreferences()), EditedChromePreferences(text, on));
    }
}

void DryRun::RemoveChromeOfUser() {
    RemoveExisting(ChromeUserPlugIn());
    RemoveExisting(ChromeInstalledHostManifest());
    RemoveExisting(ChromeUserExternal(kChromePackage));
    Remove(ChromeUserExternal(kChromeDescriptor));
    RemoveExisting(ChromeUserExternal(kChromeButtonPackage));
    Remove(ChromeUserExternal(kChromeButtonDescriptor));
}

void DryRun::UninstallChrome() {
    tree.ActFor(kChrome);
    if (!RunAsAdministrator(kChromeUninstallScript)) {
        RemoveChromeOfUser();
    }
    SwitchPasswordManager(YES);
}

void DryRun::InstallChromeOfUser() {
    const std::string manifest = Path(ChromeInstalledHostManifest());
    if (!tree.Exists(manifest) && !tree.Copy(Path(ChromePayloadHostManifest()), manifest)) {
        RunAsAdministrator(kChromeFolderMakingScript);
        tree.Copy(Path(ChromePayloadHostManifest()), manifest);
    }
    for (NSString* package : {kChromePackage, kChromeButtonPackage}) {
        tree.MakeFolders(Path(ChromeUserExternalFolder()), kOpenToEverybody);
        if (!tree.Exists(Path(ChromeUserExternal(package)))) {
            tree.Copy(Path(ChromePayload(package)), Path(ChromeUserExternal(package)));
        }
        WriteDescriptor(ChromeUserExternal(package == kChromePackage ? kChromeDescriptor
                                                                     : kChromeButtonDescriptor),
                        KS_CHROME_UPDATE_URL);
    }
}

void DryRun::InstallChrome() {
    tree.ActFor(kChrome);
    if (!WriteDescriptor(ChromePayload(kChromeDescriptor), KS_CHROME_UPDATE_URL) ||
        !RunAsAdministrator(kChromeInstallScript)) {
        RemoveChromeOfUser();
        InstallChromeOfUser();
    }
    SwitchPasswordManager(NO);
}

// What is taken out of a registry shows in the plan as "bytes", whichever they will be: an empty
// text stands for them. A registry without one of ours is written again as the platform writes XML.
void DryRun::CleanProfile(NSString* profile) {
    NSString* registry = [profile stringByAppendingPathComponent:kFFoxRegistry];
    std::string text;
    if (tree.Read(Path(registry), &text) && !text.empty()) {
        @autoreleasepool {
            NSXMLDocument* document =
                [[[NSXMLDocument alloc] initWithContentsOfURL:[NSURL fileURLWithPath:registry]
                                                      options:NSXMLNodeLoadExternalEntitiesNever
                                                        error:NULL] autorelease];
            if (document != nil) {
                tree.Write(Path(registry), NamesOurs(text) ? "" : Bytes([document XMLData]));
            }
        }
    }
    for (NSString* name : kFFoxCacheFiles) {
        Remove([profile stringByAppendingPathComponent:name]);
    }
}

void DryRun::UninstallFirefox() {
    tree.ActFor(kFirefox);
    for (NSString* extension : {
             @KS_FIREFOX_BUTTON_IDENTIFIER, @KS_FIREFOX_MAIN_IDENTIFIER,
                 @KS_FIREFOX_SHORT_IDENTIFIER, kFFoxTypesFolder
         }) {
        for (NSString* folder in FFoxApplicationFolders()) {
            RemoveExisting([folder stringByAppendingPathComponent:extension]);
        }
    }
    for (NSString* folder in FFoxApplicationFolders()) {
        Remove(folder);
    }
    Remove(FFoxInstalledHostManifest());
    NSString* profiles = FFoxProfilesFolder();
    for (NSString* name in [[NSFileManager defaultManager] contentsOfDirectoryAtPath:profiles
                                                                               error:NULL]) {
        CleanProfile([profiles stringByAppendingPathComponent:name]);
    }
}

void DryRun::InstallFirefox() {
    UninstallFirefox();
    tree.MakeFolders(Path(FFoxUserApplicationFolder()), kOpenToEverybody);
    tree.MakeFolders(Path(FFoxHostFolder()), kOpenToEverybody);
    tree.Copy(Path(FFoxPayloadHostManifest()), Path(FFoxInstalledHostManifest()));
    plan.page = true;
}

void DryRun::CleanSafariCache(NSString* archive) {
    NSString* folder = SafariCacheFolder();
    const std::string prefix = Path(ArchivePrefix(archive));
    for (const std::string& name : tree.Names(Path(folder))) {
        if (name.compare(0, prefix.size(), prefix) == 0) {
            tree.Remove(Path(folder) + '/' + name, ShadowTree::User::kSelf);
        }
    }
}

id DryRun::ReadList(NSString* path, bool* isReadable) {
    std::string bytes;
    *isReadable = tree.Read(Path(path), &bytes);
    return *isReadable
               ? ParsePropertyList(Data(bytes), NSPropertyListMutableContainersAndLeaves, NULL)
               : nil;
}

// What is no dictionary is not written.
void DryRun::WriteList(id root, NSString* path) {
    NSData* data = [root isKindOfClass:[NSDictionary class]]
                       ? EncodePropertyList(root, NSPropertyListBinaryFormat_v1_0, NULL)
                       : nil;
    if (data != nil) {
        tree.Write(Path(path), Bytes(data));
    }
}

bool DryRun::RemoveFromRegistry(NSString* archive) {
    bool isReadable = false;
    id root = ReadList(SafariRegistryPath(), &isReadable);
    RemoveFromSafariList(root, archive);
    WriteList(root, SafariRegistryPath());
    return isReadable;
}

void DryRun::SetAutoFill() {
    bool isReadable = false;
    id root = ReadList(SafariPreferencesPath(), &isReadable);
    if ([root isKindOfClass:[NSMutableDictionary class]]) {
        SetSafariAutoFill(root, YES);
    }
    WriteList(root, SafariPreferencesPath());
}

void DryRun::RemoveFromToolbar() {
    bool isReadable = false;
    id root = ReadList(SafariPreferencesPath(), &isReadable);
    if ([root isKindOfClass:[NSMutableDictionary class]]) {
        RemoveSafariToolbarItem(root);
        WriteList(root, SafariPreferencesPath());
    }
}

void DryRun::UninstallSafari() {
    tree.ActFor(kSafari);
    RemoveExisting(SafariPlugIn(@KS_SAFARI_PLUG_IN_32));
    RemoveExisting(SafariPlugIn(@KS_SAFARI_PLUG_IN_64));
    CleanSafariCache(kSafariExtensionArchive);
    RemoveExisting(SafariButtonPath());
    CleanSafariCache(kSafariButtonArchive);
    if (RemoveFromRegistry(kSafariButtonArchive)) {
        RemoveFromToolbar();
    }
    SetAutoFill();
    plan.keychain = RemoveFromRegistry(kSafariExtensionArchive);
}

void DryRun::UninstallEdge() {
    tree.ActFor(kEdge);
    Remove(EdgeInstalledHostManifest());
    Remove(EdgeInstalledDescriptor());
}

void DryRun::InstallEdge() {
    UninstallEdge();
    if (!tree.Exists(Path(EdgeHostFolder())) &&
        !tree.MakeFolders(Path(EdgeHostFolder()), kOpenToEverybody)) {
        return;
    }
    if (!tree.Copy(Path(EdgePayloadHostManifest()), Path(EdgeInstalledHostManifest())) ||
        !WriteDescriptor(EdgePayloadDescriptor(), KS_EDGE_UPDATE_URL)) {
        return;
    }
    if (tree.Exists(Path(EdgeExternalFolder())) ||
        tree.MakeFolders(Path(EdgeExternalFolder()), kOpenToEverybody)) {
        tree.Copy(Path(EdgePayloadDescriptor()), Path(EdgeInstalledDescriptor()));
    }
}

}  // namespace

RunPlan PlanRun(bool allowed) {
    @autoreleasepool {
        return DryRun(allowed).Plan();
    }
}
