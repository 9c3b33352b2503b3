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
bool ScalarFieldOnFrame<T>::looksAt(const BufferApi::I_PlaneBase& plane) const
{
    const std::shared_ptr<ImageData<T>> pixels = this->GetSharedDataT();
    return pixels != nullptr && !pixels->HasOwnerShip() && BufferApi::IsOfType<T>(plane) &&
           pixels->GetRawPointer() == plane.GetData();
}

template <typename T>
void ScalarFieldOnFrame<T>::link(BufferApi::I_Component& component)
{
    this->scaleI().setChangedCallback({});
    this->scaleI().set(component.GetScale());
    this->scaleI().setChangedCallback(
        [&component](const Zt::LinearScale& changed) { component.SetScale(changed); });
}

template <typename T>
void ScalarFieldOnFrame<T>::takeMemory(BufferApi::I_PlaneBase& plane)
{
    ImageData<T>& pixels = this->GetDataT();
    // A view copies what is moved into it. Given pixels of another size it becomes an owner, which does not.
    // Nothing can fail once the plane has given its memory.
    pixels = ImageData<T>(0, 0);
    pixels = GetImageDataT<T>(std::move(plane));
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
