#include "host/exchange/GeoImportBox.h"
#include "host/tasks/LimitedNumber.h"

#include <AxAlgorthm/AxUnits.h>

#include <QButtonGroup>
#include <QDoubleSpinBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScopedValueRollback>
#include <QScreen>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace {
enum Column
{
    NameColumn,
    KindColumn,
    SizeColumn,
    PointsColumn,
    LayerColumn,
    HolesColumn,
    NoteColumn,
    ColumnCount,
};

QString KindOf(const AxGeoShape& shape)
{
    if (shape.kind == AxGeoShape::Area)
        return GeoBlocks::TypeOf(shape) == CAxBlock::ProhibitedAreaBlock
                   ? GeoImportBox::tr("Area of an application")
                   : GeoImportBox::tr("Area");
    if (shape.kind == AxGeoShape::Line)
        return GeoImportBox::tr("Line, as a strip");
    return std::isnan(shape.radius) ? GeoImportBox::tr("Point")
                                    : GeoImportBox::tr("Circle, as a video block");
}

/// The whole name, and where it is, by which those of one name can be told apart.
QString TipOf(const AxGeoShape& shape)
{
    constexpr int decimals = 5; // a metre
    const QPointF first = shape.points.isEmpty() ? QPointF() : shape.points.constFirst();
    return GeoImportBox::tr("%1, beginning at longitude %2\302\260, latitude %3\302\260")
        .arg(shape.name.toHtmlEscaped(), QString::number(first.x(), 'f', decimals),
             QString::number(first.y(), 'f', decimals));
}
} // namespace

GeoImportBox::GeoImportBox(const AxGeoContent& found, const QString& file, QWidget* parent)
    : CAxBaseDialog(parent), shapes(found.shapes), list(new QTreeWidget)
{
    SetWindowTitle(tr("Import areas and lines"));
    SetBtnOKText(tr("Import"));
    const QString system = found.coordinateSystem.isEmpty() ? tr("not named") : found.coordinateSystem;
    auto* head = new QLabel(tr("%1; shapes: %2; coordinate system: %3")
                                .arg(QFileInfo(file).fileName(), QString::number(shapes.size()), system));
    head->setTextFormat(Qt::PlainText);
    head->setWordWrap(true);
    ContentLayout()->addWidget(head);
    ContentLayout()->addWidget(list);
    auto* row = new QHBoxLayout;
    for (const bool on : {true, false}) {
        auto* button = new QPushButton(on ? tr("Tick all") : tr("Tick none"));
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [this, on] { TickAll(on); });
        row->addWidget(button);
    }
    row->addStretch();
    ContentLayout()->addLayout(row);
    AddChoices();
    AddNotes(found.notes);
    FillList();
    connect(list, &QTreeWidget::itemChanged, this, &GeoImportBox::CountTicks);
}

void GeoImportBox::FillList()
{
    const QScopedValueRollback<bool> guard(isFilling, true);
    list->setObjectName(QStringLiteral("FoundShapes"));
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setColumnCount(ColumnCount);
    list->setHeaderLabels(
        {tr("Name"), tr("Kind"), tr("Size"), tr("Vertices"), tr("Layer"), tr("Holes"), tr("Note")});
    QList<QTreeWidgetItem*> rows;
    for (const AxGeoShape& shape : qAsConst(shapes)) {
        auto* row = new QTreeWidgetItem(
            {shape.name, KindOf(shape), GeoBlocks::SizeOf(shape), QString::number(shape.points.size()),
             shape.layer, shape.holes.isEmpty() ? QString() : QString::number(shape.holes.size())});
        row->setToolTip(NameColumn, TipOf(shape));
        row->setToolTip(LayerColumn, shape.layer.toHtmlEscaped());
        row->setCheckState(NameColumn, Qt::Checked);
        rows += row;
    }
    list->addTopLevelItems(rows);
    constexpr int nameCharacters = 28;
    constexpr int layerCharacters = 16;
    constexpr int shownRows = 12;
    const QFontMetrics letters = list->fontMetrics();
    for (int column = KindColumn; column < ColumnCount; ++column)
        list->resizeColumnToContents(column);
    list->setColumnWidth(NameColumn, letters.horizontalAdvance(QLatin1Char('0')) * nameCharacters);
    list->setColumnWidth(LayerColumn, qMin(list->columnWidth(LayerColumn),
                                           letters.horizontalAdvance(QLatin1Char('0')) * layerCharacters));
    const bool hasLayers = std::any_of(shapes.begin(), shapes.end(),
                                       [](const AxGeoShape& shape) { return !shape.layer.isEmpty(); });
    list->setColumnHidden(LayerColumn, !hasLayers);
    list->setColumnWidth(NoteColumn, letters.horizontalAdvance(QLatin1Char('0')) * nameCharacters);
    const int mostWidth = screen()->availableSize().width() * 4 / 5;
    list->setMinimumSize(qMin(list->header()->length() + 2 * letters.height(), mostWidth),
                         letters.height() * shownRows);
    FollowChoice();
}

