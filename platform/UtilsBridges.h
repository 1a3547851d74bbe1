#pragma once

#include <ctime>
#include <string>

// Utils_Mac for code that cannot send messages to it. A plain function only calls the bridge beside
// it, which calls the class operation and returns what it returns, texts as UTF-8.

long GetCurrentProcessId();     ///< Utils_Mac GetCurrentProcessId
std::string GetOSXVersion();    ///< Utils_Mac getOSVersion
std::string GetKSVersionOSX();  ///< Utils_Mac getKSVersion
void CloseAppCPP();             ///< Utils_Mac closeApp
long hid_resetCPP();            ///< Utils_Mac hid_reset
long GetSystemIdleTime();       ///< Utils_Mac GetSystemIdleTime, in seconds
bool areConnectedCPP();         ///< Utils_Mac areConnected

/// The wall-clock time in whole seconds since the Unix epoch. Meant: whole seconds, though the name
/// promises milliseconds since the start of the system.
time_t GetTickCount();

long GetCurrentProcessIdBridge();
std::string GetOSVersionBridge();
std::string GetKSVersionBridge();
void CloseAppBridge();
long hid_resetBridge();
long GetSystemIdleTimeBridge();
bool areConnectedBridge();
