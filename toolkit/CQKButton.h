#pragma once
// CQKButton: the base of every windowless control, and the plain push button itself.
//
// A control is no window: it is a rectangle in its host's client area with a state, a
// picture, a text and the 22 virtual operations below, which the UI manager calls. It
// repaints itself alone (RepaintAlone) through a private picture of its own size that it
// copies to the host; a full repaint of the host paints it into the host's composition
// instead.
//
// A subclass (a control of another kind) overrides what it does differently, most often:
//   OnMouseEvent     its own mouse state machine, starting from ClassifyMouse's rows;
//   PaintContent     what it draws over its picture or face (text, a thumb, list rows);
//   OnLayoutChanged  laying itself out again after the host's size changed;
//   PreTranslateKey, OnMouseWheel, OnSetFocus, OnKillFocus, OnActivate  its input;
//   OnClick          what a click does instead of posting WM_COMMAND with its id.
// Which of these the manager calls at all for a kind stands in the traits table
// (QKControlKinds.h), and the class offers `static tagQKControlKind KindHooks();` for
// QKRegisterControls().
//
// The fields are public: the manager, the skin reader and every subclass read and write them
// directly, which keeps the skin reader a plain list of assignments.
#include "toolkit/QKFace.h"

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QRectF>
#include <QSize>
#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

class CQKGraphics;
class CQKHostWnd;
class CQKToolTipWnd;
class CQKUIManager;
struct tagQKControlKind;

class CQKButton
{
public:
    CQKButton();
    CQKButton(const CQKButton&) = delete;
    CQKButton& operator=(const CQKButton&) = delete;
    // What the toolkit needs to make a plain button from the skin (QKKIND_BUTTON).
    static tagQKControlKind KindHooks();

    // Builds the drawn faces of a built-in glyph kind (0, 1, 2, 3, 8, 10, 28, 29), replacing
    // earlier faces; other kinds leave no face.
    void SetFace(int nFaceKind);
    // Takes a face; with `bReplace` earlier faces go first. A null face does nothing.
    void AddFace(std::unique_ptr<tagQKFace> pFace, bool bReplace);
    void SetFaceIndex(int nIndex) { nFaceIndex = nIndex; }
    void ClearFaces() { vecFaces.clear(); }
    // Replaces the picture by a 32-bit ARGB copy of `pBitmap` (null: no picture). No repaint.
    void SetImage(const QImage* pBitmap);
    // Replaces the picture by the file at `path`; no picture when the file does not exist.
    void LoadImage(const QString& path);
    void SetFramesToFour() { nFrames = 4; }
    void SetFontID(uint32_t nNewFontID) { nFontID = nNewFontID; }
    void SetTextAlign(uint32_t nAlign) { nTextAlign = nAlign; }
    // An IDC_* cursor shown on hover and press (0: none).
    void SetCursor(uint32_t nCursor) { hCursor = nCursor; }
    void SetHoverFrame(bool bOn) { bHoverFrame = bOn ? 1 : 0; }
    void EnableBackgroundCache(bool bOn) { bCacheBackground = bOn ? 1 : 0; }
    // The control's rectangle (left, top, right, bottom), held inside the range of a rectangle.
    QRect GetRect() const;
    uint32_t GetID() const { return nID; }
    bool IsEnabled() const { return bEnabled != 0; }
    bool IsVisible() const { return bVisible != 0; }
    bool IsFocused() const { return bFocused != 0; }
    uint32_t GetKind() const { return nKind; }
    uint32_t GetState() const { return nState; }
    void DropBackCache() { pBackCache.reset(); }

    // The point lies in the control (right and bottom edges excluded).
    bool HitTest(const QPoint& pt) const;
    // Repaints this control alone, straight to its host (Paint with two nulls).
    void RepaintAlone();
    // The lone repaint's frame: makes a picture of the part of `rc` (client pixels) inside the
    // window, lets `fnPaint` draw into it with the top-left corner of `rc` as the origin, and
    // puts it on screen. Nothing happens without a window or when `rc` lies outside it (a
    // control far larger than its window costs no more than the window itself).
    void PaintAloneInto(const QRect& rc, const std::function<void(CQKGraphics&)>& fnPaint);

