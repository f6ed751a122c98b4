#pragma once
#include <QStringList>

/// How the list of what can be undone calls an edit of blocks: "Move vertex: Block 3". Of several blocks it
/// names the first three and counts the rest; a name is cut at 40 letters.
QString AxEditTitle(const QString& edit, const QStringList& blockNames);
/// A block's name as such a text has it: in one line, cut at 40 letters.
QString AxNameInTitle(const QString& blockName);
