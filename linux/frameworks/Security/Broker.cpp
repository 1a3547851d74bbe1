#include "Security/Broker.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <sstream>

namespace {

constexpr char kSocket[] = "/run/macroot/broker.sock";

class Connection {
  public:
    Connection() : descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        std::memcpy(address.sun_path, kSocket, sizeof kSocket);
        connected = descriptor >= 0 &&
                    connect(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    }
    ~Connection() {
        if (descriptor >= 0) {
            close(descriptor);
        }
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    bool IsConnected() const { return connected; }

    void Send(const std::string& text) const {
        size_t sent = 0;
        while (sent < text.size()) {
            const ssize_t count =
                send(descriptor, text.data() + sent, text.size() - sent, MSG_NOSIGNAL);
            if (count < 0 && errno != EINTR) {
                break;
            }
            sent += count > 0 ? static_cast<size_t>(count) : 0;
        }
        shutdown(descriptor, SHUT_WR);
    }

    std::string Receive() const {
        std::string text;
        std::array<char, 65536> chunk;
        for (;;) {
            const ssize_t count = recv(descriptor, chunk.data(), chunk.size(), 0);
            if (count > 0) {
                text.append(chunk.data(), static_cast<size_t>(count));
            } else if (count == 0 || errno != EINTR) {
                return text;
            }
        }
    }

  private:
    int descriptor;
    bool connected;
};

const CommandResult kRefused = {Verdict::Refused, 0, "", ""};
const CommandResult kCancelled = {Verdict::Cancelled, 0, "", ""};

// One line "VERDICT STATUS OUTPUT-LENGTH ERRORS-LENGTH", then the two texts.
CommandResult Parsed(const std::string& answer) {
    const size_t lineEnd = answer.find('\n');
    std::istringstream header(answer.substr(0, lineEnd));
    std::string verdict;
    int status = 0;
    size_t outputLength = 0;
    size_t errorsLength = 0;
    if (lineEnd == std::string::npos ||
        !(header >> verdict >> status >> outputLength >> errorsLength)) {
        return kRefused;
    }
    const size_t length = answer.size() - lineEnd - 1;
    if (outputLength > length || errorsLength != length - outputLength) {
        return kRefused;
    }
    if (verdict == "cancel") {
        return kCancelled;
    }
    if (verdict != "allow") {
        return kRefused;
    }
    return {Verdict::Allowed, status, answer.substr(lineEnd + 1, outputLength),
            answer.substr(lineEnd + 1 + outputLength)};
}

}  // namespace

std::optional<CommandResult> AskBroker(const std::string& kind, const std::string& text) {
    const Connection connection;
    if (!connection.IsConnected()) {
        return std::nullopt;
    }
    connection.Send(kind + "\n" + text);
    return Parsed(connection.Receive());
}
