#include "tests/support/Asking.h"

#include <thread>

#include "ui/QWIAlertUtils.h"

/// Looks at a running alert once, then closes it.
@interface AlertVisitor : NSObject {
    const std::function<void(QWStyleAlert*)>* look;
}
- (id)initWithLook:(const std::function<void(QWStyleAlert*)>&)function;
- (void)visit:(NSTimer*)timer;
@end

@implementation AlertVisitor

- (id)initWithLook:(const std::function<void(QWStyleAlert*)>&)function {
    self = [super init];
    if (self) {
        look = &function;
    }
    return self;
}

- (void)visit:(NSTimer*)timer {
    (void)timer;
    QWStyleAlert* alert = static_cast<QWStyleAlert*>([[NSApp modalWindow] delegate]);
    (*look)(alert);
    [alert mainClose:nil];
}

@end

int Ask(const Question& question) {
    return [QWIAlertUtils QWIAlertWithMessage:question.message
                                        Title:question.title
                                   TitleColor:question.titleColor
                                      BigText:question.bigText
                                       OkText:question.ok
                                   IsOKOrange:question.isOkOrange
                                   CancelText:question.cancel
                               IsCancelOrange:question.isCancelOrange
                                   IgnoreText:question.ignore
                               IsIgnoreOrange:question.isIgnoreOrange
                                       Center:question.center
                                    withFrame:question.frame
                                       andNib:question.nib];
}

int AskUser(DesktopUser& user, const std::function<int()>& ask,
            const std::function<void()>& answer) {
    std::thread thread([&] {
        user.SeeAlert();
        answer();
        user.SeeNoAlert();
    });
    const int result = ask();
    thread.join();
    return result;
}

int AskAndLook(const std::function<int()>& ask, const std::function<void(QWStyleAlert*)>& look) {
    AlertVisitor* visitor = [[[AlertVisitor alloc] initWithLook:look] autorelease];
    NSTimer* timer = [NSTimer timerWithTimeInterval:0
                                             target:visitor
                                           selector:@selector(visit:)
                                           userInfo:nil
                                            repeats:NO];
    [[NSRunLoop currentRunLoop] addTimer:timer forMode:NSModalPanelRunLoopMode];
    return ask();
}

NSButton* Button(QWStyleAlert* alert, NSString* outlet) {
    return [alert valueForKey:outlet];
}

NSTextView* MessageView(QWStyleAlert* alert) {
    return [alert valueForKey:@"textView"];
}

QWStyleAlert* NewAlert(NSString* nib) {
    [NSApplication sharedApplication];
    QWStyleAlert* alert = [[[QWStyleAlert alloc] initWithWindowNibName:nib] autorelease];
    [alert window];
    return alert;
}

std::string Text(NSString* text) {
    return text ? [text UTF8String] : "(nil)";
}
