#include "interaction/editing/AxEditTitle.h"

#include <QCoreApplication>

QString AxNameInTitle(const QString& blockName)
{
    constexpr int most = 40;
    // In QUndoCommand's texts a line break separates two texts.
    const QString name = blockName.simplified();
    return name.size() > most ? name.left(most - 1) + QChar(0x2026) : name;
}

QString AxEditTitle(const QString& edit, const QStringList& blockNames)
{
    constexpr int mostNames = 3;
    QStringList named;
    for (const QString& name : blockNames.mid(0, mostNames))
        named += AxNameInTitle(name);
    QString text = QCoreApplication::translate("CAxEarthViewer", "%1: %2")
                       .arg(edit, named.join(QCoreApplication::translate("CAxEarthViewer", ", ")));
    const int rest = blockNames.size() - named.size();
    if (rest > 0)
        text =
            QCoreApplication::translate("CAxEarthViewer", "%1 and %2 more").arg(text, QString::number(rest));
    return text;
}
