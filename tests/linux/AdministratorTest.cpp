// Who gives administrator rights: the broker of a Mac root, else polkit. This program stands in for
// both: it leads connections to the broker's socket to one of its own, and has a pkexec and a
// pkcheck of its own on the path.
#include "Security/Administrator.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <thread>

#include "tests/support/TemporaryFolder.h"

namespace {

std::string brokerSocket;  // empty: there is no broker

sockaddr_un AddressOf(const std::string& path) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    return address;
}

}  // namespace

extern "C" int connect(int descriptor, const sockaddr* address, socklen_t /*length*/) {
    EXPECT_STREQ(reinterpret_cast<const sockaddr_un*>(address)->sun_path,
                 "/run/macroot/broker.sock");
    const sockaddr_un ours = AddressOf(brokerSocket.empty() ? "/nowhere" : brokerSocket);
    return static_cast<int>(syscall(SYS_connect, descriptor, &ours, sizeof ours));
}

namespace {

using namespace std::string_literals;

// Answers one connection.
class FakeBroker {
  public:
    FakeBroker(const TemporaryFolder& folder, const std::string& answer)
        : listening_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        brokerSocket = folder / "broker";
        const sockaddr_un address = AddressOf(brokerSocket);
        if (bind(listening_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
            listen(listening_, 1) != 0) {
            throw std::runtime_error("no socket " + brokerSocket);
        }
        thread_ = std::thread([this, answer] { Answer(answer); });
    }

    ~FakeBroker() {
        Finish();
        close(listening_);
        unlink(brokerSocket.c_str());
        brokerSocket.clear();
    }

    FakeBroker(const FakeBroker&) = delete;
    FakeBroker& operator=(const FakeBroker&) = delete;

    // All that the client said, once it is answered.
    std::string Asked() {
        Finish();
        return asked_;
    }

  private:
    void Answer(const std::string& answer) {
        const int client = accept(listening_, nullptr, nullptr);
        char chunk[4096];
        for (ssize_t count; (count = read(client, chunk, sizeof chunk)) > 0;) {
            asked_.append(chunk, static_cast<size_t>(count));
        }
        for (size_t sent = 0; sent < answer.size();) {
            const ssize_t count = write(client, answer.data() + sent, answer.size() - sent);
            if (count <= 0) {
                break;
            }
            sent += static_cast<size_t>(count);
        }
        close(client);
    }

    void Finish() {
        if (thread_.joinable()) {
            thread_.join();
        }
    }

    int listening_;
    std::string asked_;
    std::thread thread_;
};

class Administrator : public testing::Test {
  protected:
    Administrator() : path_(getenv("PATH")) {}
    ~Administrator() override { setenv("PATH", path_.c_str(), 1); }

    void Install(const std::string& program, const std::string& script) {
        folder_.Write(program, "#!/bin/sh\n" + script, 0755);
        setenv("PATH", (folder_.path() + ":" + path_).c_str(), 1);
    }

