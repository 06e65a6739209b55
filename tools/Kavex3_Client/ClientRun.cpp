// The client's run: link up, start the worker, follow its log, stop it on request, report.
#include "ClientRun.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <iterator>
#include <sstream>
#include <vector>

#include "CommandLine.h"
#include "GeneralConLink.h"
#include "GetExecutablePath.h"
#include "LogFollower.h"

namespace {

const char* const kUsage =
    "Usage: Kavex3_Client -Grid project.Grid -SlvrRot rotor.SlvrRot -pth /abs/run/dir\n"
    "                     [-worker PATH] [-stopafter SECONDS] [--force] [--nocheck]\n"
    "\n"
    "Runs the grid generator as its front end does: starts a link manager, creates the control\n"
    "link, starts the worker with -linkid and the three files, and shows the lines of\n"
    "PTH/Kavex3_GridGen.out as they appear, each followed by the seconds it lasted (until the\n"
    "next line). Ctrl-C sets the stop flag: the worker looks at it every 3 seconds, reports\n"
    "successful completion and ends, leaving temp.Grid and temp.SlvrRot behind and its files\n"
    "partial; a worker that had done every stage by then is reported as finished, not stopped.\n"
    "A second Ctrl-C kills the worker. At the end the client reports the worker's exit status,\n"
    "its successful-completion flag and PTH/Kavex3_GridGen.err if that is not empty. Both logs\n"
    "are truncated before the worker starts, as the worker does itself.\n"
    "\n"
    "  -worker PATH       the worker to run (default: the one of this build tree, else\n"
    "                     Kavex3_GridGen on PATH)\n"
    "  --force            start the worker even when Kavex3_Check, which runs first on the\n"
    "                     project, finds errors (without it the client ends there with 2)\n"
    "  --nocheck          start the worker without the check\n"
    "  -stopafter S       set the stop flag S seconds after the worker started (fractions too)\n"
    "  -help              this text (also --help)\n"
    "\n"
    "Exit status: 0 when the worker exited with 0 and reported successful completion (also\n"
    "after a stop), 1 when it ended otherwise, 2 when the run could not be started.\n";

volatile sig_atomic_t s_intInterrupts = 0;

void OnInterrupt(int) {
    s_intInterrupts = s_intInterrupts + 1;
}

// Each line is shown as soon as it appears; its duration follows when the next one appears.
// A note of the client's own breaks the open line, and the duration then comes on a line of its
// own.
class StageDisplay {
  public:
    void Line(const std::string& strLine, double seconds) {
        if (strLine.empty()) return;
        Close(seconds);
        std::cout << strLine << std::flush;
        m_blnOpen = true;
        m_startSeconds = seconds;
    }
    void Note(const std::string& strNote) {
        if (m_blnOpen && !m_blnBroken) {
            std::cout << '\n';
            m_blnBroken = true;
        }
        std::cout << strNote << std::endl;
    }
    void Close(double seconds) {
        if (!m_blnOpen) return;
        std::cout << (m_blnBroken ? "    ..." : "") << " (" << std::fixed << std::setprecision(2)
                  << seconds - m_startSeconds << " s)" << std::endl;
        m_blnOpen = m_blnBroken = false;
    }

  private:
    bool m_blnOpen = false;
    bool m_blnBroken = false;
    double m_startSeconds = 0.0;
};

std::string Fixed(double seconds) {
    std::ostringstream text;
    text << std::fixed << std::setprecision(2) << seconds;
    return text.str();
}

// The worker in a process group of its own, so that a Ctrl-C in the terminal reaches the client
// only and becomes a stop. Returns the pid, or -1.
pid_t StartWorker(const ClientOptions& options, std::uint32_t linkId) {
    std::vector<std::string> vecArguments = {
        options.strWorker, "-Grid=" + options.strGridFile, "-SlvrRot=" + options.strRotorFile,
        "-pth=" + options.strRunDir, "-linkid=" + std::to_string(linkId)};
    std::vector<char*> argv;
    for (std::string& strArgument : vecArguments) argv.push_back(&strArgument[0]);
    argv.push_back(nullptr);
    const pid_t pid = fork();
    if (pid == 0) {
        setpgid(0, 0);
        execv(argv[0], argv.data());
        _exit(127);
    }
    if (pid > 0) setpgid(pid, pid);
    return pid;
}

std::string WorkerEnd(int status) {
    if (WIFEXITED(status)) return "exit status " + std::to_string(WEXITSTATUS(status));
    if (WIFSIGNALED(status)) return "killed by signal " + std::to_string(WTERMSIG(status));
    return "ended with wait status " + std::to_string(status);
}

// A worker that ends on the stop leaves its temporary files behind; one that had finished every
// stage before it looked at the flag has removed them, and its files are whole.
void ReportStop(const std::string& strRunDir, double secondsAfterStop, int status) {
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) return;
    const bool blnStopped = access((strRunDir + "/temp.Grid").c_str(), F_OK) == 0 ||
                            access((strRunDir + "/temp.SlvrRot").c_str(), F_OK) == 0;
    if (blnStopped) {
        std::cout << "Stopped on request: the worker ended " << Fixed(secondsAfterStop)
                  << " s after the stop was set\nThe files left in " << strRunDir
                  << " are partial: the run did not finish\n";
    } else {
        std::cout << "Finished before the stop took effect: the worker had done every stage and "
                     "its files are complete\n";
    }
}

}  // namespace

