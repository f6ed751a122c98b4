#pragma once

#include <QCoreApplication>

/// The words of this folder.
class AxTileText
{
    Q_DECLARE_TR_FUNCTIONS(AxTiles)
};
