#pragma once
#include <QCoreApplication>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

class QWidget;

/// Asks where a new file is to be written. GUI thread; events run meanwhile.
class SaveBox
{
    Q_DECLARE_TR_FUNCTIONS(SaveBox)
public:
    /// A kind of file.
    struct Kind
    {
        QString filter;       ///< as the dialog shows it
        QStringList suffixes; ///< lower case, without a point; a name that has none gets the first
    };
    /// What was chosen.
    struct Answer
    {
        QString file; ///< ends in a suffix of its kind
        int kind = 0; ///< its place in the list
    };
    /// Proposes a name, of which what file systems do not allow is replaced, in a folder, or in that of the
    /// documents where there is none. A file that is there already is named only after a question; nothing
    /// when the pilot cancels.
    static std::optional<Answer> Ask(QWidget* window, const QString& title, const QString& folder,
                                     const QString& name, const QList<Kind>& kinds);
};
