// Runs numbered pieces of work on a few threads; each piece runs once, on one thread.
#pragma once

#include <sched.h>

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

// The cores this process may run on (its affinity, as set by taskset or a batch system), so that a
// pinned run does not start more threads than it has cores.
inline int AvailableCores() {
    cpu_set_t cores;
    if (sched_getaffinity(0, sizeof cores, &cores) == 0) return std::max(1, CPU_COUNT(&cores));
    return int(std::max(1u, std::thread::hardware_concurrency()));
}

// threads 0 takes the process's cores. Pieces are handed out in order as threads come free. The
// first exception of any piece is thrown again on the calling thread once all threads are done.
template <class Work>
void RunPieces(int pieces, int threads, const Work& work) {
    if (threads <= 0) threads = AvailableCores();
    threads = std::min(threads, pieces);
    if (threads <= 1) {
        for (int p = 0; p < pieces; ++p) work(p);
        return;
    }
    std::atomic<int> next{0};
    std::mutex lock;
    std::exception_ptr failure;
    auto run = [&] {
        try {
            for (int p = next++; p < pieces; p = next++) work(p);
        } catch (...) {
            std::lock_guard<std::mutex> hold(lock);
            if (!failure) failure = std::current_exception();
            next = pieces;
        }
    };
    std::vector<std::thread> pool;
    for (int t = 1; t < threads; ++t) pool.emplace_back(run);
    run();
    for (std::thread& t : pool) t.join();
    if (failure) std::rethrow_exception(failure);
}
