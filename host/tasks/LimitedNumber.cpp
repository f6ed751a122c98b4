#include "host/tasks/LimitedNumber.h"

#include <QWheelEvent>

#include <cmath>

LimitedNumber::LimitedNumber()
{
    setFocusPolicy(Qt::StrongFocus);
    // A height of 5 m on the way to 50 is none, and what is refused goes back behind all that was typed.
    setKeyboardTracking(false);
}

bool LimitedNumber::HasSeparator(const QString& text) const
{
    return text.contains(locale().groupSeparator());
}

std::optional<double> LimitedNumber::NumberIn(const QString& text) const
{
    QString number = text;
    if (!suffix().isEmpty() && number.endsWith(suffix()))
        number.chop(suffix().size());
    bool isNumber = false;
    const double value = locale().toDouble(number.trimmed(), &isNumber);
    return isNumber && std::isfinite(value) ? std::make_optional(value) : std::nullopt;
}

// The usual one refuses each digit that leads beyond the limits, and 12000 becomes 1200.
QValidator::State LimitedNumber::validate(QString& text, int& place) const
{
    // What is left out of a text makes another number of the rest.
    if (HasSeparator(text))
        return QValidator::Intermediate;
    const QValidator::State usual = QDoubleSpinBox::validate(text, place);
    return usual == QValidator::Invalid ? QValidator::Intermediate : usual;
}

void LimitedNumber::fixup(QString& text) const
{
    const std::optional<double> number = HasSeparator(text) ? std::nullopt : NumberIn(text);
    if (!number) {
        emit Refused(text);
        text = textFromValue(value()) + suffix();
        return;
    }
    if (*number < minimum() || *number > maximum())
        emit Beyond(text);
    text = textFromValue(qBound(minimum(), *number, maximum())) + suffix();
}

void LimitedNumber::wheelEvent(QWheelEvent* event)
{
    if (hasFocus())
        QDoubleSpinBox::wheelEvent(event);
    else
        event->ignore();
}
