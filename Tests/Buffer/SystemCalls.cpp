// SPDX-License-Identifier: Apache-2.0
#include "Tests/Buffer/SystemCalls.h"

#include <isa-l/igzip_lib.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstring>

#include <dlfcn.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace TestSupport
{

namespace
{

constexpr std::size_t pageBytes = 4096;
// Larger than those of columns, for which threads that read one file have to wait.
constexpr unsigned int largeChunk = 100'000;

std::atomic<bool> leavesHoles = false;
std::atomic<FileCalls*> fileCalls = nullptr;

void logCall(const char* call)
{
    if (FileCalls* const log = fileCalls) {
        log->add(call);
    }
}

bool isZero(const void* data, std::size_t bytes)
{
    const auto* first = static_cast<const unsigned char*>(data);
    return first[0] == 0 && std::memcmp(first, first + 1, bytes - 1) == 0;
}

ssize_t write(int file, const void* source, std::size_t bytes, off_t offset)
{
    logCall("write");
    if (leavesHoles && bytes >= pageBytes && isZero(source, bytes)) {
        return static_cast<ssize_t>(bytes);
    }
    return syscall(SYS_pwrite64, file, source, bytes, offset);
}

/// Where threads wait for a second one.
class Meeting
{
public:
    void begin()
    {
        const std::scoped_lock lock(m_mutex);
        m_isOn = true;
        m_arrived = 0;
    }
    void end()
    {
        const std::scoped_lock lock(m_mutex);
        m_isOn = false;
    }
    void arrive()
    {
        std::unique_lock lock(m_mutex);
        if (m_isOn && m_arrived < 2) {
            ++m_arrived;
            m_changed.notify_all();
            if (!m_changed.wait_for(lock, std::chrono::seconds(5), [&] { return m_arrived == 2; })) {
                --m_arrived;
            }
        }
    }
    [[nodiscard]] bool hasTakenPlace()
    {
        const std::scoped_lock lock(m_mutex);
        return m_arrived == 2;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_isOn = false;
    int m_arrived = 0;
};

Meeting packing;
Meeting unpacking;

template <typename Function>
Function next(const char* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

} // namespace

HolesForZeros::HolesForZeros()
{
    leavesHoles = true;
}

HolesForZeros::~HolesForZeros()
{
    leavesHoles = false;
}

FileCalls::FileCalls()
{
    fileCalls = this;
}

FileCalls::~FileCalls()
{
    fileCalls = nullptr;
}

void FileCalls::add(const std::string& call)
{
    const std::scoped_lock lock(m_mutex);
    if (m_calls.empty() || m_calls.back() != call) {
        m_calls.push_back(call);
    }
}

CoderMeeting::CoderMeeting()
{
    packing.begin();
    unpacking.begin();
}

CoderMeeting::~CoderMeeting()
{
    packing.end();
    unpacking.end();
}

bool CoderMeeting::havePacked() const
{
    return packing.hasTakenPlace();
}

bool CoderMeeting::haveUnpacked() const
{
    return unpacking.hasTakenPlace();
}

} // namespace TestSupport

// In place of the system's and the coder's for all libraries of this process.
#define ANSWERED extern "C" __attribute__((visibility("default")))

ANSWERED ssize_t pwrite(int file, const void* source, std::size_t bytes, off_t offset)
{
    return TestSupport::write(file, source, bytes, offset);
}

ANSWERED ssize_t pwrite64(int file, const void* source, std::size_t bytes, off64_t offset)
{
    return TestSupport::write(file, source, bytes, offset);
}

ANSWERED int fsync(int file)
{
    struct stat status = {};
    fstat(file, &status);
    TestSupport::logCall(S_ISDIR(status.st_mode) ? "fsync folder" : "fsync");
    return static_cast<int>(syscall(SYS_fsync, file));
}

ANSWERED int rename(const char* from, const char* to) noexcept
{
    TestSupport::logCall("rename");
    return static_cast<int>(syscall(SYS_rename, from, to));
}

ANSWERED int isal_deflate_stateless(isal_zstream* stream)
{
    static const auto real = TestSupport::next<int (*)(isal_zstream*)>("isal_deflate_stateless");
    if (stream->avail_in >= TestSupport::largeChunk) {
        TestSupport::packing.arrive();
    }
    return real(stream);
}

ANSWERED int isal_inflate(inflate_state* state)
{
    static const auto real = TestSupport::next<int (*)(inflate_state*)>("isal_inflate");
    if (state->avail_out >= TestSupport::largeChunk) {
        TestSupport::unpacking.arrive();
    }
    return real(state);
}
