// The skinned dialogs as real top-level windows under an X server: the message dialog's
// window, title, size and buttons, how each way of closing ends it, and the fade.
#include "ToolkitTestSupport.h"

#include "platform/QKKeys.h"
#include "platform/QKMessages.h"
#include "toolkit/CQKButton.h"
#include "toolkit/CQKDialogBase.h"
#include "toolkit/CQKMessageDlg.h"
#include "toolkit/CQKUIManager.h"
#include "toolkit/QKControlKinds.h"
#include "toolkit/QKTheme.h"

#include <QApplication>
#include <QProcess>
#include <QTimer>
#include <QWidget>
#include <gtest/gtest.h>

using namespace toolkittest;

namespace {

// Runs `step` on the dialog's window once a visible top-level window titled `title` is up;
// gives up (and lets the test fail) after five seconds.
void WhenShown(const QString& title, std::function<void(CQKHostWnd&)> step)
{
    auto* timer = new QTimer();
    auto tries = std::make_shared<int>(0);
    QObject::connect(timer, &QTimer::timeout, [timer, title, step, tries] {
        const bool bGiveUp = ++*tries > 250;
        for (QWidget* w : QApplication::topLevelWidgets()) {
            CQKHostWnd* host = CQKHostWnd::FromWidget(w);
            if (!host || !w->isVisible() || (w->windowTitle() != title && !bGiveUp))
                continue;
            timer->stop();
            timer->deleteLater();
            EXPECT_FALSE(bGiveUp) << "no window titled " << title.toStdString();
            if (bGiveUp)
                host->PostMessage(WM_COMMAND, 2, 0);
            else
                step(*host);
            return;
        }
    });
    timer->start(20);
}

// A key typed into the dialog.
void Type(CQKHostWnd& host, int qtKey)
{
    orbeltest::HostDriver(host).Key(qtKey);
}

CQKButton* Find(CQKHostWnd& host, uint32_t nID, uint32_t nKind)
{
    auto* ui = dynamic_cast<CQKUIHostWnd*>(&host);
    return ui && ui->Manager() ? ui->Manager()->FindControl(nID, nKind) : nullptr;
}

class DialogTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        app.WriteUtf8("skin/mainwnd.xml", QStringLiteral("<skin><font id=\"2\" size=\"13\" bold=\"1\"/><font id=\"6\" size=\"13\"/></skin>"));
    }
    AppFolder app;
};

// A dialog whose fade can be stepped by hand and whose alpha steps are recorded.
class FadeProbe : public CQKDialogBase
{
public:
    void Tick() { OnTimer(kFadeTimer); }
    void Start(int nValue) { ApplyAlpha(nValue); }
    std::vector<int> vecAlpha;

protected:
    void ApplyAlpha(int nNewAlpha) override
    {
        vecAlpha.push_back(nNewAlpha);
        CQKDialogBase::ApplyAlpha(nNewAlpha);
    }
};

} // namespace

TEST_F(DialogTest, MediaErrorIsATopLevelWindowTitledTipsThatEnterAndEscapeClose)
{
    g_UIColors.clrTitleBar = QKRGB(0, 0, 200);
    g_UIColors.clrFrame = QKRGB(0, 200, 0);
    QString found;
    QRect rc;
    QImage screen;
    bool bCancelShown = true;
    WhenShown(QStringLiteral("Tips"), [&](CQKHostWnd& host) {
        // The desktop sees it: the X server has a top-level window of that name.
        QProcess xdotool;
        xdotool.start(QStringLiteral("xdotool"), { QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--name"), QStringLiteral("^Tips$") });
        xdotool.waitForFinished(5000);
        found = QString::fromUtf8(xdotool.readAllStandardOutput()).trimmed();
        rc = host.GetWindowRect();
        host.InvalidateRect();
        host.UpdateWindow();
        screen = host.HostImage().copy();
        CQKButton* pCancel = Find(host, 2, QKKIND_TEXTBUTTON);
        bCancelShown = pCancel && pCancel->IsVisible();
        Type(host, Qt::Key_Return);
    });
    EXPECT_EQ(ShowMediaError(), 1) << "Enter";
    EXPECT_FALSE(found.isEmpty()) << "xdotool found no window named Tips";
    EXPECT_EQ(rc.width(), 474);
    EXPECT_GT(rc.height(), 100) << "one line of text above the buttons";
    EXPECT_LT(rc.height(), 130);
    EXPECT_FALSE(bCancelShown) << "type 0 shows OK alone";
    ASSERT_FALSE(screen.isNull());
    const int W = screen.width(), H = screen.height();
    EXPECT_LE(ColourDistance(PixelAt(screen, W / 2, 1), QColor(0, 0, 200)), 6) << "caption band";
    EXPECT_LE(ColourDistance(PixelAt(screen, 0, H / 2), QColor(0, 200, 0)), 2) << "frame";
    EXPECT_LE(ColourDistance(PixelAt(screen, W - 75 + 3, H - 30 + 2), QColor(88, 88, 88)), 5) << "OK's gradient top";
    EXPECT_FALSE(BoxOf(screen, FromBGR(g_clrText), 40, QRect(10, 40, W - 20, H - 100)).isEmpty()) << "the message";

    WhenShown(QStringLiteral("Tips"), [](CQKHostWnd& host) { Type(host, Qt::Key_Escape); });
    EXPECT_EQ(ShowMediaError(), 2) << "Escape";
}

TEST_F(DialogTest, ButtonsAndCrossGiveTheirResults)
{
    struct Case
    {
        uint32_t nType;
        QPoint ptFromBottomRight; // where to click, from the client's right and bottom
        bool bCross;
        int nResult;
    };
    // Yes (after the fade), No, the cross on a Yes and No dialog, Cancel, OK, and the cross
    // where an unknown type has no Cancel.
    const QPoint ptRight(-75 + 30, -30 + 10), ptLeft(-150 + 30, -30 + 10);
    const Case cases[] = { { 4, ptRight, false, 6 }, { 4, ptLeft, false, 7 }, { 4, QPoint(), true, 2 }, { 1, ptLeft, false, 2 }, { 1, ptRight, false, 1 }, { 9, ptLeft, true, 2 } };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "type " << c.nType << " result " << c.nResult);
        WhenShown(QStringLiteral("Question"), [&](CQKHostWnd& host) {
            const QRect rc = host.GetClientRect();
            // In the caption's last 25 pixels a press is no drag: it reaches the cross.
            const QPoint pt = c.bCross ? QPoint(rc.width() - 12, 12) : QPoint(rc.width(), rc.height()) + c.ptFromBottomRight;
            orbeltest::HostDriver(host).Click(pt);
        });
        EXPECT_EQ(ShowMessageTitled(QStringLiteral("Question"), QStringLiteral("Go on?"), c.nType), c.nResult);
    }
}

