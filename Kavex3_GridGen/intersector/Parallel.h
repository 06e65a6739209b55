// Runs numbered pieces of work on a few threads; each piece runs once, on one thread.
#pragma once

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

// threads 0 takes the machine's cores. Pieces are handed out in order as threads come free.
template <class Work>
void RunPieces(int pieces, int threads, const Work& work) {
    if (threads <= 0) threads = int(std::max(1u, std::thread::hardware_concurrency()));
    threads = std::min(threads, pieces);
    if (threads <= 1) {
        for (int p = 0; p < pieces; ++p) work(p);
        return;
    }
    std::atomic<int> next{0};
    auto run = [&] {
        for (int p = next++; p < pieces; p = next++) work(p);
    };
    std::vector<std::thread> pool;
    for (int t = 1; t < threads; ++t) pool.emplace_back(run);
    run();
    for (std::thread& t : pool) t.join();
}
