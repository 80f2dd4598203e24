#include "platform/CQKEditWnd.h"

#include "platform/CQKHostWnd.h"
#include "platform/CQKTextLayout.h"
#include "platform/QKKeys.h"

#include <QEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRegularExpressionValidator>
#include <QTextCursor>
#include <algorithm>

// Watches the field for what its signals do not tell: focus loss and keys.
class CQKEditEvents : public QObject
{
public:
    explicit CQKEditEvents(CQKEditWnd* owner)
        : QObject(nullptr)
        , pOwner(owner)
    {
    }
    CQKEditWnd* pOwner;
    int nDepth { 0 }; // inside a callback of the owner

protected:
    bool eventFilter(QObject* obj, QEvent* e) override
    {
        if (!pOwner)
            return false;
        ++nDepth;
        const bool bTaken = Dispatch(e);
        --nDepth;
        return bTaken || QObject::eventFilter(obj, e);
    }

private:
    bool Dispatch(QEvent* e)
    {
        if (e->type() == QEvent::FocusOut && pOwner->onKillFocus) {
            pOwner->onKillFocus();
        } else if (e->type() == QEvent::KeyPress && pOwner->onKeyDown) {
            const auto* k = static_cast<QKeyEvent*>(e);
            const uint32_t vk = QKVirtualKeyFromQt(k->key(), k->modifiers());
            if (vk != 0 && pOwner->onKeyDown(vk, QKModifiersFromQt(k->modifiers())))
                return true;
        }
        return false;
    }
};

// Ends the watcher, later if it is inside one of its own callbacks.
static void EndEvents(std::unique_ptr<CQKEditEvents>& events)
{
    CQKEditEvents* ev = events.release();
    if (!ev)
        return;
    ev->pOwner = nullptr;
    if (ev->nDepth > 0)
        ev->deleteLater();
    else
        delete ev;
}

static QLineEdit* Line(QWidget* w)
{
    return qobject_cast<QLineEdit*>(w);
}

static QPlainTextEdit* Plain(QWidget* w)
{
    return qobject_cast<QPlainTextEdit*>(w);
}

CQKEditWnd::CQKEditWnd() = default;

CQKEditWnd::~CQKEditWnd()
{
    DestroyWindow();
}

bool CQKEditWnd::Create(CQKHostWnd* host, const QRect& rc, uint32_t nStyle)
{
    if (pWidget || !host || !host->NativeWidget())
        return false;
    QWidget* parent = host->NativeWidget();
    bMultiLine = (nStyle & QKES_MULTILINE) != 0;
    if (bMultiLine) {
        auto* edit = new QPlainTextEdit(parent);
        edit->setFrameShape(QFrame::NoFrame);
        edit->setReadOnly(nStyle & QKES_READONLY);
        edit->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        QObject::connect(edit->document(), &QTextDocument::contentsChange, edit, [this](int, int removed, int added) {
            // Changes made by SetText are the owner's own and not reported.
            if (!bSetting && (removed || added) && onChange)
                onChange();
        });
        pWidget = edit;
    } else {
        auto* edit = new QLineEdit(parent);
        edit->setFrame(false);
        edit->setReadOnly(nStyle & QKES_READONLY);
        if (nStyle & QKES_CENTER)
            edit->setAlignment(Qt::AlignCenter);
        if (nStyle & QKES_NUMBER)
            edit->setValidator(new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]*")), edit));
        QObject::connect(edit, &QLineEdit::textEdited, edit, [this](const QString&) {
            if (onChange)
                onChange();
        });
        pWidget = edit;
    }
    pHost = host;
    // The field's own menu is the owner's to give.
    pWidget->setContextMenuPolicy(Qt::CustomContextMenu);
    QObject::connect(pWidget, &QWidget::customContextMenuRequested, pWidget, [this](const QPoint& pos) {
        if (onContextMenu && pWidget)
            onContextMenu(pWidget->mapToGlobal(pos));
    });
    // Qt may delete the field with its host window; then this object lets go of it.
    QObject::connect(pWidget, &QObject::destroyed, [this] {
        pWidget = nullptr;
        EndEvents(pEvents);
    });
    pEvents = std::make_unique<CQKEditEvents>(this);
    pWidget->installEventFilter(pEvents.get());
    pWidget->setGeometry(rc);
    ApplyColors();
    pWidget->show();
    return true;
}

void CQKEditWnd::DestroyWindow()
{
    if (!pWidget)
        return;
    QWidget* w = pWidget;
    pWidget = nullptr;
    QObject::disconnect(w, nullptr, nullptr, nullptr);
    if (QPlainTextEdit* p = Plain(w))
        QObject::disconnect(p->document(), nullptr, w, nullptr);
    if (pEvents)
        w->removeEventFilter(pEvents.get());
    EndEvents(pEvents);
    w->hide();
    // The field may be in the middle of one of its own events (a focus loss that led here);
    // it goes with the next turn of the event loop, or with its host window.
    w->deleteLater();
}

void CQKEditWnd::SetText(const QString& text)
{
    bSetting = true;
    if (QLineEdit* e = Line(pWidget))
        e->setText(text);
    else if (QPlainTextEdit* p = Plain(pWidget))
        p->setPlainText(text);
    bSetting = false;
}

