#include "files/output_file.h"

#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cassert>
#include <cerrno>
#include <filesystem>
#include <random>
#include <system_error>

#include "text/display.h"

namespace Host {
namespace {

namespace fs = std::filesystem;

/// The path of the file that is being written aside, for the handler of signals.
std::atomic<const char*> unfinished{nullptr};
static_assert(std::atomic<const char*>::is_always_lock_free);

/// Calls nothing that a handler may not call. The signal then has its usual effect, as it is handled once.
void RemoveUnfinished(int signal) {
    const char* const path = unfinished;
    if (path != nullptr) unlink(path);
    raise(signal);
}

/// Signals that are ignored, or that somebody else waits for, stay as they are.
void HandleSignals() {
    struct sigaction action {};
    action.sa_handler = RemoveUnfinished;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigfillset(&action.sa_mask);
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGTERM, SIGXCPU}) {
        struct sigaction before {};
        sigaction(signal, nullptr, &before);
        if (before.sa_handler == SIG_DFL) sigaction(signal, &action, nullptr);
    }
    signal(SIGXFSZ, SIG_IGN);  // the write fails instead, and says why
}

std::string Reason(int error) {
    return std::generic_category().message(error);
}

bool IsSpecial(const std::string& path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    return fs::exists(status) && !fs::is_regular_file(status);
}

/// In the same directory, and no longer than names may be.
std::string NameAside(const fs::path& target) {
    constexpr std::size_t MostOfName = 200;
    const std::string name = target.filename().string().substr(0, MostOfName);
    return (target.parent_path() / (name + "." + std::to_string(std::random_device()()) + ".part")).string();
}

}  // namespace

OutputFile::OutputFile(const std::string& path) : path_(path), stream_(nullptr, std::fclose) {
    if (IsSpecial(path)) {
        stream_.reset(std::fopen(path.c_str(), "wb"));
    } else {
        OpenAside();
    }
    if (!stream_) Fail();
}

void OutputFile::OpenAside() {
    std::error_code error;
    const bool isLink = fs::is_symlink(fs::symlink_status(path_, error));
    target_ = isLink ? fs::canonical(path_, error).string() : path_;
    errno = error ? error.value() : ENOENT;
    if (fs::path(target_).filename().empty()) return;
    // Renaming would replace a file that nobody may write to.
    if (access(target_.c_str(), W_OK) != 0 && errno != ENOENT) return;
    assert(unfinished == nullptr);
    HandleSignals();
    written_ = NameAside(target_);
    unfinished = written_.c_str();
    stream_.reset(std::fopen(written_.c_str(), "wbx"));
    if (!stream_) unfinished = nullptr;
}

OutputFile::~OutputFile() {
    if (written_.empty()) return;
    std::error_code error;
    fs::remove(written_, error);
    unfinished = nullptr;
}

void OutputFile::Write(const void* bytes, std::size_t size) {
    if (std::fwrite(bytes, 1, size, stream_.get()) != size) Fail();
}

void OutputFile::Commit() {
    if (std::fclose(stream_.release()) != 0) Fail();
    if (written_.empty()) return;
    std::error_code error;
    const fs::file_status old = fs::status(target_, error);
    if (fs::exists(old)) fs::permissions(written_, old.permissions(), error);
    if (std::rename(written_.c_str(), target_.c_str()) != 0) Fail();
    unfinished = nullptr;
    written_.clear();
}

void OutputFile::Fail() const {
    const std::string reason = Reason(errno);
    throw OutputError(Printable(path_) + " cannot be written: " + reason);
}

}  // namespace Host
