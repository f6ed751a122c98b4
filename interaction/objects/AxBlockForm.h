#pragma once
#include <AxAlgorthm/AxUnits.h>

#include <QList>
#include <QString>

/// What a kind of block shows in its form beside the name, which all have: one line to read, and measures
/// that may be changed. Texts and values are in the units that are chosen when it is made.
struct AxBlockForm
{
    /// A value that is typed.
    struct Measure
    {
        QString label;      ///< with its unit
        double value = 0.0; ///< metres or degrees
        double least = 0.0; ///< that is taken, as the value
        double most = 0.0;  ///< that is taken, as the value
        double unit = 1.0;  ///< metres or degrees of the unit in which it is written
    };
    /// What became of the measures.
    struct Taken
    {
        bool isTaken = false; ///< or the form opens again
        int wrong = -1;       ///< where not, the one to be changed; -1: none in particular
    };

    /// A length in the chosen unit, whose sign stands in the label for %1.
    static Measure Width(const QString& label, double metres, double least, double most)
    {
        const AxUnits::Unit unit = AxUnits::OfWidths();
        return {label.arg(unit.sign), metres, least, most, unit.size};
    }

    QString title;           ///< of the box
    QString info;            ///< above the rest; may be empty
    QString sizeLabel;       ///< with its unit; empty: there is no such line
    QString size;            ///< as it is written
    QList<Measure> measures; ///< in the order of their rows
    /// In place of what is wrong with a text, which then stands in smaller print; may be empty.
    QString fault;
    bool isNew = false; ///< a drawing: the name is not asked about, and the measures are taken in any case
};
