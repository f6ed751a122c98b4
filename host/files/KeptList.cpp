#include "host/files/KeptList.h"

#include <QJsonDocument>
#include <QJsonObject>

QString KeptList::TextOf(QJsonArray entries) const
{
    for (const QJsonValue& one : unread)
        entries += one;
    return entries.isEmpty() ? QString()
                             : QString::fromUtf8(QJsonDocument(entries).toJson(QJsonDocument::Compact));
}

QStringList KeptList::Read(const QString& text, const QString& unnamed,
                           const std::function<QString(const QJsonValue&)>& show)
{
    unread = {};
    QStringList faults;
    if (text.isEmpty())
        return faults;
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
    const QJsonArray all = document.isArray() ? document.array() : QJsonArray{text};
    for (const QJsonValue& one : all) {
        const QString fault = show(one);
        if (fault.isEmpty())
            continue;
        unread += one;
        const QString name = one.toObject().value(QStringLiteral("name")).toString();
        faults += QStringLiteral("%1: %2").arg(name.isEmpty() ? unnamed : name, fault);
    }
    return faults;
}