int RunClient(const ClientOptions& options) {
    using Dorva::LinkManager;
    LinkManager::Result result = LinkManager::Startup();
    if (result != LinkManager::SUCCESS) {
        std::cerr << "Kavex3_Client: can't start the link manager: "
                  << LinkManager::GetResultString(result) << std::endl;
        return CLIENT_CANNOT_RUN;
    }
    Dorva::GeneralConLink* link = new Dorva::GeneralConLink(result);
    if (result != LinkManager::SUCCESS) {
        std::cerr << "Kavex3_Client: can't create the control link: "
                  << LinkManager::GetResultString(result) << std::endl;
        delete link;
        LinkManager::Shutdown();
        return CLIENT_CANNOT_RUN;
    }
    const std::string strOut = options.strRunDir + "/Kavex3_GridGen.out";
    const std::string strErr = options.strRunDir + "/Kavex3_GridGen.err";
    std::ofstream(strOut.c_str(), std::ios::trunc);
    std::ofstream(strErr.c_str(), std::ios::trunc);

    struct sigaction action = {};
    action.sa_handler = OnInterrupt;
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, nullptr);

    const auto start = std::chrono::steady_clock::now();
    const auto elapsed = [&start] {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    };
    const pid_t pid = StartWorker(options, link->GetLinkId());
    if (pid < 0) {
        std::cerr << "Kavex3_Client: can't start the worker: " << std::strerror(errno) << std::endl;
        delete link;
        LinkManager::Shutdown();
        return CLIENT_CANNOT_RUN;
    }
    std::cout << "Worker " << options.strWorker << " started on link " << link->GetLinkId()
              << " (pid " << pid << ")" << std::endl;

    StageDisplay display;
    LogFollower follower(strOut);
    double stopSeconds = -1.0;
    bool blnKilled = false;
    int status = 0;
    for (;;) {
        for (const std::string& strLine : follower.ReadNewLines()) display.Line(strLine, elapsed());
        const pid_t ended = waitpid(pid, &status, WNOHANG);
        if (ended == pid || (ended < 0 && errno != EINTR)) break;
        const bool blnTimedStop =
            options.stopAfterSeconds >= 0.0 && elapsed() >= options.stopAfterSeconds;
        if (stopSeconds < 0.0 && (s_intInterrupts > 0 || blnTimedStop)) {
            result = link->SetStop(true);
            stopSeconds = elapsed();
            display.Note(result == LinkManager::SUCCESS
                             ? "Stop set at " + Fixed(stopSeconds) + " s; waiting for the worker."
                             : "Could not set the stop flag: " +
                                   LinkManager::GetResultString(result));
        }
        if (s_intInterrupts > 1 && !blnKilled) {
            display.Note("Second interrupt: killing the worker.");
            kill(pid, SIGKILL);
            blnKilled = true;
        }
        usleep(100000);
    }
    const double endSeconds = elapsed();
    for (const std::string& strLine : follower.ReadRest()) display.Line(strLine, endSeconds);
    display.Close(endSeconds);

    bool blnSuccess = false;
    result = link->GetSuccessfulCompletion(blnSuccess);
    std::cout << "Worker ended after " << Fixed(endSeconds) << " s: " << WorkerEnd(status) << '\n'
              << "Successful completion: "
              << (result != LinkManager::SUCCESS
                      ? "unknown (" + LinkManager::GetResultString(result) + ")"
                  : blnSuccess ? "yes"
                               : "no")
              << '\n';
    if (stopSeconds >= 0.0) ReportStop(options.strRunDir, endSeconds - stopSeconds, status);
    std::ifstream errLog(strErr.c_str(), std::ios::binary);
    const std::string strErrText((std::istreambuf_iterator<char>(errLog)),
                                 std::istreambuf_iterator<char>());
    if (!strErrText.empty()) {
        std::cout << "Error log " << strErr << ":\n"
                  << strErrText << (strErrText.back() == '\n' ? "" : "\n");
    }
    std::cout.flush();
    delete link;
    LinkManager::Shutdown();
    const bool blnClean = WIFEXITED(status) && WEXITSTATUS(status) == 0 && blnSuccess;
    return blnClean ? CLIENT_SUCCESS : CLIENT_RUN_FAILED;
}

