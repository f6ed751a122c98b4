#include "viewer/AxKeySymbols.h"

#include <osgGA/GUIEventAdapter>

#include <QKeyEvent>

#include <algorithm>
#include <iterator>

namespace {
using Adapter = osgGA::GUIEventAdapter;

struct Symbol
{
    int qtKey;
    int key;
    int padKey;
};

// Keys that are not on a keypad have the same symbol twice.
constexpr Symbol symbols[] = {
    {Qt::Key_Left, Adapter::KEY_Left, Adapter::KEY_KP_Left},
    {Qt::Key_Right, Adapter::KEY_Right, Adapter::KEY_KP_Right},
    {Qt::Key_Up, Adapter::KEY_Up, Adapter::KEY_KP_Up},
    {Qt::Key_Down, Adapter::KEY_Down, Adapter::KEY_KP_Down},
    {Qt::Key_Home, Adapter::KEY_Home, Adapter::KEY_KP_Home},
    {Qt::Key_End, Adapter::KEY_End, Adapter::KEY_KP_End},
    {Qt::Key_PageUp, Adapter::KEY_Page_Up, Adapter::KEY_KP_Page_Up},
    {Qt::Key_PageDown, Adapter::KEY_Page_Down, Adapter::KEY_KP_Page_Down},
    {Qt::Key_Insert, Adapter::KEY_Insert, Adapter::KEY_KP_Insert},
    {Qt::Key_Delete, Adapter::KEY_Delete, Adapter::KEY_KP_Delete},
    {Qt::Key_Clear, Adapter::KEY_Clear, Adapter::KEY_KP_Begin},
    {Qt::Key_Enter, Adapter::KEY_KP_Enter, Adapter::KEY_KP_Enter},
    {Qt::Key_Return, Adapter::KEY_Return, Adapter::KEY_Return},
    {Qt::Key_Escape, Adapter::KEY_Escape, Adapter::KEY_Escape},
    {Qt::Key_Backspace, Adapter::KEY_BackSpace, Adapter::KEY_BackSpace},
    {Qt::Key_Pause, Adapter::KEY_Pause, Adapter::KEY_Pause},
    {Qt::Key_Print, Adapter::KEY_Print, Adapter::KEY_Print},
    {Qt::Key_Menu, Adapter::KEY_Menu, Adapter::KEY_Menu},
    {Qt::Key_Help, Adapter::KEY_Help, Adapter::KEY_Help},
};
} // namespace

int AxKeySymbol(const QKeyEvent& event)
{
    if (!event.text().isEmpty())
        return event.text().at(0).unicode();
    if (event.key() >= Qt::Key_F1 && event.key() <= Qt::Key_F35)
        return Adapter::KEY_F1 + (event.key() - Qt::Key_F1);
    const auto found = std::find_if(std::begin(symbols), std::end(symbols),
                                    [&event](const Symbol& symbol) { return symbol.qtKey == event.key(); });
    if (found == std::end(symbols))
        return 0;
    return event.modifiers() & Qt::KeypadModifier ? found->padKey : found->key;
}
