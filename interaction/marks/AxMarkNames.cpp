#include "interaction/marks/AxMarkNames.h"

#include <QCoreApplication>

namespace AxMarkNames {
namespace {
QString Tr(const char* text)
{
    return QCoreApplication::translate("CAxOsgDrawPointSet", text);
}
} // namespace

QString InOneLine(const QString& written)
{
    return written.simplified();
}

QString Fault(const QString& name, const QSet<QString>& taken)
{
    if (name.isEmpty())
        return Tr(QT_TRANSLATE_NOOP("CAxOsgDrawPointSet", "A mark needs a name."));
    if (name.size() > longest)
        return Tr(QT_TRANSLATE_NOOP("CAxOsgDrawPointSet",
                                    "A name has %1 characters at most; this one has %2."))
            .arg(longest)
            .arg(name.size());
    if (taken.contains(name))
        return Tr(QT_TRANSLATE_NOOP("CAxOsgDrawPointSet", "There is a mark \"%1\" already.")).arg(name);
    return {};
}

QString Next(const QSet<QString>& taken, int first)
{
    const QString numbered = Tr(QT_TRANSLATE_NOOP("CAxOsgDrawPointSet", "Mark %1"));
    for (int i = first;; ++i)
        if (const QString name = numbered.arg(i); !taken.contains(name))
            return name;
}

QString Free(const QString& written, const QSet<QString>& taken)
{
    const QString name = InOneLine(written).left(longest).trimmed();
    if (name.isEmpty())
        return Next(taken);
    if (!taken.contains(name))
        return name;
    for (int i = 2;; ++i) {
        const QString number = QStringLiteral(" %1").arg(i);
        const QString free = name.left(longest - number.size()) + number;
        if (!taken.contains(free))
            return free;
    }
}
} // namespace AxMarkNames
