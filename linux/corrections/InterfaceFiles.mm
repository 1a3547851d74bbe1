// Interface files in Xcode's format, which GNUstep reads as they are, but
//  - with documents of its own kind only,
//  - with the plain system font in the place of the bold one,
//  - without the font and the colour of a text view, and
//  - with an exception where there is no file, for which a Mac only leaves out the window.
#include <AppKit/AppKit.h>

#include "linux/corrections/ApplicationParts.h"
#include "linux/corrections/Replacement.h"
#include "linux/corrections/xml/GNUstepDocuments.h"

namespace {

NSString* const kXibLoader = @"GSXibLoader";
NSString* const kKindOfFont = @"metaFont";
NSString* const kBoldFont = @"systemBold";
NSString* const kFontOfText = @"font";
NSString* const kColorOfText = @"textColor";

BOOL (*loadModel)(id, SEL, NSData*, NSDictionary*, NSZone*) = nullptr;
void (*loadWindow)(id, SEL) = nullptr;
NSTextView* (*readTextView)(id, SEL, NSCoder*) = nullptr;
NSFont* (*readFont)(id, SEL, NSCoder*) = nullptr;

BOOL LoadWithOwnDocuments(id self, SEL selector, NSData* data, NSDictionary* context,
                          NSZone* zone) {
    const GNUstepDocuments documents;
    return loadModel(self, selector, data, context, zone);
}

void LoadIfFound(NSWindowController* self, SEL selector) {
    if ([self windowNibPath]) {
        loadWindow(self, selector);
    }
}

BOOL Holds(NSCoder* coder, NSString* key) {
    return [coder allowsKeyedCoding] && [coder containsValueForKey:key];
}

BOOL IsBold(NSCoder* coder) {
    return Holds(coder, kKindOfFont) && [kBoldFont isEqual:[coder decodeObjectForKey:kKindOfFont]];
}

NSFont* ReadBoldToo(id self, SEL selector, NSCoder* coder) {
    NSFont* font = readFont(self, selector, coder);
    if (!IsBold(coder)) {
        return font;
    }
    NSFont* bold = [[NSFont boldSystemFontOfSize:[font pointSize]] retain];
    [font release];
    return bold;
}

NSTextView* ReadStyleToo(id self, SEL selector, NSCoder* coder) {
    NSTextView* view = readTextView(self, selector, coder);
    if (Holds(coder, kFontOfText)) {
        [view setFont:[coder decodeObjectForKey:kFontOfText]];
    }
    if (Holds(coder, kColorOfText)) {
        [view setTextColor:[coder decodeObjectForKey:kColorOfText]];
    }
    return view;
}

}  // namespace

void CorrectInterfaceFiles() {
    ReplaceMethod(NSClassFromString(kXibLoader),
                  @selector(loadModelData:externalNameTable:withZone:), LoadWithOwnDocuments,
                  &loadModel);
    ReplaceMethod([NSWindowController class], @selector(loadWindow), LoadIfFound, &loadWindow);
    ReplaceMethod([NSFont class], @selector(initWithCoder:), ReadBoldToo, &readFont);
    ReplaceMethod([NSTextView class], @selector(initWithCoder:), ReadStyleToo, &readTextView);
}
