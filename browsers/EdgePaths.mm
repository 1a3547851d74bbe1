#include "browsers/EdgePaths.h"

#include "browsers/Payload.h"

namespace {

NSString* const kPayloadSubfolder = @"/edge";
NSString* const kDescriptorName = @KS_EDGE_DESCRIPTOR;
NSString* const kHostFolder = @"~/Library/Application Support/Microsoft Edge/NativeMessagingHosts";
NSString* const kExternalFolder =
    @"~/Library/Application Support/Microsoft Edge/External Extensions";

}  // namespace

NSString* EdgeHostFolder() {
    return [kHostFolder stringByExpandingTildeInPath];
}

NSString* EdgeExternalFolder() {
    return [kExternalFolder stringByExpandingTildeInPath];
}

NSString* EdgeInstalledHostManifest() {
    return [NSString stringWithFormat:@"%@%@", EdgeHostFolder(), kChromiumHostManifest];
}

NSString* EdgeInstalledDescriptor() {
    return [NSString stringWithFormat:@"%@/%@", EdgeExternalFolder(), kDescriptorName];
}

NSString* EdgePayloadHostManifest() {
    return [NSString
        stringWithFormat:@"%@%@%@", kExtensionsFolder, kPayloadSubfolder, kChromiumHostManifest];
}

NSString* EdgePayloadDescriptor() {
    return [NSString
        stringWithFormat:@"%@%@/%@", kExtensionsFolder, kPayloadSubfolder, kDescriptorName];
}
