#include "host/SignalRelay.h"

#include <QStringList>
#include <QVariant>

namespace {
QString ArgumentText(int type, const void* value)
{
    if (type == QMetaType::UnknownType)
        return QStringLiteral("?");
    QVariant variant(type, value);
    if (type == QMetaType::QVariant)
        variant = *static_cast<const QVariant*>(value);
    if (variant.canConvert<QStringList>() && variant.type() == QVariant::StringList)
        return QLatin1Char('[') + variant.toStringList().join(QStringLiteral(", ")) + QLatin1Char(']');
    return variant.canConvert<QString>() ? variant.toString() : QString::fromLatin1(variant.typeName());
}
} // namespace

SignalRelay::SignalRelay(QObject* sender, const QMetaObject& type,
                         std::function<void(const QString&)> reporter, QObject* parent)
    : QObject(parent), report(std::move(reporter))
{
    for (int i = type.methodOffset(); i < type.methodCount(); ++i) {
        const QMetaMethod method = type.method(i);
        if (method.methodType() != QMetaMethod::Signal)
            continue;
        const int slot = QObject::staticMetaObject.methodCount() + sources.size();
        if (QMetaObject::connect(sender, i, this, slot, Qt::DirectConnection))
            sources.append(method);
    }
}

int SignalRelay::qt_metacall(QMetaObject::Call call, int id, void** arguments)
{
    id = QObject::qt_metacall(call, id, arguments);
    if (id < 0 || call != QMetaObject::InvokeMetaMethod)
        return id;
    if (id < sources.size()) {
        const QMetaMethod& source = sources[id];
        QStringList texts;
        for (int i = 0; i < source.parameterCount(); ++i)
            texts += ArgumentText(source.parameterType(i), arguments[i + 1]);
        report(QStringLiteral("%1(%2)").arg(QLatin1String(source.name()), texts.join(QStringLiteral(", "))));
    }
    return id - sources.size();
}
