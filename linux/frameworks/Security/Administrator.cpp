#include "Security/Administrator.h"

#include <pwd.h>
#include <unistd.h>

#include "Security/Broker.h"
#include "Security/RunProgram.h"

namespace {

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
    if (const std::optional<CommandResult> answer = AskBroker("command", command)) {
        return *answer;
    }
    return RunByPolkit(command);
}

CommandResult RunAsUser(const std::string& command) {
    const ProgramResult child = RunProgram({"/bin/sh", "-c", command});
    return {Verdict::Allowed, child.status, child.output, child.errors};
}

Verdict AskForRight(const std::string& right) {
    if (const std::optional<CommandResult> answer = AskBroker("right", right)) {
        return answer->verdict;
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
