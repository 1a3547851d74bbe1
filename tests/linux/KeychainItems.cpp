#include "tests/linux/KeychainItems.h"

#include <libsecret/secret.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <functional>

namespace {

constexpr const char* kAttribute = "item";
constexpr const char* kServiceName = "org.freedesktop.secrets";
constexpr guint32 kDoNotQueue = 4;
constexpr guint32 kNameIsOurs = 1;

using Texts = std::map<std::string, std::string>;

// libsecret keeps in a process what it knows: the password, the items, the connection. Each use has
// a process of its own, which hands its texts over in a file, each behind its size.
Texts InChild(const std::function<bool(Texts&)>& use, bool& succeeded) {
    const int file = memfd_create("texts", 0);
    const pid_t child = fork();
    if (child == 0) {
        Texts texts;
        bool complete = use(texts);
        const auto put = [&](const std::string& text) {
            const size_t size = text.size();
            complete = complete && write(file, &size, sizeof size) == sizeof size &&
                       write(file, text.data(), size) == static_cast<ssize_t>(size);
        };
        for (const auto& [name, text] : texts) {
            put(name);
            put(text);
        }
        _exit(complete ? 0 : 1);
    }
    int ending = -1;
    waitpid(child, &ending, 0);
    succeeded = ending == 0;
    lseek(file, 0, SEEK_SET);
    const auto take = [file](std::string& text) {
        size_t size = 0;
        if (read(file, &size, sizeof size) != sizeof size) {
            return false;
        }
        text.resize(size);
        return read(file, text.data(), size) == static_cast<ssize_t>(size);
    };
    Texts texts;
    for (std::string name, text; take(name) && take(text);) {
        texts[name] = text;
    }
    close(file);
    return texts;
}

bool DoneInChild(const std::function<bool()>& use) {
    bool succeeded = false;
    InChild([&](Texts&) { return use(); }, succeeded);
    return succeeded;
}

bool Succeeded(const char* what, GError* error) {
    if (error == nullptr) {
        return true;
    }
    fprintf(stderr, "%s: %s\n", what, error->message);
    g_error_free(error);
    return false;
}

GHashTable* NewAttributes(const char* value) {
    GHashTable* attributes = g_hash_table_new_full(g_str_hash, g_str_equal, g_free, g_free);
    if (value != nullptr) {
        g_hash_table_insert(attributes, g_strdup(kAttribute), g_strdup(value));
    }
    return attributes;
}

GList* NewListOfItems() {
    GHashTable* all = NewAttributes(nullptr);
    GError* error = nullptr;
    GList* items = secret_password_searchv_sync(nullptr, all, SECRET_SEARCH_ALL, nullptr, &error);
    g_hash_table_unref(all);
    Succeeded("searching", error);
    return items;
}

// What `text` says about each item, by label.
Texts ItemTexts(std::string (*text)(SecretRetrievable*)) {
    Texts texts;
    GList* items = NewListOfItems();
    for (GList* link = items; link != nullptr; link = link->next) {
        SecretRetrievable* item = SECRET_RETRIEVABLE(link->data);
        gchar* label = secret_retrievable_get_label(item);
        texts[label] = text(item);
        g_free(label);
    }
    g_list_free_full(items, g_object_unref);
    return texts;
}

std::string Data(SecretRetrievable* item) {
    GError* error = nullptr;
    SecretValue* value = secret_retrievable_retrieve_secret_sync(item, nullptr, &error);
    if (!Succeeded("retrieving", error)) {
        return "?";
    }
    gsize length = 0;
    const gchar* bytes = secret_value_get(value, &length);
    std::string data(bytes, length);
    secret_value_unref(value);
    return data;
}

std::string AttributesOf(SecretRetrievable* item) {
    std::map<std::string, std::string> sorted;
    GHashTable* attributes = secret_retrievable_get_attributes(item);
    GHashTableIter iterator;
    gpointer key = nullptr;
    gpointer value = nullptr;
    g_hash_table_iter_init(&iterator, attributes);
    while (g_hash_table_iter_next(&iterator, &key, &value)) {
        sorted[static_cast<const char*>(key)] = static_cast<const char*>(value);
    }
    sorted.erase("xdg:schema");
    g_hash_table_unref(attributes);
    std::string text;
    for (const auto& [name, content] : sorted) {
        text.append(name).append("=").append(content).append(";");
    }
    return text;
}

GDBusConnection* NewConnection() {
    return g_dbus_connection_new_for_address_sync(
        g_getenv("DBUS_SESSION_BUS_ADDRESS"),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr);
}

GVariant* NewAnswerOfBus(GDBusConnection* bus, const char* method, GVariant* arguments) {
    return g_dbus_connection_call_sync(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                       "org.freedesktop.DBus", method, arguments, nullptr,
                                       G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
}

GDBusMessage* DropCalls(GDBusConnection* /*bus*/, GDBusMessage* message, gboolean incoming,
                        gpointer /*data*/) {
    if (incoming && g_dbus_message_get_message_type(message) == G_DBUS_MESSAGE_TYPE_METHOD_CALL) {
        g_object_unref(message);
        return nullptr;
    }
    return message;
}

bool Store(const std::string& label, const std::string& data) {
    GHashTable* attributes = NewAttributes(label.c_str());
    SecretValue* value =
        secret_value_new(data.data(), static_cast<gssize>(data.size()), "application/octet-stream");
    GError* error = nullptr;
    secret_password_storev_binary_sync(nullptr, attributes, SECRET_COLLECTION_DEFAULT,
                                       label.c_str(), value, nullptr, &error);
    secret_value_unref(value);
    g_hash_table_unref(attributes);
    return Succeeded("storing", error);
}

bool RemoveAll() {
    GList* items = NewListOfItems();
    for (GList* link = items; link != nullptr; link = link->next) {
        GHashTable* attributes = secret_retrievable_get_attributes(SECRET_RETRIEVABLE(link->data));
        GError* error = nullptr;
        secret_password_clearv_sync(nullptr, attributes, nullptr, &error);
        g_hash_table_unref(attributes);
        Succeeded("removing", error);
    }
    g_list_free_full(items, g_object_unref);
    return true;
}

bool Lock() {
    GError* error = nullptr;
    SecretService* service =
        secret_service_get_sync(SECRET_SERVICE_LOAD_COLLECTIONS, nullptr, &error);
    if (!Succeeded("connecting", error)) {
        return false;
    }
    GList* collections = secret_service_get_collections(service);
    secret_service_lock_sync(service, collections, nullptr, nullptr, &error);
    g_list_free_full(collections, g_object_unref);
    g_object_unref(service);
    return Succeeded("locking", error);
}

Texts AllOf(std::string (*text)(SecretRetrievable*)) {
    bool succeeded = false;
    return InChild(
        [&](Texts& texts) {
            texts = ItemTexts(text);
            return true;
        },
        succeeded);
}

}  // namespace

bool StoreItem(const std::string& label, const std::string& data) {
    return DoneInChild([&] { return Store(label, data); });
}

std::map<std::string, std::string> AllItems() {
    return AllOf(Data);
}

std::map<std::string, std::string> AllAttributes() {
    return AllOf(AttributesOf);
}

void RemoveAllItems() {
    DoneInChild(RemoveAll);
}

bool LockCollections() {
    return DoneInChild(Lock);
}

bool PlaySilentService() {
    static GDBusConnection* bus = NewConnection();  // silent until the process ends
    if (bus == nullptr) {
        return false;
    }
    GVariant* answer =
        NewAnswerOfBus(bus, "RequestName", g_variant_new("(su)", kServiceName, kDoNotQueue));
    if (answer == nullptr) {
        return false;
    }
    guint32 status = 0;
    g_variant_get(answer, "(u)", &status);
    g_variant_unref(answer);
    g_dbus_connection_add_filter(bus, DropCalls, nullptr, nullptr);
    return status == kNameIsOurs;
}

bool SecretServiceRuns() {
    GDBusConnection* bus = NewConnection();
    GVariant* answer = NewAnswerOfBus(bus, "NameHasOwner", g_variant_new("(s)", kServiceName));
    gboolean runs = FALSE;
    g_variant_get(answer, "(b)", &runs);
    g_variant_unref(answer);
    g_object_unref(bus);
    return runs;
}
