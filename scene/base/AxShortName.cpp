#include "scene/base/AxShortName.h"

#include <QTextBoundaryFinder>

QString AxShortName(const QString& name, int mostLetters)
{
    const QString line = name.simplified();
    QTextBoundaryFinder letters(QTextBoundaryFinder::Grapheme, line);
    int lastKept = 0;
    for (int count = 1; letters.toNextBoundary() >= 0; ++count) {
        if (count == mostLetters - 1)
            lastKept = letters.position();
        if (count > mostLetters)
            return line.left(lastKept) + QChar(0x2026);
    }
    return line;
}
