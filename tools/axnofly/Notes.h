#pragma once

#include <QList>
#include <QString>

/// Something of the input that could not be used, or not wholly.
struct Note
{
    QString place; ///< file and line, or file and number of the feature
    QString field; ///< column or field; empty when the whole is meant
    QString text;

    QString Line() const
    {
        return (field.isEmpty() ? place : place + QStringLiteral(": ") + field) + QStringLiteral(": ") + text;
    }
};

using Notes = QList<Note>;
