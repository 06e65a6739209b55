// Output files of a run: each stream writes through a checked file descriptor that keeps the first
// failure's reason, so that whichever write, flush or close meets it, the reason is the system's.
#include "generator/gdoutfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

#include "generator/gdutil.h"

namespace {

struct out_file {
    std::string path;
    std::string temp;  // empty when written in place
    int fd = -1;
    int err = 0;  // errno of the first failure
    FILE* stream = nullptr;
};

std::vector<out_file*> open_outputs;

ssize_t write_out(void* cookie, const char* buf, size_t size) {
    out_file* f = static_cast<out_file*>(cookie);
    if (f->err) return 0;
    size_t done = 0;
    while (done < size) {
        const ssize_t n = ::write(f->fd, buf + done, size - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) {
            f->err = n < 0 ? errno : EIO;
            return static_cast<ssize_t>(done);
        }
        done += static_cast<size_t>(n);
    }
    return static_cast<ssize_t>(size);
}

int close_out(void* cookie) {
    out_file* f = static_cast<out_file*>(cookie);
    if (::close(f->fd) != 0 && !f->err) f->err = errno;
    f->fd = -1;
    return f->err ? -1 : 0;
}

const cookie_io_functions_t out_functions = {nullptr, write_out, nullptr, close_out};

out_file* find_output(FILE* stream) {
    auto at = std::find_if(open_outputs.begin(), open_outputs.end(),
                           [stream](const out_file* f) { return f->stream == stream; });
    return at == open_outputs.end() ? nullptr : *at;
}

void forget_output(out_file* f) {
    open_outputs.erase(std::find(open_outputs.begin(), open_outputs.end(), f));
}

// The path is a copy: abandoning the outputs frees their records.
[[noreturn]] void output_failed(std::string path, int err) {
    gd_abandon_outputs();
    printfErrNexit("writing '%s': %s", path.c_str(), std::strerror(err));
}

// fopen(path, "w") refuses a folder and a file it may not write; the temporary name must not
// hide that.
bool writable_target(const char* path) {
    struct stat st;
    if (::stat(path, &st) != 0) return true;
    if (S_ISDIR(st.st_mode)) {
        errno = EISDIR;
        return false;
    }
    return ::access(path, W_OK) == 0;
}

}  // namespace

FILE* gd_try_open_output(const char* path, bool inPlace) {
    if (!inPlace && !writable_target(path)) return nullptr;
    out_file* f = new out_file;
    f->path = path;
    if (!inPlace) f->temp = f->path + ".part";
    const std::string& name = inPlace ? f->path : f->temp;
    f->fd = ::open(name.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (f->fd >= 0) f->stream = fopencookie(f, "w", out_functions);
    if (!f->stream) {
        const int err = errno;
        if (f->fd >= 0) {
            ::close(f->fd);
            if (!inPlace) ::unlink(name.c_str());
        }
        delete f;
        errno = err;
        return nullptr;
    }
    std::setvbuf(f->stream, nullptr, _IOFBF, 1 << 16);
    open_outputs.push_back(f);
    return f->stream;
}

FILE* gd_open_output(const char* path) {
    FILE* stream = gd_try_open_output(path);
    if (!stream) perrorNexit("fopen");
    return stream;
}

void gd_check_output(FILE* stream) {
    const out_file* f = find_output(stream);
    if (f && (f->err || std::ferror(stream))) output_failed(f->path, f->err ? f->err : EIO);
}

bool gd_finish_output(FILE* stream) {
    out_file* f = find_output(stream);
    if (!f) return std::fclose(stream) == 0;
    forget_output(f);
    const bool closed = std::fclose(stream) == 0;
    int err = f->err ? f->err : (closed ? 0 : EIO);
    if (!err && !f->temp.empty() && std::rename(f->temp.c_str(), f->path.c_str()) != 0) err = errno;
    if (err && !f->temp.empty()) ::unlink(f->temp.c_str());
    delete f;
    errno = err;
    return err == 0;
}

void gd_close_output(FILE* stream) {
    const out_file* f = find_output(stream);
    const std::string path = f ? f->path : std::string("?");
    if (!gd_finish_output(stream)) output_failed(path, errno);
}

void gd_abandon_output(FILE* stream) {
    out_file* f = find_output(stream);
    if (!f) return;
    forget_output(f);
    std::fclose(f->stream);
    if (!f->temp.empty()) ::unlink(f->temp.c_str());
    delete f;
}

void gd_abandon_outputs() {
    while (!open_outputs.empty()) gd_abandon_output(open_outputs.back()->stream);
}
