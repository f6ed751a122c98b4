#include "host/exchange/GeoImportBox.h"
#include "host/tasks/LimitedNumber.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScopedValueRollback>
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
    HolesColumn,
    NoteColumn,
    ColumnCount,
};

QString KindOf(const AxGeoShape& shape)
{
    if (shape.kind == AxGeoShape::Area)
        return GeoImportBox::tr("Area");
    if (shape.kind == AxGeoShape::Line)
        return GeoImportBox::tr("Line, as a strip");
    return std::isnan(shape.radius) ? GeoImportBox::tr("Point")
                                    : GeoImportBox::tr("Circle, as a video block");
}
} // namespace

GeoImportBox::GeoImportBox(const AxGeoContent& found, const QString& file, QWidget* parent)
    : CAxBaseDialog(parent), shapes(found.shapes), list(new QTreeWidget)
{
    SetWindowTitle(tr("Import areas and lines"));
    SetBtnOKText(tr("Import"));
    const QString system = found.coordinateSystem.isEmpty() ? tr("not named") : found.coordinateSystem;
    auto* head = new QLabel(tr("%1: %2 shapes; coordinate system: %3")
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
    list->setHeaderLabels({tr("Name"), tr("Kind"), tr("Size"), tr("Vertices"), tr("Holes"), tr("Note")});
    QList<QTreeWidgetItem*> rows;
    for (const AxGeoShape& shape : qAsConst(shapes)) {
        auto* row = new QTreeWidgetItem(
            {shape.name, KindOf(shape), GeoBlocks::SizeOf(shape), QString::number(shape.points.size()),
             shape.holes.isEmpty() ? QString() : QString::number(shape.holes.size())});
        row->setToolTip(NameColumn, shape.name.toHtmlEscaped());
        row->setCheckState(NameColumn, Qt::Checked);
        rows += row;
    }
    list->addTopLevelItems(rows);
    constexpr int nameCharacters = 28;
    constexpr int shownRows = 12;
    const QFontMetrics letters = list->fontMetrics();
    for (int column = KindColumn; column < ColumnCount; ++column)
        list->resizeColumnToContents(column);
    list->setColumnWidth(NameColumn, letters.horizontalAdvance(QLatin1Char('0')) * nameCharacters);
    list->setColumnWidth(NoteColumn, letters.horizontalAdvance(QLatin1Char('0')) * nameCharacters);
    list->setMinimumSize(list->header()->length() + 2 * letters.height(), letters.height() * shownRows);
    FollowChoice();
}

void GeoImportBox::AddChoices()
{
    auto* form = new QFormLayout;
    if (std::any_of(shapes.begin(), shapes.end(),
                    [](const AxGeoShape& shape) { return !shape.holes.isEmpty(); })) {
        holes = new QComboBox;
        holes->addItems({tr("Fill the holes"), tr("Leave these areas out")});
        form->addRow(tr("A block has no holes. Areas with holes:"), holes);
        connect(holes, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
                &GeoImportBox::FollowChoice);
    }
    if (std::any_of(shapes.begin(), shapes.end(), &GeoBlocks::LacksWidth)) {
        const auto addWidth = [&](const QString& label, double metres) {
            auto* width = new LimitedNumber;
            width->setLocale(QLocale::c());
            width->setRange(3.0, 10000.0);
            width->setDecimals(1);
            width->setSuffix(tr(" m"));
            width->setValue(metres);
            form->addRow(label, width);
            return width;
        };
        left = addWidth(tr("Strips without widths, to the left:"), GeoChoice().leftWidth);
        right = addWidth(tr("To the right:"), GeoChoice().rightWidth);
    }
    ContentLayout()->addLayout(form);
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
    OKButton()->setEnabled(!Wanted().isEmpty());
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
        OKButton()->setEnabled(!Wanted().isEmpty());
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
    choice.areHolesFilled = !holes || holes->currentIndex() == 0;
    if (left) {
        choice.leftWidth = left->value();
        choice.rightWidth = right->value();
    }
    return choice;
}
