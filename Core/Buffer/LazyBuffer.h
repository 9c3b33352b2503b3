// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Buffer.h"

#include <memory>

namespace BufferApi
{

/// Where a buffer of an imported file has its frames from. Several threads may call `frame` at once.
class DATAOBJECTS_BUFFER_EXPORT FrameSource
{
public:
    FrameSource(const FrameSource&) = delete;
    FrameSource& operator=(const FrameSource&) = delete;
    virtual ~FrameSource();

    /// A new frame. \throws RTE::Exception when it cannot be had
    [[nodiscard]] virtual std::unique_ptr<I_Frame> frame(unsigned int index) const = 0;

protected:
    FrameSource() = default;
};

/// A buffer that makes its first `count` frames when they are asked for, each once however many threads ask;
/// so it costs neither time nor memory how many there are. A frame that cannot be made raises to its caller
/// and is tried again the next time.
[[nodiscard]] DATAOBJECTS_BUFFER_EXPORT std::unique_ptr<I_Buffer>
createLazyBuffer(unsigned int count, std::shared_ptr<const FrameSource> source);

} // namespace BufferApi
