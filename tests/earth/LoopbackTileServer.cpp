#include "LoopbackTileServer.h"

#include "base/Gdal.h"

#include <arpa/inet.h>
#include <cstdio>
#include <gdal_priv.h>
#include <netinet/in.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace {
std::string pngOf(const unsigned char rgb[3])
{
    static std::atomic<int> serial{0};
    const std::string name = "/vsimem/loopback_" + std::to_string(++serial) + ".png";
    const std::unique_ptr<GDALDataset> picture(
        GetGDALDriverManager()->GetDriverByName("MEM")->Create("", 256, 256, 3, GDT_Byte, nullptr));
    for (int b = 0; b < 3; ++b)
        picture->GetRasterBand(b + 1)->Fill(rgb[b]);
    delete GetGDALDriverManager()->GetDriverByName("PNG")->CreateCopy(name.c_str(), picture.get(), FALSE,
                                                                      nullptr, nullptr, nullptr);
    vsi_l_offset size = 0;
    GByte* bytes = VSIGetMemFileBuffer(name.c_str(), &size, TRUE);
    const std::string out(reinterpret_cast<const char*>(bytes), static_cast<size_t>(size));
    VSIFree(bytes);
    return out;
}

std::string reply(const char* status, const char* type, const std::string& body)
{
    return std::string("HTTP/1.1 ") + status + "\r\nContent-Type: " + type +
           "\r\nConnection: close\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}
} // namespace

LoopbackTileServer::LoopbackTileServer()
{
    osgEarth::gdal::initialize();
    _listener = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in here{};
    here.sin_family = AF_INET;
    here.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof(here);
    if (_listener < 0 || ::bind(_listener, reinterpret_cast<sockaddr*>(&here), length) != 0 ||
        ::listen(_listener, 64) != 0 ||
        ::getsockname(_listener, reinterpret_cast<sockaddr*>(&here), &length) != 0)
        throw std::runtime_error("no loopback port");
    _port = ntohs(here.sin_port);
    _acceptor = std::thread([this] { accept(); });
}

LoopbackTileServer::~LoopbackTileServer()
{
    die();
}

void LoopbackTileServer::die()
{
    if (_dead.exchange(true))
        return;
    ::shutdown(_listener, SHUT_RDWR);
    _acceptor.join();
    ::close(_listener);
    {
        std::lock_guard<std::mutex> lock(_mutex);
        for (int socket : _sockets)
            ::shutdown(socket, SHUT_RDWR);
    }
    _wake.notify_all();
    for (auto& worker : _workers)
        worker.join();
    for (int socket : _sockets)
        ::close(socket);
}

std::string LoopbackTileServer::address() const
{
    return "http://127.0.0.1:" + std::to_string(_port);
}

void LoopbackTileServer::setManner(Manner manner)
{
    _manner = manner;
    _wake.notify_all();
}

void LoopbackTileServer::accept()
{
    for (;;) {
        const int socket = ::accept(_listener, nullptr, nullptr);
        if (socket < 0 || _dead) {
            if (socket >= 0)
                ::close(socket);
            return;
        }
        std::lock_guard<std::mutex> lock(_mutex);
        _sockets.push_back(socket);
        _workers.emplace_back([this, socket] { serve(socket); });
    }
}

void LoopbackTileServer::serve(int socket)
{
    std::string request;
    char buffer[4096];
    while (request.find("\r\n\r\n") == std::string::npos) {
        const ssize_t n = ::recv(socket, buffer, sizeof(buffer), 0);
        if (n <= 0)
            return;
        request.append(buffer, static_cast<size_t>(n));
    }
    const size_t from = request.find(' ') + 1;
    const std::string path = request.substr(from, request.find(' ', from) - from);
    ++_requests;
    {
        std::unique_lock<std::mutex> lock(_mutex);
        _wake.wait(lock, [this] { return _dead || _manner != Manner::Silent; });
    }
    if (_dead)
        return;
    const std::string answer = answerTo(path);
    for (size_t sent = 0; sent < answer.size();) {
        const ssize_t n = ::send(socket, answer.data() + sent, answer.size() - sent, MSG_NOSIGNAL);
        if (n <= 0)
            return;
        sent += static_cast<size_t>(n);
    }
    ::shutdown(socket, SHUT_WR);
}

std::string LoopbackTileServer::answerTo(const std::string& path) const
{
    switch (_manner.load()) {
    case Manner::Garbage:
        return reply("200 OK", "text/html",
                     "<html><body>Please log in to the hotel's network.</body></html>");
    case Manner::Missing:
        return reply("404 Not Found", "text/plain", "no such tile");
    case Manner::ServerError:
        return reply("503 Service Unavailable", "text/plain", "overloaded");
    case Manner::Pictures:
    case Manner::Silent:
        break;
    }
    int a = 0, b = 0, c = 0;
    size_t at = path.size();
    for (int slash = 0; slash < 3 && at != std::string::npos; ++slash)
        at = path.rfind('/', at - 1);
    if (at == std::string::npos || std::sscanf(path.c_str() + at, "/%d/%d/%d", &a, &b, &c) != 3)
        return reply("400 Bad Request", "text/plain", "not a tile");
    unsigned char rgb[3];
    colourOf(a, b, c, rgb);
    return reply("200 OK", "image/png", pngOf(rgb));
}

void LoopbackTileServer::colourOf(int a, int b, int c, unsigned char rgb[3])
{
    rgb[0] = static_cast<unsigned char>(20 + a * 10);
    rgb[1] = static_cast<unsigned char>(20 + b * 10);
    rgb[2] = static_cast<unsigned char>(20 + c * 10);
}
