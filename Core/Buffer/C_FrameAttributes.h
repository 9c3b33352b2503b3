// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Frame.h"

namespace BufferApi
{

/// Access to the attributes of a frame, which must outlive this object. Names must not be empty: each call
/// raises RTE::InvalidArgumentError "Empty name" then.
class DATAOBJECTS_BUFFER_EXPORT C_FrameAttributes
{
public:
    /// \throws RTE::VerificationFailed "Frame is NULL"
    explicit C_FrameAttributes(I_Frame* frame);

    /// As `I_Frame::RemoveAttribute`; a name that is not there is no error.
    void Remove(const std::string& name);
    /// The text of a text attribute; empty when it is absent or of another kind.
    [[nodiscard]] QString GetString(const std::string& name) const;

private:
    I_Frame* m_frame;
};

} // namespace BufferApi
