// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ScalarFieldOnFrame.h"

#include "Core/DataObjects/BufferLibDataAccess.h"
#include "Core/DataObjects/ImageDataFromBuffer.h"
#include "Core/DataObjects/ScalarFieldFromFrame.h"
#include "Core/DataObjects/TypedScalars.h"

namespace DataObjects::Private
{

template <typename T>
ScalarFieldOnFrame<T>::ScalarFieldOnFrame(BufferApi::I_Frame& frame, const std::string& name,
                                          unsigned int plane)
{
    auto view = std::make_shared<ImageData<T>>(GetImageDataFromTypedScalarT<T>(frame, name, plane));
    this->adopt(std::move(view), GetScaleOnComponent(findTypedScalar(frame, name)));
}

template <typename T>
void ScalarFieldOnFrame<T>::takeMemory(BufferApi::I_PlaneBase& plane)
{
    const std::shared_ptr<ImageData<T>> pixels = this->GetSharedDataT();
    if (pixels == nullptr || pixels->HasOwnerShip() || pixels->GetRawPointer() != plane.GetData()) {
        return;
    }
    ImageData<T> owner = GetImageDataT<T>(std::move(plane));
    // A view copies what is moved into it. Given pixels of another size it becomes an owner, which does not.
    *pixels = ImageData<T>(0, 0);
    *pixels = std::move(owner);
    this->scaleI().setChangedCallback({});
}

template <typename T>
ScalarFieldMovedFromFrame<T>::ScalarFieldMovedFromFrame(BufferApi::I_Frame&& frame, const std::string& name,
                                                        unsigned int plane)
{
    auto pixels =
        std::make_shared<ImageData<T>>(GetImageDataFromTypedScalarT<T>(std::move(frame), name, plane));
    this->adopt(std::move(pixels),
                std::make_shared<Zt::LinearScale>(findTypedScalar(frame, name)->GetScale()));
}

#define DATAOBJECTS_INSTANTIATE(type, number, name)                                                          \
    template class ScalarFieldOnFrame<type>;                                                                 \
    template class ScalarFieldMovedFromFrame<type>;
DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_INSTANTIATE)
#undef DATAOBJECTS_INSTANTIATE

} // namespace DataObjects::Private
