#include "support/FormData.h"

#include <QCryptographicHash>

#include <algorithm>

namespace {
const QByteArray LineBreak("\r\n");
constexpr int MaxBoundaryLength = 70; // RFC 2046

QByteArray quoted(const QString& name)
{
    QByteArray text = name.toUtf8();
    text.replace('"', "%22").replace('\r', "%0D").replace('\n', "%0A");
    return '"' + text + '"';
}

QByteArray disposition(const QString& name)
{
    return "Content-Disposition: form-data; name=" + quoted(name);
}

bool mayStandInBoundary(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-';
}
} // namespace

void FormData::addText(const QString& name, const QString& text)
{
    QString lines = text;
    lines.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(QLatin1Char('\r'), QLatin1Char('\n'));
    lines.replace(QLatin1Char('\n'), QLatin1String("\r\n"));
    m_parts.append(disposition(name) + LineBreak + "Content-Type: text/plain; charset=utf-8" + LineBreak +
                   LineBreak + lines.toUtf8());
}

void FormData::addFile(const QString& name, const QString& fileName, const QByteArray& type,
                       const QByteArray& content)
{
    m_parts.append(disposition(name) + "; filename=" + quoted(fileName) + LineBreak +
                   "Content-Type: " + type + LineBreak + LineBreak + content);
}

QByteArray FormData::body() const
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    QByteArray boundary;
    const auto contains = [&boundary](const QByteArray& part) { return part.contains(boundary); };
    for (const QByteArray& part : m_parts)
        hash.addData(part);
    do {
        boundary = "AxForm-" + hash.result().toHex().left(32);
        hash.addData("again");
    } while (std::any_of(m_parts.begin(), m_parts.end(), contains));

    QByteArray body;
    for (const QByteArray& part : m_parts)
        body += "--" + boundary + LineBreak + part + LineBreak;
    return body + "--" + boundary + "--" + LineBreak;
}

QByteArray FormData::boundaryOf(const QByteArray& body)
{
    const QByteArray line = body.left(body.indexOf(LineBreak));
    const QByteArray boundary = line.mid(2);
    const bool whole = line.startsWith("--") && body.endsWith(LineBreak + line + "--" + LineBreak);
    const bool usable = !boundary.isEmpty() && boundary.size() <= MaxBoundaryLength &&
                        std::all_of(boundary.begin(), boundary.end(), mayStandInBoundary);
    return whole && usable ? boundary : QByteArray();
}
