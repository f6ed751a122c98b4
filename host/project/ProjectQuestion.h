#pragma once
#include <QMessageBox>
#include <QString>
#include <QStringList>

/// A box whose texts are all of this program, and that has no markup in it. GUI thread.
class ProjectQuestion : public QMessageBox
{
    Q_OBJECT
public:
    ProjectQuestion(QWidget* window, const QString& title, const QString& text);
    /// The button that was pressed.
    QAbstractButton* Ask();

    /// As many names as a box has room for, shortened, then how many there are.
    static QString Few(const QStringList& names);
    /// What of a project cannot be, a paragraph of its own; empty for nothing.
    static QString LeftOut(const QStringList& leftOut);
};
