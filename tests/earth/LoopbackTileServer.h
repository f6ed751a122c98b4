#pragma once
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

/// A small tile server on the loopback interface, for tests only. Answers
/// every GET with a picture of one colour made of the path's last three
/// numbers, or misbehaves as told. Plain sockets: POSIX only, like the CI.
class LoopbackTileServer
{
public:
    enum class Manner
    {
        Pictures,
        Garbage,     ///< 200 with a web page instead of a picture
        Missing,     ///< 404
        ServerError, ///< 503
        Silent       ///< takes the request and never answers
    };

    LoopbackTileServer();
    ~LoopbackTileServer();

    /// "http://127.0.0.1:port"
    std::string address() const;
    void setManner(Manner manner);
    int requests() const { return _requests; }
    /// Closes the port and all connections.
    void die();

    /// The colour of the tile whose path ends in "/a/b/c.png".
    static void colourOf(int a, int b, int c, unsigned char rgb[3]);

private:
    void accept();
    void serve(int socket);
    std::string answerTo(const std::string& path) const;

    int _listener = -1;
    int _port = 0;
    std::atomic<Manner> _manner{Manner::Pictures};
    std::atomic<int> _requests{0};
    std::atomic<bool> _dead{false};
    mutable std::mutex _mutex;
    std::condition_variable _wake;
    std::vector<std::thread> _workers;
    std::vector<int> _sockets;
    std::thread _acceptor;
};
