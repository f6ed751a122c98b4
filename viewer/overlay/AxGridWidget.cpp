#include "viewer/overlay/AxGridWidget.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace {
constexpr int panelWidth = 270;

QDoubleSpinBox* Named(const char* name)
{
    auto* field = new QDoubleSpinBox;
    field->setObjectName(QLatin1String(name));
    field->setLocale(QLocale::c());
    return field;
}
} // namespace

AxGridWidget::AxGridWidget(QWidget* parent)
    : CAxBaseWidget(parent), m_pTitle(new QLabel), m_pBase(new QComboBox), m_pHeight(Named("m_pHeight")),
      m_pCell(Named("m_pCell")), fields(new AxVolumeFields(*m_pBase, *m_pHeight, *m_pCell, this)),
      m_pNote(new QLabel), m_pProgress(new QProgressBar), m_pCancel(new QPushButton(tr("Cancel"))),
      m_pClose(new QPushButton(QStringLiteral("\u00d7")))
{
    setObjectName(QStringLiteral("AxGridWidget"));
    EnableMove(false);
    build();
    ShowVolume({}, {});
    ShowProgress(-1);
    connect(fields, &AxVolumeFields::changed, this, &AxGridWidget::questionChanged);
    connect(fields, &AxVolumeFields::editing, this, &AxGridWidget::editing);
    connect(m_pCancel, &QPushButton::clicked, this, &AxGridWidget::cancelled);
    connect(m_pClose, &QPushButton::clicked, this, [this] { emit signalGridWidget(id, false); });
}

void AxGridWidget::build()
{
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(QStringLiteral("AxGridWidget { background: #2b3748; border: 1px solid #54647a; }"
                                 "QLabel { color: #f3f6fa; }"));
    m_pBase->setObjectName(QStringLiteral("m_pBase"));
    for (QWidget* field :
         {static_cast<QWidget*>(m_pBase), static_cast<QWidget*>(m_pHeight), static_cast<QWidget*>(m_pCell)})
        field->installEventFilter(this);
    m_pCancel->setObjectName(QStringLiteral("m_pCancel"));
    m_pProgress->setObjectName(QStringLiteral("m_pProgress"));
    m_pNote->setObjectName(QStringLiteral("m_pNote"));
    m_pNote->setTextFormat(Qt::PlainText);
    m_pNote->setWordWrap(true);
    m_pTitle->setTextFormat(Qt::PlainText);
    m_pClose->setObjectName(QStringLiteral("m_pClose"));
    m_pClose->setToolTip(tr("Close"));
    m_pClose->setAccessibleName(tr("Close"));
    constexpr int closeSide = 22;
    m_pClose->setFixedSize(closeSide, closeSide);

    auto* head = new QHBoxLayout;
    head->addWidget(m_pTitle, 1);
    head->addWidget(m_pClose);
    auto* form = new QFormLayout;
    form->addRow(tr("Base"), m_pBase);
    form->addRow(tr("Height"), m_pHeight);
    form->addRow(tr("Cell"), m_pCell);
    auto* work = new QHBoxLayout;
    work->addWidget(m_pProgress, 1);
    work->addWidget(m_pCancel);
    auto* column = new QVBoxLayout(this);
    constexpr int margin = 8;
    column->setContentsMargins(margin, margin, margin, margin);
    column->addLayout(head);
    column->addLayout(form);
    column->addWidget(m_pNote);
    column->addLayout(work);
    setFixedWidth(panelWidth);
}

void AxGridWidget::ShowVolume(const QString& handleID, const QString& name)
{
    id = handleID;
    const QString title = name.isEmpty() ? tr("Next volume") : name;
    // A block's name may be long.
    constexpr int titleWidth = panelWidth - 60;
    m_pTitle->setText(m_pTitle->fontMetrics().elidedText(title, Qt::ElideRight, titleWidth));
    m_pTitle->setToolTip(title);
}

void AxGridWidget::ShowNote(const QString& text)
{
    if (m_pNote->text() == text)
        return;
    m_pNote->setText(text);
    m_pNote->setVisible(!text.isEmpty());
    fit();
}

void AxGridWidget::ShowProgress(int percent)
{
    const bool isBusy = percent >= 0;
    m_pProgress->setValue(qMax(0, percent));
    if (isBusy != m_pCancel->isHidden())
        return;
    m_pProgress->setVisible(isBusy);
    m_pCancel->setVisible(isBusy);
    fit();
}

void AxGridWidget::fit()
{
    layout()->activate();
    resize(panelWidth, layout()->hasHeightForWidth() ? layout()->heightForWidth(panelWidth)
                                                     : layout()->sizeHint().height());
}

// The wheel zooms the map, wherever the mouse is.
bool AxGridWidget::eventFilter(QObject* watched, QEvent* event)
{
    // What is typed takes the place of the number, or of the word "automatic", into which no number fits.
    // After the click, which moves the cursor.
    auto* number = qobject_cast<QDoubleSpinBox*>(watched);
    if (number && event->type() == QEvent::FocusIn)
        QTimer::singleShot(0, number, &QDoubleSpinBox::selectAll);
    return event->type() == QEvent::Wheel || CAxBaseWidget::eventFilter(watched, event);
}

void AxGridWidget::mousePressEvent(QMouseEvent* event)
{
    // It would reach the map below.
    event->accept();
}
