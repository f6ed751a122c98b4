#pragma once
#include <gtest/gtest.h>
#include <QWidget>

/// The widget of this name inside `parent`; a failure where there is none.
template <typename Widget> Widget* child(const QWidget& parent, const char* name)
{
    auto* const found = parent.findChild<Widget*>(QString::fromLatin1(name));
    EXPECT_TRUE(found) << name;
    return found;
}
