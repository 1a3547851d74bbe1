#include <chrono>

#include "platform/UtilsBridges.h"

long GetCurrentProcessId() {
    return GetCurrentProcessIdBridge();
}
std::string GetOSXVersion() {
    return GetOSVersionBridge();
}
std::string GetKSVersionOSX() {
    return GetKSVersionBridge();
}
void CloseAppCPP() {
    CloseAppBridge();
}
long hid_resetCPP() {
    return hid_resetBridge();
}
long GetSystemIdleTime() {
    return GetSystemIdleTimeBridge();
}
bool areConnectedCPP() {
    return areConnectedBridge();
}

time_t GetTickCount() {
    using std::chrono::system_clock;
    return system_clock::to_time_t(system_clock::now());
}
