// The main window's hand-made frame. The window has no frame of the system, so everything a
// frame gives is done here: the painting of the ground, the title icon and caption, the outline
// and the video area; moving the window by its title strip; the eight resize grips; and
// maximising to the work area of the window's screen.
//
// Left button in the client area:
//
//   press on                       | what starts
//   -------------------------------+---------------------------------------------------------
//   title strip, no control, no    | a move once the pointer has gone 3 pixels: the window
//   grip, normal window            | system's (StartSystemMove); where no window manager
//                                  | takes it, the window follows the pointer itself
//   a grip (normal window only)    | a resize: the grip arithmetic under a capture where the
//                                  | program may place its windows, else the system's resize
//   anything else                  | the press goes to the controls
//   double click on the title      | maximise, or restore when maximised (not in the right
//   strip                          | 76 pixels, which hold the window buttons); in full
//                                  | screen, back to the window
//   double click on the video      | full screen, or back; without a picture anywhere in the
//                                  | video area (the video surface takes no input itself)
//
// A release ends a move or resize of our own and drops the capture.
#include "player/CQKPlayerDlg.h"

#include "platform/CQKGraphics.h"
#include "platform/CQKGraphicsPath.h"
#include "platform/CQKPlayWnd.h"
#include "platform/QKAppFolder.h"
#include "platform/QKMessages.h"
#include "player/QKFrameGrips.h"
#include "toolkit/CQKButton.h"
#include "toolkit/CQKUIManager.h"
#include "toolkit/QKTheme.h"

#include <QImageReader>
#include <initializer_list>
#include <utility>

namespace {

// Buttons are kind 0 and sliders kind 11 in the manager's list.
constexpr uint32_t kKindButton = 0;
constexpr uint32_t kKindSlider = 11;

// Draws the note three times, a faint small one and a middling one to the right of the large,
// nearly solid one; all in whole pixels, divisions cut toward zero.
void PaintAudioNote(CQKGraphics* pGraphics, const QImage& note, const QRect& rcVideo)
{
    const int iw = QKImageSize(note).width();
    const int ih = QKImageSize(note).height();
    const int ax = rcVideo.x() + (rcVideo.width() - iw) / 2;
    const int ay = rcVideo.y() + (rcVideo.height() - ih) / 2;
    const QRectF src(note.rect());
    pGraphics->DrawImage(note, QRectF(ax + 2 * iw / 3 + 12, ay + 23, iw / 3, ih / 3), src, 0.3f);
    pGraphics->DrawImage(note, QRectF(ax + iw / 3 + 10, ay + ih / 3 + 10, 2 * iw / 3, 2 * ih / 3), src, 0.5f);
    pGraphics->DrawImage(note, QRectF(ax, ay, iw, ih), src, 0.8f);
}

// The pointer is over one of the listed controls (id, kind) that the manager has.
bool IsOverAny(const CQKUIManager* pManager, QPoint pt, std::initializer_list<std::pair<uint32_t, uint32_t>> controls)
{
    if (!pManager)
        return false;
    for (const auto& [nID, nKind] : controls) {
        const CQKButton* pControl = pManager->FindControl(nID, nKind);
        if (pControl && pControl->GetRect().contains(pt))
            return true;
    }
    return false;
}

} // namespace

void CQKPlayerDlg::PaintGround(CQKGraphics* pGraphics, int w, int h, bool bCaption)
{
    pGraphics->SetSmoothingMode(QKSmoothingAntiAlias);
    pGraphics->SetInterpolationMode(QKInterpolationHighQualityBicubic);
    pGraphics->FillRectangle(tagQKBrush::Solid(QKColorFromBGR(g_clrFace)), 0, 0, w, h);
    if (bCaption) {
        if (!m_pAppIconBitmap) {
            // A missing icon leaves an empty picture: no icon, and no message.
            // Read as what it is: a reader left to guess would load every picture format's
            // plugin first, in the middle of the window's first paint.
            QImageReader reader(QKAppFolder() + QStringLiteral("skin/btn/gold.png"), "png");
            reader.setAutoDetectImageFormat(false);
            const QImage icon = reader.read();
            m_pAppIconBitmap = std::make_unique<QImage>(icon.convertToFormat(QImage::Format_ARGB32_Premultiplied));
        }
        if (!m_pAppIconBitmap->isNull())
            pGraphics->DrawImage(*m_pAppIconBitmap, QRectF(2, 1, 28, 28), QRectF(m_pAppIconBitmap->rect()));
        tagQKFontSpec font;
        font.strFamily = QStringLiteral("Arial");
        font.fSize = 14.0f;
        font.nStyle = QKFontRegular;
        tagQKStringFormat format;
        format.nAlign = QKAlignNear;
        format.nLineAlign = QKAlignCenter;
        pGraphics->SetTextRenderingHint(QKTextHintClearTypeGridFit);
        CQKGraphicsPath caption;
        caption.AddString(QString::fromUtf16(kTitle), font, QRectF(28, 0, w - QKFrameGrips::kTitleButtonsWidth, QKFrameGrips::kTitleHeight), format);
        const QRect b = caption.GetBoundsI();
        tagQKBrush brush = tagQKBrush::Linear(QPointF(b.x(), b.y()), QPointF(b.x() + b.width(), b.y() + b.height()), QKColorFromBGR(g_UIColors.clrTitleTextStart), QKColorFromBGR(g_UIColors.clrTitleTextEnd));
        brush.bGammaCorrection = true;
        pGraphics->FillPath(brush, caption);
    }
    tagQKPen outline;
    outline.clr = QKColorFromBGR(g_UIColors.clrFrame);
    pGraphics->DrawRectangle(outline, 0, 0, w - 1, h - 1);
}

