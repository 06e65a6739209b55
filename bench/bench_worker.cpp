// A timed run of the whole worker on one STL body: writes a project around the body, runs the
// executable in a fresh run directory, and reports the wall time of each stage (from the lines of
// its log as they appear) and the peak resident memory.
//   bench_worker WORKER BODY.stl [CORE_CELLS=200] [OUTER_CELLS=28]
// Each axis gets OUTER_CELLS graded cells over half the body's length before and after it and
// CORE_CELLS uniform cells across it, plus the generator's two end cells: with the defaults about
// 258^3 cells.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

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

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: %s WORKER BODY.stl [CORE_CELLS] [OUTER_CELLS]\n", argv[0]);
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
    char pattern[] = "/tmp/bench_worker_XXXXXX";
    if (!mkdtemp(pattern)) return 1;
    const std::string dir = pattern;
    std::ofstream(dir + "/bench.Grid")
        << Project(body, argc > 3 ? std::atoi(argv[3]) : 200, argc > 4 ? std::atoi(argv[4]) : 28);
    std::ofstream(dir + "/bench.SlvrRot") << "0\n";

    const auto start = std::chrono::steady_clock::now();
    const pid_t pid = fork();
    if (pid == 0) {
        if (chdir(dir.c_str()) != 0) _exit(120);
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
    std::printf("%-40s %9.2f\n%-40s %9.0f\n%-40s %9d\n", "total", total, "peak resident MB",
                usage.ru_maxrss / 1024.0, "exit status",
                WIFEXITED(status) ? WEXITSTATUS(status) : -1);
    std::system(("rm -rf " + dir).c_str());
    return 0;
}
