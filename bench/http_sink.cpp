// A counting HTTP peer for the upload benchmark. Plain blocking sockets on
// purpose: the figures must measure the sender, so the receiver copies each
// byte once and does nothing else. One request at a time: reads the announced
// body (or up to the peer's close), answers 200 and prints
// "done <bytes> <microseconds from first to last byte>".
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

using Clock = std::chrono::steady_clock;

long long bodyLength(const std::string &head)
{
    std::string lower = head;
    for (char &c : lower)
        c = char(std::tolower(static_cast<unsigned char>(c)));
    const size_t at = lower.find("content-length:");
    return at == std::string::npos ? 0 : std::atoll(lower.c_str() + at + 15);
}

void serve(int peer)
{
    static char buffer[1 << 20];
    std::string head;
    long long received = 0;
    long long wanted = -1;
    size_t headSize = 0;
    Clock::time_point first;
    for (ssize_t n; (n = recv(peer, buffer, sizeof buffer, 0)) > 0;) {
        if (received == 0)
            first = Clock::now();
        received += n;
        if (wanted < 0) {
            head.append(buffer, size_t(n));
            const size_t end = head.find("\r\n\r\n");
            if (end != std::string::npos) {
                headSize = end + 4;
                wanted = bodyLength(head.substr(0, headSize));
            }
        }
        if (wanted >= 0 && received - (long long)headSize >= wanted)
            break;
    }
    const auto micros =
        std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - first).count();
    const char reply[] = "HTTP/1.1 200 OK\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";
    if (send(peer, reply, sizeof reply - 1, MSG_NOSIGNAL) < 0)
        std::perror("send");
    close(peer);
    if (received > 0) {
        std::printf("done %lld %lld\n", received, (long long)micros);
        std::fflush(stdout);
    }
}

} // namespace

int main()
{
    const int server = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (server < 0 || bind(server, reinterpret_cast<sockaddr *>(&address), length) < 0 ||
        listen(server, 8) < 0 ||
        getsockname(server, reinterpret_cast<sockaddr *>(&address), &length) < 0) {
        std::perror("sink");
        return 1;
    }
    std::printf("port %u\n", unsigned(ntohs(address.sin_port)));
    std::fflush(stdout);
    for (int peer; (peer = accept(server, nullptr, nullptr)) >= 0;)
        serve(peer);
    return 0;
}
