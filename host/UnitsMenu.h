#pragma once
#include <QMenu>

class KeptState;

/// The units in which the map writes lengths and areas; the choice is kept.
class UnitsMenu : public QMenu
{
    Q_OBJECT
public:
    /// `kept` may be null.
    UnitsMenu(KeptState* kept, QWidget* parent);
};
