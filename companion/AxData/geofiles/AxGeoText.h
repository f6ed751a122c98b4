#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QString>

/// A text of this folder in the language of the program.
inline QString AxGeoText(const char* text)
{
    return QCoreApplication::translate("AxGeoFile", text);
}

/// The same, marked for the translators.
#define AX_GEO_TEXT(text) AxGeoText(QT_TRANSLATE_NOOP("AxGeoFile", text))

/// Text of a file: UTF-8, or else by the codec, which `isForeign` tells then.
QString AxGeoDecoded(const char* text, const QByteArray& codec, bool& isForeign);

/// The codec that most likely made a text that is not in UTF-8: GB18030 or Windows-1252.
QByteArray AxGeoCodecOf(const QByteArray& text);

/// Why a text of so many bytes is not read; empty when it may be. Whole documents are held in memory, several
/// times as large as their text, and nobody can break that off.
constexpr qint64 axMostGeoText = 128LL * 1024 * 1024;
QString AxGeoTooLarge(qint64 bytes, qint64 most = axMostGeoText);

/// One line of at most 200 characters; `isChanged` tells whether it was cut.
QString AxGeoOneLine(const QString& text, bool& isCut);

/// Text of a drawing, which is ASCII with "\U+4e2d" for any other character, and what is meant by it.
QString AxGeoEscaped(const QString& text);
QString AxGeoUnescaped(QString text);
