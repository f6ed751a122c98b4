#pragma once

#include <AxBaseUI/AxBaseUIExport.h>
#include <AxBaseUI/CAxBaseDialog.h>

#include <QList>
#include <QPointer>
#include <QString>
#include <QStringList>

class QGridLayout;
class QLabel;
class QLineEdit;

/// A short modal form. It has four groups: an information line, element 1, element 2, and a list of
/// elements; an element is a name with a single-line text. A group shows once it was given something, unless
/// SetGroupHidden hides it. Values come back exactly as they stand in the form.
class AXBASEUI_EXPORT CAxParameterEditPage : public CAxBaseDialog
{
    Q_OBJECT

public:
    /// What exec() returns when the form is left by Escape or the title bar's close button while Cancel
    /// was given a text, and with it a meaning, of its own. Otherwise leaving so counts as Cancel.
    static constexpr int CloseResult = -1;

    explicit CAxParameterEditPage(QWidget* parent = nullptr);

    /// The information line above the elements.
    void SetDialogInfo(const QString& text);

    /// Names of the elements 1 and 2. An element with an empty name stays hidden.
    void SetElementName(const QString& name1, const QString& name2);
    /// The texts of the elements 1 and 2, and whether the operator may change them.
    void SetElement1Value(const QString& value, bool editable);
    void SetElement2Value(const QString& value, bool editable);
    /// The texts as they stand in the form.
    QString GetElement1Value() const;
    QString GetElement2Value() const;

    /// Replaces the list of elements, one for each name. A missing value is empty, a missing entry of
    /// editable means read-only.
    void SetElementParas(const QStringList& names, const QStringList& values, QList<bool> editable);
    /// The texts of the list, in the order of its names.
    QStringList GetElementValues() const;

    /// Frames element 1 (0), element 2 (1) or one of the list (from 2 on) until its text changes, and begins
    /// with it when the form is shown next. Nothing for what is no element.
    void MarkWrong(int element);

    /// Hides the information line, element 1, element 2 and the list.
    void SetGroupHidden(bool infoHidden, bool element1Hidden, bool element2Hidden, bool listHidden);

    /// Shows or hides OK and Cancel; the title bar's close button stays.
    void SetOKCancelBtnVisible(bool okVisible, bool cancelVisible);
    /// Gives Cancel a text, and with it a meaning that differs from leaving the form (CloseResult).
    void SetBtnCancelText(const QString& text);

protected:
    void showEvent(QShowEvent* event) override;

protected slots:
    void slotBtnCloseClicked() override;

private:
    struct Element
    {
        QLabel* name;
        QLineEdit* value;
    };
    Element addElement(QGridLayout* grid, const QString& objectName);
    void setValue(const Element& element, const QString& value, bool editable);
    void alignNames();
    void updateGroups();

    QLabel* m_pLabInfo;
    QWidget* m_pList;
    Element m_element1;
    Element m_element2;
    QList<Element> m_elements;
    QPointer<QLineEdit> m_pBeginning; ///< where the form begins when it is shown; null: at the first input
    bool m_infoHidden = false;
    bool m_element1Hidden = false;
    bool m_element2Hidden = false;
    bool m_listHidden = false;
    bool m_cancelHasMeaning = false;
};
