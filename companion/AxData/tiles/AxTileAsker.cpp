#include <AxData/tiles/AxTileAsker.h>
#include <AxData/tiles/AxTileText.h>

#include <QDateTime>
#include <QHostAddress>
#include <QLocale>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QRegularExpression>
#include <QSslError>
#include <QSslSocket>
#include <QTimer>

#include <memory>

namespace {
using Kind = AxTileAnswer::Kind;

constexpr qint64 mostBytes = 8LL * 1024 * 1024;
constexpr int mostRedirects = 5;
/// A server that sends a byte now and then is no faster than one that is silent.
constexpr int wholeTimeouts = 3;
/// Some services answer so where they have nothing.
constexpr int fewestPixels = 16;

class Proxies : public QNetworkProxyFactory
{
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override
    {
        const QString host = query.peerHostName();
        if (host == QLatin1String("localhost") || QHostAddress(host).isLoopback())
            return {QNetworkProxy(QNetworkProxy::NoProxy)};
        const QNetworkProxy ofProgram = QNetworkProxy::applicationProxy();
        if (ofProgram.type() != QNetworkProxy::DefaultProxy && ofProgram.type() != QNetworkProxy::NoProxy)
            return {ofProgram};
        return systemProxyForQuery(query);
    }
};

// Qt reports what a proxy of plain http does as if the host had done it.
QNetworkReply::NetworkError OfWhom(QNetworkReply::NetworkError error, const QUrl& url)
{
    if (error != QNetworkReply::HostNotFoundError && error != QNetworkReply::ConnectionRefusedError)
        return error;
    const QList<QNetworkProxy> proxies = Proxies().queryProxy(QNetworkProxyQuery(url));
    if (proxies.isEmpty() || proxies.constFirst().type() == QNetworkProxy::NoProxy)
        return error;
    return error == QNetworkReply::HostNotFoundError ? QNetworkReply::ProxyNotFoundError
                                                     : QNetworkReply::ProxyConnectionRefusedError;
}

AxTileAnswer Told(Kind kind, const QString& why)
{
    AxTileAnswer answer;
    answer.kind = kind;
    answer.why = why;
    return answer;
}

AxTileAnswer OfStatus(int status, const QByteArray& retryAfter)
{
    const QString why = AxTileText::tr("The service answers with status %1.").arg(status);
    switch (status) {
    case 204:
    case 404:
    case 410:
        return Told(Kind::Missing, why);
    case 429:
    case 503: {
        AxTileAnswer answer =
            Told(Kind::Busy, AxTileText::tr("The service asks to be left alone (status %1).").arg(status));
        answer.retryAfter = AxRetryAfter(retryAfter, QDateTime::currentMSecsSinceEpoch());
        return answer;
    }
    case 407:
        return Told(Kind::Hopeless, AxTileText::tr("The proxy wants a name and a password."));
    case 408:
        return Told(Kind::Failed, why);
    case 401:
    case 403:
        return Told(Kind::Unusable, AxTileText::tr("The service refuses (status %1): it may want a key, or "
                                                   "allow no saving.")
                                        .arg(status));
    default:
        return Told(status >= 500 ? Kind::Failed : Kind::Unusable, why);
    }
}

AxTileAnswer OfPicture(const QByteArray& bytes)
{
    AxTileAnswer answer;
    answer.picture = AxReadTilePicture(bytes);
    answer.why = answer.picture.fault;
    if (answer.picture.format.isEmpty()) {
        answer.kind = Kind::Unusable;
    } else if (answer.picture.pixels < fewestPixels) {
        answer.kind = Kind::Missing;
    } else {
        answer.kind = Kind::Picture;
        answer.bytes = bytes;
    }
    return answer;
}

// Where no answer came at all. A text of the network has the address in it now and then, and so a key.
AxTileAnswer OfSilence(QNetworkReply::NetworkError error, QString text)
{
    switch (error) {
    case QNetworkReply::RemoteHostClosedError:
        break;
    case QNetworkReply::TimeoutError:
        return Told(Kind::Failed, AxTileText::tr("The service does not answer in time."));
    case QNetworkReply::ProxyNotFoundError:
        return Told(Kind::Failed, AxTileText::tr("The proxy is not found."));
    case QNetworkReply::ProxyConnectionRefusedError:
    case QNetworkReply::ProxyConnectionClosedError:
    case QNetworkReply::ProxyTimeoutError:
    case QNetworkReply::UnknownProxyError:
        return Told(Kind::Failed, AxTileText::tr("The proxy takes no connection, or ends it."));
    default:
        static const QRegularExpression address(QStringLiteral("\\S*://\\S*"));
        text = text.remove(address).simplified();
        if (!text.isEmpty())
            return Told(Kind::Failed, AxTileText::tr("No answer came: %1").arg(text));
    }
    return Told(Kind::Failed, AxTileText::tr("The connection ended before the whole answer was here."));
}
} // namespace

struct AxTileAsker::Asked
{
    QByteArray bytes;
    QString tlsErrors;
    bool isTooLarge = false;
    bool isTooSlow = false;
};

