#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

/// An HTTP server on the loopback interface that takes posts and answers, or misbehaves, as told. It runs in
/// the event loop of its thread.
class LoopbackFormServer : public QObject
{
public:
    enum class Manner
    {
        Answer,        ///< `answer`, once the whole request is here
        Hang,          ///< reads and says nothing
        StopReading,   ///< does not even read
        DropInRequest, ///< closes the connection after the first bytes
        DropInAnswer   ///< announces more of an answer than it sends
    };

    LoopbackFormServer()
    {
        connect(&m_server, &QTcpServer::newConnection, this, &LoopbackFormServer::take);
        m_server.listen(QHostAddress::LocalHost);
    }

    QUrl url() const { return QUrl(QStringLiteral("http://127.0.0.1:%1/apply").arg(m_server.serverPort())); }

    /// A whole answer with the status line's code and words, header lines and text.
    static QByteArray reply(const QByteArray& status, const QByteArray& type, const QByteArray& text,
                            const QByteArray& headers = {})
    {
        return "HTTP/1.1 " + status + "\r\nContent-Type: " + type +
               "\r\nContent-Length: " + QByteArray::number(text.size()) + "\r\n" + headers +
               "Connection: close\r\n\r\n" + text;
    }

    Manner manner = Manner::Answer;
    QByteArray answer = reply("201 Created", "text/plain", "Number 4711");
    QList<QByteArray> heads; ///< of the whole requests so far
    QList<QByteArray> bodies;
    int connections = 0;
    QPointer<QTcpSocket> latest;

private:
    void take()
    {
        auto* const socket = m_server.nextPendingConnection();
        latest = socket;
        ++connections;
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        if (manner == Manner::StopReading) {
            socket->setReadBufferSize(1);
            return;
        }
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
    }

    void read(QTcpSocket* socket)
    {
        if (manner == Manner::DropInRequest)
            return socket->abort();
        QByteArray& request = m_requests[socket];
        request += socket->readAll();
        if (!request.startsWith("POST ")) {
            socket->write(reply("400 Bad Request", "text/plain", "no post"));
            return socket->disconnectFromHost();
        }
        const int headEnd = request.indexOf("\r\n\r\n") + 4;
        const QByteArray head = request.left(headEnd).toLower();
        const int lengthAt = head.indexOf("content-length:") + 15;
        const int length = head.mid(lengthAt, head.indexOf('\r', lengthAt) - lengthAt).toInt();
        if (headEnd < 4 || request.size() < headEnd + length)
            return;
        heads += request.left(headEnd);
        bodies += request.mid(headEnd);
        request.clear();
        if (manner == Manner::Hang)
            return;
        socket->write(manner == Manner::Answer ? answer : answer.left(answer.size() - 4));
        socket->disconnectFromHost();
    }

    QTcpServer m_server;
    QHash<QTcpSocket*, QByteArray> m_requests; ///< as far as they are here
};
