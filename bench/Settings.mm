// Setting one value in a settings file of 100 keys: read, set, written as XML to a file beside it
// that is flushed to the disk and takes its place.
#include <fcntl.h>
#include <plist/plist.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "bench/Contest.h"
#include "settings/LocalSettings_Mac.h"

namespace {

const std::string kFolder = "/Users/Shared/Keystrel/";
const std::string kFile = kFolder + "KSSettings.plist";
constexpr int kKeys = 100;
constexpr const char* kKey = "Key50";
constexpr const char* kValue = "the value that is set";

std::string Read() {
    std::ifstream file(kFile, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

plist_t Parse(const std::string& bytes) {
    plist_t root = nullptr;
    plist_from_xml(bytes.data(), static_cast<uint32_t>(bytes.size()), &root);
    return root;
}

void Write(plist_t root) {
    char* text = nullptr;
    uint32_t length = 0;
    plist_to_xml(root, &text, &length);
    const std::string beside = kFolder + "beside";
    const int file = open(beside.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    const bool written = write(file, text, length) == static_cast<ssize_t>(length);
    if (written && fsync(file) == 0 && close(file) == 0) {
        rename(beside.c_str(), kFile.c_str());
    }
    free(text);
}

void SetByLibplist() {
    plist_t root = Parse(Read());
    plist_dict_set_item(root, kKey, plist_new_string(kValue));
    Write(root);
    plist_free(root);
}

void SetByUs() {
    @autoreleasepool {
        [LocalSettings_Mac SetSettingValue:@"the value that is set" withName:@"Key50"];
    }
}

void StartAfresh() {
    plist_t root = plist_new_dict();
    for (int i = 0; i < kKeys; ++i) {
        const std::string number = std::to_string(i);
        plist_dict_set_item(root, ("Key" + number).c_str(),
                            plist_new_string(("an earlier value " + number).c_str()));
    }
    Write(root);
    plist_free(root);
}

bool HoldsTheValue() {
    plist_t root = Parse(Read());
    char* value = nullptr;
    plist_get_string_val(plist_dict_get_item(root, kKey), &value);
    const bool holds = value != nullptr && std::string(value) == kValue &&
                       plist_dict_get_size(root) == static_cast<uint32_t>(kKeys);
    free(value);
    plist_free(root);
    return holds;
}

void EnterSetting(const char* who, void (*set)()) {
    const auto run = [set](benchmark::State& state) {
        StartAfresh();
        for (auto turn : state) {
            (void)turn;
            set();
        }
        if (!HoldsTheValue()) {
            state.SkipWithError("wrong result");
        }
        state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
    };
    benchmark::RegisterBenchmark((std::string("setting/") + who).c_str(), run);
}

}  // namespace

void EnterSettings() {
    EnterSetting("ours", SetByUs);
    EnterSetting("libplist", SetByLibplist);
}
