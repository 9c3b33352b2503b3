// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/C_BufferAttributes.h"

#include "Core/Buffer/BufferApi.h"

#include <cstring>

namespace BufferApi
{

C_BufferAttributes::C_BufferAttributes(I_Buffer* buffer) : m_buffer(buffer)
{
    RTE::verify(buffer != nullptr, "Buffer is NULL");
}

void C_BufferAttributes::Remove(const std::string& name)
{
    m_buffer->RemoveAttribute(name);
}

int C_BufferAttributes::GetArray(const std::string& name, unsigned int count, E_DataType type,
                                 void* data) const
{
    const auto* attribute = dynamic_cast<I_AttributePlane*>(m_buffer->FindAttribute(name));
    const I_PlaneBase* plane = attribute ? attribute->GetPlane() : nullptr;
    if (!plane || plane->GetDataType() != type || plane->GetHeight() != 1 || !plane->GetData()) {
        return -1;
    }
    const unsigned int copied = std::min(count, plane->GetWidth());
    if (copied > 0) {
        RTE::verify(data != nullptr, "Data is NULL");
        std::memcpy(data, plane->GetData(), copied * GetDataTypeSize(type));
    }
    return static_cast<int>(plane->GetWidth());
}

bool C_BufferAttributes::SetArray(const std::string& name, unsigned int count, E_DataType type,
                                  const void* data)
{
    RTE::verify(data || count == 0, "Data is NULL");
    I_AttributeBase* existing = m_buffer->FindAttribute(name);
    auto* attribute = dynamic_cast<I_AttributePlane*>(existing);
    if (existing && !attribute) {
        return false;
    }
    std::unique_ptr<I_PlaneBase> plane(CreatePlane(type, count, 1));
    if (!plane) {
        return false;
    }
    if (count > 0) {
        std::memcpy(plane->GetData(), data, count * GetDataTypeSize(type));
    }
    if (!attribute) {
        attribute = dynamic_cast<I_AttributePlane*>(m_buffer->CreateAttribute(name, AT_PLANE));
    }
    attribute->SetPlane(plane.release());
    return true;
}

} // namespace BufferApi
