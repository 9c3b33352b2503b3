// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/ScalarField.h"

#include <string>

namespace BufferApi
{
class I_Component;
class I_Frame;
class I_PlaneBase;
} // namespace BufferApi

namespace DataObjects::Private
{

/// One plane of a typed scalar as a scalar field: a view of the pixels with the scale of the component, which
/// all planes share. Writing to either writes to the frame, which must outlive it. A copy is a field of its
/// own.
template <typename T>
class DATAOBJECTS_DATAOBJECTS_EXPORT ScalarFieldOnFrame : public ScalarField<T>
{
public:
    /// \throws RTE::VerificationFailed as GetImageDataFromTypedScalarT
    ScalarFieldOnFrame(BufferApi::I_Frame& frame, const std::string& name, unsigned int plane);

    /// A field whose pixels were moved out looks at nothing.
    [[nodiscard]] bool looksAt(const BufferApi::I_PlaneBase& plane) const;
    /// Takes the scale of the component and follows it from now on. What it followed before may be gone.
    void link(BufferApi::I_Component& component);
    /// Ends the view of the plane that the field looks at: it takes the memory and is no more linked to the
    /// frame, so that it may outlive it.
    void takeMemory(BufferApi::I_PlaneBase& plane);
};

/// A scalar field that took the memory out of one plane of a typed scalar; its scale is a copy.
template <typename T>
class DATAOBJECTS_DATAOBJECTS_EXPORT ScalarFieldMovedFromFrame : public ScalarField<T>
{
public:
    /// \throws RTE::VerificationFailed as GetImageDataFromTypedScalarT
    ScalarFieldMovedFromFrame(BufferApi::I_Frame&& frame, const std::string& name, unsigned int plane);
};

#define DATAOBJECTS_EXTERN_SCALAR_FIELD_ON_FRAME(type, number, name)                                         \
    extern template class ScalarFieldOnFrame<type>;                                                          \
    extern template class ScalarFieldMovedFromFrame<type>;
DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_EXTERN_SCALAR_FIELD_ON_FRAME)
#undef DATAOBJECTS_EXTERN_SCALAR_FIELD_ON_FRAME

} // namespace DataObjects::Private
