// The key mapping and the small system services.
#include "platform/QKKeys.h"
#include "platform/QKSystem.h"

#include <gtest/gtest.h>
#include <thread>

TEST(KeysTest, QtKeysMapToTheirVirtualKeyCodes)
{
    // Keys without a code reach nobody.
    const struct
    {
        int key;
        Qt::KeyboardModifiers mods;
        uint32_t vk;
    } cases[] = { { Qt::Key_Space, {}, 0x20 }, { Qt::Key_Left, {}, 0x25 }, { Qt::Key_Up, {}, 0x26 }, { Qt::Key_Right, {}, 0x27 }, { Qt::Key_Down, {}, 0x28 },
        { Qt::Key_Escape, {}, 0x1B }, { Qt::Key_Return, {}, 0x0D }, { Qt::Key_Enter, Qt::KeypadModifier, 0x0D }, { Qt::Key_Tab, {}, 0x09 },
        { Qt::Key_Backtab, Qt::ShiftModifier, 0x09 }, { Qt::Key_F, {}, 0x46 }, { Qt::Key_O, Qt::ShiftModifier, 0x4F }, { Qt::Key_F1, {}, 0x70 },
        { Qt::Key_F5, {}, 0x74 }, { Qt::Key_F12, {}, 0x7B }, { Qt::Key_7, {}, 0x37 }, { Qt::Key_7, Qt::KeypadModifier, 0x67 }, { Qt::Key_Delete, {}, 0x2E },
        { Qt::Key_MediaTogglePlayPause, {}, VK_MEDIA_PLAY_PAUSE }, { Qt::Key_unknown, {}, 0 }, { Qt::Key_Launch0, {}, 0 } };
    for (const auto& c : cases)
        EXPECT_EQ(QKVirtualKeyFromQt(c.key, c.mods), c.vk) << "key " << std::hex << c.key;
}

TEST(KeysTest, ModifiersBecomeAcceleratorFlags)
{
    EXPECT_EQ(QKModifiersFromQt(Qt::NoModifier), 0u);
    EXPECT_EQ(QKModifiersFromQt(Qt::ControlModifier), QKMOD_CONTROL);
    EXPECT_EQ(QKModifiersFromQt(Qt::ControlModifier | Qt::ShiftModifier | Qt::AltModifier), QKMOD_CONTROL | QKMOD_SHIFT | QKMOD_ALT);
    // The keypad is not a modifier of accelerators.
    EXPECT_EQ(QKModifiersFromQt(Qt::KeypadModifier), 0u);
    // Nothing is held in a test run.
    EXPECT_FALSE(QKIsKeyDown(VK_CONTROL));
    EXPECT_FALSE(QKIsKeyDown(VK_LBUTTON));
    EXPECT_FALSE(QKIsKeyDown(0x41));
}

TEST(SystemTest, TickCountIsMonotonicMilliseconds)
{
    const uint64_t t0 = QKGetTickCount();
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    const uint64_t t1 = QKGetTickCount();
    EXPECT_GE(t1 - t0, 29u);
    EXPECT_LT(t1 - t0, 2000u);
}