void CQKPlayerDlg::PaintFrame(CQKGraphics* pGraphics)
{
    const QRect rcClient = GetClientRect();
    // In full screen the caption is the top bar's.
    PaintGround(pGraphics, rcClient.width(), rcClient.height(), !m_bFullScreen);

    if (m_rcVideo.width() >= 1 && m_rcVideo.height() >= 1) {
        // The picture's bars are what the video surface leaves uncovered: hard-edged black.
        pGraphics->SetSmoothingMode(QKSmoothingDefault);
        pGraphics->FillRectangle(tagQKBrush::Solid(0xFF000000), m_rcVideo.x(), m_rcVideo.y(), m_rcVideo.width(), m_rcVideo.height());
        pGraphics->SetSmoothingMode(QKSmoothingAntiAlias);
        tagQKPen border;
        border.clr = QKColorFromBGR(g_clrBorder, 150);
        pGraphics->DrawRectangle(border, m_rcVideo.x() - 1, m_rcVideo.y() - 1, m_rcVideo.width() + 1, m_rcVideo.height() + 1);
        if (m_bAudioOnly && m_faces.imgAudioNote && !m_faces.imgAudioNote->isNull())
            PaintAudioNote(pGraphics, *m_faces.imgAudioNote, m_rcVideo);
    }
}

bool CQKPlayerDlg::IsOverTitleControl(QPoint pt) const
{
    return IsOverAny(pUIManager.get(), pt,
        { { QKPanelLayout::kIdOptions, kKindButton }, { QKPanelLayout::kIdMinimize, kKindButton }, { QKPanelLayout::kIdMaximize, kKindButton }, { QKPanelLayout::kIdClose, kKindButton } });
}

bool CQKPlayerDlg::IsOverBarControl(QPoint pt) const
{
    return IsOverAny(pUIManager.get(), pt,
        { { QKPanelLayout::kIdPlay, kKindButton }, { QKPanelLayout::kIdPrevious, kKindButton }, { QKPanelLayout::kIdNext, kKindButton }, { QKPanelLayout::kIdStop, kKindButton },
            { QKPanelLayout::kIdMute, kKindButton }, { QKPanelLayout::kIdFullScreen, kKindButton }, { QKPanelLayout::kIdVolSlider, kKindSlider } });
}

bool CQKPlayerDlg::OnSetCursor(QPoint pt)
{
    m_nHitZone = 0;
    // Controls take precedence over the grips under them.
    if (GetCapture() || IsOverTitleControl(pt) || IsOverBarControl(pt))
        return false;
    if (m_bFullScreen || m_bMaximized)
        return false;
    m_nHitZone = QKFrameGrips::HitZone(pt, GetClientRect().size());
    if (m_nHitZone == 0)
        return false;
    SetCursor(QKFrameGrips::CursorOf(m_nHitZone));
    return true;
}

void CQKPlayerDlg::OnLeftButtonDown(QPoint pt, uint32_t keys)
{
    // The grip under a press is the one a move to the press's point would show.
    OnSetCursor(pt);
    if (QKFrameGrips::InTitleStrip(pt) && !IsOverTitleControl(pt) && m_nHitZone == 0 && !m_bFullScreen && !m_bMaximized) {
        // The move starts with the first moves of the held button, not with the press: a
        // window manager that took the pointer at the press would swallow the release, and
        // with it the double click that maximises.
        m_bTitleDrag = 1;
        m_ptMoveGrab = pt;
        SetCapture();
        return;
    }
    if (m_nHitZone >= 1 && m_nHitZone <= 8) {
        if (CanPlaceWindows()) {
            m_ptResizeStart = ClientToScreen(pt);
            m_bResizing = 1;
            SetCapture();
        } else {
            // Where the program may not place its own window, the compositor resizes it.
            StartSystemResize(QKFrameGrips::EdgesOf(m_nHitZone));
        }
        return;
    }
    CQKUIHostWnd::OnLeftButtonDown(pt, keys);
}

