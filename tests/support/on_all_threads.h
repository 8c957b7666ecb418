#pragma once

// Work that several threads do at the same time.

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

namespace lyrsdk {

constexpr int kThreads = 3;

// Holds its threads back until all of them are there.
class StartLine {
public:
    void Wait() {
        ++mArrived;
        while (mArrived < kThreads)
            std::this_thread::yield();
    }

private:
    std::atomic<int> mArrived{0};
};

inline void OnAllThreads(const std::function<void(int)>& pWork) {
    StartLine lStart;
    std::vector<std::thread> lThreads;
    for (int i = 0; i < kThreads; ++i)
        lThreads.emplace_back([&, i] {
            lStart.Wait();
            pWork(i);
        });
    for (std::thread& lThread : lThreads)
        lThread.join();
}

}  // namespace lyrsdk
