#pragma once
// HostRecorder: a host window that writes down what reaches it.
//
// Tests of hosts and of everything that talks to a host (controls posting WM_COMMAND, the
// engine posting its end-of-media message) make one, drive it and read the lists back.
// Each hook, when set, runs after the event is written down.
#include "platform/CQKHostWnd.h"

#include <QImage>
#include <QPoint>
#include <QStringList>
#include <cstdint>
#include <functional>
#include <thread>
#include <vector>

namespace orbeltest {

class HostRecorder : public CQKHostWnd
{
public:
    struct tagMessage
    {
        uint32_t msg;
        uintptr_t wParam;
        intptr_t lParam;
        std::thread::id thread; // the thread the message was handled on
    };
    struct tagMouse
    {
        uint32_t msg;
        QPoint pt;
        uint32_t keys;
    };
    struct tagKey
    {
        uint32_t msg; // WM_KEYDOWN or WM_KEYUP
        uint32_t vk;
        uint32_t mods;
    };
    struct tagWheel
    {
        uint32_t keys;
        int delta;
        QPoint pt;
    };

    ~HostRecorder() override;

    // Makes a frameless window at `rc` and shows it (waiting until it is exposed).
    bool CreateShown(const QRect& rc, uint32_t nStyle = QKHS_FRAMELESS, const QString& strClass = QString());

    // WM_COMMAND ids among the messages, in order.
    std::vector<uint32_t> Commands() const;
    // Mouse message numbers only, in order.
    std::vector<uint32_t> MouseMessages() const;
    void ClearRecords();

    std::vector<tagMessage> vecMessages;
    std::vector<tagMouse> vecMouse;
    std::vector<tagKey> vecKeysPre; // every key PreTranslateKey saw
    std::vector<tagKey> vecKeysDown; // keys that reached OnKeyDown
    std::vector<tagWheel> vecWheel;
    std::vector<uint32_t> vecTimers;
    std::vector<bool> vecActivate;
    std::vector<QStringList> vecDrops;
    int nPaints { 0 };
    int nDestroys { 0 };
    int nCloses { 0 };
    bool bWheelConsumes { false };

    std::function<bool(uint32_t msg, uint32_t vk, uint32_t mods)> onPreTranslateKey;
    std::function<void(uint32_t msg, QPoint pt, uint32_t keys)> onMouse;
    std::function<void(uint32_t id)> onTimer;
    std::function<void(uint32_t msg, uintptr_t w, intptr_t l)> onMessage;
    // Runs at every paint; by default the host shows a picture filled with `clrFill`.
    std::function<void()> onPaint;
    uint32_t clrFill { 0xFF336699 };
    // What OnClose does: true destroys the window (the default), false ignores the request.
    bool bCloseDestroys { true };

protected:
    intptr_t OnMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam) override;
    void OnTimer(uint32_t nID) override;
    void OnMouseMessage(uint32_t msg, QPoint pt, uint32_t keys) override;
    bool OnMouseWheel(uint32_t keys, int delta, QPoint pt) override;
    bool PreTranslateKey(uint32_t msg, uint32_t vk, uint32_t mods) override;
    void OnKeyDown(uint32_t vk, uint32_t mods) override;
    void OnActivate(bool bActive) override;
    void OnPaint() override;
    void OnClose() override;
    void OnDestroy() override;
    void OnDropFiles(const QStringList& paths) override;
};

} // namespace orbeltest
