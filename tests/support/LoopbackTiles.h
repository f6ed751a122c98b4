#pragma once

#include <QBuffer>
#include <QImage>
#include <QRegularExpression>
#include <QStringList>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <functional>

/// A tile service on the loopback interface, in the event loop of its thread: "/z/x/y.png", rows from the
/// north, gives a picture of the tile's colour, unless `answer` gives something else.
class LoopbackTiles : public QObject
{
public:
    struct Asked
    {
        QString path; ///< "/3/4/5.png"
        int level;
        int column;
        int row;
        int times;  ///< that it was asked for before
        int before; ///< requests of anything before
    };
    enum class Manner
    {
        Whole,
        Cut,    ///< closes the connection before the end
        Silent, ///< says nothing
        Slow,   ///< a byte now and then
    };
    struct Answer
    {
        QByteArray status = "200 OK";
        QByteArray body;
        QByteArray headers;
        Manner manner = Manner::Whole;
    };

    LoopbackTiles()
    {
        connect(&server, &QTcpServer::newConnection, this, [this] {
            QTcpSocket* socket = server.nextPendingConnection();
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { Read(socket); });
        });
        server.listen(QHostAddress::LocalHost);
    }

    QString Address() const
    {
        return QStringLiteral("http://127.0.0.1:%1/{z}/{x}/{y}.png").arg(server.serverPort());
    }
    static QColor ColorOf(int level, int column, int row)
    {
        return QColor(level * 16, column % 256, row % 256);
    }
    static QByteArray Picture(const QColor& color, int pixels = 256)
    {
        QImage image(pixels, pixels, QImage::Format_RGB32);
        image.fill(color);
        QByteArray bytes;
        QBuffer buffer(&bytes);
        image.save(&buffer, "PNG");
        return bytes;
    }

    std::function<Answer(const Asked&)> answer; ///< null: pictures
    QStringList paths;                          ///< asked for so far
    QByteArray latestHead;
    int atOnce = 0; ///< requests under way, most of them
    int delayMs = 0;

private:
    void Read(QTcpSocket* socket)
    {
        const QByteArray head = socket->readAll();
        static const QRegularExpression request(QStringLiteral("^GET (/(\\d+)/(\\d+)/(\\d+)\\.png)"));
        const QRegularExpressionMatch match = request.match(QString::fromLatin1(head));
        if (!match.hasMatch())
            return socket->abort();
        latestHead = head;
        const QString path = match.captured(1);
        const Asked asked{path,
                          match.captured(2).toInt(),
                          match.captured(3).toInt(),
                          match.captured(4).toInt(),
                          static_cast<int>(paths.count(path)),
                          static_cast<int>(paths.size())};
        paths += path;
        ++running;
        atOnce = qMax(atOnce, running);
        Answer sent;
        if (answer)
            sent = answer(asked);
        else
            sent.body = Picture(ColorOf(asked.level, asked.column, asked.row));
        QTimer::singleShot(delayMs, socket, [this, socket, sent] {
            --running;
            if (sent.manner == Manner::Silent)
                return;
            const QByteArray whole = "HTTP/1.1 " + sent.status +
                                     "\r\nContent-Length: " + QByteArray::number(sent.body.size()) + "\r\n" +
                                     sent.headers + "Connection: close\r\n\r\n" + sent.body;
            if (sent.manner == Manner::Slow) {
                auto* drip = new QTimer(socket);
                connect(drip, &QTimer::timeout, socket,
                        [socket, whole, at = 0]() mutable { socket->write(whole.mid(at++, 1)); });
                return drip->start(100);
            }
            socket->write(sent.manner == Manner::Cut ? whole.left(whole.size() - 20) : whole);
            socket->disconnectFromHost();
        });
    }

    QTcpServer server;
    int running = 0;
};
