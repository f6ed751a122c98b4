#include <AxBaseUI/CAxParameterEditPage.h>

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QShowEvent>
#include <QStyle>
#include <QVBoxLayout>

namespace {
constexpr int MinValueWidth = 220;

void setWrong(QLineEdit* value, bool wrong)
{
    if (value->property("wrong").toBool() == wrong)
        return;
    value->setProperty("wrong", wrong);
    value->style()->unpolish(value);
    value->style()->polish(value);
}
} // namespace

CAxParameterEditPage::CAxParameterEditPage(QWidget* parent)
    : CAxBaseDialog(parent), m_pLabInfo(new QLabel), m_pList(new QWidget)
{
    m_pLabInfo->setObjectName(QStringLiteral("m_pLabInfo"));
    m_pLabInfo->setTextFormat(Qt::PlainText);
    m_pLabInfo->setWordWrap(true);
    m_pList->setObjectName(QStringLiteral("m_pList"));

    auto* const grid = new QGridLayout;
    m_element1 = addElement(grid, QStringLiteral("m_pElement1"));
    m_element2 = addElement(grid, QStringLiteral("m_pElement2"));
    ContentLayout()->addWidget(m_pLabInfo);
    ContentLayout()->addLayout(grid);
    ContentLayout()->addWidget(m_pList);
    updateGroups();
}

CAxParameterEditPage::Element CAxParameterEditPage::addElement(QGridLayout* grid, const QString& objectName)
{
    const Element element{new QLabel, new QLineEdit};
    element.name->setObjectName(objectName + QStringLiteral("Name"));
    element.name->setTextFormat(Qt::PlainText);
    element.name->setBuddy(element.value);
    element.value->setObjectName(objectName);
    element.value->setMinimumWidth(MinValueWidth);
    connect(element.value, &QLineEdit::textChanged, element.value,
            [value = element.value] { setWrong(value, false); });
    const int row = grid->rowCount();
    grid->addWidget(element.name, row, 0);
    grid->addWidget(element.value, row, 1);
    return element;
}

void CAxParameterEditPage::setValue(const Element& element, const QString& value, bool editable)
{
    element.value->setText(value);
    element.value->setCursorPosition(0);
    element.value->setReadOnly(!editable);
    element.value->setFocusPolicy(editable ? Qt::StrongFocus : Qt::ClickFocus);
}

void CAxParameterEditPage::SetDialogInfo(const QString& text)
{
    m_pLabInfo->setText(text);
    updateGroups();
}

void CAxParameterEditPage::SetElementName(const QString& name1, const QString& name2)
{
    m_element1.name->setText(name1);
    m_element2.name->setText(name2);
    updateGroups();
}

void CAxParameterEditPage::SetElement1Value(const QString& value, bool editable)
{
    setValue(m_element1, value, editable);
}

void CAxParameterEditPage::SetElement2Value(const QString& value, bool editable)
{
    setValue(m_element2, value, editable);
}

QString CAxParameterEditPage::GetElement1Value() const
{
    return m_element1.value->text();
}

QString CAxParameterEditPage::GetElement2Value() const
{
    return m_element2.value->text();
}

void CAxParameterEditPage::SetElementParas(const QStringList& names, const QStringList& values,
                                           QList<bool> editable)
{
    m_elements.clear();
    qDeleteAll(m_pList->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly));
    delete m_pList->layout();
    auto* const grid = new QGridLayout(m_pList);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(ContentLayout()->spacing()); // as the grid above has it
    for (int i = 0; i < names.size(); ++i) {
        const Element element = addElement(grid, QStringLiteral("m_pListElement%1").arg(i));
        element.name->setText(names[i]);
        setValue(element, values.value(i), editable.value(i, false));
        m_elements.append(element);
    }
    updateGroups();
}

QStringList CAxParameterEditPage::GetElementValues() const
{
    QStringList values;
    for (const Element& element : m_elements)
        values.append(element.value->text());
    return values;
}

void CAxParameterEditPage::MarkWrong(int element)
{
    const QList<Element> all = QList<Element>{m_element1, m_element2} + m_elements;
    if (element < 0 || element >= all.size())
        return;
    m_pBeginning = all[element].value;
    setWrong(m_pBeginning, true);
}

void CAxParameterEditPage::showEvent(QShowEvent* event)
{
    CAxBaseDialog::showEvent(event);
    // Names have their size only now.
    alignNames();
    if (event->spontaneous() || !m_pBeginning)
        return;
    m_pBeginning->setFocus(Qt::TabFocusReason); // which selects its text
    m_pBeginning = nullptr;
}

// The groups are grids of their own, and their values stand in one column all the same.
void CAxParameterEditPage::alignNames()
{
    int widest = 0;
    for (const Element& element : QList<Element>{m_element1, m_element2} + m_elements)
        if (!element.name->isHidden())
            widest = qMax(widest, element.name->sizeHint().width());
    for (const Element& element : QList<Element>{m_element1, m_element2} + m_elements)
        element.name->setMinimumWidth(widest);
}

void CAxParameterEditPage::SetGroupHidden(bool infoHidden, bool element1Hidden, bool element2Hidden,
                                          bool listHidden)
{
    m_infoHidden = infoHidden;
    m_element1Hidden = element1Hidden;
    m_element2Hidden = element2Hidden;
    m_listHidden = listHidden;
    updateGroups();
}

void CAxParameterEditPage::SetOKCancelBtnVisible(bool okVisible, bool cancelVisible)
{
    SetBtnHidden(!okVisible, !cancelVisible, false);
}

void CAxParameterEditPage::SetBtnCancelText(const QString& text)
{
    CAxBaseDialog::SetBtnCancelText(text);
    m_cancelHasMeaning = !text.isEmpty();
}

void CAxParameterEditPage::slotBtnCloseClicked()
{
    if (m_cancelHasMeaning)
        done(CloseResult);
    else
        CAxBaseDialog::slotBtnCloseClicked();
}

void CAxParameterEditPage::updateGroups()
{
    m_pLabInfo->setVisible(!m_infoHidden && !m_pLabInfo->text().isEmpty());
    const auto show = [](const Element& element, bool hidden) {
        const bool visible = !hidden && !element.name->text().isEmpty();
        element.name->setVisible(visible);
        element.value->setVisible(visible);
    };
    show(m_element1, m_element1Hidden);
    show(m_element2, m_element2Hidden);
    m_pList->setVisible(!m_listHidden && !m_elements.isEmpty());
}
