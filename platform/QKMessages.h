#pragma once
// The window-message numbers of the program.
//
// Hosts, controls and the engine speak to each other with numbered messages. Each number is
// fixed and unique, so a message reads the same wherever it is handled and a number seen in
// a log names one message only. Standard
// numbers come first, then the program's private ones. wParam and lParam of each private
// message are described where it is sent.
#include <cstdint>

// System messages.
inline constexpr uint32_t WM_DESTROY = 0x0002;
inline constexpr uint32_t WM_SIZE = 0x0005;
inline constexpr uint32_t WM_ACTIVATE = 0x0006;
inline constexpr uint32_t WM_PAINT = 0x000F;
inline constexpr uint32_t WM_CLOSE = 0x0010;
inline constexpr uint32_t WM_ERASEBKGND = 0x0014;
inline constexpr uint32_t WM_SHOWWINDOW = 0x0018;
inline constexpr uint32_t WM_KEYDOWN = 256;
inline constexpr uint32_t WM_KEYUP = 257;
inline constexpr uint32_t WM_CHAR = 258;
inline constexpr uint32_t WM_SYSKEYDOWN = 260;
inline constexpr uint32_t WM_SYSKEYUP = 261;
inline constexpr uint32_t WM_COMMAND = 273; // wParam: command id, lParam: 0
inline constexpr uint32_t WM_SYSCOMMAND = 274; // wParam: one of the SC_* values below
inline constexpr uint32_t WM_TIMER = 275; // wParam: timer number
inline constexpr uint32_t WM_MOUSEMOVE = 512;
inline constexpr uint32_t WM_LBUTTONDOWN = 513;
inline constexpr uint32_t WM_LBUTTONUP = 514;
inline constexpr uint32_t WM_LBUTTONDBLCLK = 515;
inline constexpr uint32_t WM_RBUTTONDOWN = 516;
inline constexpr uint32_t WM_RBUTTONUP = 517;
inline constexpr uint32_t WM_RBUTTONDBLCLK = 518;
inline constexpr uint32_t WM_MBUTTONDOWN = 519;
inline constexpr uint32_t WM_MBUTTONUP = 520;
inline constexpr uint32_t WM_MOUSEWHEEL = 522;
inline constexpr uint32_t WM_DROPFILES = 0x0233;
inline constexpr uint32_t WM_MOUSELEAVE = 675;

// WM_SYSCOMMAND values the main window sends itself.
inline constexpr uint32_t SC_MINIMIZE = 61472;
inline constexpr uint32_t SC_MAXIMIZE = 61488;
inline constexpr uint32_t SC_RESTORE = 61728;
inline constexpr uint32_t SC_CLOSE = 61536;

// Key and button flags of mouse messages (the keys argument of OnMouseMessage and
// OnMouseWheel).
inline constexpr uint32_t MK_LBUTTON = 0x0001;
inline constexpr uint32_t MK_RBUTTON = 0x0002;
inline constexpr uint32_t MK_SHIFT = 0x0004;
inline constexpr uint32_t MK_CONTROL = 0x0008;
inline constexpr uint32_t MK_MBUTTON = 0x0010;

// One notch of the wheel.
inline constexpr int WHEEL_DELTA = 120;

// The point that mouse-leave carries: outside every control.
inline constexpr int QK_LEAVE_POINT = -99;

// Private messages of the program.
inline constexpr uint32_t QKM_PLAYEND = 1524; // engine to main window, posted: end of media
inline constexpr uint32_t QKM_LISTMENU_B = 1915; // vertical list box, sent: item menu about to show (second mode)
inline constexpr uint32_t QKM_LISTMENUCMD_B = 1916; // vertical list box, sent: item menu command (second mode)
inline constexpr uint32_t QKM_LISTMENU_A = 1918; // vertical list box, sent: item menu about to show (first mode)
inline constexpr uint32_t QKM_LISTMENUCMD_A = 1919; // vertical list box, sent: item menu command (first mode)
inline constexpr uint32_t QKM_PAINTBACKGROUND = 1924; // manager to host, sent: wParam is the CQKGraphics* of the composition
inline constexpr uint32_t QKM_COMBOSELCHANGED = 2024; // combo popup to host, posted: control, index
inline constexpr uint32_t QKM_MENUBUTTONOPEN = 2025; // menu button, sent: control, popup menu
inline constexpr uint32_t QKM_MENUCOMMAND = 2026; // menu or colour button, sent: control, command id
inline constexpr uint32_t QKM_SLIDERCHANGED = 2027; // slider, posted: control, 1 for a drag step
inline constexpr uint32_t QKM_LISTACTIVATE = 2028; // vertical list box, posted: control, item
inline constexpr uint32_t QKM_LISTDRAG = 2029; // vertical list box, sent: control, selected index
inline constexpr uint32_t QKM_LISTDROP = 2030; // vertical list box, sent: control, selected index
inline constexpr uint32_t QKM_COLORPICKED = 2031; // colour button, sent: control, 0
inline constexpr uint32_t QKM_LISTSELCHANGED = 2032; // vertical list box, sent: control, index
inline constexpr uint32_t QKM_LISTCTRLCELLCHANGED = 2033; // list control, sent: control, column << 16 | row
inline constexpr uint32_t QKM_LISTCTRLCOMMAND = 2034; // list control, sent: control, command
inline constexpr uint32_t QKM_LISTCTRLSELCHANGED = 2036; // list control, sent: control, row
inline constexpr uint32_t QKM_LISTCONTEXTCMD = 2037; // vertical list box, posted: control, command
inline constexpr uint32_t QKM_LISTCONTEXTMENU = 2038; // vertical list box, sent: control, 1 on an item
inline constexpr uint32_t QKM_LISTCTRLBEFORECMD = 2045; // list control, sent: control, command
inline constexpr uint32_t QKM_LISTCTRLCHECK = 2046; // list control, sent: control, column
inline constexpr uint32_t QKM_LISTCTRLSWATCH = 2047; // list control, sent: control, column << 16 | row
inline constexpr uint32_t QKM_DESKTOPVOLUME = 2050; // desktop's media controls to main window, posted: 0, volume in 1/10000 of the scale
inline constexpr uint32_t QKM_WAKEUP = 35983; // second instance to first, posted: read the hand-off file

// Low and high 16 bits of a message argument.
inline constexpr uint32_t QKLoWord(uintptr_t v)
{
    return static_cast<uint32_t>(v & 0xFFFF);
}
inline constexpr uint32_t QKHiWord(uintptr_t v)
{
    return static_cast<uint32_t>((v >> 16) & 0xFFFF);
}
