#pragma once
#include <QMetaMethod>
#include <QObject>
#include <QVector>

#include <functional>

/**
 * Listens to every signal that a class declares itself, whatever its
 * arguments, and reports each emission as one line: "name(first, second)".
 * Owned by its parent. Signals are reported on the thread that emits them.
 */
class SignalRelay : public QObject
{
public:
    /// `type` is the class whose own signals are wanted, `sender` an object of it.
    SignalRelay(QObject* sender, const QMetaObject& type, std::function<void(const QString&)> report,
                QObject* parent);

    int SignalCount() const { return sources.size(); }

    // moc gives an object one entry for each slot it declares; this one has as
    // many as the sender has signals and so answers the calls itself.
    int qt_metacall(QMetaObject::Call call, int id, void** arguments) override;

private:
    QVector<QMetaMethod> sources;
    std::function<void(const QString&)> report;
};