bool CheckFirst(const ClientOptions& options) {
    if (options.strChecker.empty()) return true;
    std::vector<std::string> vecArguments = {
        options.strChecker, options.strGridFile, "-SlvrRot", options.strRotorFile, "-pth",
        options.strRunDir};
    std::vector<char*> argv;
    for (std::string& strArgument : vecArguments) argv.push_back(&strArgument[0]);
    argv.push_back(nullptr);
    std::cout << "Checking " << options.strGridFile << std::endl;
    const pid_t pid = fork();
    if (pid == 0) {
        execv(argv[0], argv.data());
        _exit(127);
    }
    int status = 0;
    if (pid < 0 || waitpid(pid, &status, 0) != pid || !WIFEXITED(status) ||
        WEXITSTATUS(status) > 1) {
        std::cout << "The check could not be run (" << WorkerEnd(status) << ")." << std::endl;
        return options.blnForce;
    }
    if (WEXITSTATUS(status) == 0) return true;
    std::cout << (options.blnForce ? "The check found errors; starting the worker all the same "
                                     "(--force)."
                                   : "The check found errors: the worker is not started (--force "
                                     "starts it all the same).")
              << std::endl;
    return options.blnForce;
}

int ClientMain(int argc, char** argv) {
    Dorva::CommandLine::SetParameters(argc, argv);
    if (Dorva::CommandLine::GetArgument("help") || argc < 2) {
        std::cout << kUsage;
        return argc < 2 ? CLIENT_CANNOT_RUN : CLIENT_SUCCESS;
    }
    ClientOptions options;
    if (!Dorva::CommandLine::GetArgument("Grid", options.strGridFile) ||
        !Dorva::CommandLine::GetArgument("SlvrRot", options.strRotorFile) ||
        !Dorva::CommandLine::GetArgument("pth", options.strRunDir)) {
        std::cerr << "Kavex3_Client: -Grid, -SlvrRot and -pth are required (see --help)"
                  << std::endl;
        return CLIENT_CANNOT_RUN;
    }
    if (Dorva::CommandLine::GetArgument("stopafter") &&
        (!Dorva::CommandLine::GetArgument("stopafter", options.stopAfterSeconds) ||
         options.stopAfterSeconds < 0.0)) {
        std::cerr << "Kavex3_Client: -stopafter needs a number of seconds" << std::endl;
        return CLIENT_CANNOT_RUN;
    }
    if (!Dorva::CommandLine::GetArgument("worker", options.strWorker)) {
        options.strWorker = access(KAVEX3_BUILT_WORKER, X_OK) == 0
                                ? KAVEX3_BUILT_WORKER
                                : Dorva::GetExecutablePath("Kavex3_GridGen").Get();
    }
    if (options.strWorker.empty() || access(options.strWorker.c_str(), X_OK) != 0) {
        std::cerr << "Kavex3_Client: no worker to run at \"" << options.strWorker
                  << "\" (give -worker PATH)" << std::endl;
        return CLIENT_CANNOT_RUN;
    }
    options.blnForce = Dorva::CommandLine::GetArgument("force");
    if (!Dorva::CommandLine::GetArgument("nocheck"))
        options.strChecker = access(KAVEX3_BUILT_CHECK, X_OK) == 0
                                 ? KAVEX3_BUILT_CHECK
                                 : Dorva::GetExecutablePath("Kavex3_Check").Get();
    if (!CheckFirst(options)) return CLIENT_CANNOT_RUN;
    return RunClient(options);
}
