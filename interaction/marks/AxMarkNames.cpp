#include "interaction/marks/AxMarkNames.h"

#include <QCoreApplication>

namespace AxMarkNames {
namespace {
QString Tr(const char* text)
{
    return QCoreApplication::translate("CAxOsgDrawPointSet", text);
}

/// The first free one of the names that `name` makes of the numbers from `number` on; leaves the one after.
template <typename Name> QString Numbered(const QSet<QString>& taken, int& number, Name name)
{
    for (;;)
        if (const QString free = name(number++); !taken.contains(free))
            return free;
}

QString NextFrom(const QSet<QString>& taken, int& number)
{
    const QString numbered = Tr(QT_TRANSLATE_NOOP("CAxOsgDrawPointSet", "Mark %1"));
    return Numbered(taken, number, [&numbered](int i) { return numbered.arg(i); });
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
    return NextFrom(taken, first);
}

QString Free(const QString& written, const QSet<QString>& taken, QHash<QString, int>* numbers)
{
    const QString name = InOneLine(written).left(longest).trimmed();
    if (!name.isEmpty() && !taken.contains(name))
        return name;
    const int first = name.isEmpty() ? 1 : 2;
    int number = numbers ? numbers->value(name, first) : first;
    const QString free = name.isEmpty() ? NextFrom(taken, number) : Numbered(taken, number, [&name](int i) {
        const QString ending = QStringLiteral(" %1").arg(i);
        return name.left(longest - ending.size()) + ending;
    });
    if (numbers)
        numbers->insert(name, number);
    return free;
}
} // namespace AxMarkNames
