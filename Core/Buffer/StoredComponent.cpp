// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/StoredComponent.h"

#include "Core/Buffer/LazyPlane.h"

namespace BufferApi
{

StoredComponent::StoredComponent(const std::string& name, E_DataType type, PlaneList planes, ScalePlace place,
                                 Zt::LinearScale& frameScale, bool& modified)
    : m_name(name), m_type(type), m_planes(std::move(planes)), m_place(place), m_frameScale(frameScale),
      m_modified(modified)
{
    for (const auto& plane : m_planes) {
        static_cast<void>(claimPlane(*plane));
    }
}

const Zt::LinearScale& StoredComponent::GetScale() const
{
    static const Zt::LinearScale identity(1.0, 0.0, QString(), QString());
    if (m_ownScale) {
        return *m_ownScale;
    }
    return m_place == ScalePlace::Own ? identity : m_frameScale;
}

I_PlaneBase* StoredComponent::GetPlane(unsigned int z) const
{
    return z < m_planes.size() ? m_planes[z].get() : nullptr;
}

void StoredComponent::SetScale(const Zt::LinearScale& scale)
{
    if (m_place == ScalePlace::Frame) {
        m_frameScale = scale;
    } else {
        m_ownScale = scale;
    }
    m_modified = true;
}

unsigned int StoredComponent::GetPlaneCount() const
{
    return static_cast<unsigned int>(m_planes.size());
}

bool StoredComponent::holdsAnyOf(const std::vector<void*>& arrays) const
{
    return std::any_of(m_planes.begin(), m_planes.end(), [&](const auto& plane) {
        return !isUnread(*plane) && std::binary_search(arrays.begin(), arrays.end(), plane->GetData());
    });
}

void StoredComponent::adopt(const std::vector<void*>& arrays) noexcept
{
    for (std::size_t z = 0; z < arrays.size(); ++z) {
        adoptArray(*m_planes[z], arrays[z]);
    }
}

void StoredComponent::fill(unsigned char value)
{
    for (const auto& plane : m_planes) {
        fillBytes(*plane, value);
    }
}

} // namespace BufferApi
