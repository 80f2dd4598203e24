#include "platform/QKKeys.h"

#include <QGuiApplication>

uint32_t QKVirtualKeyFromQt(int qtKey, Qt::KeyboardModifiers modifiers)
{
    const bool bKeypad = modifiers.testFlag(Qt::KeypadModifier);
    if (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9)
        return bKeypad ? VK_NUMPAD0 + static_cast<uint32_t>(qtKey - Qt::Key_0) : static_cast<uint32_t>(qtKey);
    // Qt reports letters by their upper-case code already, whatever Shift does.
    if (qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z)
        return static_cast<uint32_t>(qtKey);
    if (qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F24)
        return VK_F1 + static_cast<uint32_t>(qtKey - Qt::Key_F1);
    switch (qtKey) {
    case Qt::Key_Backspace:
        return VK_BACK;
    // Shift+Tab arrives as Backtab; it is the Tab key all the same.
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return VK_TAB;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return VK_RETURN;
    case Qt::Key_Shift:
        return VK_SHIFT;
    case Qt::Key_Control:
        return VK_CONTROL;
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
        return VK_MENU;
    case Qt::Key_Pause:
        return VK_PAUSE;
    case Qt::Key_CapsLock:
        return VK_CAPITAL;
    case Qt::Key_Escape:
        return VK_ESCAPE;
    case Qt::Key_Space:
        return VK_SPACE;
    case Qt::Key_PageUp:
        return VK_PRIOR;
    case Qt::Key_PageDown:
        return VK_NEXT;
    case Qt::Key_End:
        return VK_END;
    case Qt::Key_Home:
        return VK_HOME;
    case Qt::Key_Left:
        return VK_LEFT;
    case Qt::Key_Up:
        return VK_UP;
    case Qt::Key_Right:
        return VK_RIGHT;
    case Qt::Key_Down:
        return VK_DOWN;
    case Qt::Key_Insert:
        return VK_INSERT;
    case Qt::Key_Delete:
        return VK_DELETE;
    case Qt::Key_Asterisk:
        return bKeypad ? VK_MULTIPLY : 0;
    case Qt::Key_Plus:
        return bKeypad ? VK_ADD : 0xBB; // '=+' key
    case Qt::Key_Minus:
        return bKeypad ? VK_SUBTRACT : 0xBD;
    case Qt::Key_Period:
        return bKeypad ? VK_DECIMAL : 0xBE;
    case Qt::Key_Slash:
        return bKeypad ? VK_DIVIDE : 0xBF;
    case Qt::Key_Comma:
        return 0xBC;
    case Qt::Key_VolumeMute:
        return VK_VOLUME_MUTE;
    case Qt::Key_VolumeDown:
        return VK_VOLUME_DOWN;
    case Qt::Key_VolumeUp:
        return VK_VOLUME_UP;
    case Qt::Key_MediaNext:
        return VK_MEDIA_NEXT_TRACK;
    case Qt::Key_MediaPrevious:
        return VK_MEDIA_PREV_TRACK;
    case Qt::Key_MediaStop:
        return VK_MEDIA_STOP;
    case Qt::Key_MediaPlay:
    case Qt::Key_MediaPause:
    case Qt::Key_MediaTogglePlayPause:
        return VK_MEDIA_PLAY_PAUSE;
    default:
        return 0;
    }
}

uint32_t QKModifiersFromQt(Qt::KeyboardModifiers modifiers)
{
    uint32_t mods = 0;
    if (modifiers.testFlag(Qt::ShiftModifier))
        mods |= QKMOD_SHIFT;
    if (modifiers.testFlag(Qt::ControlModifier))
        mods |= QKMOD_CONTROL;
    if (modifiers.testFlag(Qt::AltModifier))
        mods |= QKMOD_ALT;
    return mods;
}

bool QKIsKeyDown(uint32_t vk)
{
    if (!QGuiApplication::instance())
        return false;
    switch (vk) {
    case VK_SHIFT:
        return QGuiApplication::queryKeyboardModifiers().testFlag(Qt::ShiftModifier);
    case VK_CONTROL:
        return QGuiApplication::queryKeyboardModifiers().testFlag(Qt::ControlModifier);
    case VK_MENU:
        return QGuiApplication::queryKeyboardModifiers().testFlag(Qt::AltModifier);
    case VK_LBUTTON:
        return QGuiApplication::mouseButtons().testFlag(Qt::LeftButton);
    case VK_RBUTTON:
        return QGuiApplication::mouseButtons().testFlag(Qt::RightButton);
    case VK_MBUTTON:
        return QGuiApplication::mouseButtons().testFlag(Qt::MiddleButton);
    default:
        return false;
    }
}
