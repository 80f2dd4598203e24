// The key mapping and the small system services.
#include "platform/QKKeys.h"
#include "platform/QKSystem.h"

#include <gtest/gtest.h>
#include <thread>

TEST(KeysTest, QtKeysMapToTheirVirtualKeyCodes)
{
    EXPECT_EQ(QKVirtualKeyFromQt(Qt::Key_Space), 0x20u);
    EXPECT_EQ(QKVirtualKeyFromQt(Qt::Key_Left), 0x25u);
    EXPECT_EQ(QKVirtualKeyFromQt(Qt::Key_Up), 0x26u);
    EXPECT_EQ(QKVirtualKeyFromQt(Qt::Key_Right), 0x27u);
    EXPECT_EQ(QKVirtualKeyFromQt(Qt::Key_Down), 0x28u);
    EXPECT_EQ(QKVirtualKeyFromQt(Qt::Key_Escape), 0x1Bu);
    EXPECT_EQ(QKVirtualKeyFromQt(Qt::Key_Return), 0x0Du);
    EXPECT_EQ(QKVirtualKeyFromQt(Qt::Key_Enter, Qt::KeypadModifier), 0x0Du);
    EXPECT_EQ(QKVirtualKeyFromQt(Qt::Key_Tab), 0x09u);
    EXPECT_EQ(QKVirtualKeyFromQt(Qt::Key_Backtab, Qt::ShiftModifier), 0x09u);
    EXPECT_EQ(QKVirtualKeyFromQt(Qt::Key_F), 0x46u);
    EXPECT_EQ(QKVirtualKeyFromQt(Qt::Key_O, Qt::ShiftModifier), 0x4Fu);
    EXPECT_EQ(QKVirtualKeyFromQt(Qt::Key_F1), 0x70u);
    EXPECT_EQ(QKVirtualKeyFromQt(Qt::Key_F5), 0x74u);
    EXPECT_EQ(QKVirtualKeyFromQt(Qt::Key_F12), 0x7Bu);
    EXPECT_EQ(QKVirtualKeyFromQt(Qt::Key_7), 0x37u);
    EXPECT_EQ(QKVirtualKeyFromQt(Qt::Key_7, Qt::KeypadModifier), 0x67u);
    EXPECT_EQ(QKVirtualKeyFromQt(Qt::Key_Delete), 0x2Eu);
    EXPECT_EQ(QKVirtualKeyFromQt(Qt::Key_MediaTogglePlayPause), VK_MEDIA_PLAY_PAUSE);
    // Keys without a code reach nobody.
    EXPECT_EQ(QKVirtualKeyFromQt(Qt::Key_unknown), 0u);
    EXPECT_EQ(QKVirtualKeyFromQt(Qt::Key_Launch0), 0u);
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