TEST_F(DialogTest, HeightFollowsTheTextAndLongTextWidens)
{
    for (const auto& [nChars, nWidth] : { std::pair { 0, 474 }, std::pair { 256, 474 }, std::pair { 257, 594 } }) {
        const QString text = QString(QStringLiteral("word ")).repeated(nChars / 5 + 1).left(nChars);
        CQKMessageDlg dlg(text, 0);
        QRect rc;
        QRectF measured;
        QRect rcText;
        WhenShown(QStringLiteral("Tips"), [&](CQKHostWnd& host) {
            rc = host.GetWindowRect();
            measured = dlg.MeasureMessage(text, QRectF(10, 40, rc.width() - 20, 500));
            if (CQKButton* p = Find(host, CQKMessageDlg::kTextID, QKKIND_STATIC))
                rcText = p->GetRect();
            Type(host, Qt::Key_Escape);
        });
        EXPECT_EQ(dlg.DoModal(), 2);
        EXPECT_EQ(rc.width(), nWidth) << nChars;
        if (nChars == 0) {
            EXPECT_EQ(rc.height(), 600) << "an empty text leaves the first height";
            continue;
        }
        EXPECT_GT(measured.height(), 30) << "several lines";
        EXPECT_EQ(rc.height(), static_cast<int>(measured.height()) + 100);
        EXPECT_EQ(rcText, QRect(10, 40, nWidth - 20, static_cast<int>(measured.height())));
    }
}

TEST_F(DialogTest, FadeInStepsAndFadeOutStartsFromTheCurrentAlpha)
{
    // Fading in: 50 a tick, held at 255, where the timer stops.
    FadeProbe in;
    std::vector<int> steps;
    bool bTimerAfter = true;
    WhenShown(QString(), [&](CQKHostWnd&) {
        in.KillTimer(CQKDialogBase::kFadeTimer);
        in.SetTimer(CQKDialogBase::kFadeTimer, 100000);
        in.vecAlpha.clear();
        for (int i = 0; i < 6; ++i)
            in.Tick();
        steps = in.vecAlpha;
        bTimerAfter = in.HasTimer(CQKDialogBase::kFadeTimer);
        in.PostMessage(WM_COMMAND, 1, 0);
    });
    EXPECT_EQ(in.DoModal(), 1);
    EXPECT_EQ(steps, (std::vector<int> { 50, 100, 150, 200, 250, 255 }));
    EXPECT_FALSE(bTimerAfter);

    // Closed at alpha 100: two steps down; closed at 0: none.
    for (int nTicks : { 2, 0 }) {
        FadeProbe early;
        WhenShown(QString(), [&](CQKHostWnd& host) {
            early.KillTimer(CQKDialogBase::kFadeTimer);
            early.Start(0);
            for (int i = 0; i < nTicks; ++i)
                early.Tick();
            early.vecAlpha.clear();
            Type(host, Qt::Key_Escape);
        });
        EXPECT_EQ(early.DoModal(), 2);
        const std::vector<int> expected = nTicks ? std::vector<int>({ 50, 0 }) : std::vector<int>();
        EXPECT_EQ(early.vecAlpha, expected) << nTicks << " ticks";
    }
}

TEST_F(DialogTest, CaptionDragsTheWindowButNotBelowIt)
{
    QPoint moved;
    QPoint movedAfter;
    WhenShown(QStringLiteral("Drag"), [&](CQKHostWnd& host) {
        const QPoint before = host.GetWindowRect().topLeft();
        orbeltest::HostDriver driver(host);
        // The pointer's path on the screen, given to the window in its client pixels of the
        // moment, as the window system does while the window follows.
        const QPoint start = host.ClientToScreen(QPoint(100, 10));
        driver.Press(QPoint(100, 10));
        driver.Move(host.ScreenToClient(start + QPoint(30, 20)));
        driver.Move(host.ScreenToClient(start + QPoint(50, 30)));
        driver.Release(host.ScreenToClient(start + QPoint(50, 30)));
        moved = host.GetWindowRect().topLeft() - before;
        driver.Press(QPoint(100, 80)); // below the caption: no drag
        driver.Move(QPoint(160, 120));
        driver.Release(QPoint(160, 120));
        movedAfter = host.GetWindowRect().topLeft() - before;
        Type(host, Qt::Key_Escape);
    });
    EXPECT_EQ(ShowMessageTitled(QStringLiteral("Drag"), QStringLiteral("Drag me"), 0), 2);
    EXPECT_EQ(moved, QPoint(50, 30));
    EXPECT_EQ(movedAfter, QPoint(50, 30)) << "a drag below the caption moves nothing";
}
