#include "HostRecorder.h"

#include "HostDriver.h"
#include "platform/CQKGraphics.h"
#include "platform/QKMessages.h"

#include <QWindow>

namespace orbeltest {

HostRecorder::~HostRecorder()
{
    // OnDestroy of this class must still be reachable, so the window ends here.
    DestroyWindow();
}

bool HostRecorder::CreateShown(const QRect& rc, uint32_t nStyle, const QString& strClass)
{
    CQKHostCreate cs;
    cs.nStyle = nStyle;
    cs.strClassName = strClass.isEmpty() ? QStringLiteral("QKTestHost") : strClass;
    cs.rcWindow = rc;
    if (!Create(cs))
        return false;
    ShowWindow(SW_SHOW);
    return HostDriver::WaitFor([this] { return NativeWindow() && NativeWindow()->isExposed() && nPaints > 0; });
}

std::vector<uint32_t> HostRecorder::Commands() const
{
    std::vector<uint32_t> ids;
    for (const tagMessage& m : vecMessages)
        if (m.msg == WM_COMMAND)
            ids.push_back(static_cast<uint32_t>(m.wParam));
    return ids;
}

std::vector<uint32_t> HostRecorder::MouseMessages() const
{
    std::vector<uint32_t> msgs;
    for (const tagMouse& m : vecMouse)
        msgs.push_back(m.msg);
    return msgs;
}

void HostRecorder::ClearRecords()
{
    vecMessages.clear();
    vecMouse.clear();
    vecKeysPre.clear();
    vecKeysDown.clear();
    vecWheel.clear();
    vecTimers.clear();
    vecActivate.clear();
    vecDrops.clear();
}

intptr_t HostRecorder::OnMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam)
{
    vecMessages.push_back({ msg, wParam, lParam, std::this_thread::get_id() });
    if (onMessage)
        onMessage(msg, wParam, lParam);
    return CQKHostWnd::OnMessage(msg, wParam, lParam);
}

void HostRecorder::OnTimer(uint32_t nID)
{
    vecTimers.push_back(nID);
    if (onTimer)
        onTimer(nID);
}

void HostRecorder::OnMouseMessage(uint32_t msg, QPoint pt, uint32_t keys)
{
    vecMouse.push_back({ msg, pt, keys });
    if (onMouse)
        onMouse(msg, pt, keys);
}

bool HostRecorder::OnMouseWheel(uint32_t keys, int delta, QPoint pt)
{
    vecWheel.push_back({ keys, delta, pt });
    return bWheelConsumes;
}

bool HostRecorder::PreTranslateKey(uint32_t msg, uint32_t vk, uint32_t mods)
{
    vecKeysPre.push_back({ msg, vk, mods });
    return onPreTranslateKey ? onPreTranslateKey(msg, vk, mods) : false;
}

void HostRecorder::OnKeyDown(uint32_t vk, uint32_t mods)
{
    vecKeysDown.push_back({ WM_KEYDOWN, vk, mods });
}

void HostRecorder::OnActivate(bool bActive)
{
    vecActivate.push_back(bActive);
}

void HostRecorder::OnPaint()
{
    ++nPaints;
    if (onPaint) {
        onPaint();
        return;
    }
    QImage img(GetClientRect().size(), QImage::Format_ARGB32_Premultiplied);
    if (img.isNull())
        return;
    img.fill(clrFill);
    UpdateWindowFromImage(img, QPoint(0, 0));
}

void HostRecorder::OnClose()
{
    ++nCloses;
    if (bCloseDestroys)
        DestroyWindow();
}

void HostRecorder::OnDestroy()
{
    ++nDestroys;
}

void HostRecorder::OnDropFiles(const QStringList& paths)
{
    vecDrops.push_back(paths);
}

} // namespace orbeltest