AxTileAsker::AxTileAsker(const AxTileService& asked, int timeoutMs, const QByteArray& userAgent)
    : service(asked), timeout(timeoutMs),
      agent(userAgent.isEmpty() ? QByteArrayLiteral("AxEarthViewer (off-line areas)") : userAgent),
      network(new QNetworkAccessManager(this))
{
    network->setProxyFactory(new Proxies);
}

AxTileAsker::~AxTileAsker()
{
    CallOff();
}

void AxTileAsker::CallOff()
{
    const QList<QNetworkReply*> all = std::exchange(running, {});
    for (QNetworkReply* reply : all) {
        reply->disconnect(this);
        reply->abort();
        reply->deleteLater();
    }
}

void AxTileAsker::Ask(const AxTile& tile, const std::function<void(const AxTileAnswer&)>& done)
{
    QNetworkRequest request(AxTileUrl(service.address, tile));
    request.setHeader(QNetworkRequest::UserAgentHeader, agent);
    request.setRawHeader("Accept", "image/webp,image/png,image/jpeg,*/*;q=0.5");
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setMaximumRedirectsAllowed(mostRedirects);
    request.setTransferTimeout(timeout);
    QNetworkReply* const reply = network->get(request);
    running += reply;
    const auto asked = std::make_shared<Asked>();
    connect(reply, &QNetworkReply::readyRead, this, [reply, asked] {
        asked->bytes += reply->readAll();
        asked->isTooLarge = asked->bytes.size() > mostBytes;
        if (asked->isTooLarge)
            reply->abort();
    });
    connect(reply, &QNetworkReply::sslErrors, this, [asked](const QList<QSslError>& errors) {
        asked->tlsErrors = errors.isEmpty() ? QString() : errors.constFirst().errorString();
    });
    connect(reply, &QNetworkReply::finished, this,
            [this, reply, asked, done] { finish(reply, *asked, done); });
    QTimer::singleShot(timeout * wholeTimeouts, reply, [reply, asked] {
        asked->isTooSlow = true;
        reply->abort();
    });
}

void AxTileAsker::finish(QNetworkReply* reply, const Asked& asked,
                         const std::function<void(const AxTileAnswer&)>& done)
{
    running.removeOne(reply);
    reply->deleteLater();
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const QNetworkReply::NetworkError error = OfWhom(reply->error(), reply->url());
    AxTileAnswer answer;
    if (asked.isTooLarge)
        answer = Told(Kind::Unusable, AxTileText::tr("The answer is larger than a tile can be."));
    else if (asked.isTooSlow || error == QNetworkReply::OperationCanceledError)
        answer = Told(Kind::Failed, AxTileText::tr("The service does not answer in time."));
    else if (error == QNetworkReply::SslHandshakeFailedError)
        answer = Told(Kind::Hopeless,
                      AxTileText::tr("The connection to the service cannot be trusted: %1")
                          .arg(asked.tlsErrors.isEmpty() ? reply->errorString() : asked.tlsErrors));
    else if (error == QNetworkReply::HostNotFoundError)
        answer = Told(Kind::Failed, AxTileText::tr("The host %1 is not found.").arg(reply->url().host()));
    else if (error == QNetworkReply::ConnectionRefusedError)
        answer =
            Told(Kind::Failed, AxTileText::tr("The host %1 takes no connection.").arg(reply->url().host()));
    else if (error == QNetworkReply::TooManyRedirectsError || error == QNetworkReply::InsecureRedirectError)
        answer =
            Told(Kind::Unusable, AxTileText::tr("The service leads elsewhere, where nobody may follow."));
    else if (error == QNetworkReply::ProxyAuthenticationRequiredError)
        answer = OfStatus(407, {});
    else if (status == 0 && reply->url().scheme() == QLatin1String("https") && !QSslSocket::supportsSsl())
        answer = Told(Kind::Hopeless,
                      AxTileText::tr("This computer has no OpenSSL, without which nothing comes by https."));
    else if (status == 0)
        answer = OfSilence(error, reply->errorString());
    else if (status == 200 && error != QNetworkReply::NoError)
        answer = OfSilence(QNetworkReply::RemoteHostClosedError, {});
    else if (status == 200)
        answer = OfPicture(asked.bytes + reply->readAll());
    else
        answer = OfStatus(status, reply->rawHeader("Retry-After"));
    done(answer);
}

qint64 AxRetryAfter(const QByteArray& header, qint64 now)
{
    bool isNumber = false;
    const qint64 seconds = header.trimmed().toLongLong(&isNumber);
    constexpr qint64 mostSeconds = 366LL * 86400;
    if (isNumber)
        return qBound<qint64>(0, seconds, mostSeconds) * 1000;
    QDateTime date = QLocale::c().toDateTime(QString::fromLatin1(header.trimmed()),
                                             QStringLiteral("ddd, dd MMM yyyy hh:mm:ss 'GMT'"));
    date.setTimeSpec(Qt::UTC);
    return date.isValid() ? qMax<qint64>(0, date.toMSecsSinceEpoch() - now) : 0;
}
