#include "interaction/marks/AxMarkDialog.h"
#include "interaction/marks/CAxOsgDrawPointSet.h"
#include "scene/AxScene.h"
#include "scene/AxViewerParts.h"

#include <AxAlgorthm/AxCoordinateSystem.h>
#include <AxBaseUI/CAxBaseDialog.h>

#include <QCoreApplication>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
constexpr int markDialogWidth = 380;
constexpr int noteLines = 4;

class AxMarkDialog : public CAxBaseDialog
{
    Q_DECLARE_TR_FUNCTIONS(AxMarkDialog)
public:
    AxMarkDialog(CAxOsgDrawPointSet& ofMarks, const AxProjectMark& ofMark, QWidget* parent);

protected slots:
    void slotBtnAcceptClicked() override;

private:
    QLineEdit* addLine(QFormLayout* form, const QString& title, const QString& text, const char* objectName);
    void refuse(QLineEdit* line, const QString& why);

    const QPointer<CAxOsgDrawPointSet> marks;
    const AxProjectMark mark;
    // The one that the coordinates are shown in reads them, whatever happens while the box is open.
    const AxCoordinateSystem system;
    QLineEdit* name;
    QLineEdit* place;
    QPlainTextEdit* note;
    QLabel* fault;
};

AxCoordinateSystem SystemOf(const CAxOsgDrawPointSet& marks)
{
    AxViewerParts* parts = marks.Parts();
    return parts ? parts->Scene().CoordinateSystem() : AxCoordinateSystem();
}

/// As the system reads it; where it has no numbers, in degrees that no system can take for its own.
QString PlaceIn(const AxCoordinateSystem& system, const AxProjectMark& mark)
{
    const bool hasNumbers = !system.IsOfProj() || system.FromPlace(mark.latitude, mark.longitude).reach !=
                                                      AxCoordinateSystem::Reach::Outside;
    return hasNumbers ? system.Line(mark.latitude, mark.longitude)
                      : AxCoordinateText::Write(mark.latitude, mark.longitude, AxCoordinateText::Form::Dms);
}

AxMarkDialog::AxMarkDialog(CAxOsgDrawPointSet& ofMarks, const AxProjectMark& ofMark, QWidget* parent)
    : CAxBaseDialog(parent), marks(&ofMarks), mark(ofMark), system(SystemOf(ofMarks)),
      note(new QPlainTextEdit), fault(new QLabel)
{
    SetWindowTitle(tr("Mark"));
    auto* form = new QFormLayout;
    name = addLine(form, tr("Name:"), mark.name, "MarkName");
    place = addLine(form, tr("Coordinates:"), PlaceIn(system, mark), "MarkPlace");
    const QString forms =
        tr("Latitude and longitude in degrees, also as degrees, minutes and seconds, UTM or MGRS");
    place->setToolTip(system.IsOfProj() ? forms + QLatin1Char('\n') +
                                              tr("Plain numbers are coordinates of %1").arg(system.Name())
                                        : forms);
    auto* height = new QLabel(tr("%1 m").arg(QString::number(mark.altitude, 'f', 1)));
    height->setObjectName(QStringLiteral("MarkHeight"));
    height->setTextInteractionFlags(Qt::TextSelectableByMouse);
    form->addRow(tr("Height of the ground:"), height);
    note->setObjectName(QStringLiteral("MarkNote"));
    note->setPlainText(mark.description);
    note->setTabChangesFocus(true);
    note->setFixedHeight(note->fontMetrics().lineSpacing() * noteLines + 12);
    form->addRow(tr("Note:"), note);
    ContentLayout()->addLayout(form);
    fault->setObjectName(QStringLiteral("m_pLabError")); // by which the dialog colours it
    fault->setTextFormat(Qt::PlainText);
    fault->setWordWrap(true);
    fault->hide();
    ContentLayout()->addWidget(fault);
    auto* remove = new QPushButton(tr("Delete mark"));
    remove->setObjectName(QStringLiteral("MarkDelete"));
    remove->setAutoDefault(false);
    ContentLayout()->addWidget(remove, 0, Qt::AlignLeft);
    QObject::connect(remove, &QPushButton::clicked, this, [this] {
        const QPointer<AxMarkDialog> self(this);
        if (marks)
            marks->RemoveMarks({mark.id});
        if (self)
            reject();
    });
    setMinimumWidth(markDialogWidth);
}

QLineEdit* AxMarkDialog::addLine(QFormLayout* form, const QString& title, const QString& text,
                                 const char* objectName)
{
    auto* line = new QLineEdit(text);
    line->setObjectName(QLatin1String(objectName));
    line->setCursorPosition(0);
    form->addRow(title, line);
    return line;
}

void AxMarkDialog::refuse(QLineEdit* line, const QString& why)
{
    fault->setText(why);
    fault->show();
    line->setFocus();
    line->selectAll();
}

void AxMarkDialog::slotBtnAcceptClicked()
{
    AxProjectMark wanted = mark;
    wanted.name = name->text();
    // The line edit shows a name from elsewhere in one line.
    if (!name->isModified())
        wanted.name = mark.name;
    wanted.description = note->document()->isModified() ? note->toPlainText() : mark.description;
    if (place->isModified()) {
        const AxCoordinateText::Typed typed = system.Read(place->text());
        if (!typed.place) {
            refuse(place, typed.fault);
            return;
        }
        wanted.longitude = typed.place->Lng();
        wanted.latitude = typed.place->Lat();
    }
    const QPointer<AxMarkDialog> self(this);
    QString why;
    const bool isTaken = !marks || marks->EditMark(wanted, &why);
    if (!self)
        return;
    if (isTaken)
        accept();
    else
        refuse(name, why);
}
} // namespace

void AxShowMarkDialog(CAxOsgDrawPointSet& marks, const QString& id, QWidget* parent)
{
    const AxProjectMark* mark = marks.Find(id);
    if (!mark)
        return;
    // On the heap, because its parent may be deleted while it is open.
    const QPointer<AxMarkDialog> dialog(new AxMarkDialog(marks, *mark, parent));
    dialog->exec();
    delete dialog;
}
