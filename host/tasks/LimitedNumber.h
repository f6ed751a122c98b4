#pragma once
#include <QDoubleSpinBox>

#include <optional>

/// A field for a number that takes what is typed as it is: a number beyond the limits becomes the nearest of
/// them, and what is no number, as "3,5" or "1e308", leaves the value as it was; both are told. The usual
/// field leaves letters and commas out while they are typed, and makes 35 and 1308 of these. The wheel
/// scrolls what it lies in and changes nothing unless it has the keyboard.
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
    /// That text is no number.
    void Refused(const QString& typed) const;

protected:
    void wheelEvent(QWheelEvent* event) override;

private:
    bool HasSeparator(const QString& text) const;
    std::optional<double> NumberIn(const QString& text) const;
};
