#pragma once
#include <QDoubleSpinBox>

#include <optional>

/// A field for a number that takes what is typed as it is: a number beyond the limits becomes the nearest of
/// them, which it tells. A number ends before a comma: left out, as usual, it would make
/// 1205 of 120,5. The wheel scrolls what it lies in and changes nothing unless it has the keyboard.
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
    bool HasSeparator(const QString& text) const;
    std::optional<double> NumberIn(const QString& text) const;
};
