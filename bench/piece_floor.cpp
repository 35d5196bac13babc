// What pacing by piece costs on this machine, without Qt: sends the same
// amount to the counting sink with plain write(2) in pieces of a given size,
// with or without one poll(2) per piece (what one event-loop turn per
// bytesWritten signal adds at the least). Prints MB/s per variant.
// Usage: veltor-piece-floor <sink port> [MiB]
#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

double sendAll(unsigned short port, long long total, size_t piece, bool pollEachPiece)
{
    const int fd = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (fd < 0 || connect(fd, reinterpret_cast<sockaddr *>(&address), sizeof address) < 0)
        return 0;
    const std::string head =
        "POST /upgrade_firmware.cgi HTTP/1.1\r\nContent-Length: " + std::to_string(total) +
        "\r\n\r\n";
    if (write(fd, head.data(), head.size()) < 0)
        return 0;
    std::vector<char> block(piece, 'x');
    const auto start = std::chrono::steady_clock::now();
    for (long long left = total; left > 0;) {
        if (pollEachPiece) {
            pollfd p{fd, POLLOUT, 0};
            poll(&p, 1, -1);
        }
        const ssize_t n = write(fd, block.data(), size_t(std::min<long long>(left, piece)));
        if (n <= 0)
            return 0;
        left -= n;
    }
    char reply[256];
    while (read(fd, reply, sizeof reply) > 0) {
    }
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    close(fd);
    return double(total) / seconds / 1e6;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 2)
        return 1;
    const auto port = static_cast<unsigned short>(std::atoi(argv[1]));
    const long long total = (argc > 2 ? std::atoll(argv[2]) : 256) << 20;
    std::printf("%8s %6s %10s\n", "piece", "poll", "MB/s");
    for (size_t piece : {size_t(4096), size_t(16384), size_t(65536)}) {
        for (bool withPoll : {true, false})
            std::printf("%8zu %6s %10.0f\n", piece, withPoll ? "yes" : "no",
                        sendAll(port, total, piece, withPoll));
    }
    return 0;
}
