// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Frame.h"
#include "Core/Buffer/KnownFormats.h"

#include <map>
#include <mutex>

namespace Qf
{

/// What frames lose in a format that cannot hold all of them: all but the pixels, and pixels of types that it
/// does not know. Vectors and volumes cannot be made to fit; writing them is refused.
///
/// Several threads may call it at once, for different frames.
class Losses
{
public:
    /// \param format what is written \param areAccepted frames are made to fit, else refused
    Losses(const BufferApi::KnownFormat& format, bool areAccepted)
        : m_format(format), m_areAccepted(areAccepted)
    {
    }

    /// Takes out of the frame what the file cannot hold. Pixels become words, saturated to 0 and 65535 with
    /// their fractions cut. \param path the file to write, for the error
    /// \throws RTE::FileWriteError for a frame that would lose something, unless losses are accepted
    void fit(BufferApi::I_Frame& frame, const QString& path);
    /// "lost: the component 'MASK' (5 frames), …"; empty when nothing was.
    [[nodiscard]] QString report() const;

private:
    void note(const QString& what, const QString& path);
    void fitComponents(BufferApi::I_Frame& frame, const QString& path);
    void fitColours(BufferApi::I_Frame& frame, const QString& path);
    void fitPixels(BufferApi::I_Frame& frame, const QString& path);

    const BufferApi::KnownFormat& m_format;
    bool m_areAccepted;
    mutable std::mutex m_mutex;
    /// Frames by what they lost.
    std::map<QString, unsigned long long> m_frames;
};

} // namespace Qf
