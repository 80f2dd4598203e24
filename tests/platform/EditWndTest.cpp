// The real text field over a host: text, typing through the host's keys, digits-only,
// selection, colours, focus loss, and its lifetime against the host's.
#include "platform/CQKEditWnd.h"
#include "platform/QKKeys.h"
#include "platform/QKMessages.h"
#include "support/HostDriver.h"
#include "support/HostRecorder.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QWidget>
#include <gtest/gtest.h>

using orbeltest::HostDriver;
using orbeltest::HostRecorder;

namespace {

class EditWndTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(host.CreateShown(QRect(100, 100, 200, 120)));
        host.SetForegroundWindow();
        HostDriver::Pump(10);
    }
    // Focuses the field and waits until it has the keys.
    void Focus(CQKEditWnd& edit)
    {
        edit.SetFocus();
        ASSERT_TRUE(HostDriver::WaitFor([&] { return edit.HasFocus(); }));
    }
    HostRecorder host;
    HostDriver driver { host };
};

// The selection as start and end.
std::pair<int, int> Sel(CQKEditWnd& edit)
{
    int s = -1, e = -1;
    edit.GetSel(s, e);
    return { s, e };
}

} // namespace

TEST_F(EditWndTest, TypedTextReachesTheFieldAndOnlyTypingReportsAChange)
{
    CQKEditWnd edit;
    ASSERT_TRUE(edit.Create(&host, QRect(10, 10, 120, 20)));
    EXPECT_FALSE(edit.Create(&host, QRect(10, 10, 120, 20)));
    int changes = 0;
    edit.onChange = [&] { ++changes; };
    edit.SetText(QStringLiteral("ab"));
    EXPECT_EQ(changes, 0);
    Focus(edit);
    edit.SetSel(2, 2);
    driver.Key(Qt::Key_C);
    driver.Key(Qt::Key_D, Qt::ShiftModifier);
    EXPECT_EQ(edit.GetText(), QStringLiteral("abcD"));
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(edit.GetRect(), QRect(10, 10, 120, 20));
    // The host's accelerators still work while the field has the keys.
    host.SetAccelerators({ { QKMOD_CONTROL, 0x4F, 26 } });
    driver.Key(Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(host.Commands(), std::vector<uint32_t>({ 26 }));
}

TEST_F(EditWndTest, DigitsOnlyFieldRefusesLetters)
{
    CQKEditWnd edit;
    ASSERT_TRUE(edit.Create(&host, QRect(10, 10, 120, 20), QKES_NUMBER | QKES_CENTER));
    Focus(edit);
    driver.Key(Qt::Key_1);
    driver.Key(Qt::Key_X);
    driver.Key(Qt::Key_2);
    EXPECT_EQ(edit.GetText(), QStringLiteral("12"));
    EXPECT_EQ(static_cast<QLineEdit*>(edit.NativeWidget())->alignment() & Qt::AlignHCenter, Qt::AlignHCenter);
}

TEST_F(EditWndTest, SelectionIsSetAndReadInCharacters)
{
    CQKEditWnd edit;
    ASSERT_TRUE(edit.Create(&host, QRect(10, 10, 120, 20)));
    edit.SetText(QStringLiteral("hello world"));
    edit.SetSel(6, 11);
    EXPECT_EQ(Sel(edit), std::make_pair(6, 11));
    edit.SetSel(0, 65535); // past the end: to the end
    EXPECT_EQ(Sel(edit), std::make_pair(0, 11));
    edit.SetSel(20, 30); // both past the end: an empty selection at the end
    EXPECT_EQ(Sel(edit), std::make_pair(11, 11));
    // Replacing the selection by typing.
    Focus(edit);
    edit.SetSel(0, 5);
    driver.Key(Qt::Key_J);
    EXPECT_EQ(edit.GetText(), QStringLiteral("j world"));
}

TEST_F(EditWndTest, CaretGoesWhereAClickWouldPutIt)
{
    CQKEditWnd edit;
    ASSERT_TRUE(edit.Create(&host, QRect(10, 10, 150, 20)));
    edit.SetFont(QStringLiteral("Arial"), 13);
    edit.SetText(QStringLiteral("0123456789"));
    edit.SetCaretAt(QPoint(5, 15)); // left of the field: the start
    EXPECT_EQ(Sel(edit).first, 0);
    edit.SetCaretAt(QPoint(400, 15)); // right of it: the end
    EXPECT_EQ(Sel(edit).first, 10);
    edit.SetCaretAt(QPoint(10 + 150 / 4, 15)); // inside: somewhere between
    EXPECT_GT(Sel(edit).first, 0);
    EXPECT_LT(Sel(edit).first, 10);
}

TEST_F(EditWndTest, FocusLossIsReportedAndTheOwnerMayEndTheFieldThere)
{
    CQKEditWnd edit;
    ASSERT_TRUE(edit.Create(&host, QRect(10, 10, 120, 20)));
    QString committed;
    edit.onKillFocus = [&] {
        committed = edit.GetText();
        edit.DestroyWindow();
    };
    Focus(edit);
    driver.Key(Qt::Key_Q);
    host.SetFocus(); // a click elsewhere in the host takes the focus
    ASSERT_TRUE(HostDriver::WaitFor([&] { return !edit.IsWindow(); }));
    EXPECT_EQ(committed, QStringLiteral("q"));
    HostDriver::Pump(10);
    EXPECT_EQ(edit.GetText(), QString());
}

TEST_F(EditWndTest, KeysAndContextMenuCanBeTakenByTheOwner)
{
    CQKEditWnd edit;
    ASSERT_TRUE(edit.Create(&host, QRect(10, 10, 120, 20)));
    std::vector<uint32_t> keys;
    edit.onKeyDown = [&](uint32_t vk, uint32_t) {
        keys.push_back(vk);
        return vk == VK_DELETE;
    };
    edit.SetText(QStringLiteral("abc"));
    Focus(edit);
    edit.SetSel(0, 0);
    driver.Key(Qt::Key_Delete); // taken: nothing deleted
    EXPECT_EQ(edit.GetText(), QStringLiteral("abc"));
    driver.Key(Qt::Key_Backspace);
    EXPECT_EQ(keys, std::vector<uint32_t>({ VK_DELETE, VK_BACK }));

    QPoint menuAt;
    edit.onContextMenu = [&](QPoint pt) {
        menuAt = pt;
        return true;
    };
    emit edit.NativeWidget()->customContextMenuRequested(QPoint(3, 4));
    EXPECT_EQ(menuAt, QPoint(100 + 10 + 3, 100 + 10 + 4));
}

TEST_F(EditWndTest, MultiLineFieldTakesLineBreaks)
{
    CQKEditWnd edit;
    ASSERT_TRUE(edit.Create(&host, QRect(10, 10, 150, 60), QKES_MULTILINE));
    ASSERT_NE(qobject_cast<QPlainTextEdit*>(edit.NativeWidget()), nullptr);
    int changes = 0;
    edit.onChange = [&] { ++changes; };
    edit.SetText(QStringLiteral("one"));
    EXPECT_EQ(changes, 0);
    Focus(edit);
    edit.SetSel(3, 3);
    driver.Key(Qt::Key_Return);
    driver.Key(Qt::Key_T);
    EXPECT_EQ(edit.GetText(), QStringLiteral("one\nt"));
    EXPECT_EQ(changes, 2);
}

TEST(EditWndLifetimeTest, FieldGoesWithItsHostWindow)
{
    HostRecorder host;
    ASSERT_TRUE(host.CreateShown(QRect(100, 100, 100, 50)));
    CQKEditWnd edit;
    EXPECT_FALSE(edit.Create(nullptr, QRect(0, 0, 10, 10)));
    ASSERT_TRUE(edit.Create(&host, QRect(5, 5, 50, 20)));
    edit.SetText(QStringLiteral("x"));
    host.DestroyWindow();
    EXPECT_FALSE(edit.IsWindow());
    // Everything on a gone field is a quiet no-op.
    edit.SetText(QStringLiteral("y"));
    EXPECT_EQ(edit.GetText(), QString());
    edit.SetSel(0, 1);
    edit.Paste();
    edit.DestroyWindow();
}
