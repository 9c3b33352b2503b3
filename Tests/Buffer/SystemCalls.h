// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mutex>
#include <string>
#include <vector>

/// \file
/// Calls of the libraries below the store, which this program answers in their place.
namespace TestSupport
{

/// While it lives, whole pages of zeros that are written become holes of the file, so that large files cost
/// neither time nor space.
class HolesForZeros
{
public:
    HolesForZeros();
    HolesForZeros(const HolesForZeros&) = delete;
    HolesForZeros& operator=(const HolesForZeros&) = delete;
    ~HolesForZeros();
};

/// What files and folders go through while it lives: "write", "fsync", "fsync folder", "rename"; what follows
/// upon itself stands once.
class FileCalls
{
public:
    FileCalls();
    FileCalls(const FileCalls&) = delete;
    FileCalls& operator=(const FileCalls&) = delete;
    ~FileCalls();

    void add(const std::string& call);
    [[nodiscard]] const std::vector<std::string>& calls() const noexcept { return m_calls; }

private:
    std::mutex m_mutex;
    std::vector<std::string> m_calls;
};

/// Lets each thread that packs or unpacks a large chunk wait until another one does so too, for some seconds
/// at most.
class CoderMeeting
{
public:
    CoderMeeting();
    CoderMeeting(const CoderMeeting&) = delete;
    CoderMeeting& operator=(const CoderMeeting&) = delete;
    ~CoderMeeting();

    /// Whether two threads met while they packed, and while they unpacked.
    [[nodiscard]] bool havePacked() const;
    [[nodiscard]] bool haveUnpacked() const;
};

} // namespace TestSupport
