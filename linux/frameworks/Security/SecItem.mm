// Generic passwords, kept by libsecret: in the Secret Service of the desktop or, with
// SECRET_BACKEND=file, in an enciphered file. No service is started, and nobody is asked.
//
// A child process asks: a broken keyring can end it, hold it up or keep it busy, and the end of its
// time ends it in any case.
#include <Foundation/Foundation.h>
#include <Security/Security.h>
#include <fcntl.h>
#include <libsecret/secret.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <optional>
#include <string>

#include "linux/corrections/Descriptor.h"

const CFStringRef kSecClass = (CFStringRef) @"class";
const CFStringRef kSecClassGenericPassword = (CFStringRef) @"genp";
const CFStringRef kSecAttrLabel = (CFStringRef) @"labl";
const CFStringRef kSecReturnData = (CFStringRef) @"r_Data";
const CFStringRef kSecMatchLimit = (CFStringRef) @"m_Limit";
const CFStringRef kSecMatchLimitOne = (CFStringRef) @"m_LimitOne";
const CFStringRef kSecValueData = (CFStringRef) @"v_Data";

namespace {

constexpr const char* kSecretService = "org.freedesktop.secrets";
constexpr unsigned kPatience = 3;  // seconds; a busy machine needs one or two

std::string Bytes(NSData* data) {
    return std::string(static_cast<const char*>([data bytes]), [data length]);
}

/// The label that is asked for; nothing for a query of another form than the header's.
std::optional<std::string> LabelOf(CFDictionaryRef query) {
    NSMutableDictionary* expected = [NSMutableDictionary
        dictionaryWithObjectsAndKeys:(id)kSecClassGenericPassword, kSecClass,
                                     [NSNumber numberWithBool:YES], kSecReturnData,
                                     kSecMatchLimitOne, kSecMatchLimit, nil];
    id label = [(NSDictionary*)query objectForKey:(id)kSecAttrLabel];
    if (![label isKindOfClass:[NSString class]]) {
        return std::nullopt;
    }
    [expected setObject:label forKey:(id)kSecAttrLabel];
    if (![(NSDictionary*)query isEqualToDictionary:expected]) {
        return std::nullopt;
    }
    return Bytes([label dataUsingEncoding:NSUTF8StringEncoding]);
}

OSStatus StatusOf(const GError* error) {
    if (g_error_matches(error, SECRET_ERROR, SECRET_ERROR_IS_LOCKED)) {
        return errSecInteractionNotAllowed;
    }
    return error != nullptr && error->domain == SECRET_ERROR ? errSecAuthFailed
                                                             : errSecNotAvailable;
}

bool HasFile() {
    const char* backend = g_getenv("SECRET_BACKEND");  // libsecret's own switch
    return g_strcmp0(backend, "file") == 0;
}

/// Whether there is a session bus to speak to: GLib would start one. Nor may it be asked where one
/// could be, because it makes a folder to have an answer.
bool HasSessionBus() {
    const char* address = g_getenv("DBUS_SESSION_BUS_ADDRESS");
    const char* folder = g_getenv("XDG_RUNTIME_DIR");
    return (address != nullptr && *address != '\0') ||
           (folder != nullptr && access((std::string(folder) + "/bus").c_str(), F_OK) == 0);
}

/// Whether the Secret Service runs. Speaking to it would otherwise start it.
bool ServiceRuns() {
    g_autoptr(GDBusConnection) bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    if (bus == nullptr) {
        return false;
    }
    g_autoptr(GVariant) answer = g_dbus_connection_call_sync(
        bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
        "NameHasOwner", g_variant_new("(s)", kSecretService), G_VARIANT_TYPE("(b)"),
        G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
    gboolean runs = FALSE;
    if (answer != nullptr) {
        g_variant_get(answer, "(b)", &runs);
    }
    return runs;
}

OSStatus Read(SecretRetrievable* item, std::string& data) {
    g_autoptr(GError) error = nullptr;
    SecretValue* value = secret_retrievable_retrieve_secret_sync(item, nullptr, &error);
    if (value == nullptr) {
        return StatusOf(error);
    }
    gsize length = 0;
    const gchar* bytes = secret_value_get(value, &length);
    data.assign(bytes, length);
    return errSecSuccess;
}

/// An item of the service is changed in place, in whatever collection it is; one of the file is
/// replaced by one with the same attributes.
OSStatus Write(SecretRetrievable* item, const std::string& label, const std::string& data) {
    g_autoptr(GError) error = nullptr;
    SecretValue* value =
        secret_value_new(data.data(), static_cast<gssize>(data.size()), "application/octet-stream");
    const gboolean done =
        SECRET_IS_ITEM(item)
            ? secret_item_set_secret_sync(SECRET_ITEM(item), value, nullptr, &error)
            : secret_password_storev_binary_sync(nullptr, secret_retrievable_get_attributes(item),
                                                 SECRET_COLLECTION_DEFAULT, label.c_str(), value,
                                                 nullptr, &error);
    return done ? errSecSuccess : StatusOf(error);
}

/// Reads the first item with the label into `data`, or gives it the new data. For a process that
/// ends then: it releases nothing.
OSStatus Use(const std::string& label, const std::string* newData, std::string& data) {
    if (!HasFile() && !ServiceRuns()) {
        return errSecNotAvailable;
    }
    // A label is no attribute to search by: look at them all.
    g_autoptr(GError) error = nullptr;
    const GList* link = secret_password_searchv_sync(
        nullptr, g_hash_table_new(g_str_hash, g_str_equal), SECRET_SEARCH_ALL, nullptr, &error);
    if (error != nullptr) {
        return StatusOf(error);
    }
    for (; link != nullptr; link = link->next) {
        SecretRetrievable* item = SECRET_RETRIEVABLE(link->data);
        if (label == secret_retrievable_get_label(item)) {
            return newData == nullptr ? Read(item, data) : Write(item, label, *newData);
        }
    }
    return errSecItemNotFound;
}

/// What the child does: asks, and leaves a status and the data in a file.
[[noreturn]] void UseAndEnd(int answer, const std::string& label, const std::string* newData) {
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    std::signal(SIGALRM, SIG_DFL);
    alarm(kPatience);
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDOUT_FILENO);  // a failed assertion of GLib's speaks on both
    dup2(nowhere, STDERR_FILENO);
    std::string data;
    const OSStatus status = Use(label, newData, data);
    data.insert(0, reinterpret_cast<const char*>(&status), sizeof status);
    _exit(write(answer, data.data(), data.size()) == static_cast<ssize_t>(data.size()) ? 0 : 1);
}

/// Whether there is not even a file. libsecret would find that out too, but only after it has made a
/// key from the password, which takes a fifth of a run.
bool IsFileMissing() {
    const char* file = g_getenv("SECRET_FILE_TEST_PATH");  // libsecret's own variable
    return HasFile() && file != nullptr && access(file, F_OK) != 0 && errno == ENOENT;
}

OSStatus UseInChild(const std::string& label, const std::string* newData, std::string& data) {
    if (!HasFile() && !HasSessionBus()) {
        return errSecNotAvailable;
    }
    if (IsFileMissing()) {
        return errSecItemNotFound;
    }
    const Descriptor answer(memfd_create("keychain", MFD_CLOEXEC));
    const pid_t child = answer ? fork() : -1;
    if (child == 0) {
        UseAndEnd(answer.get(), label, newData);
    }
    int ending = -1;
    while (child > 0 && waitpid(child, &ending, 0) < 0 && errno == EINTR) {
    }
    OSStatus status = errSecNotAvailable;
    if (ending == 0 && pread(answer.get(), &status, sizeof status, 0) == sizeof status) {
        data.resize(static_cast<size_t>(lseek(answer.get(), 0, SEEK_END)) - sizeof status);
        pread(answer.get(), data.data(), data.size(), sizeof status);
    }
    return status;
}

}  // namespace

OSStatus SecItemCopyMatching(CFDictionaryRef query, CFTypeRef* result) {
    @autoreleasepool {
        *result = nullptr;
        const std::optional<std::string> label = LabelOf(query);
        if (!label) {
            return errSecParam;
        }
        std::string data;
        const OSStatus status = UseInChild(*label, nullptr, data);
        if (status == errSecSuccess) {
            *result = [[NSData alloc] initWithBytes:data.data() length:data.size()];
        }
        return status;
    }
}

OSStatus SecItemUpdate(CFDictionaryRef query, CFDictionaryRef attributesToUpdate) {
    @autoreleasepool {
        const std::optional<std::string> label = LabelOf(query);
        NSDictionary* attributes = (NSDictionary*)attributesToUpdate;
        NSData* value = [attributes objectForKey:(id)kSecValueData];
        if (!label || [attributes count] != 1 || ![value isKindOfClass:[NSData class]]) {
            return errSecParam;
        }
        const std::string newData = Bytes(value);
        std::string data;
        return UseInChild(*label, &newData, data);
    }
}