void CQKPlayerDlg::OnMouseMessage(uint32_t msg, QPoint pt, uint32_t keys)
{
    switch (msg) {
    case WM_MOUSEMOVE:
        if (m_bTitleDrag) {
            OnTitleDrag(pt);
            return;
        }
        if (m_bResizing)
            DragResizeWindow(pt);
        break;
    case WM_LBUTTONUP:
        if (m_bResizing || m_bTitleDrag) {
            m_bResizing = 0;
            m_bTitleDrag = 0;
            m_bMovingSelf = 0;
            ReleaseCapture();
            return;
        }
        break;
    case WM_RBUTTONUP:
        if (OnContextButtonUp(pt))
            return;
        break;
    case WM_LBUTTONDBLCLK:
        if (OnVideoDoubleClick(pt))
            return;
        if (QKFrameGrips::InTitleDoubleClickStrip(pt, GetClientRect().width())) {
            if (m_bFullScreen)
                OnFullScreen();
            else
                SendMessage(WM_SYSCOMMAND, m_bMaximized ? SC_RESTORE : SC_MAXIMIZE);
            return;
        }
        break;
    default:
        break;
    }
    CQKUIHostWnd::OnMouseMessage(msg, pt, keys);
}

bool CQKPlayerDlg::OnVideoDoubleClick(QPoint pt)
{
    if (!m_wndPlay)
        return false;
    // On a picture only the picture counts, not the black bars beside it.
    const bool bOnVideo = m_wndPlay->IsVisible() ? m_wndPlay->GetRect().contains(pt) : m_rcVideo.contains(pt);
    if (bOnVideo)
        OnFullScreen();
    return bOnVideo;
}

void CQKPlayerDlg::OnTitleDrag(QPoint pt)
{
    if (!m_bMovingSelf) {
        if ((pt - m_ptMoveGrab).manhattanLength() < QKFrameGrips::kMoveStartDistance)
            return;
        // A window manager or compositor moves the window itself; without one, the window
        // follows the pointer here.
        if (StartSystemMove() || !CanPlaceWindows()) {
            m_bTitleDrag = 0;
            ReleaseCapture();
            return;
        }
        m_bMovingSelf = 1;
    }
    const QPoint ptScreen = ClientToScreen(pt);
    const QRect wr = GetWindowRect();
    MoveWindow(ptScreen.x() - m_ptMoveGrab.x(), ptScreen.y() - m_ptMoveGrab.y(), wr.width(), wr.height(), false);
}

void CQKPlayerDlg::DragResizeWindow(QPoint ptClient)
{
    const QRect rcNew = QKFrameGrips::DragResize(m_nHitZone, m_ptResizeStart, ClientToScreen(ptClient), GetWindowRect());
    if (!rcNew.isNull())
        MoveWindow(rcNew, true);
}

// The system's maximise would make a frameless window cover the desktop's panels, so the
// window maximises itself to the work area of its screen and remembers where it stood. Where
// the program may not place its windows (Wayland), the compositor maximises and restores.
intptr_t CQKPlayerDlg::OnSysCommand(uint32_t nCmd, uintptr_t wParam, intptr_t lParam)
{
    switch (nCmd) {
    case SC_MAXIMIZE:
        if (!CanPlaceWindows()) {
            m_bMaximized = 1;
            SetMaximizeFaces();
            return CQKUIHostWnd::OnMessage(WM_SYSCOMMAND, wParam, lParam);
        }
        if (!m_bMaximized)
            m_rcRestore = GetWindowRect();
        m_bMaximized = 1;
        MoveWindow(GetWorkArea(), true);
        SetMaximizeFaces();
        return 0;
    case SC_RESTORE: {
        if (IsIconic()) {
            // Back from the taskbar: a maximised window comes back to the work area.
            CQKUIHostWnd::OnMessage(WM_SYSCOMMAND, wParam, lParam);
            if (m_bMaximized && CanPlaceWindows() && !IsZoomed())
                MoveWindow(GetWorkArea(), true);
            return 0;
        }
        if (!m_bMaximized)
            return 0;
        m_bMaximized = 0;
        SetMaximizeFaces();
        if (!CanPlaceWindows())
            return CQKUIHostWnd::OnMessage(WM_SYSCOMMAND, wParam, lParam);
        const QRect rcRestore = std::exchange(m_rcRestore, QRect());
        if (IsZoomed()) {
            // The window manager's own maximise goes back the window manager's way. When the
            // program had maximised the window before, the window manager's idea of where it
            // stood is the program's maximised rectangle, so the program puts it back itself.
            CQKUIHostWnd::OnMessage(WM_SYSCOMMAND, wParam, lParam);
            if (rcRestore.isValid())
                MoveWindow(rcRestore, true);
            return 0;
        }
        if (rcRestore.isValid()) {
            MoveWindow(rcRestore, true);
        } else {
            // Maximised before the program knew where the window stood: the start size,
            // centred in the free area.
            const QRect work = GetWorkArea();
            MoveWindow(work.x() + (work.width() - kStartWidth) / 2, work.y() + (work.height() - kStartHeight) / 2, kStartWidth, kStartHeight, true);
        }
        return 0;
    }
    default:
        return CQKUIHostWnd::OnMessage(WM_SYSCOMMAND, wParam, lParam);
    }
}
