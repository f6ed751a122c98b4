#pragma once

class QKeyEvent;

/**
 * The key that osg is told of for a key event: the first character of the
 * event's text; for a key without text (arrows, paging, function keys) osg's
 * own symbol of it, that of the keypad where the key is on the keypad; 0 for
 * modifiers and for keys that osg has no symbol of. Which keys have a text is
 * the platform's choice: Delete usually comes as the character 0x7f.
 */
int AxKeySymbol(const QKeyEvent& event);
