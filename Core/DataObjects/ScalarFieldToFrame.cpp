// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ScalarFieldToFrame.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/DataObjects/BufferLibDataAccess.h"
#include "Core/DataObjects/Latin1.h"
#include "Core/DataObjects/ScalarFieldFromFrame.h"
#include "Core/DataObjects/ScalarFieldsOnFrame.h"
#include "Core/DataObjects/TypedScalars.h"
#include "Core/DataObjects/VisitImageType.h"

#include <algorithm>
#include <set>

namespace DataObjects
{

namespace
{

using BufferApi::I_Frame;
using Private::copyToTypedScalar;

constexpr const char* otherFieldSize = "Size of TS and plane must be equal.";

void setScale(I_Frame& frame, const std::string& name, const Zt::LinearScale& scale)
{
    Private::GetScaleOnComponent(Private::findTypedScalar(frame, name))->set(scale);
}

/// The array of each plane; none when one of them is not owned, or serves two planes.
template <typename T>
std::vector<void*> movableArrays(const std::vector<ImageData<T>*>& planes)
{
    std::vector<void*> arrays;
    for (ImageData<T>* plane : planes) {
        if (!plane->HasOwnerShip()) {
            return {};
        }
        arrays.push_back(plane->GetRawPointer());
    }
    const bool areShared = std::set<void*>(arrays.begin(), arrays.end()).size() < arrays.size();
    return areShared ? std::vector<void*>() : arrays;
}

/// One array for each z; false when something has to be copied.
template <typename T>
bool giveArrays(const std::vector<ImageData<T>*>& planes, I_Frame& frame, const std::string& name)
{
    if (planes.size() != frame.GetDepth() || Private::findTypedScalar(frame, name) != nullptr) {
        return false;
    }
    const std::vector<void*> arrays = movableArrays(planes);
    if (arrays.empty()) {
        return false;
    }
    frame.AddComponent(I_Frame::TYPED_SCALAR_PREFIX + name, BufferApi::GetDataType<T>(), arrays);
    for (ImageData<T>* plane : planes) {
        static_cast<void>(plane->ReleaseRawPointer());
    }
    return true;
}

template <typename T>
void movePixels(const std::vector<ImageData<T>*>& planes, I_Frame& frame, const std::string& name)
{
    for (unsigned int z = 0; z < planes.size(); ++z) {
        Private::verifyFitsTypedScalar(*planes[z], frame, name, z, otherFieldSize);
    }
    if (giveArrays(planes, frame, name)) {
        return;
    }
    for (unsigned int z = 0; z < planes.size(); ++z) {
        copyToTypedScalar(*planes[z], frame, name, z, otherFieldSize);
    }
}

void clearUnlessOnFrame(ScalarFields& fields)
{
    if (dynamic_cast<const Private::ScalarFieldsOnFrame*>(&fields) == nullptr) {
        fields.Clear();
    }
}

void verifySize(const ScalarFields& fields, const I_Frame& frame)
{
    RTE::verify(fields.empty() || fields.GetSizeOfScalarFields() ==
                                      Math::Size2T<unsigned int>(frame.GetWidth(), frame.GetHeight()),
                otherFieldSize);
}

/// The field of one name in all planes of a volume; all have the type of the first.
using FieldOfPlanes = std::vector<std::shared_ptr<ScalarFieldVariant>>;

FieldOfPlanes fieldOfPlanes(ImageVolumeVariant& volume, const QString& name)
{
    FieldOfPlanes fields;
    for (unsigned int z = 0; z < volume.GetDepth(); ++z) {
        fields.push_back(volume.getPlane(z).GetScalarFields().Get(name));
        RTE::verify(fields.back()->HasSameType(*fields.front()), "bad scalar field cast");
    }
    return fields;
}

void moveField(const FieldOfPlanes& fields, I_Frame& frame, const std::string& name)
{
    Private::visitImageDataType(fields.front()->GetData().GetDataType(), [&](auto tag) {
        using T = typename decltype(tag)::type;
        std::vector<ImageData<T>*> planes;
        std::transform(fields.begin(), fields.end(), std::back_inserter(planes),
                       [](const auto& field) { return &CastImageDataTo<T>(field->GetData()); });
        movePixels(planes, frame, name);
    });
    setScale(frame, name, fields.front()->GetScaleI());
}

} // namespace

template <typename T>
void CopyScalarFieldToFrameTypedScalarT(const ScalarField<T>& field, I_Frame& frame, const std::string& name,
                                        unsigned int plane)
{
    copyToTypedScalar(field.GetDataT(), frame, name, plane, otherFieldSize);
    setScale(frame, name, field.GetScaleI());
}

void CopyScalarFieldToFrameTypedScalar(const ScalarFieldVariant& field, I_Frame& frame,
                                       const std::string& name, unsigned int plane)
{
    const auto copy = [&](auto tag) {
        CopyScalarFieldToFrameTypedScalarT(CastScalarFieldTo<typename decltype(tag)::type>(field), frame,
                                           name, plane);
    };
    PixelTypes::visit(static_cast<int>(field.GetDataType()), copy,
                      [] { return RTE::Exception(QStringLiteral("Unsupported scalar field type")); });
}

template <typename T>
void MoveScalarFieldToFrameT(ImageData<T>& data, I_Frame& frame, const QString& name)
{
    movePixels(std::vector{&data}, frame, Private::toLatin1(name));
}

void MoveScalarFieldToFrame(ImageDataVariant& data, I_Frame& frame, const QString& name)
{
    Private::visitImageDataType(data.GetDataType(), [&](auto tag) {
        MoveScalarFieldToFrameT(CastImageDataTo<typename decltype(tag)::type>(data), frame, name);
    });
}

void MoveScalarFieldsToFrame(ScalarFields&& fields, BufferApi::I_FrameImage& frame)
{
    verifySize(fields, frame);
    for (const QString& name : fields.GetNames()) {
        moveField({fields.Get(name)}, frame, Private::toLatin1(name));
    }
    clearUnlessOnFrame(fields);
}

void MoveScalarFieldsFromVolumeToFrame(ImageVolumeVariant& volume, BufferApi::I_FrameImage& frame)
{
    RTE::verify(volume.GetDepth() == frame.GetDepth(),
                "Image volume field and image frame have different depth");
    std::vector<FieldOfPlanes> fields;
    const QList<QString> names = volume.getPlane(0).GetScalarFields().GetNames();
    verifySize(volume.getPlane(0).GetScalarFields(), frame);
    std::transform(names.begin(), names.end(), std::back_inserter(fields),
                   [&](const QString& name) { return fieldOfPlanes(volume, name); });
    for (std::size_t i = 0; i < fields.size(); ++i) {
        moveField(fields[i], frame, Private::toLatin1(names[static_cast<qsizetype>(i)]));
    }
    for (unsigned int z = 0; z < volume.GetDepth(); ++z) {
        clearUnlessOnFrame(volume.getPlane(z).GetScalarFields());
    }
}

#define DATAOBJECTS_INSTANTIATE(T, number, text)                                                             \
    template void CopyScalarFieldToFrameTypedScalarT<T>(const ScalarField<T>&, I_Frame&, const std::string&, \
                                                        unsigned int);                                       \
    template void MoveScalarFieldToFrameT<T>(ImageData<T>&, I_Frame&, const QString&);
DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_INSTANTIATE)
#undef DATAOBJECTS_INSTANTIATE

} // namespace DataObjects
