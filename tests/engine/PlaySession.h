#pragma once
// A playback as the player runs it: qkplaydll_Play on a thread of its own, a notify target
// that records every message, and a bounded join.
#include "engine/qkplay.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace orbeltest {

// Waits until pred() holds or the time is up; returns the last value of pred().
bool WaitUntil(const std::function<bool()>& pred, std::chrono::milliseconds timeout);

// A property of the media engine as text, "<none>" when unavailable.
std::string EngineProperty(const char* pszName);
// Waits for an asynchronous setting or state to arrive in the engine.
bool EnginePropertyBecomes(const char* pszName, const std::string& strValue, std::chrono::milliseconds timeout);

class PlaySession
{
public:
    static constexpr int kEndOfMedia = 1524;

    PlaySession() = default;
    ~PlaySession();
    PlaySession(const PlaySession&) = delete;
    PlaySession& operator=(const PlaySession&) = delete;

    // Starts qkplaydll_Play on a new thread. The path goes over as UTF-8.
    void Start(const std::string& strPath, qkplay_video* pVideo = nullptr, bool bAudioOnly = false);
    // Waits for the play thread to end; false when it did not end in time (the thread is
    // then left running and the test fails).
    bool Join(std::chrono::milliseconds timeout = std::chrono::milliseconds(3000));
    bool Finished() const { return bFinished.load(); }
    int Result() const { return nResult.load(); }

    // Messages posted to the notify target so far.
    std::vector<int> Messages() const;
    int EndOfMediaCount() const;
    bool WaitReady(std::chrono::milliseconds timeout = std::chrono::milliseconds(5000));
    // The same for use where no session object is at hand.
    static bool WaitUntilReady();

private:
    static void Post(void* pCtx, int nMessage);

    qkplay_notify notify { &PlaySession::Post, this };
    std::thread thread;
    std::atomic<bool> bFinished { false };
    std::atomic<int> nResult { -1 };
    mutable std::mutex mtx;
    std::vector<int> messages;
};

} // namespace orbeltest
