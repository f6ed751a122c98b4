#pragma once
#include <AxBaseUI/CAxBaseDialog.h>

#include <functional>

class QLabel;
class QLineEdit;

/// Asks for one line of text and says while it is typed how it is understood, or why it is not; OK can be
/// pressed only when it is. Modal; GUI thread.
class TypedBox : public CAxBaseDialog
{
    Q_OBJECT
public:
    struct Reading
    {
        bool isGood = false;
        QString text; ///< for people
    };
    using Reader = std::function<Reading(const QString& typed)>;

    /// `hint` says below the line what can be typed.
    TypedBox(const QString& title, const QString& hint, Reader reader, QWidget* parent);

    QString Text() const;
    void SetText(const QString& text); ///< selected, so that typing replaces it
    /// A further button in the row of OK; it ends the box as OK does, and WasExtra() is true then.
    void AddExtraButton(const QString& text);
    bool WasExtra() const { return wasExtra; }

protected slots:
    void slotBtnAcceptClicked() override;

private:
    void Read();

    Reader read;
    QLineEdit* line;
    QLabel* understood;
    QPushButton* extra = nullptr;
    bool isGood = false;
    bool wasExtra = false;
};
