#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

/// A form as one body of the type multipart/form-data (RFC 7578), names quoted as browsers do. The body
/// begins with the line of its own boundary, so it can be sent knowing nothing else of it.
class FormData
{
public:
    /// Texts are sent in UTF-8, line breaks in them as CR LF.
    void addText(const QString& name, const QString& text);
    void addFile(const QString& name, const QString& fileName, const QByteArray& type,
                 const QByteArray& content);
    /// The same entries give the same bytes.
    QByteArray body() const;

    /// The boundary of a whole body; empty when the bytes do not begin and end as one.
    static QByteArray boundaryOf(const QByteArray& body);

private:
    QVector<QByteArray> m_parts; ///< each its headers, an empty line and its content
};
