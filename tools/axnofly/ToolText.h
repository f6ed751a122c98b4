#pragma once

#include <QCoreApplication>

/// The texts of this program: ToolText::tr().
struct ToolText
{
    Q_DECLARE_TR_FUNCTIONS(axnofly)
};