void GeoImportBox::AddChoices()
{
    auto* form = new QFormLayout;
    if (std::any_of(shapes.begin(), shapes.end(),
                    [](const AxGeoShape& shape) { return !shape.holes.isEmpty(); }))
        AskForHoles(form);
    if (std::any_of(shapes.begin(), shapes.end(), &GeoBlocks::LacksWidth)) {
        constexpr double mostMetres = 10000.0;
        const AxUnits::Unit unit = AxUnits::OfWidths();
        const auto addWidth = [&](const QString& label, double metres) {
            auto* width = new LimitedNumber;
            width->setLocale(QLocale::c());
            width->setDecimals(1);
            width->setRange(0.0, mostMetres / unit.size);
            width->setSuffix(QLatin1Char(' ') + unit.sign);
            width->setValue(metres / unit.size);
            form->addRow(label, width);
            connect(width, qOverload<double>(&QDoubleSpinBox::valueChanged), this,
                    &GeoImportBox::ShowReadiness);
            return Width{width, metres, width->value()};
        };
        left = addWidth(tr("Strips without widths, to the left:"), GeoChoice().leftWidth);
        right = addWidth(tr("To the right:"), GeoChoice().rightWidth);
        tooNarrow = new QLabel;
        tooNarrow->setObjectName(QStringLiteral("m_pLabError"));
        form->addRow(QString(), tooNarrow);
    }
    ContentLayout()->addLayout(form);
}

void GeoImportBox::AskForHoles(QFormLayout* form)
{
    holes = new QButtonGroup(this);
    auto* row = new QHBoxLayout;
    const QStringList answers{tr("&Fill the holes"), tr("&Leave these areas out")};
    for (int i = 0; i < answers.size(); ++i) {
        auto* answer = new QRadioButton(answers[i]);
        holes->addButton(answer, i);
        row->addWidget(answer);
    }
    unanswered = new QLabel;
    unanswered->setObjectName(QStringLiteral("m_pLabError"));
    row->addWidget(unanswered);
    row->addStretch();
    form->addRow(tr("A block has no holes. Areas with holes:"), row);
    connect(holes, &QButtonGroup::idClicked, this, &GeoImportBox::FollowChoice);
}

void GeoImportBox::AddNotes(const QStringList& notes)
{
    if (notes.isEmpty())
        return;
    constexpr int mostLines = 6;
    auto* text = new QPlainTextEdit(notes.join(QLatin1Char('\n')));
    text->setReadOnly(true);
    text->setTabChangesFocus(true);
    text->setFixedHeight(text->fontMetrics().lineSpacing() * qMin(mostLines, notes.size() + 1) + 12);
    ContentLayout()->addWidget(text);
}

void GeoImportBox::FollowChoice()
{
    const QScopedValueRollback<bool> guard(isFilling, true);
    const GeoChoice choice = Choice();
    for (int i = 0; i < list->topLevelItemCount(); ++i) {
        QTreeWidgetItem* row = list->topLevelItem(i);
        const QString reason = GeoBlocks::ReasonToLeaveOut(shapes[i], choice);
        const bool wasLeftOut = row->isDisabled();
        row->setDisabled(!reason.isEmpty());
        if (wasLeftOut != row->isDisabled())
            row->setCheckState(NameColumn, reason.isEmpty() ? Qt::Checked : Qt::Unchecked);
        const QString note = reason.isEmpty() ? GeoBlocks::NoteOf(shapes[i]) : tr("left out: %1").arg(reason);
        row->setText(NoteColumn, note);
        row->setToolTip(NoteColumn, note.toHtmlEscaped());
    }
    ShowReadiness();
}

void GeoImportBox::TickAll(bool on)
{
    {
        const QScopedValueRollback<bool> guard(isFilling, true);
        for (int i = 0; i < list->topLevelItemCount(); ++i)
            if (!list->topLevelItem(i)->isDisabled())
                list->topLevelItem(i)->setCheckState(NameColumn, on ? Qt::Checked : Qt::Unchecked);
    }
    CountTicks();
}

void GeoImportBox::CountTicks()
{
    if (!isFilling)
        ShowReadiness();
}

void GeoImportBox::ShowReadiness()
{
    const QVector<AxGeoShape> wanted = Wanted();
    const bool isToBeAsked = holes && holes->checkedId() < 0 &&
                             std::any_of(wanted.begin(), wanted.end(),
                                         [](const AxGeoShape& shape) { return !shape.holes.isEmpty(); });
    if (unanswered)
        unanswered->setText(isToBeAsked ? tr("Please choose") : QString());
    const bool isTooNarrow = tooNarrow && !GeoBlocks::MakeStrip(Choice()) &&
                             std::any_of(wanted.begin(), wanted.end(), &GeoBlocks::LacksWidth);
    if (isTooNarrow) {
        // Rounded up, so that what it says is enough.
        const AxUnits::Unit unit = AxUnits::OfWidths();
        const double least = std::ceil(GeoBlocks::leastBand / unit.size * 10.0) / 10.0;
        tooNarrow->setText(tr("Together at least %1 %2").arg(QString::number(least, 'f', 1), unit.sign));
    } else if (tooNarrow) {
        tooNarrow->clear();
    }
    OKButton()->setEnabled(!wanted.isEmpty() && !isToBeAsked && !isTooNarrow);
}

QVector<AxGeoShape> GeoImportBox::Wanted() const
{
    QVector<AxGeoShape> wanted;
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        if (list->topLevelItem(i)->checkState(NameColumn) == Qt::Checked)
            wanted += shapes[i];
    return wanted;
}

GeoChoice GeoImportBox::Choice() const
{
    GeoChoice choice;
    choice.areHolesFilled = !holes || holes->checkedId() != 1;
    if (left.field) {
        choice.leftWidth = left.Metres();
        choice.rightWidth = right.Metres();
    }
    return choice;
}

double GeoImportBox::Width::Metres() const
{
    return field->value() == shown ? metres : field->value() * AxUnits::OfWidths().size;
}
