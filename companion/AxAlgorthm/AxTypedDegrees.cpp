#include <AxAlgorthm/AxTypedDegrees.h>

#include <QCoreApplication>
#include <QRegularExpression>
#include <QVector>

#include <algorithm>
#include <cmath>

namespace AxTypedDegrees {
namespace {
using AxCoordinateText::Form;
using AxCoordinateText::Typed;

constexpr int partsOfAngle = 3;
constexpr double partsOfUnit = 60.0;
constexpr double northPole = 90.0;     // degrees
constexpr double halfTurn = 180.0;     // degrees
constexpr double likelyMetres = 360.0; // a number from here on is no angle
const QChar degreeMark(0x00b0);

QString Tr(const char* text)
{
    return QCoreApplication::translate("AxCoordinateText", text);
}

struct Token
{
    enum Kind
    {
        Number,
        Mark,      // of degrees, minutes or seconds: value 0, 1 or 2
        Next,      // a colon or a hyphen between two numbers: the next unit follows
        Letter,    // N, S, E or W
        Separator, // between both coordinates
    };
    Kind kind;
    QString text;
    double value = 0.0;
    bool hasSign = false;
    bool isWhole = true;
};
using Tokens = QVector<Token>;

struct Reading
{
    Typed typed;
    // What the numbers are, is told by nothing: two of them, without letters and marks.
    std::optional<std::array<double, 2>> plainNumbers;
};

Reading Refuse(const QString& reason)
{
    Reading reading;
    reading.typed.fault = reason;
    return reading;
}

// The length of the number at `from`, with its sign; 0 where there is none.
int NumberLength(const QString& text, int from, bool isCommaDecimal)
{
    static const QRegularExpression withPoint(QStringLiteral("[+-]?(?:\\d+(?:\\.\\d*)?|\\.\\d+)"));
    static const QRegularExpression withComma(QStringLiteral("[+-]?\\d+(?:,\\d+)?"));
    const QRegularExpressionMatch found =
        (isCommaDecimal ? withComma : withPoint)
            .match(text, from, QRegularExpression::NormalMatch, QRegularExpression::AnchoredMatchOption);
    return found.capturedLength();
}

// The reason where a part of the text is no token.
QString Split(const QString& text, bool isCommaDecimal, Tokens& tokens)
{
    const QString marks = QString(degreeMark) + QStringLiteral("'\"");
    for (int at = 0; at < text.size();) {
        const QChar c = text.at(at);
        const bool isAfterNumber = at > 0 && text.at(at - 1).isDigit();
        if (c == QLatin1Char(' ')) {
            ++at;
            continue;
        }
        if (c == QLatin1Char(':') || (c == QLatin1Char('-') && isAfterNumber)) {
            tokens.append({Token::Next, c});
        } else if (marks.contains(c)) {
            tokens.append({Token::Mark, c, static_cast<double>(marks.indexOf(c))});
        } else if (QStringLiteral("NSEW").contains(c)) {
            tokens.append({Token::Letter, c});
        } else if (const int length = NumberLength(text, at, isCommaDecimal)) {
            Token number{Token::Number, text.mid(at, length)};
            number.hasSign = !number.text.at(0).isDigit() && number.text.at(0) != QLatin1Char('.');
            number.isWhole =
                !number.text.contains(QLatin1Char('.')) && !number.text.contains(QLatin1Char(','));
            number.value = QString(number.text).replace(QLatin1Char(','), QLatin1Char('.')).toDouble();
            tokens.append(number);
            at += length;
            continue;
        } else if (c == QLatin1Char(',') || c == QLatin1Char(';')) {
            tokens.append({Token::Separator, c});
        } else {
            static const QRegularExpression word(QStringLiteral("[^\\s\\d,;:]+"));
            const QString strange = word.match(text, at).captured();
            return Tr(QT_TRANSLATE_NOOP("AxCoordinateText", "\"%1\" is not understood."))
                .arg(strange.isEmpty() ? QString(c) : strange);
        }
        ++at;
    }
    return QString();
}

int CountOf(const Tokens& tokens, Token::Kind kind)
{
    return static_cast<int>(std::count_if(tokens.cbegin(), tokens.cend(),
                                          [kind](const Token& token) { return token.kind == kind; }));
}

int Find(const Tokens& tokens, Token::Kind kind, int from = 0)
{
    for (int i = from; i < tokens.size(); ++i)
        if (tokens[i].kind == kind)
            return i;
    return -1;
}

struct Angles
{
    Tokens first;
    Tokens second;
    QChar firstLetter; // null: none
    QChar secondLetter;
    QString fault;
};

void DropSeparator(Tokens& tokens, bool atStart)
{
    if (!tokens.isEmpty() && (atStart ? tokens.first() : tokens.last()).kind == Token::Separator)
        tokens.remove(atStart ? 0 : tokens.size() - 1);
}

Angles ByLetters(const Tokens& tokens)
{
    Angles angles;
    const int first = Find(tokens, Token::Letter);
    const int second = Find(tokens, Token::Letter, first + 1);
    if (second < 0) {
        angles.fault = Tr(QT_TRANSLATE_NOOP("AxCoordinateText", "Only one of the two has N, S, E or W."));
        return angles;
    }
    angles.firstLetter = tokens[first].text.at(0);
    angles.secondLetter = tokens[second].text.at(0);
    const bool isBefore = first == 0;
    if (Find(tokens, Token::Letter, second + 1) >= 0 || isBefore == (second == tokens.size() - 1)) {
        angles.fault = Tr(QT_TRANSLATE_NOOP(
            "AxCoordinateText", "N, S, E or W has to stand once with each, both before or both behind."));
        return angles;
    }
    angles.first = isBefore ? tokens.mid(1, second - 1) : tokens.mid(0, first);
    angles.second = isBefore ? tokens.mid(second + 1) : tokens.mid(first + 1, second - first - 1);
    DropSeparator(isBefore ? angles.first : angles.second, !isBefore);
    return angles;
}

// Where the second angle begins, of a text without letters and separators; 0 where nothing tells it.
int SecondAngle(const Tokens& tokens)
{
    QVector<int> starts;
    for (int i = 0; i < tokens.size(); ++i)
        if (tokens[i].kind == Token::Number && i + 1 < tokens.size() && tokens[i + 1].kind == Token::Mark &&
            tokens[i + 1].value == 0.0)
            starts.append(i);
    if (!starts.isEmpty())
        return starts.size() == 2 ? starts[1] : 0;
    if (CountOf(tokens, Token::Next) > 0) {
        for (int i = 0; i < tokens.size(); ++i)
            if (tokens[i].kind == Token::Number && (i == 0 || tokens[i - 1].kind != Token::Next))
                starts.append(i);
        return starts.size() == 2 ? starts[1] : 0;
    }
    for (int i = 1; i < tokens.size(); ++i)
        if (tokens[i].hasSign)
            starts.append(i);
    if (!starts.isEmpty())
        return starts.size() == 1 ? starts[0] : 0;
    const bool areNumbers = CountOf(tokens, Token::Number) == tokens.size();
    return areNumbers && tokens.size() % 2 == 0 ? tokens.size() / 2 : 0;
}

Angles WithoutLetters(const Tokens& tokens)
{
    Angles angles;
    const int separators = CountOf(tokens, Token::Separator);
    if (separators > 1) {
        angles.fault = Tr(QT_TRANSLATE_NOOP("AxCoordinateText",
                                            "One comma or semicolon stands between the two, not %1."))
                           .arg(separators);
        return angles;
    }
    const int at = separators == 1 ? Find(tokens, Token::Separator) : SecondAngle(tokens);
    if (separators == 0 && at == 0) {
        angles.fault =
            CountOf(tokens, Token::Number) < 2
                ? Tr(QT_TRANSLATE_NOOP("AxCoordinateText", "The longitude is missing."))
                : Tr(QT_TRANSLATE_NOOP("AxCoordinateText",
                                       "It is not clear where the latitude ends: put a comma between."));
        return angles;
    }
    angles.first = tokens.mid(0, at);
    angles.second = tokens.mid(at + separators);
    return angles;
}

QString NameOf(bool isLatitude)
{
    return isLatitude ? Tr(QT_TRANSLATE_NOOP("AxCoordinateText", "latitude"))
                      : Tr(QT_TRANSLATE_NOOP("AxCoordinateText", "longitude"));
}

// The parts of one angle, whose number is in `parts` in the end.
QString ReadParts(const Tokens& tokens, bool isLatitude, double (&units)[partsOfAngle], int& parts)
{
    const auto strange = [&tokens] {
        QString text;
        for (const Token& token : tokens)
            text += (text.isEmpty() || token.kind != Token::Number ? QString() : QStringLiteral(" ")) +
                    token.text;
        return Tr(QT_TRANSLATE_NOOP("AxCoordinateText", "\"%1\" is no angle.")).arg(text);
    };
    bool isComplete = true;
    for (int i = 0; i < tokens.size(); ++i) {
        const Token& token = tokens[i];
        if (token.kind != Token::Number || parts == partsOfAngle)
            return strange();
        if (!isComplete)
            return Tr(QT_TRANSLATE_NOOP(
                          "AxCoordinateText",
                          "Only the last of degrees, minutes and seconds may have decimals: %1."))
                .arg(NameOf(isLatitude));
        if (parts > 0 && (token.hasSign || !(token.value < partsOfUnit)))
            return Tr(QT_TRANSLATE_NOOP("AxCoordinateText",
                                        "Minutes and seconds are from 0 to below 60, not %1."))
                .arg(token.text);
        units[parts] = token.value;
        isComplete = token.isWhole;
        if (i + 1 < tokens.size() && tokens[i + 1].kind == Token::Mark) {
            if (tokens[++i].value != parts)
                return strange();
        } else if (i + 1 < tokens.size() && tokens[i + 1].kind == Token::Next && ++i == tokens.size() - 1) {
            return strange();
        }
        ++parts;
    }
    return QString();
}

// One angle in degrees; NaN with the reason.
double ReadAngle(const Tokens& tokens, bool isLatitude, QChar letter, int& parts, QString& fault)
{
    if (CountOf(tokens, Token::Number) == 0) {
        fault = isLatitude ? Tr(QT_TRANSLATE_NOOP("AxCoordinateText", "The latitude is missing."))
                           : Tr(QT_TRANSLATE_NOOP("AxCoordinateText", "The longitude is missing."));
        return std::nan("");
    }
    double units[partsOfAngle] = {};
    fault = ReadParts(tokens, isLatitude, units, parts);
    if (!fault.isEmpty())
        return std::nan("");
    const Token& first = tokens.first();
    if (first.hasSign && !letter.isNull()) {
        fault = Tr(QT_TRANSLATE_NOOP("AxCoordinateText", "The %1 has a sign and %2; one of them is enough."))
                    .arg(NameOf(isLatitude), QString(letter));
        return std::nan("");
    }
    // By the text, because -0 has minutes, too.
    const bool isNegative =
        first.text.startsWith(QLatin1Char('-')) || letter == QLatin1Char('S') || letter == QLatin1Char('W');
    const double size = std::abs(units[0]) + units[1] / partsOfUnit + units[2] / (partsOfUnit * partsOfUnit);
    const double limit = isLatitude ? northPole : halfTurn;
    if (!(size <= limit)) {
        fault = Tr(QT_TRANSLATE_NOOP("AxCoordinateText", "The %1 %2\302\260 is beyond %3\302\260."))
                    .arg(NameOf(isLatitude))
                    .arg(isNegative ? -size : size)
                    .arg(limit);
        return std::nan("");
    }
    return isNegative ? -size : size;
}

bool IsLatitudeLetter(QChar letter)
{
    return letter == QLatin1Char('N') || letter == QLatin1Char('S');
}

Reading ReadTokens(const Tokens& tokens)
{
    const bool hasLetters = CountOf(tokens, Token::Letter) > 0;
    const Angles angles = hasLetters ? ByLetters(tokens) : WithoutLetters(tokens);
    if (!angles.fault.isEmpty())
        return Refuse(angles.fault);
    const bool isLatitudeFirst = !hasLetters || IsLatitudeLetter(angles.firstLetter);
    if (hasLetters && isLatitudeFirst == IsLatitudeLetter(angles.secondLetter))
        return Refuse(
            isLatitudeFirst
                ? Tr(QT_TRANSLATE_NOOP("AxCoordinateText", "These are two latitudes, and no longitude."))
                : Tr(QT_TRANSLATE_NOOP("AxCoordinateText", "These are two longitudes, and no latitude.")));

    Reading reading;
    const auto isPlain = [](const Tokens& angle) {
        return angle.size() == 1 && angle[0].kind == Token::Number;
    };
    if (!hasLetters && isPlain(angles.first) && isPlain(angles.second))
        reading.plainNumbers = std::array<double, 2>{angles.first[0].value, angles.second[0].value};

    int parts[2] = {};
    double values[2] = {};
    for (const int which : {0, 1}) {
        values[which] = ReadAngle(which == 0 ? angles.first : angles.second, (which == 0) == isLatitudeFirst,
                                  which == 0 ? angles.firstLetter : angles.secondLetter, parts[which],
                                  reading.typed.fault);
        if (reading.typed.fault.isEmpty())
            continue;
        if (reading.plainNumbers) {
            const double a = std::abs((*reading.plainNumbers)[0]);
            const double b = std::abs((*reading.plainNumbers)[1]);
            if (std::max(a, b) > likelyMetres)
                reading.typed.fault = Tr(QT_TRANSLATE_NOOP(
                    "AxCoordinateText",
                    "These look like metres: put their zone first, as 13N 500000 4140000."));
            else if (a > northPole && a <= halfTurn && b <= northPole)
                reading.typed.fault +=
                    QLatin1Char(' ') +
                    Tr(QT_TRANSLATE_NOOP("AxCoordinateText",
                                         "The latitude comes first, unless letters tell which is "
                                         "which."));
        }
        return reading;
    }
    reading.typed.place =
        isLatitudeFirst ? PointLatLng(values[0], values[1]) : PointLatLng(values[1], values[0]);
    reading.typed.form = std::max(parts[0], parts[1]) > 1 ? Form::Dms : Form::Decimal;
    return reading;
}

Reading ReadAs(const QString& text, bool isCommaDecimal)
{
    Tokens tokens;
    const QString fault = Split(text, isCommaDecimal, tokens);
    return fault.isEmpty() ? ReadTokens(tokens) : Refuse(fault);
}

// Both ways to read a comma that stands between two digits.
struct Readings
{
    Reading asSeparator;
    std::optional<Reading> asDecimal;
};

Readings ReadBoth(const QString& plain)
{
    static const QRegularExpression betweenDigits(QStringLiteral("\\d,\\d"));
    static const QRegularExpression oneNumber(QStringLiteral("\\d,\\d+,\\d"));
    static const QRegularExpression words[] = {
        QRegularExpression(QStringLiteral("(?<![A-Z])(?:DEGREES?|DEG|D)(?![A-Z])")),
        QRegularExpression(QStringLiteral("(?<![A-Z])(?:MINUTES?|MIN)(?![A-Z])")),
        QRegularExpression(QStringLiteral("(?<![A-Z])(?:SECONDS?|SEC)(?![A-Z])")),
    };
    static const QRegularExpression direction(
        QStringLiteral("(?<![A-Z])(?:(N)ORTH|(S)OUTH|(E)AST|(W)EST)(?![A-Z])"));
    QString text = plain.toUpper();
    text.replace(words[0], degreeMark);
    text.replace(words[1], QStringLiteral("'"));
    text.replace(words[2], QStringLiteral("\""));
    text.replace(direction, QStringLiteral("\\1\\2\\3\\4"));

    Readings readings{ReadAs(text, false), std::nullopt};
    if (text.contains(betweenDigits) && !text.contains(oneNumber) && !text.contains(QLatin1Char('.')))
        readings.asDecimal = ReadAs(text, true);
    return readings;
}

QString Ambiguous()
{
    return Tr(QT_TRANSLATE_NOOP("AxCoordinateText", "The comma can stand for decimals or between the two: "
                                                    "write decimals with a point, or a semicolon between."));
}
} // namespace

QString WithPlainMarks(const QString& text)
{
    static const struct
    {
        QRegularExpression looks;
        QString is;
    } rows[] = {
        {QRegularExpression(QStringLiteral("[º˚度]")), QString(degreeMark)},
        {QRegularExpression(QStringLiteral("′′|’’|''")), QStringLiteral("\"")},
        {QRegularExpression(QStringLiteral("[′‘’´`分]")), QStringLiteral("'")},
        {QRegularExpression(QStringLiteral("[″“”秒]")), QStringLiteral("\"")},
        {QRegularExpression(QStringLiteral("[−‒–]")), QStringLiteral("-")},
        {QRegularExpression(QStringLiteral("[，、]")), QStringLiteral(",")},
        {QRegularExpression(QStringLiteral("；")), QStringLiteral(";")},
        {QRegularExpression(QStringLiteral("：")), QStringLiteral(":")},
        {QRegularExpression(QStringLiteral("北纬?")), QStringLiteral("N")},
        {QRegularExpression(QStringLiteral("南纬?")), QStringLiteral("S")},
        {QRegularExpression(QStringLiteral("东经?")), QStringLiteral("E")},
        {QRegularExpression(QStringLiteral("西经?")), QStringLiteral("W")},
    };
    QString plain = text;
    for (const auto& row : rows)
        plain.replace(row.looks, row.is);
    return plain.simplified();
}

Typed Read(const QString& plain)
{
    const Readings readings = ReadBoth(plain);
    const Typed& separated = readings.asSeparator.typed;
    if (!readings.asDecimal || !readings.asDecimal->typed.place)
        return separated;
    const Typed& decimal = readings.asDecimal->typed;
    if (!separated.place)
        return decimal;
    Typed typed;
    typed.fault = Ambiguous();
    return typed;
}

std::optional<std::array<double, 2>> TwoNumbers(const QString& plain)
{
    const Readings readings = ReadBoth(plain);
    if (!readings.asDecimal || !readings.asDecimal->plainNumbers)
        return readings.asSeparator.plainNumbers;
    return readings.asSeparator.plainNumbers ? std::nullopt : readings.asDecimal->plainNumbers;
}

} // namespace AxTypedDegrees
