#pragma once

#include <Foundation/Foundation.h>

#include <string>

/// One service of the registry.
struct Service {
    NSString* className;

    /// Its properties at this moment; nil when the machine has no such service.
    NSDictionary* (*properties)();
};

/// Every service that there may be.
extern const Service kPlatformExpertDevice;
extern const Service kHIDSystem;

/// The UUID that a machine identifier stands for: its 32 hexadecimal digits in upper case, parted
/// 8-4-4-4-12.
/// @return empty for anything but 32 digits
std::string PlatformUuid(const std::string& machineIdentifier);
