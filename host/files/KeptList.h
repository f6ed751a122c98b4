#pragma once
#include <QJsonArray>
#include <QString>
#include <QStringList>

#include <functional>

/// Things that a project keeps as one text, a list of JSON objects. What means nothing here stays in it. GUI
/// thread.
class KeptList
{
public:
    /// The entries, and after them those that could not be read; empty for none.
    QString TextOf(QJsonArray entries) const;
    /// Hands the entries of such a text to `show` one after the other, which answers the field that is wrong,
    /// or nothing. What is wrong is given back, with the entry's "name" or else `unnamed`, for people.
    QStringList Read(const QString& text, const QString& unnamed,
                     const std::function<QString(const QJsonValue& entry)>& show);

private:
    QJsonArray unread;
};
