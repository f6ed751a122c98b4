#include <AxData/tiles/AxTileService.h>
#include <AxData/tiles/AxTileText.h>

#include <QCryptographicHash>
#include <QRegularExpression>
#include <QSet>

namespace {
// Letters and digits: "[::1]" is a host of its own.
const QRegularExpression& Hosts()
{
    static const QRegularExpression hosts(QStringLiteral("\\[([A-Za-z0-9]+)\\]"));
    return hosts;
}

QString Plain(const QString& address)
{
    return address.trimmed().replace(QLatin1String("${"), QLatin1String("{"));
}

QString Filled(QString text, const AxTile& tile)
{
    const int rows = 1 << tile.level;
    const int turnOfHost = tile.column + tile.row;
    const QRegularExpressionMatch hosts = Hosts().match(text);
    if (hosts.hasMatch()) {
        const QString letters = hosts.captured(1);
        text.replace(hosts.capturedStart(), hosts.capturedLength(), letters[turnOfHost % letters.size()]);
    }
    return text.replace(QLatin1String("{s}"), QString(QChar('a' + turnOfHost % 3)))
        .replace(QLatin1String("{z}"), QString::number(tile.level))
        .replace(QLatin1String("{x}"), QString::number(tile.column))
        .replace(QLatin1String("{y}"), QString::number(tile.row))
        .replace(QLatin1String("{-y}"), QString::number(rows - 1 - tile.row));
}
} // namespace

QString AxTileAddressFault(const QString& address)
{
    const QString text = Plain(address);
    if (text.isEmpty())
        return AxTileText::tr("There is no address, as https://tiles.example.org/{z}/{x}/{y}.png is one.");
    QSet<QString> names;
    static const QRegularExpression braces(QStringLiteral("\\{([^{}]*)\\}"));
    for (QRegularExpressionMatchIterator all = braces.globalMatch(text); all.hasNext();)
        names += all.next().captured(1);
    static const QSet<QString> known{QStringLiteral("s"), QStringLiteral("z"), QStringLiteral("x"),
                                     QStringLiteral("y"), QStringLiteral("-y")};
    for (const QString& name : qAsConst(names))
        if (!known.contains(name))
            return AxTileText::tr("{%1} is not understood; {z}, {x}, {y}, {-y} and {s} are.").arg(name);
    for (const QString& name : {QStringLiteral("z"), QStringLiteral("x")})
        if (!names.contains(name))
            return AxTileText::tr("The address has no {%1}.").arg(name);
    if (names.contains(QStringLiteral("y")) == names.contains(QStringLiteral("-y")))
        return AxTileText::tr("The address needs {y} or {-y}.");
    const QUrl url = AxTileUrl(text, AxTile());
    if (!url.isValid() || url.host().isEmpty())
        return AxTileText::tr("This is not an address of the web.");
    if (url.scheme() != QLatin1String("http") && url.scheme() != QLatin1String("https"))
        return AxTileText::tr("An address begins with http:// or https://.");
    return {};
}

QUrl AxTileUrl(const QString& address, const AxTile& tile)
{
    return QUrl(Filled(Plain(address), tile));
}

QByteArray AxTileAddressMark(const QString& address)
{
    // A key is renewed, and the service stays the same.
    static const QRegularExpression keys(
        QStringLiteral(
            "([?&](?:[^=&]*(?:key|token|secret|signature|session|password)[^=&]*|sig|tk|ak)=)[^&#]*"),
        QRegularExpression::CaseInsensitiveOption);
    const QString lasting = Plain(address).replace(keys, QStringLiteral("\\1"));
    return QCryptographicHash::hash(lasting.toUtf8(), QCryptographicHash::Sha256).toHex();
}
