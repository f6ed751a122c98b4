#include "host/KeyHelp.h"

#include <QCoreApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QScreen>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {
struct Row
{
    const char* input;
    const char* effect;
};

struct Group
{
    const char* title;
    QList<Row> rows;
};

const QList<Group>& Groups()
{
    static const QList<Group> groups{
        {QT_TRANSLATE_NOOP("KeyHelp", "Moving the view"),
         {
             {QT_TRANSLATE_NOOP("KeyHelp", "Drag, left button"),
              QT_TRANSLATE_NOOP("KeyHelp", "Carries the ground along")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Drag, middle button; Ctrl and drag"),
              QT_TRANSLATE_NOOP("KeyHelp", "Turns and tilts")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Wheel; drag, right button"),
              QT_TRANSLATE_NOOP("KeyHelp", "Comes nearer or goes away")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Double click"), QT_TRANSLATE_NOOP("KeyHelp", "Flies there")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Arrows"),
              QT_TRANSLATE_NOOP("KeyHelp", "Move; with Ctrl turn and tilt")},
             {QT_TRANSLATE_NOOP("KeyHelp", "+, Page Up; -, Page Down"),
              QT_TRANSLATE_NOOP("KeyHelp", "Comes nearer; goes away")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Home"), QT_TRANSLATE_NOOP("KeyHelp", "Shows the whole globe")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Click on the compass"),
              QT_TRANSLATE_NOOP("KeyHelp", "North up, straight down")},
             {QT_TRANSLATE_NOOP("KeyHelp", "W; T; L; B; S"),
              QT_TRANSLATE_NOOP("KeyHelp", "For developers: wires, textures, light, back faces, figures of frames; "
                                           "pressed again they change back, W with the third time")},
         }},
        {QT_TRANSLATE_NOOP("KeyHelp", "Drawing a block"),
         {
             {QT_TRANSLATE_NOOP("KeyHelp", "Click"), QT_TRANSLATE_NOOP("KeyHelp", "Sets a corner")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Double click"),
              QT_TRANSLATE_NOOP("KeyHelp", "Sets the last corner and ends the drawing")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Drag"),
              QT_TRANSLATE_NOOP("KeyHelp", "Draws a rectangle from corner to corner")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Backspace"),
              QT_TRANSLATE_NOOP("KeyHelp", "Takes the last corner back")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Escape"), QT_TRANSLATE_NOOP("KeyHelp", "Gives the drawing up")},
         }},
        {QT_TRANSLATE_NOOP("KeyHelp", "Editing blocks"),
         {
             {QT_TRANSLATE_NOOP("KeyHelp", "Click"),
              QT_TRANSLATE_NOOP("KeyHelp", "Selects a block and shows its handles")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Ctrl and click"),
              QT_TRANSLATE_NOOP("KeyHelp", "Selects several")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Drag a handle"),
              QT_TRANSLATE_NOOP("KeyHelp", "Moves a corner; in the middle of an edge inserts one")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Drag a handle around the block"),
              QT_TRANSLATE_NOOP("KeyHelp", "Stretches it, with Shift in proportion; the blue one turns it")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Drag with \"Select and move\""),
              QT_TRANSLATE_NOOP("KeyHelp", "Moves the block, or all selected ones")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Ctrl and drag beside the blocks with \"Select and move\""),
              QT_TRANSLATE_NOOP("KeyHelp",
                                "Draws a frame; the blocks and marks that it meets are selected as well")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Double click"),
              QT_TRANSLATE_NOOP("KeyHelp", "Shows a block's name and area, or a corner's coordinates")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Delete"),
              QT_TRANSLATE_NOOP("KeyHelp", "Takes away the corner under the mouse, or else the block")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Escape"),
              QT_TRANSLATE_NOOP("KeyHelp", "Gives a drag up, or else leaves what is selected")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Ctrl+D"),
              QT_TRANSLATE_NOOP("KeyHelp", "Puts a copy of the blocks beside them")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Ctrl+Z; Ctrl+Shift+Z"),
              QT_TRANSLATE_NOOP("KeyHelp", "Takes an edit back; does it again")},
         }},
        {QT_TRANSLATE_NOOP("KeyHelp", "Measuring"),
         {
             {QT_TRANSLATE_NOOP("KeyHelp", "Ctrl+Shift+D; Ctrl+Shift+H"),
              QT_TRANSLATE_NOOP("KeyHelp", "Measures distances; height differences")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Ctrl+Shift+A; Ctrl+Shift+L; Ctrl+Shift+C"),
              QT_TRANSLATE_NOOP("KeyHelp", "Measures areas; planes of ground; coordinates")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Ctrl+G"),
              QT_TRANSLATE_NOOP("KeyHelp", "Goes to a coordinate that is typed")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Click; double click; Backspace"),
              QT_TRANSLATE_NOOP("KeyHelp", "Adds a point; the last one; takes one back")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Escape"),
              QT_TRANSLATE_NOOP("KeyHelp", "Gives the measurement up; pressed again, leaves the tool")},
         }},
        {QT_TRANSLATE_NOOP("KeyHelp", "Mark points"),
         {
             {QT_TRANSLATE_NOOP("KeyHelp", "Click with \"Mark points\""),
              QT_TRANSLATE_NOOP("KeyHelp", "Sets a mark; Escape puts the tool down")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Ctrl and click"),
              QT_TRANSLATE_NOOP("KeyHelp", "Selects several")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Drag"),
              QT_TRANSLATE_NOOP("KeyHelp", "Moves it; while browsing only the selected one")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Double click"),
              QT_TRANSLATE_NOOP("KeyHelp", "Shows coordinates, height, name and note")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Delete"),
              QT_TRANSLATE_NOOP("KeyHelp", "Deletes the mark under the mouse, or the selected ones")},
         }},
        {QT_TRANSLATE_NOOP("KeyHelp", "List of blocks"),
         {
             {QT_TRANSLATE_NOOP("KeyHelp", "Click; Enter"),
              QT_TRANSLATE_NOOP("KeyHelp", "Flies to the block; Enter to all chosen ones")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Ctrl or Shift and click; Ctrl+A; Escape"),
              QT_TRANSLATE_NOOP("KeyHelp", "Selects several, on the map as well; all; none")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Double click; F2"), QT_TRANSLATE_NOOP("KeyHelp", "Renames it")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Delete"), QT_TRANSLATE_NOOP("KeyHelp", "Deletes it")},
         }},
        {QT_TRANSLATE_NOOP("KeyHelp", "Window"),
         {
             {QT_TRANSLATE_NOOP("KeyHelp", "Ctrl+N; Ctrl+O"),
              QT_TRANSLATE_NOOP("KeyHelp", "Begins a project; opens one")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Ctrl+S; Ctrl+Shift+S"),
              QT_TRANSLATE_NOOP("KeyHelp", "Saves the project; under another name")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Ctrl+Shift+P"), QT_TRANSLATE_NOOP("KeyHelp", "Saves a picture")},
             {QT_TRANSLATE_NOOP("KeyHelp", "F1"), QT_TRANSLATE_NOOP("KeyHelp", "Shows this list")},
             {QT_TRANSLATE_NOOP("KeyHelp", "Ctrl+Q"), QT_TRANSLATE_NOOP("KeyHelp", "Quits")},
         }},
    };
    return groups;
}

