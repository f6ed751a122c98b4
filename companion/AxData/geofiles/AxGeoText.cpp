#include <AxData/geofiles/AxGeoText.h>

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
