#include "Security/Administrator.h"

#include <gio/gio.h>
#include <gio/gunixsocketaddress.h>
#include <pwd.h>
#include <unistd.h>

#include <csignal>
#include <optional>
#include <sstream>

#include "linux/corrections/Programs.h"

namespace {

constexpr char kBroker[] = "/run/macroot/broker.sock";

// pkexec's own exit statuses; a command may end with the same numbers.
constexpr int kPromptDismissed = 126;
// pkcheck's.
constexpr int kCheckAllowed = 0;
constexpr int kCheckDismissed = 3;

constexpr char kPolkitAction[] = "org.freedesktop.policykit.exec";
constexpr char kSystemPath[] = "PATH=/usr/bin:/bin:/usr/sbin:/sbin";

// The first thing on the standard error of a command that was started: by it a command's own exit
// status is told from pkexec's.
constexpr char kStarted[] = "started by the administrator\n";

// GSocket's class ignores SIGPIPE for good when it is made. On a Mac nobody does: what this process
// starts would inherit it, and a handler of the program's own would be gone.
GSocket* NewSocket() {
    struct sigaction kept;
    sigaction(SIGPIPE, nullptr, &kept);
    GSocket* socket = g_socket_new(G_SOCKET_FAMILY_UNIX, G_SOCKET_TYPE_STREAM,
                                   G_SOCKET_PROTOCOL_DEFAULT, nullptr);
    sigaction(SIGPIPE, &kept, nullptr);
    return socket;
}

// All that the Mac root's broker answers to a request; nothing where there is no broker.
std::optional<std::string> AnswerOfBroker(const std::string& request) {
    g_autoptr(GSocketAddress) address = g_unix_socket_address_new(kBroker);
    g_autoptr(GSocket) socket = NewSocket();
    if (socket == nullptr || !g_socket_connect(socket, address, nullptr, nullptr)) {
        return std::nullopt;
    }
    g_autoptr(GSocketConnection) connection = g_socket_connection_factory_create_connection(socket);
    g_output_stream_write_all(g_io_stream_get_output_stream(G_IO_STREAM(connection)),
                              request.data(), request.size(), nullptr, nullptr, nullptr);
    g_socket_shutdown(socket, FALSE, TRUE, nullptr);
    g_autoptr(GOutputStream) answer = g_memory_output_stream_new_resizable();
    g_output_stream_splice(answer, g_io_stream_get_input_stream(G_IO_STREAM(connection)),
                           G_OUTPUT_STREAM_SPLICE_NONE, nullptr, nullptr);
    GMemoryOutputStream* const bytes = G_MEMORY_OUTPUT_STREAM(answer);
    return std::string(static_cast<const char*>(g_memory_output_stream_get_data(bytes)),
                       g_memory_output_stream_get_data_size(bytes));
}

// One line "VERDICT STATUS OUTPUT-LENGTH ERRORS-LENGTH", then the two texts. Nonsense is a refusal.
CommandResult Parsed(const std::string& answer) {
    const size_t texts = answer.find('\n') + 1;
    std::istringstream header(answer.substr(0, texts));
    std::string verdict;
    int status = 0;
    size_t output = 0;
    size_t errors = 0;
    const size_t length = answer.size() - texts;
    if (texts == 0 || !(header >> verdict >> status >> output >> errors) || output > length ||
        errors != length - output) {
        return {Verdict::Refused, 0, "", ""};
    }
    if (verdict != "allow") {
        return {verdict == "cancel" ? Verdict::Cancelled : Verdict::Refused, 0, "", ""};
    }
    return {Verdict::Allowed, status, answer.substr(texts, output), answer.substr(texts + output)};
}

std::string HomeOfUser() {
    const passwd* user = getpwuid(getuid());
    return user == nullptr ? "/" : user->pw_dir;
}

CommandResult RunByPolkit(const std::string& command) {
    const ProgramResult child =
        RunProgram({"pkexec", "/usr/bin/env", "-i", kSystemPath, "HOME=" + HomeOfUser(),
                    "USER=root", "LOGNAME=root", "/bin/sh", "-c",
                    "cd /; printf %s \"$1\" >&2; exec /bin/sh -c \"$0\"", command, kStarted});
    const size_t marker = child.errors.find(kStarted);
    if (marker == std::string::npos) {
        const bool cancelled = child.status == kPromptDismissed;
        return {cancelled ? Verdict::Cancelled : Verdict::Refused, 0, "", ""};
    }
    return {Verdict::Allowed, child.status, child.output,
            child.errors.substr(marker + sizeof kStarted - 1)};
}

}  // namespace

CommandResult RunAsAdministrator(const std::string& command) {
    if (const std::optional<std::string> answer = AnswerOfBroker("command\n" + command)) {
        return Parsed(*answer);
    }
    return RunByPolkit(command);
}

CommandResult RunAsUser(const std::string& command) {
    const ProgramResult child = RunProgram({"/bin/sh", "-c", command});
    return {Verdict::Allowed, child.status, child.output, child.errors};
}

Verdict AskForRight(const std::string& right) {
    if (const std::optional<std::string> answer = AnswerOfBroker("right\n" + right)) {
        return Parsed(*answer).verdict;
    }
    const ProgramResult check = RunProgram({"pkcheck", "--allow-user-interaction", "--action-id",
                                            kPolkitAction, "--process", std::to_string(getpid())});
    switch (check.status) {
        case kCheckAllowed:
            return Verdict::Allowed;
        case kCheckDismissed:
            return Verdict::Cancelled;
        default:
            return Verdict::Refused;
    }
}
