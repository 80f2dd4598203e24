#pragma once
// Virtual-key codes and the one place where Qt's keys become them.
//
// Keyboard handling in the program (accelerators, PreTranslateKey of hosts and controls)
// speaks in virtual-key codes. A Qt key event is mapped here once, so a letter is its upper
// case ASCII code whatever the layout's shift state, a digit is its ASCII code, and the named
// keys have their fixed numbers. Keys without a code map to 0 and reach nobody.
#include <QtCore/qnamespace.h>
#include <cstdint>

inline constexpr uint32_t VK_LBUTTON = 0x01;
inline constexpr uint32_t VK_RBUTTON = 0x02;
inline constexpr uint32_t VK_MBUTTON = 0x04;
inline constexpr uint32_t VK_BACK = 0x08;
inline constexpr uint32_t VK_TAB = 0x09;
inline constexpr uint32_t VK_RETURN = 0x0D;
inline constexpr uint32_t VK_SHIFT = 0x10;
inline constexpr uint32_t VK_CONTROL = 0x11;
inline constexpr uint32_t VK_MENU = 0x12; // Alt
inline constexpr uint32_t VK_PAUSE = 0x13;
inline constexpr uint32_t VK_CAPITAL = 0x14;
inline constexpr uint32_t VK_ESCAPE = 0x1B;
inline constexpr uint32_t VK_SPACE = 0x20;
inline constexpr uint32_t VK_PRIOR = 0x21; // Page Up
inline constexpr uint32_t VK_NEXT = 0x22; // Page Down
inline constexpr uint32_t VK_END = 0x23;
inline constexpr uint32_t VK_HOME = 0x24;
inline constexpr uint32_t VK_LEFT = 0x25;
inline constexpr uint32_t VK_UP = 0x26;
inline constexpr uint32_t VK_RIGHT = 0x27;
inline constexpr uint32_t VK_DOWN = 0x28;
inline constexpr uint32_t VK_INSERT = 0x2D;
inline constexpr uint32_t VK_DELETE = 0x2E;
// '0'..'9' are 0x30..0x39 and 'A'..'Z' are 0x41..0x5A.
inline constexpr uint32_t VK_NUMPAD0 = 0x60;
inline constexpr uint32_t VK_MULTIPLY = 0x6A;
inline constexpr uint32_t VK_ADD = 0x6B;
inline constexpr uint32_t VK_SUBTRACT = 0x6D;
inline constexpr uint32_t VK_DECIMAL = 0x6E;
inline constexpr uint32_t VK_DIVIDE = 0x6F;
inline constexpr uint32_t VK_F1 = 0x70; // F1..F24 are 0x70..0x87
inline constexpr uint32_t VK_F2 = 0x71;
inline constexpr uint32_t VK_F3 = 0x72;
inline constexpr uint32_t VK_F4 = 0x73;
inline constexpr uint32_t VK_F5 = 0x74;
inline constexpr uint32_t VK_F12 = 0x7B;
inline constexpr uint32_t VK_VOLUME_MUTE = 0xAD;
inline constexpr uint32_t VK_VOLUME_DOWN = 0xAE;
inline constexpr uint32_t VK_VOLUME_UP = 0xAF;
inline constexpr uint32_t VK_MEDIA_NEXT_TRACK = 0xB0;
inline constexpr uint32_t VK_MEDIA_PREV_TRACK = 0xB1;
inline constexpr uint32_t VK_MEDIA_STOP = 0xB2;
inline constexpr uint32_t VK_MEDIA_PLAY_PAUSE = 0xB3;

// Modifier flags of key messages and accelerator entries (the accelerator table's own bits).
inline constexpr uint32_t QKMOD_SHIFT = 0x04;
inline constexpr uint32_t QKMOD_CONTROL = 0x08;
inline constexpr uint32_t QKMOD_ALT = 0x10;

// The virtual-key code of a Qt key (Qt::Key value), 0 when it has none. A keypad flag in
// `modifiers` turns digits and operators into the keypad codes.
uint32_t QKVirtualKeyFromQt(int qtKey, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

// QKMOD_* flags of Qt's modifiers.
uint32_t QKModifiersFromQt(Qt::KeyboardModifiers modifiers);

// Whether a key or mouse button is down now, for VK_SHIFT, VK_CONTROL, VK_MENU, VK_LBUTTON,
// VK_RBUTTON and VK_MBUTTON (the state the window system reports at this moment). Other codes
// read as up.
bool QKIsKeyDown(uint32_t vk);
