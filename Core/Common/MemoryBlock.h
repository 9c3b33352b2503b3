// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Export.h"

#include <memory>

namespace RTE
{

/// A block of bytes, owned through `std::unique_ptr<RTE::MemoryBlock>`.
///
/// The holder calls `release` just before it destroys the block, so that a block from a pool can go back to
/// it.
class DATAOBJECTS_COMMON_EXPORT MemoryBlock
{
public:
    virtual ~MemoryBlock();

    /// First byte; not null for a usable block. Constness is that of the block, not of its bytes.
    [[nodiscard]] virtual void* data() const = 0;
    /// Size in bytes.
    [[nodiscard]] virtual unsigned long long size() const = 0;
    virtual void release() = 0;

protected:
    MemoryBlock() = default;
    MemoryBlock(const MemoryBlock&) = default;
    MemoryBlock& operator=(const MemoryBlock&) = default;
};

/// A block over memory that somebody else owns and keeps alive; `release` does nothing.
class DATAOBJECTS_COMMON_EXPORT UnmanagedMemory : public MemoryBlock
{
public:
    UnmanagedMemory(void* data, unsigned long long size) noexcept : m_data(data), m_size(size) {}

    [[nodiscard]] void* data() const override { return m_data; }
    [[nodiscard]] unsigned long long size() const override { return m_size; }
    void release() override {}

private:
    void* m_data;
    unsigned long long m_size;
};

/// A block that owns its bytes, uninitialised at first and aligned for every pixel type; `release` frees
/// them.
class DATAOBJECTS_COMMON_EXPORT OwnedMemory : public MemoryBlock
{
public:
    explicit OwnedMemory(unsigned long long size);

    [[nodiscard]] void* data() const override { return m_data.get(); }
    [[nodiscard]] unsigned long long size() const override { return m_data ? m_size : 0; }
    void release() override { m_data.reset(); }

private:
    std::unique_ptr<unsigned char[]> m_data;
    unsigned long long m_size;
};

} // namespace RTE
