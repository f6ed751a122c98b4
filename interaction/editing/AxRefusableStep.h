#pragma once
#include <QString>

/// What a command of the undo stack is as well when things may stand so that it must not be stepped over.
class AxRefusableStep
{
public:
    virtual ~AxRefusableStep() = default;
    /// Why it cannot be undone (`back`) or done again now, for the operator; empty when it can.
    virtual QString Refusal(bool back) const = 0;
};
