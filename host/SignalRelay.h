#pragma once
#include <QJsonArray>
#include <QMetaMethod>
#include <QObject>
#include <QVector>

#include <functional>

/**
 * Listens to every signal that a class declares itself, whatever its
 * arguments, and reports each emission: the signal's name and its arguments as
 * JSON values (vectors as arrays, drawables by their names, unknown types as
 * null). Owned by its parent. Signals are reported on the thread that emits
 * them.
 */
class SignalRelay : public QObject
{
public:
    using Report = std::function<void(const QString& name, const QJsonArray& arguments)>;

    /// `type` is the class whose own signals are wanted, `sender` an object of it.
    SignalRelay(QObject* sender, const QMetaObject& type, Report report, QObject* parent);

    int SignalCount() const { return sources.size(); }

    // moc gives an object one entry for each slot it declares; this one has as
    // many as the sender has signals and so answers the calls itself.
    int qt_metacall(QMetaObject::Call call, int id, void** arguments) override;

private:
    QVector<QMetaMethod> sources;
    Report report;
};

/// One line for people: "name(first, second)", lists and vectors in brackets.
QString SignalText(const QString& name, const QJsonArray& arguments);
