#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <QHash>
#include <QSet>
#include <QString>

/// What mark points may be called. Any thread.
namespace AxMarkNames {
/// Characters of a name that people give.
constexpr int longest = 200;

/// As people write it, in one line and without blanks around it.
AXEARTHVIEWER_EXPORT QString InOneLine(const QString& written);
/// Why a name cannot be taken, for people; empty when it can. `taken` are those of the other marks.
AXEARTHVIEWER_EXPORT QString Fault(const QString& name, const QSet<QString>& taken);
/// The first free one of "Mark 1", "Mark 2" and so on, from `first` on.
AXEARTHVIEWER_EXPORT QString Next(const QSet<QString>& taken, int first = 1);
/// A name from elsewhere, made one that Fault() takes: cut, numbered as "name 2", or Next() where it is
/// empty. `numbers`, kept over a run of names in which `taken` only grows, is where the next search for the
/// same name begins; without it thousands of one name take quadratic time.
AXEARTHVIEWER_EXPORT QString Free(const QString& written, const QSet<QString>& taken,
                                  QHash<QString, int>* numbers = nullptr);
} // namespace AxMarkNames
