#include <AxData/geofiles/AxGeoText.h>

#include <QRegularExpression>
#include <QTextCodec>

#include <algorithm>

QString AxGeoDecoded(const char* text, const QByteArray& codec, bool& isForeign)
{
    const QByteArray bytes(text);
    QTextCodec::ConverterState state;
    const QString asUtf8 =
        QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
    const QTextCodec* other = QTextCodec::codecForName(codec);
    if ((state.invalidChars == 0 && state.remainingChars == 0) || !other)
        return asUtf8;
    isForeign = true;
    return other->toUnicode(bytes);
}

QByteArray AxGeoCodecOf(const QByteArray& text)
{
    // Chinese characters are two bytes, both of them high; European letters are single ones among ASCII.
    constexpr unsigned char lowestOfPair = 0xa1;
    int run = 0;
    for (const char c : text + ' ') {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= lowestOfPair)
            ++run;
        else if (run % 2 == 1)
            return "Windows-1252";
        else
            run = 0;
    }
    return "GB18030";
}

QString AxGeoTooLarge(qint64 bytes, qint64 most)
{
    constexpr qint64 megabyte = 1024LL * 1024;
    return bytes <= most ? QString()
                         : AX_GEO_TEXT("It has %1 MB; more than %2 MB of this format cannot be read.")
                               .arg((bytes + megabyte - 1) / megabyte)
                               .arg(most / megabyte);
}

QString AxGeoOneLine(const QString& text, bool& isCut)
{
    constexpr int mostCharacters = 200;
    QString line = text;
    const auto isControl = [](QChar c) {
        return c.category() == QChar::Other_Control || c.category() == QChar::Separator_Line ||
               c.category() == QChar::Separator_Paragraph;
    };
    std::replace_if(line.begin(), line.end(), isControl, QLatin1Char(' '));
    line = line.simplified();
    if (line.size() <= mostCharacters)
        return line;
    isCut = true;
    // Not between the two halves of a character.
    return line.left(line.at(mostCharacters - 1).isHighSurrogate() ? mostCharacters - 1 : mostCharacters);
}

QString AxGeoEscaped(const QString& text)
{
    constexpr ushort lastOfAscii = 0x7e;
    QString escaped;
    for (const QChar c : text) {
        if (c.unicode() <= lastOfAscii)
            escaped += c;
        else
            escaped += QLatin1String("\\U+") +
                       QStringLiteral("%1").arg(c.unicode(), 4, 16, QLatin1Char('0')).toUpper();
    }
    return escaped;
}

QString AxGeoUnescaped(QString text)
{
    static const QRegularExpression escape(QStringLiteral("\\\\U\\+([0-9A-Fa-f]{4})"));
    for (QRegularExpressionMatch match = escape.match(text); match.hasMatch();
         match = escape.match(text, match.capturedStart() + 1))
        text.replace(match.capturedStart(), match.capturedLength(),
                     QChar(match.captured(1).toUShort(nullptr, 16)));
    return text;
}
