// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/DataType.h"

namespace BufferApi
{

/// A typed two-dimensional array that owns its memory: row-major, no gap between rows.
///
/// The memory comes from `RTE::newArray` of the element type and is freed with `delete[]`. A plane of an
/// imported buffer reads its data from the file when somebody first asks for it, from whatever thread; that
/// read may raise an `RTE::Exception`, and a later call tries again.
class DATAOBJECTS_BUFFER_EXPORT I_PlaneBase
{
public:
    I_PlaneBase(const I_PlaneBase&) = delete;
    I_PlaneBase& operator=(const I_PlaneBase&) = delete;
    virtual ~I_PlaneBase();

    [[nodiscard]] virtual E_DataType GetDataType() const = 0;
    /// First element; null once the data was released. Constness is that of the plane, not of its pixels.
    [[nodiscard]] virtual void* GetData() const = 0;
    /// Hands the memory to the caller, who must free it with `delete[]` of the element type. The plane stays
    /// usable only for destruction: its data is null from now on.
    [[nodiscard]] virtual void* ReleaseData() = 0;
    [[nodiscard]] virtual unsigned int GetWidth() const = 0;
    [[nodiscard]] virtual unsigned int GetHeight() const = 0;

protected:
    I_PlaneBase() = default;
};

/// A plane of one of the six element types.
template <typename T>
class DATAOBJECTS_BUFFER_EXPORT I_Plane : public I_PlaneBase
{
public:
    [[nodiscard]] E_DataType GetDataType() const final { return BufferApi::GetDataType<T>(); }
    /// `GetData` with its type.
    [[nodiscard]] T* GetTypedData() const { return static_cast<T*>(GetData()); }
};

/// A plane of packed colour.
class DATAOBJECTS_BUFFER_EXPORT I_PlaneRGB : public I_PlaneBase
{
public:
    [[nodiscard]] E_DataType GetDataType() const final { return DT_RGB; }
    /// `GetData` with its type.
    [[nodiscard]] RgbQuad* GetTypedData() const { return static_cast<RgbQuad*>(GetData()); }
};

/// True when the plane's elements are of type `T`.
template <typename T>
[[nodiscard]] bool IsOfType(const I_PlaneBase& plane)
{
    return plane.GetDataType() == GetDataType<T>();
}

} // namespace BufferApi