    // --- the 22 virtual operations, in the order of their slots --------------------------
    // Draws the current drawn face centred in `rc`; 1 if it drew one.
    virtual int PaintFace(CQKGraphics* pGraphics, const QRect& rc);
    virtual ~CQKButton();
    // With a graphics object: paints into the host's composition, `pBitmap` being that
    // composition (for the background cache). With two nulls: repaints this control alone.
    virtual void Paint(CQKGraphics* pGraphics, QImage* pBitmap);
    // The mouse state machine (the table in CQKButton.cpp); nonzero when the control must be
    // repainted.
    virtual int OnMouseEvent(CQKHostWnd* pHost, uint32_t nMsg, const QPoint& pt);
    // A key message (WM_KEYDOWN (256) or WM_KEYUP (257), VK_* code, QKMOD_* flags); nonzero
    // if consumed.
    virtual int PreTranslateKey(uint32_t nMsg, uint32_t nVk, uint32_t nMods);
    // A null text clears it.
    virtual void SetText(const QString& strText, int bRepaint);
    virtual void GetText(QString& strOut) const;
    virtual void Enable(int bEnable, int bRepaint);
    virtual void Show(int bShow, int bRepaint);
    virtual void SetRect(int nLeft, int nTop, int nRight, int nBottom, int bRepaint);
    virtual void MoveTo(int x, int y, int w, int h, int bRepaint);
    virtual void OnLButtonDown(const QPoint& pt);
    virtual void OnClick(const QPoint& pt);
    virtual void OnLayoutChanged();
    virtual QSize MeasureText(const QString& strText);
    virtual void OnSetFocus();
    virtual void OnKillFocus();
    virtual void OnActivate(uint32_t nState);
    virtual int OnMouseWheel(uint32_t nFlags, int nDelta, const QPoint& pt);
    virtual void SetToolTip(const QString& strText);
    virtual void PaintContent(CQKGraphics* pGraphics, const QRectF& rc);
    virtual void ShowToolTip(int bShow);

protected:
    // The rows of the capture table above OnMouseEvent (CQKButton.cpp): where the point lies
    // (in or out of the control), who holds the capture, and for some rows the message.
    enum class MouseCase {
        Inert, // disabled or hidden: nothing happens
        OutFree, // out, the capture not with this host
        OutRelease, // out, this host captures, WM_LBUTTONUP or WM_RBUTTONUP
        OutHeld, // out, this host captures, any other message
        InRelease, // in, this host captures, WM_LBUTTONUP
        InHeld, // in, this host captures, any other message
        InFree, // in, no capture: the message decides
        InOtherCapture, // in, another window captures
    };
    // Classifies a mouse message for this control by those rows.
    MouseCase ClassifyMouse(CQKHostWnd* pHost, uint32_t nMsg, const QPoint& pt) const;

    // Draws the picture's frame for the current state into `rc` (host or local coordinates).
    // `bLone` is set in a repaint of this control alone.
    void PaintPicture(CQKGraphics* pGraphics, const QRect& rc, bool bLone);
    // Copies a picture to the host at `ptDest` (client pixels).
    void CopyToHost(QImage& image, QPoint ptDest);

public:
    std::vector<std::unique_ptr<tagQKFace>> vecFaces; // drawn faces; one that applies hides the picture
    int32_t nFaceIndex { 0 };
    uint32_t nState { 0 }; // 0 normal, 1 hover, 2 down
    int32_t bVisible { 1 };
    std::unique_ptr<QImage> pImage; // picture: a strip of state frames
    uint32_t nTextAlign { 2 }; // 0 left, 1 right, 2 centre, 3 centre and bottom
    std::unique_ptr<QImage> pBackCache; // what lies beneath the control (its part inside the window)
    QPoint ptBackCache; // where pBackCache lies in the host
    int32_t nX { 0 };
    int32_t nY { 0 };
    int32_t nWidth { 0 };
    int32_t nHeight { 0 };
    uint32_t nFrames { 4 }; // frames in pImage: the skin's `state`
    uint32_t nID { 0 }; // command id carried by WM_COMMAND
    uint32_t nFontID { 0 }; // key into the font table
    int32_t bEnabled { 1 };
    QString szText; // label; null when there is none
    CQKHostWnd* hWndHost { nullptr }; // set by the manager
    uint32_t hCursor { 0 }; // IDC_* shown on hover and press, 0 for none
    std::unique_ptr<CQKToolTipWnd> pToolTipWnd; // made on first need
    QString strToolTip;
    int32_t bFocused { 0 };
    CQKUIManager* pManager { nullptr }; // not owned
    uint32_t nKind { 0 };
    int32_t bHoverFrame { 0 }; // one-pixel frame in hover and down states
    int32_t bCacheBackground { 0 }; // keep what lies beneath for lone repaints
    int32_t bUseUIFont { 0 }; // read by the static text control only
};
