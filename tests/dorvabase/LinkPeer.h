// Test helpers for the link: a region name of the test's own, removed afterwards, and peer
// processes (the link_peer program) driven through their standard streams.
#pragma once

#include <fcntl.h>
#include <semaphore.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "GetUsername.h"

// "DorvaLMtest_" + user + the test process's pid + a tag: no real run and no other test job
// shares it. The test created both objects, so it removes them (the product never does).
struct TestRegion {
    explicit TestRegion(const std::string& tag)
        : strName("DorvaLMtest_" + Dorva::GetUsername() + "_" + std::to_string(getpid()) + "_" +
                  tag) {}
    ~TestRegion() {
        shm_unlink(("/" + strName).c_str());
        sem_unlink(("/" + strName).c_str());
    }
    const std::string strName;
};

// The region of a test, mapped into the test process to look at it as the front end would.
class RegionView {
  public:
    explicit RegionView(const std::string& name) {
        const int fd = shm_open(("/" + name).c_str(), O_RDWR, 0);
        void* base = mmap(nullptr, 462000, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
        if (fd >= 0) close(fd);
        if (base == MAP_FAILED) throw std::runtime_error("no region " + name);
        m_base = static_cast<unsigned char*>(base);
    }
    ~RegionView() { munmap(m_base, 462000); }
    std::int64_t* Slot(int slot) { return reinterpret_cast<std::int64_t*>(m_base) + slot; }
    unsigned char* Block(int id) { return m_base + 400 + id * 4616; }

  private:
    unsigned char* m_base;
};

// One link_peer process running the given commands (words separated by blanks), with pipes to its
// stdin and stdout. The pipes are close-on-exec, so that later peers don't hold them open.
class LinkPeer {
  public:
    LinkPeer(const std::string& region, const std::string& words) {
        int in[2], out[2];
        if (pipe2(in, O_CLOEXEC) != 0 || pipe2(out, O_CLOEXEC) != 0) return;
        std::vector<std::string> commands = {KAVEX_LINK_PEER, region};
        std::istringstream split(words);
        for (std::string word; split >> word;) commands.push_back(word);
        std::vector<char*> argv;
        for (std::string& word : commands) argv.push_back(&word[0]);
        argv.push_back(nullptr);
        m_pid = fork();
        if (m_pid == 0) {
            dup2(in[0], 0);
            dup2(out[1], 1);
            execv(KAVEX_LINK_PEER, argv.data());
            _exit(127);
        }
        close(in[0]), close(out[1]);
        m_stdin = in[1];
        m_stdout = fdopen(out[0], "r");
    }
    ~LinkPeer() {
        Kill();
        close(m_stdin);
        if (m_stdout != nullptr) fclose(m_stdout);
    }

    // The next n lines of output with their line ends; by default all of it, up to the end.
    std::string Read(int n = -1) {
        std::string text;
        for (int c; m_stdout && n != 0 && (c = fgetc(m_stdout)) != EOF; n -= c == '\n')
            text += char(c);
        return text;
    }
    // Lets a "wait" command go on.
    void Go() { (void)!write(m_stdin, "\n", 1); }
    void Kill() {
        if (m_pid <= 0) return;
        kill(m_pid, SIGKILL);
        waitpid(m_pid, nullptr, 0);
        m_pid = -1;
    }

  private:
    pid_t m_pid = -1;
    int m_stdin = -1;
    FILE* m_stdout = nullptr;
};

// Runs one peer to its end and gives its whole output.
inline std::string RunPeer(const std::string& region, const std::string& words) {
    return LinkPeer(region, words).Read();
}
