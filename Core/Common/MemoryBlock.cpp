// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/MemoryBlock.h"

#include "Core/Common/Array.h"

namespace RTE
{

MemoryBlock::~MemoryBlock() = default;

OwnedMemory::OwnedMemory(unsigned long long size) : m_data(newArray<unsigned char>(size)), m_size(size) {}

} // namespace RTE
