#include "PlaySession.h"

namespace orbeltest {

bool WaitUntil(const std::function<bool()>& pred, std::chrono::milliseconds timeout)
{
    auto tEnd = std::chrono::steady_clock::now() + timeout;
    while (!pred()) {
        if (std::chrono::steady_clock::now() > tEnd)
            return pred();
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

std::string EngineProperty(const char* pszName)
{
    char* psz = qkplay_get_engine_property(pszName);
    std::string str = psz ? psz : "<none>";
    qkplay_free(psz);
    return str;
}

bool EnginePropertyBecomes(const char* pszName, const std::string& strValue, std::chrono::milliseconds timeout)
{
    return WaitUntil([&] { return EngineProperty(pszName) == strValue; }, timeout);
}

PlaySession::~PlaySession()
{
    if (thread.joinable()) {
        // A test that failed half way must not leave a playback behind for the next one.
        qkplaydll_Stop();
        if (Join(std::chrono::milliseconds(5000)))
            return;
        thread.detach();
    }
}

void PlaySession::Start(const std::string& strPath, qkplay_video* pVideo, bool bAudioOnly)
{
    // The player's play thread copies the path into a buffer of 2048 bytes, and passes the
    // same constants.
    thread = std::thread([this, strPath, pVideo, bAudioOnly] {
        int n = qkplaydll_Play(strPath.c_str(), pVideo, &notify, kEndOfMedia, 1, 0.0, 0, 0, bAudioOnly ? 1 : 0);
        nResult = n;
        bFinished = true;
    });
}

bool PlaySession::Join(std::chrono::milliseconds timeout)
{
    if (!thread.joinable())
        return true;
    if (!WaitUntil([this] { return bFinished.load(); }, timeout))
        return false;
    thread.join();
    return true;
}

std::vector<int> PlaySession::Messages() const
{
    std::lock_guard lk(mtx);
    return messages;
}

int PlaySession::EndOfMediaCount() const
{
    std::lock_guard lk(mtx);
    int n = 0;
    for (int m : messages)
        n += m == kEndOfMedia ? 1 : 0;
    return n;
}

bool PlaySession::WaitReady(std::chrono::milliseconds timeout)
{
    return WaitUntil([] { return qkplaydll_IsReady() != 0; }, timeout);
}

bool PlaySession::WaitUntilReady()
{
    return WaitUntil([] { return qkplaydll_IsReady() != 0; }, std::chrono::milliseconds(5000));
}

void PlaySession::Post(void* pCtx, int nMessage)
{
    auto* pSelf = static_cast<PlaySession*>(pCtx);
    std::lock_guard lk(pSelf->mtx);
    pSelf->messages.push_back(nMessage);
}

} // namespace orbeltest
