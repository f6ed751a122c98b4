#include "host/BlockMenu.h"
#include "host/BlockPanel.h"
#include "interaction/AxBlockOperations.h"
#include "interaction/CAxHandleAdapter.h"
#include "viewer/CAxEarthViewer.h"

#include <QInputDialog>
#include <QMessageBox>
#include <QPointer>

BlockMenu::BlockMenu(CAxEarthViewer* earthViewer, BlockPanel* panel, QWidget* parent)
    : QMenu(tr("&Block"), parent), viewer(earthViewer)
{
    const auto add = [this](QList<QAction*>& kind, const QString& text, const QString& tip, auto run) {
        QAction* action = addAction(text, this, run);
        action->setStatusTip(tip);
        kind += action;
        return action;
    };
    add(ofOne, tr("&Duplicate"), tr("A copy of the blocks beside them, without their tasks"), [this] {
        viewer->GetBlockOperations()->Duplicate(Chosen());
    })->setShortcut(QKeySequence(QStringLiteral("Ctrl+D")));
    add(ofOne, tr("&Split by a line"), tr("Clicks draw the line, a double click cuts the block along it"),
        [this] { viewer->GetBlockOperations()->BeginSplit(Chosen().value(0)); });
    add(ofSeveral, tr("&Unite"),
        tr("One block out of those that are selected; Ctrl and clicks select several"),
        [this] { viewer->GetBlockOperations()->Unite(Chosen()); });
    add(ofSeveral, tr("Su&btract the others"),
        tr("The block that was selected first without what the others cover"), [this] {
            const QStringList ids = Chosen();
            viewer->GetBlockOperations()->Subtract(ids.value(0), ids.mid(1));
        });
    addSeparator();
    add(ofOne, tr("&Grow or shrink..."), tr("By the same distance on all sides"), [this] {
        AskFor(tr("Grow or shrink"), tr("Distance (m), below 0 to shrink:"), 10.0, -10000.0, 10000.0,
               &BlockMenu::Buffer);
    });
    add(ofOne, tr("Si&mplify..."), tr("Leaves vertices out that hardly matter"), [this] {
        AskFor(tr("Simplify"), tr("Largest deviation (m):"), 1.0, 0.01, 10000.0, &BlockMenu::Simplify);
    });
    add(ofOne, tr("&Turn..."), tr("Around its middle"), [this] {
        AskFor(tr("Turn"), tr("Angle (degrees clockwise):"), 90.0, -360.0, 360.0, &BlockMenu::Turn);
    });
    add(ofOne, tr("&Change size..."), tr("From its middle"), [this] {
        AskFor(tr("Change size"), tr("Size (% of the present one):"), 100.0, 1.0, 10000.0, &BlockMenu::Scale);
    });
    connect(this, &QMenu::aboutToShow, this, &BlockMenu::EnableWhatIsPossible);
    // Keys are heard while the menu is closed, and the operations ask for themselves.
    connect(this, &QMenu::aboutToHide, this, [this] {
        for (QAction* action : ofOne + ofSeveral)
            action->setEnabled(true);
    });
    connect(panel, &BlockPanel::MenuAsked, this, [this](QMenu* menu) {
        menu->addSeparator();
        menu->addMenu(this);
    });
}

QStringList BlockMenu::Chosen() const
{
    QList<CAxHandleAdapter*> chosen = viewer->GetMultiSelectAdapter();
    if (chosen.isEmpty() && viewer->GetCurHandleAdapter())
        chosen += viewer->GetCurHandleAdapter();
    QStringList ids;
    for (const CAxHandleAdapter* object : qAsConst(chosen))
        if (object->GetContainedBlock())
            ids += object->GetHandleID();
    return ids;
}

void BlockMenu::EnableWhatIsPossible()
{
    const int count = Chosen().size();
    for (QAction* action : qAsConst(ofOne))
        action->setEnabled(count > 0);
    for (QAction* action : qAsConst(ofSeveral))
        action->setEnabled(count > 1);
}

void BlockMenu::AskFor(const QString& title, const QString& label, double value, double least, double most,
                       void (BlockMenu::*change)(const QString&, double))
{
    const QString id = Chosen().value(0);
    if (id.isEmpty())
        return;
    const QPointer<BlockMenu> self(this);
    QString text = QString::number(value);
    bool isTyped = true;
    // As a text: a field for numbers leaves a comma out, and 3,5 would become 35.
    while (isTyped) {
        text = QInputDialog::getText(parentWidget(), title, label, QLineEdit::Normal, text, &isTyped);
        if (!self || !isTyped)
            return;
        bool isNumber = false;
        const double typed = text.trimmed().toDouble(&isNumber);
        if (isNumber && typed >= least && typed <= most) {
            (this->*change)(id, typed);
            return;
        }
        QMessageBox::warning(
            parentWidget(), title,
            tr("\"%1\" is not a number between %2 and %3. Decimals are written with a point.")
                .arg(text, QString::number(least), QString::number(most)));
        if (!self)
            return;
    }
}

void BlockMenu::Buffer(const QString& id, double metres)
{
    viewer->GetBlockOperations()->Buffer(id, metres);
}

void BlockMenu::Simplify(const QString& id, double metres)
{
    viewer->GetBlockOperations()->Simplify(id, metres);
}

void BlockMenu::Turn(const QString& id, double degrees)
{
    viewer->GetBlockOperations()->Rotate(id, degrees);
}

void BlockMenu::Scale(const QString& id, double percent)
{
    constexpr double whole = 100.0;
    viewer->GetBlockOperations()->Scale(id, percent / whole);
}
