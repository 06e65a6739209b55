// A timed run of the whole worker on one STL body: writes a project around the body, runs the
// executable in a fresh run directory, and reports the wall time of each stage (from the lines of
// its log as they appear), the peak resident memory in bytes a cell, and the floor: the time to
// copy the run's final grid file twice beside it, in the same filesystem, measured in the same
// sitting; the run's ratio to that floor is what the worker costs beyond moving its bytes.
//   bench_worker WORKER BODY.stl [CORE_CELLS=200] [OUTER_CELLS=28] [THREADS=0]
//   [PARENT_DIR=/dev/shm]
// THREADS pins the worker to that many cores (0: all); the run directory is made in PARENT_DIR.
// Each axis gets OUTER_CELLS graded cells over half the body's length before and after it and
// CORE_CELLS uniform cells across it, plus the generator's two end cells: with the defaults about
// 258^3 cells.
#include <fcntl.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

std::string Project(const std::string& body, int core, int outer) {
    std::string text =
        "Start Options\n    Debug Level: 0\n    Solver Input File: SolverGdInp.dat\n"
        "End Options\nStart Body Definitions\n    New Body\n        name: B\n"
        "        type: STL\n        Points File: " +
        body + "\n        used in solver: True\n    #\nEnd Body Definitions\n";
    const std::string n = std::to_string(outer), c = std::to_string(core);
    for (const char* axis : {"X", "Y", "Z"})
        text += std::string("Body ") + axis + "-GridSpec\n    New GridSpec\n from: B L-0.5\n" +
                " to: B L0.0\n number of Grids: " + n + "\n GP Ratio: -1.05\n    #\n" +
                "    New GridSpec\n in: B\n number of Grids: " + c + "\n GP Ratio: 1.0\n    #\n" +
                "    New GridSpec\n from: B L1.0\n to: B L1.5\n number of Grids: " + n +
                "\n GP Ratio: 1.05\n    #\nEnd " + axis + "-Grid Spec\n";
    return text;
}

// Copies a file to a new one with plain reads and writes of 1 MB; the seconds it took.
double TimedCopy(const std::string& from, const std::string& to) {
    const auto start = std::chrono::steady_clock::now();
    const int in = open(from.c_str(), O_RDONLY);
    const int out = open(to.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    std::vector<char> buffer(1 << 20);
    for (ssize_t got; in >= 0 && out >= 0 && (got = read(in, buffer.data(), buffer.size())) > 0;)
        if (write(out, buffer.data(), got) != got) break;
    if (in >= 0) close(in);
    if (out >= 0) close(out);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Cells of the grid file's dimension line (its second line: points per axis).
double GridCells(const std::string& path) {
    std::ifstream grid(path);
    std::string first;
    std::getline(grid, first);
    double ni = 0, nj = 0, nk = 0;
    grid >> ni >> nj >> nk;
    return (ni - 1) * (nj - 1) * (nk - 1);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(
            stderr, "usage: %s WORKER BODY.stl [CORE_CELLS] [OUTER_CELLS] [THREADS] [PARENT_DIR]\n",
            argv[0]);
        return 2;
    }
    // The worker runs in the run directory: both names are made absolute first.
    char worker[4096], body[4096];
    for (auto [name, path] : {std::make_pair(argv[1], worker), std::make_pair(argv[2], body)}) {
        if (!realpath(name, path)) {
            std::perror(name);
            return 1;
        }
    }
    const int threads = argc > 5 ? std::atoi(argv[5]) : 0;
    std::string pattern = std::string(argc > 6 ? argv[6] : "/dev/shm") + "/bench_worker_XXXXXX";
    if (!mkdtemp(pattern.data())) {
        std::perror(pattern.c_str());
        return 1;
    }
    const std::string dir = pattern;
    std::ofstream(dir + "/bench.Grid")
        << Project(body, argc > 3 ? std::atoi(argv[3]) : 200, argc > 4 ? std::atoi(argv[4]) : 28);
    std::ofstream(dir + "/bench.SlvrRot") << "0\n";

    const auto start = std::chrono::steady_clock::now();
    const pid_t pid = fork();
    if (pid == 0) {
        if (chdir(dir.c_str()) != 0) _exit(120);
        if (threads > 0) {
            cpu_set_t cores;
            CPU_ZERO(&cores);
            for (int c = 0; c < threads; ++c) CPU_SET(c, &cores);
            if (sched_setaffinity(0, sizeof cores, &cores) != 0) _exit(121);
        }
        execl(worker, worker, "-Grid", (dir + "/bench.Grid").c_str(), "-SlvrRot",
              (dir + "/bench.SlvrRot").c_str(), "-pth", dir.c_str(), static_cast<char*>(nullptr));
        _exit(122);
    }
    // Each line of the log is stamped when it is first seen; a stage lasts until the next line.
    std::vector<std::pair<std::string, double>> lines;
    std::size_t seen = 0;
    int status = 0;
    rusage usage{};
    auto poll = [&] {
        std::ifstream log(dir + "/Kavex3_GridGen.out");
        std::string text((std::istreambuf_iterator<char>(log)), std::istreambuf_iterator<char>());
        const double now =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        for (std::size_t nl; (nl = text.find('\n', seen)) != std::string::npos; seen = nl + 1)
            lines.emplace_back(text.substr(seen, nl - seen), now);
    };
    while (wait4(pid, &status, WNOHANG, &usage) == 0) {
        poll();
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    poll();
    const double total =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::printf("%-40s %9s\n", "stage (log line)", "wall s");
    for (std::size_t l = 0; l < lines.size(); ++l) {
        if (lines[l].first.empty()) continue;
        const double until = l + 1 < lines.size() ? lines[l + 1].second : total;
        std::printf("%-40.40s %9.2f\n", lines[l].first.c_str(), until - lines[l].second);
    }
    const std::string grid = dir + "/KX3.grid.dat";
    // The faster of two rounds: a virtual machine may hand out memory it has not touched lately
    // many times slower (2.5 GB took 1 s, the next 2.5 GB 5 s), which would flatter the ratio.
    double floor = 0;
    for (int round = 0; round < 2; ++round) {
        const double copies = TimedCopy(grid, grid + ".copy1") + TimedCopy(grid, grid + ".copy2");
        floor = round == 0 ? copies : std::min(floor, copies);
        std::remove((grid + ".copy1").c_str());
        std::remove((grid + ".copy2").c_str());
    }
    const double cells = GridCells(grid);
    std::printf("%-40s %9.2f\n%-40s %9.2f\n%-40s %9.1f\n", "total", total,
                "floor (two copies of the grid file)", floor, "ratio total/floor", total / floor);
    std::printf("%-40s %9.0f\n%-40s %9.0f\n%-40s %9.1f\n%-40s %9d\n", "cells", cells,
                "peak resident MB", usage.ru_maxrss / 1024.0, "peak bytes a cell",
                usage.ru_maxrss * 1024.0 / cells, "exit status",
                WIFEXITED(status) ? WEXITSTATUS(status) : -1);
    std::system(("rm -rf " + dir).c_str());
    return 0;
}
