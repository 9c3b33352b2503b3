// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/FrameBuilder.h"
#include "Core/Buffer/I_FrameImage.h"
#include "Core/Buffer/I_FrameVector.h"
#include "Core/Buffer/StoredAttributes.h"
#include "Core/Buffer/StoredComponent.h"

#include <unordered_map>

namespace BufferApi
{

/// What all frames of the store have in common.
class StoredFrame : public virtual I_Frame
{
public:
    unsigned int AddComponent(const std::string& name, E_DataType type,
                              const std::vector<void*>& planes) override;
    void AddMask(const std::vector<void*>& planes) override;
    void ClearAttributes() override { m_attributes.clear(); }
    void RemoveComponent(unsigned int index) override;
    [[nodiscard]] const AttributeMap& GetAttributeList() const override { return m_attributes.map(); }
    [[nodiscard]] I_AttributeBase* FindAttribute(const std::string& name) const override;
    [[nodiscard]] unsigned int GetComponentCount() const override;
    [[nodiscard]] unsigned int GetComponentIndex(const std::string& name) const override;
    [[nodiscard]] I_Component* GetComponent(const std::string& name) const override;
    [[nodiscard]] I_Component* GetComponent(unsigned int index) const override;
    [[nodiscard]] I_PlaneBase* GetPlane(unsigned int component, unsigned int z) const override;
    [[nodiscard]] E_DataType GetDataType() const override;
    [[nodiscard]] const Zt::LinearScale& GetScaleI() const override { return m_scaleI; }
    [[nodiscard]] const Zt::LinearScale& GetScaleX() const override { return m_scaleX; }
    [[nodiscard]] const Zt::LinearScale& GetScaleY() const override { return m_scaleY; }
    [[nodiscard]] const Zt::LinearScale& GetScaleZ() const override { return m_scaleZ; }
    [[nodiscard]] unsigned int GetWidth() const override { return m_shape.width; }
    [[nodiscard]] unsigned int GetHeight() const override { return m_shape.height; }
    [[nodiscard]] unsigned int GetDepth() const override { return m_shape.depth; }
    [[nodiscard]] bool HasMask() const override { return GetComponent(COMPONENT_MASK) != nullptr; }
    I_AttributeBase* CreateAttribute(const std::string& name, E_AttributeKind kind) override;
    void SetScaleI(const Zt::LinearScale& scale) override { change(m_scaleI, scale); }
    void SetScaleX(const Zt::LinearScale& scale) override { change(m_scaleX, scale); }
    void SetScaleY(const Zt::LinearScale& scale) override { change(m_scaleY, scale); }
    void SetScaleZ(const Zt::LinearScale& scale) override { change(m_scaleZ, scale); }
    void RemoveAttribute(const std::string& name) override { m_attributes.remove(name); }
    void ClearTypedScalars() override;

    [[nodiscard]] const FrameShape& shape() const noexcept { return m_shape; }
    [[nodiscard]] bool isModified() const noexcept { return m_modified; }
    void setModified(bool modified) noexcept { m_modified = modified; }

    /// Appends a component of ready planes. \throws RTE::InvalidArgumentError for an empty or taken name
    StoredComponent& append(const std::string& name, E_DataType type, PlaneList planes);

protected:
    explicit StoredFrame(const FrameShape& shape);

    template <typename Value>
    void change(Value& member, const Value& value)
    {
        member = value;
        m_modified = true;
    }

private:
    using Components = std::vector<std::unique_ptr<StoredComponent>>;

    [[nodiscard]] virtual const std::string& mainComponent() const = 0;
    [[nodiscard]] virtual ScalePlace scalePlace(const std::string& name) const = 0;
    [[nodiscard]] std::unique_ptr<StoredComponent> makeComponent(const std::string& name, E_DataType type,
                                                                 PlaneList planes);
    [[nodiscard]] PlaneList makePlanes(E_DataType type, bool hollow) const;
    void checkArrays(E_DataType type, std::vector<void*> arrays) const;
    std::unique_ptr<StoredComponent>& insert(std::unique_ptr<StoredComponent> component);
    /// After components went whose names are gone from the indices already.
    void updateIndices() noexcept;

    FrameShape m_shape;
    bool m_modified = false;
    Zt::LinearScale m_scaleI;
    Zt::LinearScale m_scaleX{Zt::ScalePreset::X};
    Zt::LinearScale m_scaleY{Zt::ScalePreset::Y};
    Zt::LinearScale m_scaleZ{Zt::ScalePreset::Z};
    StoredAttributes m_attributes{m_modified};
    Components m_components;
    /// Frames of many choices have thousands of components.
    std::unordered_map<std::string, unsigned int> m_indices;
};

class ImageFrame : public StoredFrame, public I_FrameImage
{
public:
    explicit ImageFrame(const FrameShape& shape) : StoredFrame(shape) {}

private:
    [[nodiscard]] const std::string& mainComponent() const override { return COMPONENT_PIXEL; }
    [[nodiscard]] ScalePlace scalePlace(const std::string& name) const override;
};

class RgbFrame final : public ImageFrame, public I_FrameRGB32
{
public:
    explicit RgbFrame(const FrameShape& shape) : ImageFrame(shape) {}
};

/// \tparam Interface `I_FrameVector2C` or `I_FrameVector3C`
template <typename Interface>
class VectorFrame final : public StoredFrame, public Interface
{
public:
    explicit VectorFrame(const FrameShape& shape) : StoredFrame(shape) {}

    using StoredFrame::GetComponent;

    [[nodiscard]] unsigned int GetChoiceCount() const override { return shape().choices; }
    [[nodiscard]] I_Component* GetComponent(const std::string& name, unsigned int choice) const override
    {
        return choice < shape().choices ? GetComponent(choiceComponentName(name, choice)) : nullptr;
    }
    [[nodiscard]] unsigned int GetGridX() const override { return m_gridX; }
    [[nodiscard]] unsigned int GetGridY() const override { return m_gridY; }
    [[nodiscard]] unsigned int GetGridZ() const override { return m_gridZ; }
    void SetGridX(unsigned int grid) override { change(m_gridX, grid); }
    void SetGridY(unsigned int grid) override { change(m_gridY, grid); }
    void SetGridZ(unsigned int grid) override { change(m_gridZ, grid); }

private:
    [[nodiscard]] const std::string& mainComponent() const override { return I_FrameVector::COMPONENT_U; }
    [[nodiscard]] ScalePlace scalePlace(const std::string& name) const override
    {
        return isVectorComponent(shape(), name) ? ScalePlace::OwnOrFrame : ScalePlace::Own;
    }

    unsigned int m_gridX = 1;
    unsigned int m_gridY = 1;
    unsigned int m_gridZ = 1;
};

} // namespace BufferApi
