#include "browsers/SafariPreferences.h"

#include "product/Applications.h"
#include "product/Extensions.h"

namespace {

NSString* const kPreferences = @"~/Library/Preferences/" KS_SAFARI_IDENTIFIER ".plist";
NSString* const kAutoFillOn = @"1";  // meant: the value is a string
NSString* const kAutoFillOff = @"0";
NSString* const kTabPolicy = @"TabCreationPolicy";
constexpr int kTabPolicyWithoutAutoFill = 2;

NSString* const kToolbar = @"NSToolbar Configuration BrowserWindowToolbarIdentifier";
NSString* const kToolbarItems = @"TB Item Identifiers";
NSString* const kButtonItem = @KS_SAFARI_BUTTON_ITEM;

}  // namespace

NSString* SafariPreferencesPath() {
    return [kPreferences stringByExpandingTildeInPath];
}

void SetSafariAutoFill(NSMutableDictionary* preferences, BOOL on) {
    [preferences setObject:on ? kAutoFillOn : kAutoFillOff forKey:kSafariAutoFill];
    if (!on) {
        [preferences setObject:[NSNumber numberWithInt:kTabPolicyWithoutAutoFill]
                        forKey:kTabPolicy];
    }
}

void RemoveSafariToolbarItem(NSDictionary* preferences) {
    id toolbar = [preferences objectForKey:kToolbar];
    if (![toolbar isKindOfClass:[NSDictionary class]]) {
        return;
    }
    id items = [toolbar objectForKey:kToolbarItems];
    if ([items isKindOfClass:[NSMutableArray class]]) {
        [items removeObject:kButtonItem];
    }
}
