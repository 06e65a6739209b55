// Test helpers for the link: a region name of the test's own, removed afterwards, and peer
// processes (the link_peer program) driven through their standard streams.
#pragma once

#include <fcntl.h>
#include <semaphore.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

#include "GetUsername.h"

// "DorvaLMtest_" + user + the test process's pid + a tag: no real run and no other test job
// shares it. The test created both objects, so it removes them (the product never does).
class TestRegion {
  public:
    explicit TestRegion(const std::string& tag)
        : m_name("DorvaLMtest_" + Dorva::GetUsername() + "_" + std::to_string(getpid()) + "_" +
                 tag) {}
    ~TestRegion() {
        shm_unlink(("/" + m_name).c_str());
        sem_unlink(("/" + m_name).c_str());
    }
    TestRegion(const TestRegion&) = delete;
    TestRegion& operator=(const TestRegion&) = delete;
    const std::string& Name() const { return m_name; }

  private:
    std::string m_name;
};

// One link_peer process running the given commands, with pipes to its stdin and stdout.
class LinkPeer {
  public:
    LinkPeer(const std::string& region, const std::vector<std::string>& commands) {
        // Close-on-exec, so that later peers don't hold these pipes open.
        int in[2], out[2];
        if (pipe2(in, O_CLOEXEC) != 0 || pipe2(out, O_CLOEXEC) != 0) {
            throw std::runtime_error("pipe failed");
        }
        std::vector<char*> argv = {const_cast<char*>(KAVEX_LINK_PEER),
                                   const_cast<char*>(region.c_str())};
        for (const std::string& command : commands)
            argv.push_back(const_cast<char*>(command.c_str()));
        argv.push_back(nullptr);
        m_pid = fork();
        if (m_pid == 0) {
            dup2(in[0], 0);
            dup2(out[1], 1);
            execv(KAVEX_LINK_PEER, argv.data());
            _exit(127);
        }
        close(in[0]);
        close(out[1]);
        m_stdin = in[1];
        m_stdout = fdopen(out[0], "r");
    }
    ~LinkPeer() {
        if (m_pid > 0) {
            kill(m_pid, SIGKILL);
            Wait();
        }
        CloseStdin();
        if (m_stdout != nullptr) fclose(m_stdout);
    }
    LinkPeer(const LinkPeer&) = delete;
    LinkPeer& operator=(const LinkPeer&) = delete;

    // The next line of output without its line end; "" at the end of the output.
    std::string ReadLine() {
        std::string line;
        for (int c; (c = fgetc(m_stdout)) != EOF && c != '\n';) line += static_cast<char>(c);
        return line;
    }
    // All further output, up to the process's end.
    std::string ReadAll() {
        std::string text;
        for (int c; (c = fgetc(m_stdout)) != EOF;) text += static_cast<char>(c);
        return text;
    }
    // Lets a "wait" command go on.
    void Go() {
        if (write(m_stdin, "\n", 1) != 1) throw std::runtime_error("write failed");
    }
    void CloseStdin() {
        if (m_stdin >= 0) close(m_stdin);
        m_stdin = -1;
    }
    void Kill() { kill(m_pid, SIGKILL); }
    // The exit status, or -1 when the process didn't exit by itself.
    int Wait() {
        int status = 0;
        waitpid(m_pid, &status, 0);
        m_pid = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

  private:
    pid_t m_pid = -1;
    int m_stdin = -1;
    FILE* m_stdout = nullptr;
};

// Runs one peer to its end and gives its whole output.
inline std::string RunPeer(const std::string& region, const std::vector<std::string>& commands) {
    LinkPeer peer(region, commands);
    return peer.ReadAll();
}
