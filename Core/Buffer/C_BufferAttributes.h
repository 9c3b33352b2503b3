// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Buffer.h"

namespace BufferApi
{

/// Access to the attributes of a buffer, which must outlive this object. Names must not be empty: each call
/// raises RTE::InvalidArgumentError "Empty name" then.
class DATAOBJECTS_BUFFER_EXPORT C_BufferAttributes
{
public:
    /// \throws RTE::VerificationFailed "Buffer is NULL"
    explicit C_BufferAttributes(I_Buffer* buffer);

    /// As `I_Buffer::RemoveAttribute`; a name that is not there is no error.
    void Remove(const std::string& name);

    /// Copies up to `count` elements of a list. Gives the number of elements that the list holds, which may
    /// be more, or -1 when there is no list of this name and type.
    /// \param data may be null when `count` is 0, else RTE::VerificationFailed "Data is NULL"
    [[nodiscard]] int GetArray(const std::string& name, unsigned int count, E_DataType type,
                               void* data) const;
    /// Writes a list in place of an earlier one, whatever its type and length. False, and nothing is changed,
    /// when the name belongs to an attribute of another kind or the type is not supported.
    /// \param data `count` elements; may be null when `count` is 0, else RTE::VerificationFailed "Data is
    /// NULL"
    bool SetArray(const std::string& name, unsigned int count, E_DataType type, const void* data);

private:
    I_Buffer* m_buffer;
};

} // namespace BufferApi
