#include "files/parallel.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <memory>
#include <new>
#include <system_error>
#include <thread>

#include <orvane/Exceptions.h>

#include "files/findings.h"
#include "files/output_file.h"

namespace Host {
namespace {

std::string LibraryRefusal(const char* message) {
    return std::string("the library refuses a call: ") + message;
}

/// The same for an exception that came as a pointer, which the catcher deletes.
template <class Exception>
std::string TakeOver(Exception* error) {
    const std::unique_ptr<Exception> owner(error);
    return LibraryRefusal(error->GetMessageException());
}

}  // namespace

void RunParallel(std::size_t count, unsigned jobs, const std::function<void(std::size_t)>& work) {
    std::atomic<std::size_t> next{0};
    const auto take = [&] {
        for (std::size_t i = next++; i < count; i = next++)
            work(i);
    };
    std::vector<std::thread> threads;
    const std::size_t wanted = std::min<std::size_t>(jobs, count);
    threads.reserve(wanted);
    try {
        while (threads.size() + 1 < wanted)
            threads.emplace_back(take);
    } catch (const std::system_error&) {
        // The system has no more threads; those that are there do the work.
    }
    take();
    for (std::thread& thread : threads)
        thread.join();
}

std::string RunGuarded(const std::function<void()>& work) {
    try {
        work();
        return {};
    } catch (const OutputError&) {
        throw;
    } catch (const Refusal& refusal) {
        return refusal.what();
    } catch (Orvane::OutOfMemoryException* error) {
        const std::unique_ptr<Orvane::OutOfMemoryException> owner(error);
        return "there is not enough memory for its events";
    } catch (Orvane::InvalidParameterException* error) {
        return TakeOver(error);
    } catch (Orvane::InvalidMemoryException* error) {
        return TakeOver(error);
    } catch (Orvane::RepeatFreeException* error) {
        return TakeOver(error);
    } catch (const char* message) {
        return LibraryRefusal(message);
    } catch (const std::bad_alloc&) {
        return "there is not enough memory to read it";
    } catch (const std::exception& error) {
        return error.what();
    }
}

}  // namespace Host
