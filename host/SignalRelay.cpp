#include "host/SignalRelay.h"

#include <osg/Drawable>
#include <osg/Vec3d>

#include <QStringList>
#include <QVariant>

namespace {
// Types that Qt's type system does not know are told by their names.
QJsonValue ArgumentValue(const QByteArray& typeName, int type, const void* value)
{
    if (typeName == "osg::Vec3d") {
        const auto& vector = *static_cast<const osg::Vec3d*>(value);
        return QJsonArray{vector.x(), vector.y(), vector.z()};
    }
    if (typeName == "osg::Drawable*") {
        const osg::Drawable* drawable = *static_cast<osg::Drawable* const*>(value);
        return drawable ? QJsonValue(QString::fromStdString(drawable->getName())) : QJsonValue();
    }
    if (type == QMetaType::UnknownType)
        return {};
    if (type == QMetaType::QVariant)
        return QJsonValue::fromVariant(*static_cast<const QVariant*>(value));
    const QVariant variant(type, value);
    return variant.type() < QVariant::UserType ? QJsonValue::fromVariant(variant)
                                               : QJsonValue(variant.toInt());
}

QString ValueText(const QJsonValue& value)
{
    constexpr int digits = 10;
    if (value.isDouble())
        return QString::number(value.toDouble(), 'g', digits);
    if (value.isNull())
        return QStringLiteral("?");
    if (!value.isArray())
        return value.toVariant().toString();
    QStringList texts;
    for (const QJsonValue item : value.toArray())
        texts += ValueText(item);
    return QLatin1Char('[') + texts.join(QStringLiteral(", ")) + QLatin1Char(']');
}
} // namespace

SignalRelay::SignalRelay(QObject* sender, const QMetaObject& type, Report reporter, QObject* parent)
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
        const QList<QByteArray> typeNames = source.parameterTypes();
        QJsonArray values;
        for (int i = 0; i < source.parameterCount(); ++i)
            values += ArgumentValue(typeNames[i], source.parameterType(i), arguments[i + 1]);
        report(QLatin1String(source.name()), values);
    }
    return id - sources.size();
}

QString SignalText(const QString& name, const QJsonArray& arguments)
{
    QStringList texts;
    for (const QJsonValue argument : arguments)
        texts += ValueText(argument);
    return QStringLiteral("%1(%2)").arg(name, texts.join(QStringLiteral(", ")));
}
