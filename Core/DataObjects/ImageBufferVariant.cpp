// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageBufferVariant.h"

#include "Core/DataObjects/ImageBuffer.h"
#include "Core/DataObjects/ImageParts.h"
#include "Core/DataObjects/TypeIdentifier.h"
#include "Core/DataObjects/VisitImageType.h"

namespace DataObjects
{

ImageBufferVariant::~ImageBufferVariant() = default;

QString ImageBufferVariant::getTypeIdentifier() const
{
    return TypeIdentifier::imageBuffer;
}

GlobalAndFrameAttributes ImageBufferVariant::getAllAttributes() const
{
    GlobalAndFrameAttributes all;
    all.merge(GetGlobalAttributes());
    const unsigned int count = getFrameCount();
    all.frameAttributes.reserve(count);
    all.scalesX.reserve(count);
    all.scalesY.reserve(count);
    all.scalesZ.reserve(count);
    all.scalesI.reserve(count);
    for (unsigned int i = 0; i < count; ++i) {
        const ImageVolumeVariant& frame = getFrame(i);
        all.frameAttributes.emplace_back(frame.GetAttributes());
        all.scalesX.push_back(frame.GetScaleX());
        all.scalesY.push_back(frame.GetScaleY());
        all.scalesZ.push_back(frame.GetScaleZ());
        all.scalesI.push_back(frame.GetScaleI());
    }
    return all;
}

std::unique_ptr<Variant> ImageBufferVariant::createCopy() const
{
    return CreateCopy();
}

void ImageBufferVariant::SetGlobalAttributes(const Attributes& attributes)
{
    Private::replaceAttributes(attributes, GetGlobalAttributes());
}

void ImageBufferVariant::setAllAttributes(const GlobalAndFrameAttributes& all)
{
    SetGlobalAttributes(all);
    RTE::verify(getFrameCount() == all.frameAttributes.size(),
                "Mismatch between frame count and frame attributes count");
    for (unsigned int i = 0; i < getFrameCount(); ++i) {
        getFrame(i).SetAttributes(all.frameAttributes[i]);
    }
}

bool ImageBufferVariant::AllVolumesHaveSameSize() const
{
    RTE::verify(getFrameCount() > 0, "Image volume list is empty");
    const auto size = getFrame(0).GetSize();
    for (unsigned int i = 1; i < getFrameCount(); ++i) {
        if (getFrame(i).GetSize() != size) {
            return false;
        }
    }
    return true;
}

bool ImageBufferVariant::HasMatchingFrameSizes(const ImageBufferVariant& other) const
{
    if (getFrameCount() != other.getFrameCount()) {
        return false;
    }
    for (unsigned int i = 0; i < getFrameCount(); ++i) {
        if (getFrame(i).GetSize() != other.getFrame(i).GetSize()) {
            return false;
        }
    }
    return true;
}

void ImageBufferVariant::AddScalarField(const QString& name, const Zt::LinearScale& scale)
{
    for (unsigned int i = 0; i < getFrameCount(); ++i) {
        ImageVolumeVariant& frame = getFrame(i);
        for (unsigned int z = 0; z < frame.GetDepth(); ++z) {
            frame.getPlane(z).GetScalarFields().Add(name)->SetScaleI(scale);
        }
    }
}

bool AllValuesValid(const ImageBufferVariant& buffer)
{
    for (unsigned int i = 0; i < buffer.getFrameCount(); ++i) {
        if (!AllValuesValid(buffer.getFrame(i))) {
            return false;
        }
    }
    return true;
}

std::unique_ptr<ImageBufferVariant> CreateImageBufferCopyOfOtherType(const ImageBufferVariant& source,
                                                                     const ImageBufferVariant& typeGiver)
{
    const auto create = [&](auto tag) -> std::unique_ptr<ImageBufferVariant> {
        using T = typename decltype(tag)::type;
        auto copy = std::make_unique<ImageBuffer<T>>(std::move(*ImageBuffer<T>::CreateEmptyImageBuffer()));
        copy->Assign(source);
        return copy;
    };
    return Private::visitImageType(typeGiver.GetDataType(), create);
}

std::unique_ptr<ImageBufferVariant> CreateImageBufferOfOtherType(const ImageBufferVariant& typeGiver,
                                                                 unsigned int width, unsigned int height,
                                                                 unsigned int depth, unsigned int frames,
                                                                 bool valid)
{
    const auto create = [&](auto tag) -> std::unique_ptr<ImageBufferVariant> {
        using T = typename decltype(tag)::type;
        return std::make_unique<ImageBuffer<T>>(width, height, depth, frames, valid);
    };
    return Private::visitImageType(typeGiver.GetDataType(), create);
}

} // namespace DataObjects
