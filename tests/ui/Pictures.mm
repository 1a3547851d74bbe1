// alert_pictures FOLDER: draws the pictures of docs/, each alert as it stands on the screen.
// alert_pictures --ask [OPTION...]: shows the same alerts to a person, and tells how each was
// answered; the options are GNUstep's, such as -GSScaleFactor 2.
#include <sysexits.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

#include "tests/support/Asking.h"
#include "ui/QWIAlertUtils.h"

namespace {

constexpr int kRow = 38;
constexpr auto kDrawing = std::chrono::milliseconds(300);

NSColor* Green() {
    return [NSColor colorWithDeviceRed:0.55 green:0.77 blue:0.24 alpha:1];
}

NSColor* Red() {
    return [NSColor colorWithDeviceRed:0.93 green:0.11 blue:0.14 alpha:1];
}

NSData* PNG(const Picture& picture) {
    NSBitmapImageRep* bitmap =
        [[[NSBitmapImageRep alloc] initWithBitmapDataPlanes:NULL
                                                 pixelsWide:picture.width
                                                 pixelsHigh:picture.height
                                              bitsPerSample:8
                                            samplesPerPixel:3
                                                   hasAlpha:NO
                                                   isPlanar:NO
                                             colorSpaceName:NSDeviceRGBColorSpace
                                                bytesPerRow:picture.width * 3
                                               bitsPerPixel:24] autorelease];
    unsigned char* next = [bitmap bitmapData];
    for (const Color& color : picture.pixels) {
        *next++ = static_cast<unsigned char>(color.red);
        *next++ = static_cast<unsigned char>(color.green);
        *next++ = static_cast<unsigned char>(color.blue);
    }
    return [bitmap representationUsingType:NSPNGFileType properties:[NSDictionary dictionary]];
}

class Album {
  public:
    explicit Album(NSString* path) : folder(path) {}

    /// Asks, and keeps a picture of the alert before somebody presses the button at `x`.
    void Add(NSString* name, const std::function<int()>& ask, int x) {
        Picture picture;
        AskUser(user, ask, [&] {
            user.SeeKeyboardTaken();
            std::this_thread::sleep_for(kDrawing);
            picture = user.LookWithFrame();
            user.Click(x, kRow);
        });
        NSString* path = [folder stringByAppendingPathComponent:name];
        if (![PNG(picture) writeToFile:path atomically:YES]) {
            std::fprintf(stderr, "alert_pictures: cannot write %s\n", [path UTF8String]);
            std::exit(EX_CANTCREAT);
        }
    }

  private:
    NSString* const folder;
    DesktopUser user;
};

Question AboutBrowsers() {
    Question question;
    question.message =
        @"Keystrel has detected an Internet browser running. In order to continue the installation "
        @"please close all open browsers and Retry or click the Close Browsers button.";
    question.title = @"";
    question.titleColor = Green();
    question.ok = @"Exit";
    question.cancel = @"Close Browsers";
    question.isCancelOrange = YES;
    question.ignore = @"Retry";
    question.nib = @"QWBrowsersAlert";
    return question;
}

Question AboutUpdate() {
    Question question = AboutBrowsers();
    question.title = @"Keystrel for your browsers";
    question.bigText = @"Three browsers can be set up";
    question.message = @"Keystrel will be installed in Google Chrome, Mozilla Firefox and Safari. "
                       @"Your open tabs stay as they are.";
    question.ok = @"Install";
    question.isOkOrange = YES;
    question.isCancelOrange = NO;
    question.cancel = @"Not Now";
    question.ignore = @"";
    question.nib = @"QWSyleAlert";
    return question;
}

Question AboutLicence() {
    Question question = AboutUpdate();
    question.title = @"What is new";
    question.bigText = @"";
    question.message =
        [@"" stringByPaddingToLength:1500
                          withString:@"Keystrel keeps your passwords on this Mac, and "
                                     @"fills them in where you need them. "
                     startingAtIndex:0];
    question.center = NO;
    return question;
}

int RefuseCredentials() {
    return [QWIAlertUtils QWIAlertWithMessageTopMost:@"Invalid credentials"
                                               Title:@"NOTICE!"
                                              OkText:@"Ok"
                                          IsCentered:YES
                                             BigText:@""
                                          TitleColor:Red()
                                             NibName:@"QWSyleAlert"];
}

void TakePictures(Album* album) {
    album->Add(@"alert-notice.png", RefuseCredentials, 241);
    album->Add(
        @"alert-browsers.png", [] { return Ask(AboutBrowsers()); }, 354);
    album->Add(
        @"alert-big-text.png", [] { return Ask(AboutUpdate()); }, 311);
    album->Add(
        @"alert-long.png", [] { return Ask(AboutLicence()); }, 409);
}

void Tell(int answer) {
    std::printf("  answered with %d\n", answer);
    std::fflush(stdout);
}

void AskPerson() {
    Tell(RefuseCredentials());
    Tell(Ask(AboutBrowsers()));
    Tell(Ask(AboutUpdate()));
    Tell(Ask(AboutLicence()));
}

}  // namespace

int main(int argc, char** argv) {
    const bool asks = argc > 1 && std::strcmp(argv[1], "--ask") == 0;
    if (argc != 2 && !asks) {
        std::fprintf(stderr, "usage: alert_pictures FOLDER | --ask [OPTION...]\n");
        return EX_USAGE;
    }
    @autoreleasepool {
        if (asks) {
            AskPerson();
        } else {
            Album album([NSString stringWithUTF8String:argv[1]]);
            TakePictures(&album);
        }
    }
    return 0;
}
