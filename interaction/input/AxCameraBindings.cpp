#include "interaction/input/AxCameraBindings.h"

using Manipulator = osgEarth::Util::EarthManipulator;
using Event = osgGA::GUIEventAdapter;

namespace {
constexpr double nearer = 0.4;
constexpr double farther = 2.5;
constexpr double flightSeconds = 1.0;

void BindMouse(Manipulator::Settings& settings)
{
    // The grabbed place stays under the cursor.
    settings.bindMouse(Manipulator::ACTION_EARTH_DRAG, Event::LEFT_MOUSE_BUTTON);
    settings.bindMouse(Manipulator::ACTION_ROTATE, Event::MIDDLE_MOUSE_BUTTON);
    settings.bindMouse(Manipulator::ACTION_ROTATE, Event::LEFT_MOUSE_BUTTON | Event::RIGHT_MOUSE_BUTTON);
    settings.bindMouse(Manipulator::ACTION_ROTATE, Event::LEFT_MOUSE_BUTTON, Event::MODKEY_CTRL);
    settings.bindMouse(Manipulator::ACTION_ZOOM, Event::RIGHT_MOUSE_BUTTON);
    // The viewer reports a wheel turned forward as SCROLL_DOWN.
    settings.bindScroll(Manipulator::ACTION_ZOOM_IN, Event::SCROLL_DOWN);
    settings.bindScroll(Manipulator::ACTION_ZOOM_OUT, Event::SCROLL_UP);

    const struct
    {
        int button;
        int modifiers;
        double rangeFactor;
    } flights[] = {{Event::LEFT_MOUSE_BUTTON, 0, nearer},
                   {Event::LEFT_MOUSE_BUTTON, Event::MODKEY_CTRL, farther},
                   {Event::RIGHT_MOUSE_BUTTON, 0, farther}};
    for (const auto& flight : flights) {
        Manipulator::ActionOptions options;
        options.add(Manipulator::OPTION_GOTO_RANGE_FACTOR, flight.rangeFactor);
        options.add(Manipulator::OPTION_DURATION, flightSeconds);
        settings.bindMouseDoubleClick(Manipulator::ACTION_GOTO, flight.button, flight.modifiers, options);
    }
}

void BindKeys(Manipulator::Settings& settings)
{
    Manipulator::ActionOptions held;
    held.add(Manipulator::OPTION_CONTINUOUS, true);
    const struct
    {
        int key;
        int padKey;
        Manipulator::ActionType plain;
        Manipulator::ActionType withCtrl;
    } arrows[] = {
        {Event::KEY_Left, Event::KEY_KP_Left, Manipulator::ACTION_PAN_LEFT, Manipulator::ACTION_ROTATE_LEFT},
        {Event::KEY_Right, Event::KEY_KP_Right, Manipulator::ACTION_PAN_RIGHT,
         Manipulator::ACTION_ROTATE_RIGHT},
        {Event::KEY_Up, Event::KEY_KP_Up, Manipulator::ACTION_PAN_UP, Manipulator::ACTION_ROTATE_UP},
        {Event::KEY_Down, Event::KEY_KP_Down, Manipulator::ACTION_PAN_DOWN, Manipulator::ACTION_ROTATE_DOWN}};
    for (const auto& arrow : arrows)
        for (const int key : {arrow.key, arrow.padKey}) {
            settings.bindKey(arrow.plain, key, 0, held);
            settings.bindKey(arrow.withCtrl, key, Event::MODKEY_CTRL, held);
        }
    for (const int key : {+Event::KEY_Plus, +Event::KEY_Equals, +Event::KEY_KP_Add, +Event::KEY_Page_Up,
                          +Event::KEY_KP_Page_Up})
        settings.bindKey(Manipulator::ACTION_ZOOM_IN, key, 0, held);
    settings.bindKey(Manipulator::ACTION_ZOOM_IN, Event::KEY_Plus, Event::MODKEY_SHIFT, held);
    for (const int key :
         {+Event::KEY_Minus, +Event::KEY_KP_Subtract, +Event::KEY_Page_Down, +Event::KEY_KP_Page_Down})
        settings.bindKey(Manipulator::ACTION_ZOOM_OUT, key, 0, held);
    for (const int key : {+Event::KEY_Home, +Event::KEY_KP_Home, +Event::KEY_Space})
        settings.bindKey(Manipulator::ACTION_HOME, key);
}
} // namespace

void AxBindCamera(Manipulator::Settings& settings)
{
    BindMouse(settings);
    BindKeys(settings);
}
