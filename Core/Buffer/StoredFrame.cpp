// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/StoredFrame.h"

#include "Core/Buffer/ElementTypes.h"

namespace BufferApi
{

namespace
{

constexpr unsigned int noComponent = 0xFFFFFFFF;

void verifyArgument(bool holds, const QString& text,
                    RTE::SourceLocation location = RTE::SourceLocation::current())
{
    if (!holds) {
        RTE::raise(RTE::InvalidArgumentError(text), location);
    }
}

Zt::LinearScale defaultScaleI(const FrameShape& shape)
{
    return isVectorKind(shape.kind) ? Zt::LinearScale(1.0, 0.0, QStringLiteral("pixel"), QString())
                                    : Zt::LinearScale(Zt::ScalePreset::I);
}

} // namespace

StoredFrame::StoredFrame(const FrameShape& shape) : m_shape(shape), m_scaleI(defaultScaleI(shape)) {}

unsigned int StoredFrame::AddComponent(const std::string& name, E_DataType type,
                                       const std::vector<void*>& planes)
{
    checkArrays(type, planes);
    append(name, type, makePlanes(type, !planes.empty())).adopt(planes);
    return GetComponentCount() - 1;
}

void StoredFrame::AddMask(const std::vector<void*>& planes)
{
    const unsigned int index = GetComponentIndex(COMPONENT_MASK);
    if (index != noComponent && planes.empty()) {
        return;
    }
    checkArrays(DT_BYTE, planes);
    auto mask = makeComponent(COMPONENT_MASK, DT_BYTE, makePlanes(DT_BYTE, !planes.empty()));
    if (planes.empty()) {
        mask->fill(1);
    }
    auto& place = index == noComponent ? insert(std::move(mask)) : m_components[index] = std::move(mask);
    place->adopt(planes);
    m_modified = true;
}

void StoredFrame::RemoveComponent(unsigned int index)
{
    RTE::verifyIndex(index, m_components.size(), "index");
    m_indices.erase(m_components[index]->name());
    m_components.erase(m_components.begin() + index);
    updateIndices();
    m_modified = true;
}

I_AttributeBase* StoredFrame::FindAttribute(const std::string& name) const
{
    return m_attributes.find(name);
}

unsigned int StoredFrame::GetComponentCount() const
{
    return static_cast<unsigned int>(m_components.size());
}

unsigned int StoredFrame::GetComponentIndex(const std::string& name) const
{
    const auto found = m_indices.find(name);
    return found == m_indices.end() ? noComponent : found->second;
}

I_Component* StoredFrame::GetComponent(const std::string& name) const
{
    return GetComponent(GetComponentIndex(name));
}

I_Component* StoredFrame::GetComponent(unsigned int index) const
{
    return index < m_components.size() ? m_components[index].get() : nullptr;
}

I_PlaneBase* StoredFrame::GetPlane(unsigned int component, unsigned int z) const
{
    const I_Component* found = GetComponent(component);
    return found ? found->GetPlane(z) : nullptr;
}

E_DataType StoredFrame::GetDataType() const
{
    const I_Component* component = GetComponent(mainComponent());
    return component ? component->GetDataType() : DT_UNKNOWN;
}

I_AttributeBase* StoredFrame::CreateAttribute(const std::string& name, E_AttributeKind kind)
{
    return m_attributes.create(name, kind);
}

void StoredFrame::ClearTypedScalars()
{
    std::erase_if(m_indices, [](const auto& entry) { return entry.first.starts_with(TYPED_SCALAR_PREFIX); });
    const auto erased = std::erase_if(m_components, [](const auto& component) {
        return component->name().starts_with(TYPED_SCALAR_PREFIX);
    });
    updateIndices();
    m_modified = m_modified || erased > 0;
}

StoredComponent& StoredFrame::append(const std::string& name, E_DataType type, PlaneList planes)
{
    verifyArgument(!name.empty(), QStringLiteral("Empty name"));
    if (GetComponentIndex(name) != noComponent) {
        RTE::raise(RTE::InvalidArgumentError(
            QStringLiteral("Frame already has a component '%1'").arg(QString::fromStdString(name))));
    }
    auto& component = insert(makeComponent(name, type, std::move(planes)));
    m_modified = true;
    return *component;
}

std::unique_ptr<StoredComponent>& StoredFrame::insert(std::unique_ptr<StoredComponent> component)
{
    // Room first: when there is no memory, the frame stays as it was.
    if (m_components.size() == m_components.capacity()) {
        m_components.reserve(2 * m_components.size() + 4);
    }
    m_indices.emplace(component->name(), GetComponentCount());
    return m_components.emplace_back(std::move(component));
}

void StoredFrame::updateIndices() noexcept
{
    for (unsigned int i = 0; i < m_components.size(); ++i) {
        m_indices.find(m_components[i]->name())->second = i;
    }
}

std::unique_ptr<StoredComponent> StoredFrame::makeComponent(const std::string& name, E_DataType type,
                                                            PlaneList planes)
{
    return std::make_unique<StoredComponent>(name, type, std::move(planes), scalePlace(name), m_scaleI,
                                             m_modified);
}

PlaneList StoredFrame::makePlanes(E_DataType type, bool hollow) const
{
    PlaneList planes;
    planes.reserve(m_shape.depth);
    for (unsigned int z = 0; z < m_shape.depth; ++z) {
        planes.push_back((hollow ? hollowPlane : newPlane)(type, m_shape.width, m_shape.height));
    }
    return planes;
}

void StoredFrame::checkArrays(E_DataType type, std::vector<void*> arrays) const
{
    verifyArgument(isElementType(type), QStringLiteral("Unsupported data type"));
    if (arrays.empty()) {
        return;
    }
    verifyArgument(arrays.size() == m_shape.depth, QStringLiteral("Component needs one plane for each z"));
    verifyArgument(std::find(arrays.begin(), arrays.end(), nullptr) == arrays.end(),
                   QStringLiteral("Plane memory is NULL"));
    std::sort(arrays.begin(), arrays.end());
    verifyArgument(std::adjacent_find(arrays.begin(), arrays.end()) == arrays.end(),
                   QStringLiteral("Plane memory is given twice"));
    verifyArgument(std::none_of(m_components.begin(), m_components.end(),
                                [&](const auto& component) { return component->holdsAnyOf(arrays); }),
                   QStringLiteral("Plane memory belongs to the frame already"));
}

ScalePlace ImageFrame::scalePlace(const std::string& name) const
{
    return name == COMPONENT_PIXEL ? ScalePlace::Frame : ScalePlace::Own;
}

} // namespace BufferApi
