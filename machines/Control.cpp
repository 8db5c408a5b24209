#include "Control.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace tarnwell {

namespace {

void Answer(int connection, const std::function<std::string(const std::string& line)>& answer) {
    std::string line;
    for (char letter = 0; read(connection, &letter, 1) == 1 && letter != '\n';)
        line += letter;
    const std::string reply = answer(line);
    std::size_t sent = 0;
    for (ssize_t part = 1; part > 0 && sent < reply.size(); sent += std::size_t(part))
        part = std::max(write(connection, reply.data() + sent, reply.size() - sent), ssize_t{0});
    close(connection);
}

}  // namespace

void ListenForControl(const std::string& path,
                      const std::function<std::string(const std::string& line)>& answer) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        listen(listener, 1) != 0) {
        std::perror(path.c_str());
        std::_Exit(1);
    }
    std::thread([listener, answer] {
        for (int connection = 0; (connection = accept(listener, nullptr, nullptr)) >= 0;)
            Answer(connection, answer);
    }).detach();
}

}  // namespace tarnwell
