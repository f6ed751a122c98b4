#include <AxBaseUI/CAxBaseDialog.h>

#include <QAbstractButton>
#include <QCloseEvent>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
constexpr int TitleHeight = 34;
const QColor FrameColour(0x5a, 0x6b, 0x80);
const QColor TitleColour(0x1f, 0x29, 0x37);
const QColor BodyColour(0x2b, 0x37, 0x48);

const char* const StyleSheet = R"(
QWidget { color: #f3f6fa; background: transparent; }
QToolTip { color: #10161f; background: #f3f6fa; border: 1px solid #5a6b80; }
QLabel#m_pLabTitle, QLabel[heading="true"] { font-weight: bold; }
QLabel#m_pLabError { color: #ffb4a8; }
QLabel#m_pPicture { background: #182130; border: 1px solid #5a6b80; }
QLineEdit, QPlainTextEdit, QListWidget, QAbstractSpinBox { background: #182130; border: 1px solid #7a8ba3; border-radius: 3px;
    padding: 4px 6px; selection-background-color: #2f7de1; selection-color: #ffffff; }
QLineEdit:focus, QPlainTextEdit:focus, QListWidget:focus, QAbstractSpinBox:focus { border-color: #6cb2ff; }
QLineEdit[wrong="true"], QPlainTextEdit[wrong="true"], QAbstractSpinBox[wrong="true"] { border-color: #ff8a75; }
QLineEdit:read-only { background: #2b3748; border-color: #4b5a6e; color: #c9d3e0; }
QPushButton { background: #3d4d63; border: 1px solid #7a8ba3; border-radius: 3px; padding: 5px 18px;
    min-width: 60px; }
QPushButton:hover { background: #4b5f7a; }
QPushButton:pressed { background: #2f3c4f; }
QPushButton:focus { border: 2px solid #6cb2ff; padding: 4px 17px; }
QPushButton:default { background: #1f5fb4; }
QPushButton:default:hover { background: #2a6fc9; }
QPushButton:disabled { color: #9aa7b8; }
QPushButton#m_pBtnClose { background: transparent; border: none; padding: 0; min-width: 28px; font-size: 16px; }
QPushButton#m_pBtnClose:hover { background: #b3343a; }
QScrollBar { background: #182130; border: none; }
QScrollBar:vertical { width: 10px; }
QScrollBar:horizontal { height: 10px; }
QScrollBar::handle { background: #5a6b80; border-radius: 3px; min-height: 24px; min-width: 24px; }
QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }
QCalendarWidget QWidget { background: #2b3748; alternate-background-color: #1f2937; }
QCalendarWidget QAbstractItemView { background: #182130; selection-background-color: #2f7de1;
    selection-color: #ffffff; }
QProgressBar { background: #182130; border: 1px solid #7a8ba3; border-radius: 3px; text-align: center; }
QProgressBar::chunk { background: #1f5fb4; }
QComboBox { background: #182130; border: 1px solid #7a8ba3; border-radius: 3px; padding: 4px 6px; }
QComboBox:focus { border-color: #6cb2ff; }
QComboBox::drop-down { border: none; width: 20px; }
QComboBox::down-arrow { image: url(:/AxBaseUI/images/arrow-down.png); width: 9px; height: 6px; }
QComboBoxPrivateContainer { background: #182130; }
QComboBox:disabled, QAbstractSpinBox:disabled, QCheckBox:disabled, QRadioButton:disabled { color: #9aa7b8; }
QComboBox QAbstractItemView, QTreeView { background: #182130; border: 1px solid #5a6b80;
    selection-background-color: #2f7de1; selection-color: #ffffff; }
QTreeView:focus { border-color: #6cb2ff; }
QTreeView::item:disabled { color: #9aa7b8; }
QHeaderView::section { background: #3d4d63; border: none; border-right: 1px solid #5a6b80; padding: 3px 6px; }
QAbstractSpinBox { padding-right: 22px; }
QAbstractSpinBox::up-button, QAbstractSpinBox::down-button { subcontrol-origin: border; width: 20px; border: none;
    border-left: 1px solid #5a6b80; }
QAbstractSpinBox::up-button { subcontrol-position: top right; }
QAbstractSpinBox::down-button { subcontrol-position: bottom right; }
QAbstractSpinBox::up-button:hover, QAbstractSpinBox::down-button:hover { background: #3d4d63; }
QAbstractSpinBox::up-arrow { image: url(:/AxBaseUI/images/arrow-up.png); width: 9px; height: 6px; }
QAbstractSpinBox::down-arrow { image: url(:/AxBaseUI/images/arrow-down.png); width: 9px; height: 6px; }
QCheckBox::indicator, QRadioButton::indicator, QTreeView::indicator { width: 13px; height: 13px;
    background: #182130; border: 1px solid #9fb0c6; border-radius: 3px; }
QRadioButton::indicator { border-radius: 7px; }
QCheckBox::indicator:focus, QRadioButton::indicator:focus { border-color: #6cb2ff; }
QCheckBox:focus, QRadioButton:focus { color: #ffffff; }
QCheckBox::indicator:checked, QTreeView::indicator:checked { background: #1f5fb4;
    image: url(:/AxBaseUI/images/tick.png); }
QRadioButton::indicator:checked { background: qradialgradient(cx: 0.5, cy: 0.5, radius: 0.5, fx: 0.5, fy: 0.5,
    stop: 0 #f3f6fa, stop: 0.5 #f3f6fa, stop: 0.6 #1f5fb4, stop: 1 #1f5fb4); }
QCheckBox::indicator:disabled, QRadioButton::indicator:disabled, QTreeView::indicator:disabled {
    border-color: #5a6b80; background: #2b3748; }
)";

QPushButton* button(const QString& name)
{
    auto* const result = new QPushButton;
    result->setObjectName(name);
    result->setAutoDefault(false);
    return result;
}
} // namespace

CAxBaseDialog::CAxBaseDialog(QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint), m_pLabTitle(new QLabel),
      m_pBtnClose(button(QStringLiteral("m_pBtnClose"))), m_pBtnOK(button(QStringLiteral("m_pBtnOK"))),
      m_pBtnCancel(button(QStringLiteral("m_pBtnCancel"))), m_pButtonRow(new QWidget),
      m_pContentLayout(new QVBoxLayout)
{
    setStyleSheet(QString::fromLatin1(StyleSheet));
    m_pLabTitle->setObjectName(QStringLiteral("m_pLabTitle"));
    m_pLabTitle->setTextFormat(Qt::PlainText);
    m_pBtnClose->setText(QString(QChar(0x00d7)));
    m_pBtnClose->setFocusPolicy(Qt::NoFocus);

    auto* const titleBar = new QWidget;
    titleBar->setFixedHeight(TitleHeight);
    auto* const titleRow = new QHBoxLayout(titleBar);
    titleRow->setContentsMargins(12, 2, 4, 2);
    titleRow->addWidget(m_pLabTitle, 1);
    titleRow->addWidget(m_pBtnClose);

    auto* const buttonRow = new QHBoxLayout(m_pButtonRow);
    buttonRow->setContentsMargins(0, 0, 0, 0);
    buttonRow->addStretch(1);
    buttonRow->addWidget(m_pBtnOK);
    buttonRow->addWidget(m_pBtnCancel);

    auto* const body = new QVBoxLayout;
    body->setContentsMargins(18, 14, 18, 14);
    body->setSpacing(16);
    body->addLayout(m_pContentLayout, 1);
    body->addWidget(m_pButtonRow);

    auto* const all = new QVBoxLayout(this);
    all->setContentsMargins(1, 1, 1, 1);
    all->setSpacing(0);
    all->addWidget(titleBar);
    all->addLayout(body, 1);
    all->setSizeConstraint(QLayout::SetMinimumSize);

    connect(m_pBtnOK, &QPushButton::clicked, this, &CAxBaseDialog::slotBtnAcceptClicked);
    connect(m_pBtnCancel, &QPushButton::clicked, this, &CAxBaseDialog::slotBtnCancelClicked);
    connect(m_pBtnClose, &QPushButton::clicked, this, &CAxBaseDialog::slotBtnCloseClicked);
    updateButtons();
}

void CAxBaseDialog::SetWindowTitle(const QString& title)
{
    setWindowTitle(title);
    m_pLabTitle->setText(title);
}

void CAxBaseDialog::SetBtnOKText(const QString& text)
{
    m_okText = text;
    updateButtons();
}

void CAxBaseDialog::SetBtnCancelText(const QString& text)
{
    m_cancelText = text;
    updateButtons();
}

void CAxBaseDialog::SetBtnHidden(bool okHidden, bool cancelHidden, bool closeHidden)
{
    m_okHidden = okHidden;
    m_cancelHidden = cancelHidden;
    m_closeHidden = closeHidden;
    updateButtons();
}

void CAxBaseDialog::SetCancelDefault(bool isDefault)
{
    m_cancelDefault = isDefault;
    updateButtons();
}

bool CAxBaseDialog::isCancelFirst() const
{
    return !m_cancelHidden && (m_okHidden || m_cancelDefault);
}

void CAxBaseDialog::updateButtons()
{
    m_pBtnOK->setText(m_okText.isEmpty() ? tr("OK") : m_okText);
    m_pBtnCancel->setText(!m_cancelText.isEmpty() ? m_cancelText : m_okHidden ? tr("Close") : tr("Cancel"));
    m_pBtnClose->setToolTip(tr("Close"));
    m_pBtnClose->setAccessibleName(tr("Close"));

    m_pBtnOK->setVisible(!m_okHidden);
    m_pBtnCancel->setVisible(!m_cancelHidden);
    m_pButtonRow->setVisible(!m_okHidden || !m_cancelHidden);
    m_pBtnClose->setVisible(!m_closeHidden || (m_okHidden && m_cancelHidden));
    m_pBtnOK->setDefault(!m_okHidden && !isCancelFirst());
    m_pBtnCancel->setDefault(isCancelFirst());
}

void CAxBaseDialog::slotBtnAcceptClicked()
{
    accept();
}

void CAxBaseDialog::slotBtnCancelClicked()
{
    reject();
}

void CAxBaseDialog::slotBtnCloseClicked()
{
    reject();
}

void CAxBaseDialog::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.fillRect(rect(), BodyColour);
    painter.fillRect(QRect(0, 0, width(), TitleHeight + 1), TitleColour);
    painter.setPen(FrameColour);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void CAxBaseDialog::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape) {
        slotBtnCloseClicked();
        return;
    }
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!enter) {
        QDialog::keyPressEvent(event);
        return;
    }
    auto* const focused = qobject_cast<QPushButton*>(focusWidget());
    if (focused && focused->isVisible())
        focused->click();
    else if (isCancelFirst())
        m_pBtnCancel->click();
    else if (!m_okHidden)
        m_pBtnOK->click();
    else
        slotBtnCloseClicked();
}

void CAxBaseDialog::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        QDialog::mousePressEvent(event);
        return;
    }
    m_dragging = true;
    m_grip = event->globalPos() - pos();
    event->accept();
}

void CAxBaseDialog::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_dragging) {
        QDialog::mouseMoveEvent(event);
        return;
    }
    move(event->globalPos() - m_grip);
    event->accept();
}

void CAxBaseDialog::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        m_dragging = false;
    QDialog::mouseReleaseEvent(event);
}

void CAxBaseDialog::closeEvent(QCloseEvent* event)
{
    if (isVisible())
        slotBtnCloseClicked();
    event->setAccepted(!isVisible());
}

void CAxBaseDialog::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (event->spontaneous())
        return;
    // The buttons are created before the content, so the natural order would start with them.
    QWidget* last = nullptr;
    QWidget* firstInput = nullptr;
    for (QWidget* const child : findChildren<QWidget*>()) {
        const bool isButton = child->parentWidget() == m_pButtonRow;
        // What belongs to a combo box's list is in a window of its own.
        if (isButton || child->window() != this || !(child->focusPolicy() & Qt::TabFocus) ||
            child->isHidden())
            continue;
        if (last)
            setTabOrder(last, child);
        if (!firstInput && !qobject_cast<QAbstractButton*>(child))
            firstInput = child;
        last = child;
    }
    if (last)
        setTabOrder(last, m_pBtnOK);
    setTabOrder(m_pBtnOK, m_pBtnCancel);
    if (firstInput)
        firstInput->setFocus(Qt::TabFocusReason);
    else
        (isCancelFirst() || m_okHidden ? m_pBtnCancel : m_pBtnOK)->setFocus(Qt::TabFocusReason);
}

void CAxBaseDialog::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        updateButtons();
    QDialog::changeEvent(event);
}