QString CQKEditWnd::GetText() const
{
    if (QLineEdit* e = Line(pWidget))
        return e->text();
    if (QPlainTextEdit* p = Plain(pWidget))
        return p->toPlainText();
    return QString();
}

void CQKEditWnd::MoveWindow(const QRect& rc)
{
    if (pWidget)
        pWidget->setGeometry(rc);
}

QRect CQKEditWnd::GetRect() const
{
    return pWidget ? pWidget->geometry() : QRect();
}

void CQKEditWnd::ShowWindow(bool bShow)
{
    if (pWidget)
        pWidget->setVisible(bShow);
}

bool CQKEditWnd::IsVisible() const
{
    return pWidget && pWidget->isVisible();
}

void CQKEditWnd::EnableWindow(bool bEnable)
{
    if (pWidget)
        pWidget->setEnabled(bEnable);
}

bool CQKEditWnd::IsEnabled() const
{
    return pWidget && pWidget->isEnabled();
}

void CQKEditWnd::SetFocus()
{
    if (pWidget)
        pWidget->setFocus(Qt::OtherFocusReason);
}

bool CQKEditWnd::HasFocus() const
{
    return pWidget && pWidget->hasFocus();
}

void CQKEditWnd::SetFont(const QString& strFamily, int nPixelSize, int nStyle)
{
    if (!pWidget)
        return;
    tagQKFontSpec fontSpec;
    fontSpec.strFamily = strFamily;
    fontSpec.fSize = static_cast<float>(nPixelSize);
    fontSpec.nStyle = nStyle;
    pWidget->setFont(CQKTextLayout::MakeFont(fontSpec));
}

void CQKEditWnd::SetColors(QKARGB text, QKARGB ground, QKARGB textDisabled, QKARGB groundDisabled)
{
    clrText = text;
    clrGround = ground;
    clrTextDisabled = textDisabled;
    clrGroundDisabled = groundDisabled;
    ApplyColors();
}

void CQKEditWnd::ApplyColors()
{
    if (!pWidget)
        return;
    QPalette pal = pWidget->palette();
    for (QPalette::ColorGroup g : { QPalette::Active, QPalette::Inactive }) {
        pal.setColor(g, QPalette::Text, QColor::fromRgba(clrText));
        pal.setColor(g, QPalette::Base, QColor::fromRgba(clrGround));
    }
    pal.setColor(QPalette::Disabled, QPalette::Text, QColor::fromRgba(clrTextDisabled));
    pal.setColor(QPalette::Disabled, QPalette::Base, QColor::fromRgba(clrGroundDisabled));
    pWidget->setPalette(pal);
    pWidget->setAutoFillBackground(true);
}

void CQKEditWnd::SetSel(int nStart, int nEnd)
{
    const int len = static_cast<int>(GetText().size());
    const int start = std::clamp(nStart, 0, len);
    const int end = (nEnd < 0 || nEnd > len) ? len : std::max(nEnd, start);
    if (QLineEdit* e = Line(pWidget)) {
        e->setSelection(start, end - start);
    } else if (QPlainTextEdit* p = Plain(pWidget)) {
        QTextCursor c = p->textCursor();
        c.setPosition(start);
        c.setPosition(end, QTextCursor::KeepAnchor);
        p->setTextCursor(c);
        p->ensureCursorVisible();
    }
}

void CQKEditWnd::GetSel(int& nStart, int& nEnd) const
{
    nStart = nEnd = 0;
    if (QLineEdit* e = Line(pWidget)) {
        if (e->hasSelectedText()) {
            nStart = e->selectionStart();
            nEnd = e->selectionEnd();
        } else {
            nStart = nEnd = e->cursorPosition();
        }
    } else if (QPlainTextEdit* p = Plain(pWidget)) {
        nStart = p->textCursor().selectionStart();
        nEnd = p->textCursor().selectionEnd();
    }
}

void CQKEditWnd::SetCaretAt(QPoint ptHost)
{
    if (!pWidget || !pHost || !pHost->NativeWidget())
        return;
    const QPoint local = pWidget->mapFrom(pHost->NativeWidget(), ptHost);
    if (QLineEdit* e = Line(pWidget)) {
        const QRect inner = e->rect();
        const QPoint clamped(std::clamp(local.x(), inner.left(), inner.right()), std::clamp(local.y(), inner.top(), inner.bottom()));
        e->setCursorPosition(e->cursorPositionAt(clamped));
    } else if (QPlainTextEdit* p = Plain(pWidget)) {
        p->setTextCursor(p->cursorForPosition(p->viewport()->mapFrom(pWidget, local)));
    }
}

void CQKEditWnd::Cut()
{
    if (QLineEdit* e = Line(pWidget))
        e->cut();
    else if (QPlainTextEdit* p = Plain(pWidget))
        p->cut();
}

void CQKEditWnd::Copy()
{
    if (QLineEdit* e = Line(pWidget))
        e->copy();
    else if (QPlainTextEdit* p = Plain(pWidget))
        p->copy();
}

void CQKEditWnd::Paste()
{
    if (QLineEdit* e = Line(pWidget))
        e->paste();
    else if (QPlainTextEdit* p = Plain(pWidget))
        p->paste();
}
