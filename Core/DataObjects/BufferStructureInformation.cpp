// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/BufferStructureInformation.h"

#include "Core/Buffer/I_Buffer.h"
#include "Core/Buffer/I_FrameImage.h"
#include "Core/Buffer/I_FrameVector.h"

namespace DataObjects
{

namespace
{

void describe(const BufferApi::I_FrameVector& frame, BufferStructureInformation& information)
{
    information.isVector = true;
    information.isVector3C = dynamic_cast<const BufferApi::I_FrameVector3C*>(&frame) != nullptr;
    information.gridX = frame.GetGridX();
    information.gridY = frame.GetGridY();
    information.gridZ = frame.GetGridZ();
}

void describe(const BufferApi::I_Frame& frame, BufferStructureInformation& information)
{
    information.depth = frame.GetDepth();
    information.width = frame.GetWidth();
    information.height = frame.GetHeight();
    information.dataType = frame.GetDataType();
    information.hasMask = frame.HasMask();
    if (const auto* const vectors = dynamic_cast<const BufferApi::I_FrameVector*>(&frame)) {
        describe(*vectors, information);
    } else {
        information.isImage = dynamic_cast<const BufferApi::I_FrameImage*>(&frame) != nullptr;
    }
}

} // namespace

BufferStructureInformation GetBufferStructureInformationForBuffer(const BufferApi::I_Buffer& buffer)
{
    BufferStructureInformation information;
    information.frameCount = buffer.GetFrameCount();
    information.name = buffer.GetName();
    if (const BufferApi::I_Frame* const first = buffer.GetFrame(0)) {
        describe(*first, information);
    }
    return information;
}

} // namespace DataObjects
