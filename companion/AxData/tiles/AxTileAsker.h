#pragma once

#include <AxData/tiles/AxTilePicture.h>
#include <AxData/tiles/AxTileService.h>

#include <QObject>

#include <functional>

class QNetworkAccessManager;
class QNetworkReply;

/// What came of one request.
struct AxTileAnswer
{
    enum class Kind
    {
        Picture,  ///< a tile
        Missing,  ///< the service has no such tile: 204, 404, 410, or a picture of a few pixels
        Unusable, ///< no picture, or the service refuses: asking again gives the same
        Busy,     ///< it asks to be left alone: 429, 503
        Failed,   ///< no answer, half of one, or an error of the server: asking again may help
        Hopeless, ///< no other request would fare better: the certificate is not trusted, say
    };
    Kind kind = Kind::Failed;
    QByteArray bytes;      ///< of a picture
    AxTilePicture picture; ///< what they are
    qint64 retryAfter = 0; ///< milliseconds that a busy service asks for; 0 where it does not say
    QString why;           ///< of what is no picture, for people; without the address
};

/// Asks a service for single tiles, through the proxy of the program or else the system. Redirections are
/// followed where they do not lead from https to http; no cookies are kept. It lives in one thread, with an
/// event loop.
class AxTileAsker : public QObject
{
public:
    /// The service is told who asks; AxEarthViewer where nothing is said.
    AxTileAsker(const AxTileService& service, int timeoutMs, const QByteArray& userAgent);
    ~AxTileAsker() override;

    /// `done` is called once, later, unless the object goes before.
    void Ask(const AxTile& tile, const std::function<void(const AxTileAnswer&)>& done);
    /// No call of `done` follows.
    void CallOff();

private:
    struct Asked;
    void finish(QNetworkReply* reply, const Asked& asked,
                const std::function<void(const AxTileAnswer&)>& done);

    AxTileService service;
    int timeout;
    QByteArray agent;
    QNetworkAccessManager* network;
    QList<QNetworkReply*> running;
};

/// Milliseconds of a header Retry-After, which has seconds or a date (RFC 9110, 10.2.3); 0 for anything else.
qint64 AxRetryAfter(const QByteArray& header, qint64 nowMsSinceEpoch);
