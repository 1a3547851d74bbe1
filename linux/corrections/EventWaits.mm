// A modal alert that always answers, as on a Mac.
//
//  - GNUstep sleeps until the display's connection has news, and only then looks at its queue of
//    events. What got into the queue by another way (read along with an answer of the display, or
//    posted by the program itself) waits until somebody moves the mouse: a short click is lost, an
//    alert stays on the screen. No sleep is longer than kLongestSleep here.
//  - The modal loop looks for a stop only after an event: each stop comes with one.
#include <AppKit/AppKit.h>
#include <GNUstepGUI/GSDisplayServer.h>

namespace {

const NSTimeInterval kLongestSleep = 0.05;

}  // namespace

@implementation GSDisplayServer (ShortSleeps)

- (NSEvent*)mac_getEventMatchingMask:(unsigned)mask
                          beforeDate:(NSDate*)limit
                              inMode:(NSString*)mode
                             dequeue:(BOOL)dequeue {
    NSEvent* event = nil;
    BOOL isLast = NO;
    while (!event && !isLast) {
        @autoreleasepool {
            NSDate* soon = [NSDate dateWithTimeIntervalSinceNow:kLongestSleep];
            isLast = !limit || [limit compare:soon] != NSOrderedDescending;
            event = [self mac_getEventMatchingMask:mask
                                        beforeDate:isLast ? limit : soon
                                            inMode:mode
                                           dequeue:dequeue];
            [event retain];
        }
    }
    return [event autorelease];
}

@end

@implementation NSApplication (ModalLoop)

- (void)mac_stopModalWithCode:(NSInteger)code {
    [self mac_stopModalWithCode:code];
    [self postEvent:[NSEvent otherEventWithType:NSApplicationDefined
                                       location:NSZeroPoint
                                  modifierFlags:0
                                      timestamp:0
                                   windowNumber:0
                                        context:nil
                                        subtype:0
                                          data1:0
                                          data2:0]
            atStart:NO];
}

@end
