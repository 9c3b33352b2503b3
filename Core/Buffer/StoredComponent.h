// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Component.h"
#include "Core/Buffer/StoredPlane.h"

#include <optional>

namespace BufferApi
{

/// Where a component's scale is kept.
enum class ScalePlace
{
    Frame,      ///< It is the frame's I scale.
    OwnOrFrame, ///< The frame's I scale until one of its own is set.
    Own
};

class StoredComponent final : public I_Component
{
public:
    /// \param frameScale the frame's I scale; it and `modified` outlive the component
    StoredComponent(const std::string& name, E_DataType type, PlaneList planes, ScalePlace place,
                    Zt::LinearScale& frameScale, bool& modified);

    [[nodiscard]] std::string GetName() const override { return m_name; }
    [[nodiscard]] const Zt::LinearScale& GetScale() const override;
    [[nodiscard]] I_PlaneBase* GetPlane(unsigned int z) const override;
    void SetScale(const Zt::LinearScale& scale) override;
    [[nodiscard]] E_DataType GetDataType() const override { return m_type; }
    [[nodiscard]] unsigned int GetPlaneCount() const override;
    [[nodiscard]] bool HasOwnScale() const override { return m_ownScale.has_value(); }

    [[nodiscard]] const std::string& name() const noexcept { return m_name; }
    /// True when the data of a plane is one of these. \param arrays sorted
    [[nodiscard]] bool holdsAnyOf(const std::vector<void*>& arrays) const;
    /// Gives hollow planes their arrays, one each.
    void adopt(const std::vector<void*>& arrays) noexcept;
    /// Sets all bytes of all planes.
    void fill(unsigned char value);

private:
    std::string m_name;
    E_DataType m_type;
    PlaneList m_planes;
    ScalePlace m_place;
    Zt::LinearScale& m_frameScale;
    bool& m_modified;
    std::optional<Zt::LinearScale> m_ownScale;
};

} // namespace BufferApi
