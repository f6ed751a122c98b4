#pragma once
#include <QDoubleSpinBox>

#include <optional>

/// A field for a number that takes what is typed as it is: a number beyond the limits becomes the nearest of
/// them, which it tells. The wheel scrolls what it lies in and changes nothing unless it has the keyboard.
class LimitedNumber : public QDoubleSpinBox
{
    Q_OBJECT
public:
    LimitedNumber();

    QValidator::State validate(QString& text, int& place) const override;
    void fixup(QString& text) const override;

signals:
    /// That text is beyond the limits. Sent before the value changes.
    void Beyond(const QString& typed) const;

protected:
    void wheelEvent(QWheelEvent* event) override;

private:
    std::optional<double> NumberIn(const QString& text) const;
};
