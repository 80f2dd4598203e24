#pragma once
// CQKMessageDlg: the program's message box, a skinned dialog whose height follows its text.
//
// Every message of the program to the user passes through it. The button set follows the
// message box types: 0 OK, 1 OK and Cancel, 4 Yes and No; any other type shows OK alone.
// The result is 1 (OK), 2 (Cancel, the close cross, Escape), 6 (Yes) or 7 (No). The close
// cross of a Yes and No dialog still gives 2.
//
// The text is measured with font 6 of the skin in a column of the client width less 20; the
// dialog is that high plus 100 (40 above for the caption, 60 below for the buttons), and a
// text longer than 256 characters widens the dialog by 120.
#include "toolkit/CQKDialogBase.h"

#include <QRectF>
#include <QString>
#include <cstdint>

class CQKMessageDlg : public CQKDialogBase
{
public:
    CQKMessageDlg(const QString& text, uint32_t type, CQKHostWnd* pOwner = nullptr);
    CQKMessageDlg(const QString& title, const QString& text, uint32_t type, CQKHostWnd* pOwner = nullptr);

    int OnInitDialog() override;
    void CreateControls() override;
    void LayoutControls() override;

    // The bounding rectangle of `text` laid out in `rcLayout` with font 6, centred both
    // ways; empty for an empty text or without font 6.
    QRectF MeasureMessage(const QString& text, const QRectF& rcLayout) const;

    QString strTitle { QStringLiteral("Tips") };
    QString strText;
    uint32_t nType { 0 };

    static constexpr uint32_t kTextID = 48;
    static constexpr int kWideText = 256; // characters beyond which the dialog widens
    static constexpr int kWiden = 120;

protected:
    intptr_t OnMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam) override;
};

// "Error Media File! Please Try Again." under "Tips" with OK; returns the result.
int ShowMediaError();
// `text` under "Tips" with the buttons of `type`; returns the result.
int ShowMessage(const QString& text, uint32_t type);
int ShowMessageTitled(const QString& title, const QString& text, uint32_t type);
