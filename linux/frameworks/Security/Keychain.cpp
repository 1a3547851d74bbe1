#include "linux/frameworks/Security/Keychain.h"

#include <libsecret/secret.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

namespace {

constexpr const char* kSecretService = "org.freedesktop.secrets";
constexpr std::chrono::seconds kPatience(2);

template <auto Free>
struct Freed {
    template <typename Object>
    void operator()(Object* object) const {
        Free(object);
    }
};

template <typename Object, auto Free>
using Owned = std::unique_ptr<Object, Freed<Free>>;

template <typename Object>
using OwnedObject = Owned<Object, g_object_unref>;

using Attributes = Owned<GHashTable, g_hash_table_unref>;
using Text = Owned<gchar, g_free>;
using Value = Owned<SecretValue, secret_value_unref>;

// An error of GLib, and the status that it stands for.
class Failure {
  public:
    Failure() = default;
    ~Failure() { g_clear_error(&error); }
    Failure(const Failure&) = delete;
    Failure& operator=(const Failure&) = delete;

    GError** Out() { return &error; }

    OSStatus Status() const {
        if (g_error_matches(error, SECRET_ERROR, SECRET_ERROR_IS_LOCKED)) {
            return errSecInteractionNotAllowed;
        }
        if (error != nullptr && error->domain == SECRET_ERROR) {
            return errSecAuthFailed;
        }
        return errSecNotAvailable;
    }

  private:
    GError* error = nullptr;
};

// Cancels whatever is still going on when its time is over: a service that never answers must not
// hold up its caller.
class Deadline {
  public:
    Deadline() : cancellable(g_cancellable_new()), watcher([this] { Watch(); }) {}
    ~Deadline() {
        {
            const std::lock_guard<std::mutex> lock(mutex);
            finished = true;
        }
        wake.notify_one();
        watcher.join();
    }
    Deadline(const Deadline&) = delete;
    Deadline& operator=(const Deadline&) = delete;

    GCancellable* Get() const { return cancellable.get(); }

  private:
    void Watch() {
        std::unique_lock<std::mutex> lock(mutex);
        if (!wake.wait_for(lock, kPatience, [this] { return finished; })) {
            g_cancellable_cancel(cancellable.get());
        }
    }

    const OwnedObject<GCancellable> cancellable;
    std::mutex mutex;
    std::condition_variable wake;
    bool finished = false;
    std::thread watcher;
};

// Whether there is a session bus to speak to. GLib would otherwise start one.
bool HasSessionBus() {
    const char* address = g_getenv("DBUS_SESSION_BUS_ADDRESS");
    if (address != nullptr && *address != '\0') {
        return true;
    }
    const Text socket(g_build_filename(g_get_user_runtime_dir(), "bus", nullptr));
    return g_file_test(socket.get(), G_FILE_TEST_EXISTS);
}

// Whether the Secret Service runs. Speaking to it would otherwise start it.
bool ServiceRuns(GCancellable* cancellable) {
    if (!HasSessionBus()) {
        return false;
    }
    const OwnedObject<GDBusConnection> bus(
        g_bus_get_sync(G_BUS_TYPE_SESSION, cancellable, nullptr));
    if (bus == nullptr) {
        return false;
    }
    g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
    const Owned<GVariant, g_variant_unref> answer(g_dbus_connection_call_sync(
        bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
        "NameHasOwner", g_variant_new("(s)", kSecretService), G_VARIANT_TYPE("(b)"),
        G_DBUS_CALL_FLAGS_NONE, -1, cancellable, nullptr));
    gboolean runs = FALSE;
    if (answer != nullptr) {
        g_variant_get(answer.get(), "(b)", &runs);
    }
    return runs;
}

bool KeychainIsThere(GCancellable* cancellable) {
    const char* backend = g_getenv("SECRET_BACKEND");  // libsecret's own switch
    const bool isFile = backend != nullptr && std::string_view(backend) == "file";
    return isFile || ServiceRuns(cancellable);
}

void FreeItems(GList* items) {
    g_list_free_full(items, g_object_unref);
}

// The first item with the label; nullptr with the status in `failed`.
OwnedObject<SecretRetrievable> Find(const std::optional<std::string>& label,
                                    GCancellable* cancellable, OSStatus& failed) {
    failed = errSecNotAvailable;
    if (!KeychainIsThere(cancellable)) {
        return nullptr;
    }
    // A label is no attribute to search by: look at them all.
    const Attributes all(g_hash_table_new(g_str_hash, g_str_equal));
    Failure failure;
    const Owned<GList, FreeItems> items(secret_password_searchv_sync(
        nullptr, all.get(), SECRET_SEARCH_ALL, cancellable, failure.Out()));
    if (*failure.Out() != nullptr) {
        failed = failure.Status();
        return nullptr;
    }
    for (GList* link = items.get(); link != nullptr; link = link->next) {
        SecretRetrievable* item = SECRET_RETRIEVABLE(link->data);
        const Text itsLabel(secret_retrievable_get_label(item));
        if (!label || g_strcmp0(label->c_str(), itsLabel.get()) == 0) {
            return OwnedObject<SecretRetrievable>(SECRET_RETRIEVABLE(g_object_ref(item)));
        }
    }
    failed = errSecItemNotFound;
    return nullptr;
}

// An item of the service is changed in place, in whatever collection it is; one of the file is
// replaced by one with the same attributes.
bool Store(SecretRetrievable* item, SecretValue* value, GCancellable* cancellable, GError** error) {
    if (SECRET_IS_ITEM(item)) {
        return secret_item_set_secret_sync(SECRET_ITEM(item), value, cancellable, error);
    }
    const Text label(secret_retrievable_get_label(item));
    const Attributes attributes(secret_retrievable_get_attributes(item));
    return secret_password_storev_binary_sync(nullptr, attributes.get(), SECRET_COLLECTION_DEFAULT,
                                              label.get(), value, cancellable, error);
}

}  // namespace

OSStatus ReadKeychainItem(const std::optional<std::string>& label, std::string& data) {
    const Deadline deadline;
    OSStatus failed = errSecSuccess;
    const OwnedObject<SecretRetrievable> item = Find(label, deadline.Get(), failed);
    if (item == nullptr) {
        return failed;
    }
    Failure failure;
    const Value value(
        secret_retrievable_retrieve_secret_sync(item.get(), deadline.Get(), failure.Out()));
    if (value == nullptr) {
        return failure.Status();
    }
    gsize length = 0;
    const gchar* bytes = secret_value_get(value.get(), &length);
    data.assign(bytes, length);
    return errSecSuccess;
}

OSStatus WriteKeychainItem(const std::optional<std::string>& label, const std::string& data) {
    const Deadline deadline;
    OSStatus failed = errSecSuccess;
    const OwnedObject<SecretRetrievable> item = Find(label, deadline.Get(), failed);
    if (item == nullptr) {
        return failed;
    }
    const Value value(secret_value_new(data.data(), static_cast<gssize>(data.size()),
                                       "application/octet-stream"));
    Failure failure;
    return Store(item.get(), value.get(), deadline.Get(), failure.Out()) ? errSecSuccess
                                                                         : failure.Status();
}