    TemporaryFolder folder_;
    const std::string path_;
};

TEST_F(Administrator, TheBrokerGetsTheCommandAndItsAnswerIsTaken) {
    FakeBroker broker(folder_, "allow 7 3 4\nouterr\n");
    const CommandResult result = RunAsAdministrator("echo 'a b'\nexit 7");
    EXPECT_EQ(broker.Asked(), "command\necho 'a b'\nexit 7");
    EXPECT_EQ(result.verdict, Verdict::Allowed);
    EXPECT_EQ(result.status, 7);
    EXPECT_EQ(result.output, "out");
    EXPECT_EQ(result.errors, "err\n");
}

TEST_F(Administrator, LargeTextsPassTheBrokerWhole) {
    const std::string output(3000000, 'o');
    const std::string command(1000000, 'c');
    FakeBroker broker(folder_, "allow 0 3000000 1\n" + output + "e");
    const CommandResult result = RunAsAdministrator(command);
    EXPECT_TRUE(broker.Asked() == "command\n" + command);
    EXPECT_TRUE(result.output == output);
    EXPECT_EQ(result.errors, "e");
}

TEST_F(Administrator, TheBrokersVerdictsAreToldApart) {
    EXPECT_EQ((FakeBroker(folder_, "cancel 0 0 0\n"), RunAsAdministrator("true")).verdict,
              Verdict::Cancelled);
    EXPECT_EQ((FakeBroker(folder_, "refuse 0 0 0\n"), RunAsAdministrator("true")).verdict,
              Verdict::Refused);
}

TEST_F(Administrator, ABrokerThatBreaksOffOrTalksNonsenseRefuses) {
    for (const std::string& answer :
         {""s, "allow 0 0 0"s, "allow 0 5 0\nout"s, "allow 0 1 0\nlong"s, "allow\n"s,
          "maybe 0 0 0\n"s, "allow 0 -1 1\n"s, "allow 0 18446744073709551615 1\n"s}) {
        const FakeBroker broker(folder_, answer);
        EXPECT_EQ(RunAsAdministrator("true").verdict, Verdict::Refused) << answer;
    }
}

TEST_F(Administrator, ARightIsAskedOfTheBrokerByItsName) {
    FakeBroker broker(folder_, "cancel 0 0 0\n");
    EXPECT_EQ(AskForRight("system.privilege.admin"), Verdict::Cancelled);
    EXPECT_EQ(broker.Asked(), "right\nsystem.privilege.admin");
}

TEST_F(Administrator, WithoutABrokerPolkitRunsTheCommandInACleanSurrounding) {
    Install("pkexec", "exec \"$@\"");
    setenv("KS_STRAY", "1", 1);
    const CommandResult result = RunAsAdministrator(
        "pwd; echo \"$HOME\" \"$PATH\" \"$KS_STRAY\"; echo 'a  b' >&2; exit 126");
    EXPECT_EQ(result.verdict, Verdict::Allowed);
    EXPECT_EQ(result.status, 126);
    EXPECT_EQ(result.output,
              "/\n"s + getpwuid(getuid())->pw_dir + " /usr/bin:/bin:/usr/sbin:/sbin \n");
    EXPECT_EQ(result.errors, "a  b\n");
}

TEST_F(Administrator, APolkitPromptThatIsDismissedOrFailedRunsNothing) {
    Install("pkexec",
            "echo 'Error executing command as another user: Not authorized' >&2; exit 126");
    EXPECT_EQ(RunAsAdministrator("true").verdict, Verdict::Cancelled);
    Install("pkexec", "exit 127");
    EXPECT_EQ(RunAsAdministrator("true").verdict, Verdict::Refused);
}

TEST_F(Administrator, WithoutPolkitEverythingIsRefused) {
    setenv("PATH", folder_.path().c_str(), 1);
    EXPECT_EQ(RunAsAdministrator("true").verdict, Verdict::Refused);
    EXPECT_EQ(AskForRight("system.privilege.admin"), Verdict::Refused);
}

TEST_F(Administrator, PolkitsAnswerAboutARightIsTaken) {
    Install("pkcheck",
            "[ \"$*\" = \"--allow-user-interaction --action-id"
            " org.freedesktop.policykit.exec --process $PPID\" ]");
    EXPECT_EQ(AskForRight("system.privilege.admin"), Verdict::Allowed);
    Install("pkcheck", "exit 3");
    EXPECT_EQ(AskForRight("system.privilege.admin"), Verdict::Cancelled);
    Install("pkcheck", "exit 1");
    EXPECT_EQ(AskForRight("system.privilege.admin"), Verdict::Refused);
}

TEST_F(Administrator, TheUsersCommandsRunAsTheUser) {
    const CommandResult result = RunAsUser("id -u; echo err >&2; exit 2");
    EXPECT_EQ(result.verdict, Verdict::Allowed);
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.output, std::to_string(getuid()) + "\n");
    EXPECT_EQ(result.errors, "err\n");
}

}  // namespace