QString Tr(const char* text)
{
    return QCoreApplication::translate("KeyHelp", text);
}

// All its rows and columns are to be seen, where the screen is large enough.
QSize RoomFor(const QAbstractItemView& list, const QWidget& window)
{
    constexpr int aroundColumns = 100;
    constexpr int usualHeight = 640;
    const QSize room(list.sizeHintForColumn(0) + list.sizeHintForColumn(1) + aroundColumns, usualHeight);
    return room.boundedTo(window.screen()->availableSize() - QSize(40, 80));
}

QTreeWidget* MakeList()
{
    auto* list = new QTreeWidget;
    list->setObjectName(QStringLiteral("KeyHelpList"));
    list->setHeaderLabels(
        {Tr(QT_TRANSLATE_NOOP("KeyHelp", "Mouse or key")), Tr(QT_TRANSLATE_NOOP("KeyHelp", "What it does"))});
    list->setRootIsDecorated(false);
    list->setItemsExpandable(false);
    list->setSelectionMode(QAbstractItemView::NoSelection);
    for (const Group& group : Groups()) {
        auto* title = new QTreeWidgetItem(list, {Tr(group.title)});
        QFont bold = list->font();
        bold.setBold(true);
        title->setFont(0, bold);
        title->setFirstColumnSpanned(true);
        for (const Row& row : group.rows)
            new QTreeWidgetItem(title, {Tr(row.input), Tr(row.effect)});
    }
    list->expandAll();
    list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    return list;
}
} // namespace

void ShowKeyHelp(QWidget* parent)
{
    auto* help = parent->findChild<QDialog*>(QStringLiteral("KeyHelp"), Qt::FindDirectChildrenOnly);
    if (!help) {
        help = new QDialog(parent);
        help->setObjectName(QStringLiteral("KeyHelp"));
        help->setWindowTitle(Tr(QT_TRANSLATE_NOOP("KeyHelp", "Mouse and keys")));
        help->setWindowFlag(Qt::WindowContextHelpButtonHint, false);
        auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
        QObject::connect(buttons, &QDialogButtonBox::rejected, help, &QDialog::reject);
        auto* column = new QVBoxLayout(help);
        QTreeWidget* const list = MakeList();
        column->addWidget(list, 1);
        column->addWidget(buttons);
        help->resize(RoomFor(*list, *parent));
    }
    help->show();
    help->raise();
    help->activateWindow();
}
