// Where nobody can see an alert.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <thread>

#include "tests/support/Asking.h"
#include "tests/ui/NSLoggerLines.h"
#include "ui/QWIAlertUtils.h"

namespace {

using Lines = std::vector<std::string>;

class NoDisplay : public testing::Test {
  protected:
    void SetUp() override { unsetenv("DISPLAY"); }

    /// The result of an alert, which must come at once: nobody waits for a display to come up.
    int AskInVain(const std::function<int()>& ask) {
        const auto start = std::chrono::steady_clock::now();
        const int result = ask();
        const auto took = std::chrono::steady_clock::now() - start;
        EXPECT_LT(std::chrono::duration_cast<std::chrono::milliseconds>(took).count(), 5000);
        return result;
    }
};

TEST_F(NoDisplay, EveryFormIsClosedAtOnceWithOneWarning) {
    EXPECT_EQ(AskInVain([] { return Ask({}); }), kAlertClosed);
    EXPECT_EQ(TakeLoggedLines(), Lines{"warning: No display for the alert: The disk is full."});
    EXPECT_EQ(AskInVain([] {
                  return [QWIAlertUtils QWIAlertWithMessage:@"100 %"
                                                      Title:@"Attention"
                                                     OkText:@"Ok"
                                                 IsCentered:YES
                                                    BigText:@""
                                                 TitleColor:[NSColor redColor]
                                                    NibName:@"QWSyleAlert"];
              }),
              kAlertClosed);
    EXPECT_EQ(TakeLoggedLines(), Lines{"warning: No display for the alert: 100 %"});
    EXPECT_EQ(AskInVain([] {
                  return [QWIAlertUtils QWIAlertWithMessageTopMost:@"Invalid credentials"
                                                             Title:@"NOTICE!"
                                                            OkText:@"Ok"
                                                        IsCentered:YES
                                                           BigText:@""
                                                        TitleColor:[NSColor redColor]
                                                           NibName:@"QWSyleAlert"];
              }),
              kAlertClosed);
    EXPECT_EQ(TakeLoggedLines(), Lines{"warning: No display for the alert: Invalid credentials"});
    EXPECT_EQ(NSApp, nil);
}

TEST_F(NoDisplay, NamesThatLeadNowhereAreNoDisplay) {
    for (const char* name : {"", ":4711", "nonsense", ":", "unix:4711.3", "localhost:4711"}) {
        setenv("DISPLAY", name, 1);
        EXPECT_EQ(AskInVain([] { return Ask({}); }), kAlertClosed) << name;
        EXPECT_EQ(TakeLoggedLines().size(), 1U) << name;
    }
}

/// A display that turns everybody away.
class RefusingDisplay {
  public:
    RefusingDisplay() {
        listener = socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        // A name of the kernel's own, without a file; the leading NUL is part of it.
        const std::string path = "/tmp/.X11-unix/X" + std::to_string(number);
        std::memcpy(address.sun_path + 1, path.data(), path.size());
        const auto length =
            static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + path.size());
        if (bind(listener, reinterpret_cast<sockaddr*>(&address), length) != 0 ||
            listen(listener, 1) != 0) {
            ADD_FAILURE() << "no socket for the display";
        }
        door = std::thread([this] { Refuse(); });
    }
    ~RefusingDisplay() {
        shutdown(listener, SHUT_RDWR);
        door.join();
        close(listener);
    }

    std::string Name() const { return ":" + std::to_string(number); }

  private:
    void Refuse() const {
        for (int guest; (guest = accept(listener, nullptr, nullptr)) >= 0;) {
            unsigned char greeting[12];
            if (read(guest, greeting, sizeof greeting) == sizeof greeting) {
                // X11's refusal: 0, length of the reason, version 11.0, size in words, reason.
                const unsigned char answer[] = {0, 2, 11, 0, 0, 0, 1, 0, 'N', 'o', 0, 0};
                EXPECT_EQ(write(guest, answer, sizeof answer), static_cast<ssize_t>(sizeof answer));
            }
            close(guest);
        }
    }

    const int number = 20000 + getpid() % 10000;
    int listener = -1;
    std::thread door;
};

TEST_F(NoDisplay, ADisplayThatRefusesIsNone) {
    const RefusingDisplay display;
    setenv("DISPLAY", display.Name().c_str(), 1);
    EXPECT_EQ(AskInVain([] { return Ask({}); }), kAlertClosed);
    EXPECT_EQ(TakeLoggedLines().size(), 1U);
}

}  // namespace
