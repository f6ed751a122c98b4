#pragma once

#include <QCoreApplication>

/// The texts of this program: TilesText::tr().
struct TilesText
{
    Q_DECLARE_TR_FUNCTIONS(axtiles)
};
