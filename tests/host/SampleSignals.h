#pragma once
#include <QObject>
#include <QStringList>
#include <QVariant>

class SampleSignals : public QObject
{
    Q_OBJECT
signals:
    void nothing();
    void several(QString text, double number, bool flag);
    void lists(QStringList names, QVariant any);
};
